#include "core/Version.h"

#include <cstdio>

namespace zemtra {

std::string CaptionText(const std::string& file) {
  char minor[8];
  std::snprintf(minor, sizeof minor, "%02d", kVersionMinor);
  return std::string(kProductName) + " v" + std::to_string(kVersionMajor) + "." + minor + " - " +
         (file.empty() ? std::string("Untitled") : file);
}

}  // namespace zemtra
