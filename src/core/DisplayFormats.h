#pragma once
// The two number formats that follow from the "Display Precision" preference.
#include <string>

namespace zemtra {

struct DisplayFormats {
  std::string Short;  // at least one decimal, up to `precision` ("###0.0###" for 4)
  std::string Fixed;  // exactly `precision` decimals ("###0.0000" for 4)
};

// The formats for a precision of 3 to 6 decimals; any other value acts as 4.
DisplayFormats DisplayFormatsFor(int precision);

}  // namespace zemtra
