// The line filters of the editor: the first byte picks one filter (format, translation, arc
// rewriting, renumbering or clean-up), the rest is the program text it rewrites.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "FuzzSupport.h"
#include "editor/FilterSession.h"
#include "editor/FormatProgram.h"
#include "editor/RenumberProgram.h"

namespace zemtra::fuzz {
namespace {

enum class Kind { Format, Translate, Renumber, Garbage };

struct FilterChoice {
  Kind kind;
  int code;
};

constexpr std::array kFilters = {
    FilterChoice{Kind::Format, FormatCode::kAddSpaces},
    FilterChoice{Kind::Format, FormatCode::kRemoveSpaces},
    FilterChoice{Kind::Format, FormatCode::kCaps},
    FilterChoice{Kind::Format, FormatCode::kRemoveRedundant},
    FilterChoice{Kind::Format, FormatCode::kRemoveBlankLines},
    FilterChoice{Kind::Format, FormatCode::kRemoveComments},
    FilterChoice{Kind::Format, FormatCode::kAddCommentChars},
    FilterChoice{Kind::Format, FormatCode::kRemoveCommentChars},
    FilterChoice{Kind::Format, FormatCode::kRemoveTrailingSpaces},
    FilterChoice{Kind::Format, FormatCode::kRemoveControlChars},
    FilterChoice{Kind::Format, FormatCode::kAdjustAddresses},
    FilterChoice{Kind::Format, FormatCode::kReplaceAddress},
    FilterChoice{Kind::Format, FormatCode::kRemoveAddresses},
    FilterChoice{Kind::Format, FormatCode::kAddBlockSkip},
    FilterChoice{Kind::Format, FormatCode::kRemoveBlockSkip},
    FilterChoice{Kind::Format, FormatCode::kRemoveColinear},
    FilterChoice{Kind::Format, FormatCode::kSwapAddresses},
    FilterChoice{Kind::Format, FormatCode::kBreakArcs},
    FilterChoice{Kind::Format, FormatCode::kCustomFilter1},
    FilterChoice{Kind::Format, FormatCode::kCustomFilter2},
    FilterChoice{Kind::Translate, TranslateCode::kMirror},
    FilterChoice{Kind::Translate, TranslateCode::kRotate},
    FilterChoice{Kind::Translate, TranslateCode::kShift},
    FilterChoice{Kind::Translate, TranslateCode::kArcsToIJK},
    FilterChoice{Kind::Translate, TranslateCode::kScale},
    FilterChoice{Kind::Translate, TranslateCode::kArcsToR},
    FilterChoice{Kind::Translate, TranslateCode::kArcsAbsolute},
    FilterChoice{Kind::Translate, TranslateCode::kArcsIncremental},
    FilterChoice{Kind::Renumber, 1},
    FilterChoice{Kind::Renumber, 3},
    FilterChoice{Kind::Renumber, 0},
    FilterChoice{Kind::Garbage, 0},
};

// Parameters a user could give in the dialogs: every filter has something to do.
FilterParameters SampleParameters() {
  FilterParameters p;
  p.AdjustAddresses = "XYZIJ";
  p.AdjustOperator = 2;
  p.AdjustOperand = 1.5;
  p.AdjustFormat = "0.0###";
  p.ReplaceFind = "G";
  p.ReplaceWith = "M";
  p.RemoveAddresses = "NF";
  p.SwapFirst = "X";
  p.SwapSecond = "Y";
  p.BreakTolerance = 0.01;
  p.Approach = 0.1;
  p.FeedMult = 0.5;
  p.Mirror = {true, true, false};
  p.MirrorPoint = {1, 2, 0};
  p.RotCenterX = 1;
  p.RotCenterY = -1;
  p.RotAngle = 30;
  p.Shift = {1, 2, 3};
  p.SclCenterX = 0.5;
  p.SclCenterY = 0.5;
  p.SclFactor = 2.5;
  return p;
}

}  // namespace
}  // namespace zemtra::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zemtra;
  if (size == 0) return 0;
  static const MachineConfig mill = fuzz::ShippedConfig("default");
  static const FilterParameters parameters = fuzz::SampleParameters();
  const fuzz::FilterChoice choice = fuzz::kFilters[data[0] % fuzz::kFilters.size()];
  const std::string_view text = fuzz::AsText(data + 1, size - 1);
  fuzz::DeadlineHost host(std::chrono::milliseconds(300));
  FilterSession session(mill, parameters);
  switch (choice.kind) {
    case fuzz::Kind::Format:
      FormatProgram(choice.code, text, session, host);
      break;
    case fuzz::Kind::Translate:
      TranslateProgram(choice.code, text, session, host);
      break;
    case fuzz::Kind::Renumber: {
      RenumberOptions options;
      options.Mode = choice.code;
      RenumberProgram(text, options, mill, host);
      break;
    }
    case fuzz::Kind::Garbage:
      RemoveGarbage(text, host);
      break;
  }
  return 0;
}
