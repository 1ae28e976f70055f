#include "core/Version.h"

#include "core/NumberText.h"

namespace zemtra {

std::string CaptionText(const std::string& file) {
  return std::string(kProductName) + " v" + std::to_string(kVersionMajor) + "." +
         FormatNumberText(kVersionMinor, "00") + " - " +
         (file.empty() ? std::string("Untitled") : file);
}

}  // namespace zemtra
