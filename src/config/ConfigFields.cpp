#include "config/ConfigFields.h"

#include <cfloat>
#include <cmath>
#include <type_traits>

#include "config/ConfigValues.h"
#include "core/NumberText.h"
#include "core/TextUtil.h"

namespace zemtra {
namespace {

// --- Field accessors made from member pointers --------------------------------------------------

template <typename T>
struct MemberTraits;
template <typename C, typename F>
struct MemberTraits<F C::*> {
  using Class = C;
  using Field = F;
};

template <auto Member>
using FieldType = typename MemberTraits<decltype(Member)>::Field;

// The member of the record, or of its default DXF layer.
template <auto Member>
constexpr auto& Ref(MachineConfig& record) {
  if constexpr (std::is_same_v<typename MemberTraits<decltype(Member)>::Class, ConvertParams>) {
    return record.DXFDefaults.*Member;
  } else {
    return record.*Member;
  }
}
template <auto Member>
constexpr const auto& Ref(const MachineConfig& record) {
  if constexpr (std::is_same_v<typename MemberTraits<decltype(Member)>::Class, ConvertParams>) {
    return record.DXFDefaults.*Member;
  } else {
    return record.*Member;
  }
}

template <auto Member>
constexpr WholeField Whole() {
  return {
      [](const MachineConfig& r) { return static_cast<int>(Ref<Member>(r)); },
      [](MachineConfig& r, int value) { Ref<Member>(r) = static_cast<FieldType<Member>>(value); }};
}

template <auto Member>
bool SetNumber(MachineConfig& record, double value) {
  using F = FieldType<Member>;
  if constexpr (std::is_same_v<F, double>) {
    Ref<Member>(record) = value;
  } else if constexpr (std::is_same_v<F, float>) {
    if (!(std::fabs(value) <= FLT_MAX)) return false;
    Ref<Member>(record) = static_cast<float>(value);
  } else {
    const std::optional<F> whole = RoundToWidth<F>(value);
    if (!whole) return false;
    Ref<Member>(record) = *whole;
  }
  return true;
}

template <auto Member>
std::string NumberText(const MachineConfig& record) {
  if constexpr (std::is_same_v<FieldType<Member>, float>) {
    return FormatSingleText(Ref<Member>(record));
  } else {
    return FormatNumberText(static_cast<double>(Ref<Member>(record)), "");
  }
}

template <auto Member>
constexpr NumberField Number() {
  return {[](const MachineConfig& r) { return static_cast<double>(Ref<Member>(r)); },
          &SetNumber<Member>, &NumberText<Member>};
}

template <auto Member>
constexpr TextField Text() {
  return {[](const MachineConfig& r) -> const std::string& { return Ref<Member>(r); },
          [](MachineConfig& r, std::string value) { Ref<Member>(r) = std::move(value); }};
}

// The colour of tools without an entry is also element 0 of the tool colours.
constexpr WholeField kUnspecifiedToolColor = {
    [](const MachineConfig& r) { return static_cast<int>(r.UnspecifiedToolColor); },
    [](MachineConfig& r, int value) {
      r.UnspecifiedToolColor = value;
      if (r.ToolColors.empty()) r.ToolColors.resize(1);
      r.ToolColors[0] = value;
    }};

using M = MachineConfig;
using C = ConvertParams;
using P = ConfigPageId;

constexpr ControlPlace At(P page, std::string_view frame = {}) {
  return {page, frame};
}

// --- Tables -------------------------------------------------------------------------------------

constexpr FrameInfo kFrames[] = {
    {P::MachineType, "fraMachineType", "Machine Type"},
    {P::MachineType, "frmMillType", "Mill Type"},
    {P::MachineType, "frmLathe", "Lathe Options"},
    {P::MachineType, "frGFormat", "Lathe G-Code Format"},
    {P::MachineType, "fraDefaults", "Program Files"},
    {P::ControlSettings, "fraRapid", "Rapid Motion"},
    {P::ControlSettings, "fraArcs", "Arcs"},
    {P::ControlSettings, "fraResolution", "Words"},
    {P::ControlSettings, "fraATAN", "Macro ATAN Format"},
    {P::ControlSettings, "fraInitialState", "Initial State"},
    {P::GMCodes, "fraM98Format", "Subprogram Call Format"},
    {P::GMCodes, "fraMacros", "External G-Code Macros"},
    {P::GMCodes, "fraMirror", "Mirror M-Codes"},
    {P::Viewport, "fraColors", "Viewport Colors"},
    {P::Viewport, "frmColorByGCode", "Color by G-Code"},
    {P::Viewport, "frmColorByTool", "Color by Tool"},
    {P::Viewport, "fraTopView", "Top View"},
    {P::WorkOffsets, "fraWorkOffsets", "Work Offsets"},
    {P::Dxf, "fraLayer", "Default Layer"},
    {P::Dxf, "frmZIncrement", "Z Increment"},
    {P::Dxf, "SSTab1", ""},
    {P::Rotary, "fraAxis", "4th Axis"},
    {P::Rotary, "fraRotation", "Rotation"},
    {P::Rotary, "fraCenter", "Axis Centerline"},
};

constexpr OptionBinding kOptions[] = {
    {At(P::MachineType, "fraMachineType"), "optTypeMill", "Mill", Whole<&M::MachineType>(), 0},
    {At(P::MachineType, "fraMachineType"), "optTypeLathe", "Lathe", Whole<&M::MachineType>(), 1},
    {At(P::MachineType, "frmMillType"), "optMillVertical", "Vertical", Whole<&M::MillType>(), 0},
    {At(P::MachineType, "frmMillType"), "optMillHorizontal", "Horizontal", Whole<&M::MillType>(),
     1},
    {At(P::MachineType, "frmLathe"), "optTypeDiameter", "X words are diameters",
     Whole<&M::LatheXDiameter>(), kFlagTrue},
    {At(P::MachineType, "frmLathe"), "optTypeRadius", "X words are radii",
     Whole<&M::LatheXDiameter>(), kFlagFalse},
    {At(P::MachineType, "frGFormat"), "optFormatA", "Format A", Whole<&M::LatheGCodeFormat>(), 0},
    {At(P::MachineType, "frGFormat"), "optFormatB", "Format B", Whole<&M::LatheGCodeFormat>(), 1},
    {At(P::ControlSettings, "fraRapid"), "optRapid0", "Interpolated", Whole<&M::RapidType>(), 0},
    {At(P::ControlSettings, "fraRapid"), "optRapid1", "Non-Interpolated (Dog-leg)",
     Whole<&M::RapidType>(), 1},
    {At(P::ControlSettings, "fraRapid"), "optRapid2", "XY Interpolated, Z First / Last",
     Whole<&M::RapidType>(), 2},
    {At(P::ControlSettings, "fraATAN"), "optATAN1", "Use one operand format: ATAN [#1]",
     Whole<&M::FanucATANFormat>(), kFlagFalse},
    {At(P::ControlSettings, "fraATAN"), "optATAN2", "Use two operand format: ATAN [#1] / [#2]",
     Whole<&M::FanucATANFormat>(), kFlagTrue},
    {At(P::GMCodes, "fraM98Format"), "optM98Format0", "M98 P1 L1", Whole<&M::M98Format>(), 0},
    {At(P::GMCodes, "fraM98Format"), "optM98Format1", "M98 P1 K1", Whole<&M::M98Format>(), 1},
    {At(P::GMCodes, "fraM98Format"), "optM98Format2", "M98 Pxxxxyyyy", Whole<&M::M98Format>(), 2},
    {At(P::GMCodes, "fraM98Format"), "optM98Format3", "M98 P1 H1 L1", Whole<&M::M98Format>(), 3},
    {At(P::GMCodes, "fraM98Format"), "optM98Format4", "M98 O1", Whole<&M::M98Format>(), 4},
    {At(P::Viewport), "frmColorByGCode", "Color by G-Code", Whole<&M::ColorByGCode>(), kFlagTrue},
    {At(P::Viewport), "frmColorByTool", "Color by Tool", Whole<&M::ColorByGCode>(), kFlagFalse},
    {At(P::Viewport, "frmColorByTool"), "optCCM06", "Change Color on M06",
     Whole<&M::ColorChangeCode>(), 0},
    {At(P::Viewport, "frmColorByTool"), "optCCTCode", "Change Color on T Code",
     Whole<&M::ColorChangeCode>(), 1},
    {At(P::Rotary, "fraRotation"), "optRotateX", "Rotates around X axis",
     Whole<&M::RotaryAxisPlane>(), 19},
    {At(P::Rotary, "fraRotation"), "optRotateY", "Rotates around Y axis",
     Whole<&M::RotaryAxisPlane>(), 18},
};

constexpr CheckBinding kChecks[] = {
    {At(P::MachineType, "frmLathe"), "chkReverseArc", "Reverse arc direction",
     Whole<&M::LatheReverseArcs>()},
    {At(P::ControlSettings, "fraArcs"), "chkAbsArc", "Absolute Arc Centers",
     Whole<&M::AbsoluteArcCenter>()},
    {At(P::ControlSettings, "fraArcs"), "chkModalIJK", "I/J/K values are modal",
     Whole<&M::ModalIJK>()},
    {At(P::Dxf), "frmZIncrement", "Z Increment", Whole<&C::EnableZIncrement>()},
};

constexpr NumberBinding kNumbers[] = {
    {At(P::ControlSettings, "fraArcs"), "txtArcTolerance",
     "Arc Tolerance:", Number<&M::ArcTolerance>()},
    {At(P::GMCodes, "fraMirror"), "txtXMirrorON", "X Mirror ON:", Number<&M::MCodeXMirrorOn>()},
    {At(P::GMCodes, "fraMirror"), "txtYMirrorON", "Y Mirror ON:", Number<&M::MCodeYMirrorOn>()},
    {At(P::GMCodes, "fraMirror"), "txtBothMirrorOFF", "Mirror OFF:", Number<&M::MCodeMirrorOff>()},
    {At(P::Dxf, "fraLayer"), "txtZRetract", "Z Retract:", Number<&C::ZRetract>()},
    {At(P::Dxf, "fraLayer"), "txtZApproach", "Z Approach:", Number<&C::ZApproach>()},
    {At(P::Dxf, "fraLayer"), "txtZDepth", "Z Depth:", Number<&C::ZDepth>()},
    {At(P::Dxf, "fraLayer"), "txtFeedrate", "Feedrate:", Number<&C::FeedRate>()},
    {At(P::Dxf, "fraLayer"), "txtPlungeRate", "Plunge Feedrate:", Number<&C::PlungeRate>()},
    {At(P::Dxf, "fraLayer"), "txtZTop", "Material Top:", Number<&C::ZTop>()},
    {At(P::Dxf, "frmZIncrement"), "txtZIncrement", "Depth per Pass:", Number<&C::ZIncrement>()},
    {At(P::Rotary, "fraCenter"), "txtRotaryCenterX", "X:", Number<&M::RotaryCenterX>()},
    {At(P::Rotary, "fraCenter"), "txtRotaryCenterY", "Y:", Number<&M::RotaryCenterY>()},
    {At(P::Rotary, "fraCenter"), "txtRotaryCenterZ", "Z:", Number<&M::RotaryCenterZ>()},
};

constexpr std::string_view kAxisLetters[] = {"A", "B", "C"};

constexpr TextBinding kTexts[] = {
    {At(P::MachineType, "fraDefaults"), "txtDefaultFolder",
     "Default Folder:", Text<&M::DefaultProgramFolder>(), TextRule::Any},
    {At(P::MachineType, "fraDefaults"), "txtFileTypes", "File Types:", Text<&M::DefaultFileTypes>(),
     TextRule::FileTypes},
    {At(P::ControlSettings, "fraResolution"), "txtDwellAddress", "G04 Dwell Address",
     Text<&M::DwellAddress>(), TextRule::Letter},
    {At(P::ControlSettings, "fraInitialState"), "txtInitialState", "", Text<&M::InitialState>(),
     TextRule::GCode},
    {At(P::Dxf, "SSTab1"), "txtHeader", "Layer Header", Text<&C::Header>(), TextRule::LayerLines},
    {At(P::Dxf, "SSTab1"), "txtFooter", "Layer Footer", Text<&C::Footer>(), TextRule::LayerLines},
    {At(P::Rotary, "fraAxis"), "cmbAxisName", "4th Axis Identifier",
     Text<&M::RotaryAxisIdentifier>(), TextRule::Letter, kAxisLetters},
};

constexpr std::string_view kCoordinateResolutions[] = {"1.0",   "0.1",    "0.01",
                                                       "0.001", "0.0001", "0.00001"};
constexpr std::string_view kRotaryResolutions[] = {"1.0", "0.1", "0.01", "0.001", "0.0001"};

constexpr ChoiceBinding kChoices[] = {
    {At(P::ControlSettings, "fraResolution"), "cmbCoordRes", "Coordinate Resolution",
     Number<&M::CoordinateResolution>(), kCoordinateResolutions},
    {At(P::Rotary, "fraAxis"), "cmbRCoordRes", "Resolution", Number<&M::RotaryAxisResolution>(),
     kRotaryResolutions},
};

constexpr ColorBinding kColors[] = {
    {At(P::Viewport, "fraColors"), "cmdColor0", "Selection", Whole<&M::SelectionColor>()},
    {At(P::Viewport, "fraColors"), "cmdColor1", "Background", Whole<&M::BackgroundColor>()},
    {At(P::Viewport, "fraColors"), "cmdColor2", "Marker", Whole<&M::MarkerColor>()},
    {At(P::Viewport, "frmColorByGCode"), "cmdColor3", "G00 Rapid", Whole<&M::G00Color>()},
    {At(P::Viewport, "frmColorByGCode"), "cmdColor4", "G01 Feed", Whole<&M::G01Color>()},
    {At(P::Viewport, "frmColorByGCode"), "cmdColor5", "G02 Clockwise Arc", Whole<&M::G02Color>()},
    {At(P::Viewport, "frmColorByGCode"), "cmdColor6", "G03 Counter-Clockwise Arc",
     Whole<&M::G03Color>()},
    {At(P::Viewport, "frmColorByTool"), "cmdToolColor", "Unspecified Tool", kUnspecifiedToolColor},
};

constexpr std::string_view kFormatA[] = {
    "G90 Turning Cycle",    "G92 Thread Cutting Cycle", "G94 Facing Cycle", "G96 Spindle CSS mode",
    "G97 Spindle RPM mode", "G98 Feed per Minute",      "G99 Feed per Rev"};
constexpr std::string_view kFormatB[] = {
    "G90 Absolute",     "G91 Incremental",      "G92 Coordinate Set",  "G94 Feed per Minute",
    "G95 Feed per Rev", "G96 Spindle CSS mode", "G97 Spindle RPM mode"};

// Line ends of a box ("\n", "\r\n" or "\r") each become `lineEnd`.
std::string ReplaceLineEnds(std::string_view text, std::string_view lineEnd) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r' && text[i] != '\n') {
      result += text[i];
      continue;
    }
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
    result += lineEnd;
  }
  return result;
}

// Each non-empty line of the box, ended by CR LF.
std::string LayerLinesOf(std::string_view boxText) {
  std::string lines;
  for (std::string_view line : NonEmptyLines(boxText)) {
    lines.append(line);
    lines.append("\r\n");
  }
  return lines;
}

}  // namespace

std::span<const FrameInfo> ConfigFrames() {
  return kFrames;
}
std::span<const OptionBinding> OptionBindings() {
  return kOptions;
}
std::span<const CheckBinding> CheckBindings() {
  return kChecks;
}
std::span<const NumberBinding> NumberBindings() {
  return kNumbers;
}
std::span<const TextBinding> TextBindings() {
  return kTexts;
}
std::span<const ChoiceBinding> ChoiceBindings() {
  return kChoices;
}
std::span<const ColorBinding> ColorBindings() {
  return kColors;
}

std::span<const std::string_view> LatheFormatLines(int format) {
  if (format == 1) return kFormatB;
  return kFormatA;
}

std::string TakeNumberText(const NumberBinding& binding, MachineConfig& record,
                           std::string_view typed) {
  binding.Field.Set(record, NumericTextValue(typed));
  return binding.Field.Text(record);
}

std::string BoxText(const TextBinding& binding, const MachineConfig& record) {
  const std::string& text = binding.Field.Get(record);
  if (binding.Rule != TextRule::LayerLines) return text;
  // The last line's end is the box's own end.
  std::string box = ReplaceLineEnds(text, "\n");
  if (!box.empty() && box.back() == '\n') box.pop_back();
  return box;
}

void TakeBoxText(const TextBinding& binding, MachineConfig& record, std::string_view boxText) {
  if (binding.Rule == TextRule::LayerLines) {
    binding.Field.Set(record, LayerLinesOf(boxText));
    return;
  }
  std::string text = ReplaceLineEnds(boxText, " ");
  // Pasted text may hold what typing refuses.
  std::erase_if(text, [&binding](char c) { return RefusesCharacter(binding.Rule, c); });
  if (binding.Rule == TextRule::Letter) text = ToUpperAscii(text.substr(0, 1));
  binding.Field.Set(record, std::move(text));
}

bool RefusesCharacter(TextRule rule, char c) {
  switch (rule) {
    case TextRule::FileTypes:
      return std::string_view("\\/:<>|").find(c) != std::string_view::npos;
    case TextRule::Letter:
      return !((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'));
    default:
      return false;
  }
}

int ChoiceIndex(const ChoiceBinding& binding, const MachineConfig& record) {
  const double value = binding.Field.Get(record);
  for (std::size_t i = 0; i < binding.Items.size(); ++i) {
    const double item = NumericTextValue(binding.Items[i]);
    if (std::fabs(item - value) <= item * 1e-9) return static_cast<int>(i);
  }
  return -1;
}

void TakeChoice(const ChoiceBinding& binding, MachineConfig& record, int index) {
  if (index < 0 || index >= static_cast<int>(binding.Items.size())) return;
  binding.Field.Set(record, NumericTextValue(binding.Items[static_cast<std::size_t>(index)]));
}

std::string WorkOffsetText(const std::function<std::string(int)>& readVariable, int offset,
                           int axis) {
  const std::string text = readVariable ? readVariable(WorkOffsetVariable(offset, axis)) : "";
  return FormatNumberText(NumericTextValue(text), "");
}

std::string TakeWorkOffsetText(const VariableWriter& writeVariable, int offset, int axis,
                               std::string_view typed) {
  const double value = NumericTextValue(typed);
  if (writeVariable) writeVariable(WorkOffsetVariable(offset, axis), value);
  return FormatNumberText(value, "");
}

void RecordWorkOffsetLine(MachineConfig& record,
                          const std::function<std::string(int)>& readVariable, int offset) {
  std::string line;
  for (int axis = 0; axis < static_cast<int>(kWorkOffsetAxes.size()); ++axis) {
    if (axis > 0) line += ' ';
    line += "#" + FormatNumberText(WorkOffsetVariable(offset, axis), "0") + "=" +
            WorkOffsetText(readVariable, offset, axis);
  }
  record.WorkOffsetText[static_cast<std::size_t>(offset)] = line;
}

}  // namespace zemtra
