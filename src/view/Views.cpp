#include "view/Views.h"

#include <charconv>

#include "core/TextUtil.h"

namespace zemtra {

int ViewFromCommandName(std::string_view name, int machineType) {
  if (EqualsNoCase(name, "iso") || EqualsNoCase(name, "isometric")) return IsoViewFor(machineType);
  for (int view = 0; view < kViewCount; ++view) {
    if (EqualsNoCase(name, kViews[static_cast<std::size_t>(view)].CommandName)) return view;
  }
  int number = -1;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
  if (error == std::errc() && end == name.data() + name.size() && IsKnownView(number)) {
    return number;
  }
  return -1;
}

}  // namespace zemtra
