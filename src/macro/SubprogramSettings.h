#pragma once
// Where subprogram files are found and how missing ones are treated: the user's settings of
// section "Subprograms".
#include <cstdint>
#include <string>
#include <vector>

namespace zemtra {

class SettingsStore;

// Values of "Ignore M98" and "Ignore G65".
namespace SubprogramMode {
constexpr std::int16_t kErrorIfMissing = 1;  // "Error If Sub Not Found"
constexpr std::int16_t kSkipIfMissing = 2;   // "Ignore If Sub Not Found"
constexpr std::int16_t kIgnoreAll = 3;       // "Ignore All": the calls are not looked at
}  // namespace SubprogramMode

// A program number the user tied to a file (the Sub Program Assignment dialog).
struct SubProgramAssignment {
  std::int32_t Number = 0;
  std::string FileName;
};

struct SubprogramSettings {
  std::string DefaultSubPath;  // folder searched for O<number> files; "" for none
  std::int16_t IgnoreM98 = SubprogramMode::kErrorIfMissing;  // M97, M98 and M99
  std::int16_t IgnoreG65 = SubprogramMode::kErrorIfMissing;
  std::vector<SubProgramAssignment> SubProgramFiles;
};

// Reads section "Subprograms": "Default Path", "Ignore M98", "Ignore G65" (1 to 3; anything
// else keeps 1) and every key that begins with "Program", whose number is the value of the key
// from its eighth character on and whose value is the file.
SubprogramSettings LoadSubprogramSettings(const SettingsStore& store);
// Replaces section "Subprograms" with `settings`; assignments to program 0 are left out.
void SaveSubprogramSettings(SettingsStore& store, const SubprogramSettings& settings);

}  // namespace zemtra
