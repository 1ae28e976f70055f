#pragma once
// Scratch files of the program. Every one is named "zmt*.tmp" in the system temporary folder,
// so that all of them, of every running instance, can be removed together at exit.
#include <filesystem>
#include <string>

namespace zemtra {

// Creates a new, empty, uniquely named file "zmt<unique>.tmp" in the temporary folder
// ($TMPDIR, else /tmp) and returns its full path. The file is created exclusively, so two
// instances never get the same name. Returns "" when no file can be created there.
std::string TempFileName();

// Deletes every regular file (or link) named "zmt*.tmp", in any case, in `folder`, those of
// other instances included. Files that cannot be deleted are left; never throws.
void RemoveTempFiles(const std::filesystem::path& folder);
// The same in the system temporary folder.
void RemoveTempFiles();

// The system temporary folder, /tmp when $TMPDIR names no folder.
std::filesystem::path TempFolder();

}  // namespace zemtra
