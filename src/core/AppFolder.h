#pragma once
// The application folder: the per-user folder that holds CONFIG, DNC, SCRIPTS, MACRO and
// Manuals, seeded from the data shipped with the program. Names under it are found without
// regard to case, so "CONFIG\default.zmt" finds "Config/Default.zmt".
#include <filesystem>
#include <string>
#include <string_view>

namespace zemtra {

// `relative` (components separated by "/" or "\") resolved under `base`, each component
// matched against the existing entries without regard to case (an exact match wins). Returns
// the existing path when every component is found; otherwise `base` joined with the found
// components and then the rest as given, so that a caller can name the missing path. Never
// throws.
std::filesystem::path FindPathNoCase(const std::filesystem::path& base, std::string_view relative);

// Where the application folder is, without touching the disk: $ZEMTRA_HOME when set and not
// empty; else $XDG_DATA_HOME/Zemtra (an absolute $XDG_DATA_HOME only); else
// $HOME/.local/share/Zemtra. Empty, with a message in `error`, when none of these is known.
std::filesystem::path ApplicationFolderPath(std::string* error = nullptr);

// The data shipped with the program: the build tree's data folder when it exists, else
// <executable>/../share/zemtra, else the installation prefix's share/zemtra. Empty when none
// exists.
std::filesystem::path ShippedDataFolder();

// Copies into `to` every file and folder of `from` that `to` lacks, recursively, matching names
// without regard to case; never overwrites a file, except in the shipped documentation folder
// "Manuals", whose files follow the shipped ones. Creates `to` when missing. Returns false,
// with the first problem in `error`, when something could not be copied; copying goes on past
// a failure. Copying a folder into itself does nothing. Never throws.
bool SeedFolder(const std::filesystem::path& from, const std::filesystem::path& to,
                std::string* error = nullptr);

// The application folder, made ready for use: the per-user folder is created when missing and
// gets whatever shipped file it lacks (a newer version's macro files reach an old folder). A
// $ZEMTRA_HOME folder is seeded only when this call creates it, so that an existing one (a test
// fixture, a portable set-up) stays as its owner made it. Problems (no home folder, a folder
// that cannot be written) are put in `error` and the path is still returned when known; never
// throws. Does disk work on each call: call once and keep the result.
std::filesystem::path ApplicationFolder(std::string* error = nullptr);

}  // namespace zemtra
