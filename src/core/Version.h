#pragma once
#include <string>

namespace zemtra {

constexpr int kVersionMajor = ZEMTRA_VERSION_MAJOR;
constexpr int kVersionMinor = ZEMTRA_VERSION_MINOR;
constexpr const char* kProductName = "Zemtra";

// The main window's title: "Zemtra v1.00 - " and the file, or "Untitled" when `file` is "".
std::string CaptionText(const std::string& file);

}  // namespace zemtra
