#pragma once
// Line ends of program files. The editor holds every line end as CR LF; a file's own line end
// is found from its first bytes and replaced on the way in.
#include <cstddef>
#include <string>
#include <string_view>

namespace zemtra {

inline constexpr std::string_view kCrLf = "\r\n";
// How many bytes of the file GetEOLSequence looks at.
inline constexpr std::size_t kEolProbeBytes = 1024;

// The line end of a file from its first kEolProbeBytes bytes: the first run of CR and LF
// characters that is followed by another character and is at most 3 long (longer runs are blank
// lines or a tape leader and are passed over). CR LF when there is none, also when the probe
// ends inside a run. So "CR LF LF" or "CR CR LF" can be a file's line end.
std::string GetEOLSequence(std::string_view bytes);

// Makes every line end of `text` CR LF: each `eol` (as GetEOLSequence found it) first, then any
// CR LF as it stands and any lone CR or LF. Returns true when the text changed.
bool NormalizeLineEnds(std::string& text, std::string_view eol);

}  // namespace zemtra
