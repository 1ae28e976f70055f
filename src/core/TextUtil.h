#pragma once
// Small text helpers: ASCII case, trimming, case-blind comparison and splitting of path texts.
// Case rules touch only ASCII letters; other bytes (UTF-8 included) pass through unchanged.
#include <string>
#include <string_view>

namespace zemtra {

std::string ToUpperAscii(std::string_view text);
std::string ToLowerAscii(std::string_view text);

// `text` without blanks and tabs at both ends.
std::string TrimText(std::string_view text);

// Equality and prefix/suffix tests ignoring ASCII case.
bool EqualsNoCase(std::string_view a, std::string_view b);
bool StartsWithNoCase(std::string_view text, std::string_view prefix);
bool EndsWithNoCase(std::string_view text, std::string_view suffix);

// Lower-cases `text`, then capitalises the first letter and every letter that follows a
// character other than a letter or digit ("LATHE 2-axis" gives "Lathe 2-Axis"). Bytes of
// non-ASCII characters count as letters, so they neither start a word nor are changed.
std::string ProperCase(std::string_view text);

// Path texts split at the last "/" or "\". All three give "" for an empty or blank path.
// The folder keeps its trailing separator ("/cnc/part.nc" gives "/cnc/"), so that folder and a
// file name can be joined as they stand; with no separator the folder is "".
std::string FolderOf(std::string_view path);
// The part behind the last separator, or the whole path when there is none.
std::string FileNameOf(std::string_view path);
// The path without the extension of its file name ("/a.b/part.nc" gives "/a.b/part"). A point
// that begins the file name (".zemtra") starts no extension.
std::string PathWithoutExtension(std::string_view path);

}  // namespace zemtra
