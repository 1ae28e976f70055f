#pragma once
// The command line of the desktop program: one text, as a second start hands it over,
// holding an optional CONFIG="name" clause and a file path (blanks in it need no quotes).
#include <filesystem>
#include <string>
#include <vector>

namespace zemtra {

// The arguments joined into one command line with single blanks. The shell has already taken
// the quotes off CONFIG="name", so an argument CONFIG=name gets them back; an argument that
// names an existing file by a relative path is made absolute against `workingFolder`, so that
// another instance, started elsewhere, finds it too.
std::string CommandLineFromArguments(const std::vector<std::string>& arguments,
                                     const std::filesystem::path& workingFolder);

// Takes the CONFIG="name" clause out of `commandArgument` and returns the configuration file
// it names, CONFIG/<name>.zmt under `applicationFolder` (folder and file found regardless of
// case). `commandArgument` becomes the trimmed text behind the closing quote: what stood before
// CONFIG= is dropped. Returns "" and leaves the argument as it was when there is no quoted
// clause (CONFIG=name without quotes is taken for part of a file name).
std::string ParseConfigArgument(std::string& commandArgument,
                                const std::filesystem::path& applicationFolder);

// The file named by what remains of the command line: trimmed and without any double quote.
// "" when the argument is no longer than one character.
std::string PassedFileName(const std::string& commandArgument);

// What a second instance's text becomes before it is opened: a text that begins with a double
// quote loses its first and its last character.
std::string HandedOverFileName(const std::string& received);

}  // namespace zemtra
