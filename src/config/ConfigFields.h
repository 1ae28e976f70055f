#pragma once
// The pages of the machine configuration editor and the record fields their controls edit, as
// tables: a page is built and bound by walking its rows, and the same rows are tested without
// any window. Every control writes straight into the record it is given; the work offsets,
// which live in the variable store, have helpers of their own.
#include <array>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "config/MachineConfig.h"

namespace zemtra {

enum class ConfigPageId {
  MachineType,
  ControlSettings,
  GMCodes,
  Viewport,
  WorkOffsets,
  Dxf,
  Rotary
};

struct ConfigPageInfo {
  ConfigPageId Page;
  std::string_view Caption;  // caption in the page tree; its key is the caption in lower case
  std::string_view Form;     // name of the page panel
};

// The pages in tree order.
inline constexpr std::array<ConfigPageInfo, 7> kConfigPages = {{
    {ConfigPageId::MachineType, "Machine Type", "frmCFG1"},
    {ConfigPageId::ControlSettings, "Control Settings", "frmCFG2"},
    {ConfigPageId::GMCodes, "G / M Codes", "frmCFG3"},
    {ConfigPageId::Viewport, "Viewport Settings", "frmCFG4"},
    {ConfigPageId::WorkOffsets, "Work Offsets", "frmCFG6"},
    {ConfigPageId::Dxf, "DXF Options", "frmCFG5"},
    {ConfigPageId::Rotary, "Rotary 4th Axis", "frmCFG7"},
}};

// Where a control stands: its page, and the frame of the page holding it ("" for none).
struct ControlPlace {
  ConfigPageId Page;
  std::string_view Frame;
};

// A field holding a whole number: a 16-bit integer, a byte or a flag (-1 / 0).
struct WholeField {
  int (*Get)(const MachineConfig&);
  void (*Set)(MachineConfig&, int);
};

// A field holding a number. Set returns false, leaving the field as it was, when the field
// cannot hold the value (a 16-bit field given 1E6); Text is the value as the box shows it.
struct NumberField {
  double (*Get)(const MachineConfig&);
  bool (*Set)(MachineConfig&, double);
  std::string (*Text)(const MachineConfig&);
};

struct TextField {
  const std::string& (*Get)(const MachineConfig&);
  void (*Set)(MachineConfig&, std::string);
};

// A radio button: sets its field to Value, and is checked while the field holds Value.
struct OptionBinding {
  ControlPlace Place;
  std::string_view Control;
  std::string_view Caption;
  WholeField Field;
  int Value;
};

// A check box, or a frame with a check box in its heading: the field as a flag.
struct CheckBinding {
  ControlPlace Place;
  std::string_view Control;
  std::string_view Caption;
  WholeField Field;
};

// A numeric text box: what is typed is read with numeric text conversion when the box is left
// (so a bad entry reads as 0) and shown again as number text.
struct NumberBinding {
  ControlPlace Place;
  std::string_view Control;
  std::string_view Caption;
  NumberField Field;
};

// What a text box takes.
enum class TextRule {
  Any,         // any text on one line
  FileTypes,   // a file-type list: the characters \ / : < > | are refused
  Letter,      // one letter A to Z (typed letters are made upper case)
  GCode,       // several lines of G-code, run as one block: line ends are kept as blanks
  LayerLines,  // several lines, kept as CR LF terminated lines
};

// A text box; with Items, a box that also offers those texts in a drop-down list.
struct TextBinding {
  ControlPlace Place;
  std::string_view Control;
  std::string_view Caption;
  TextField Field;
  TextRule Rule;
  std::span<const std::string_view> Items = {};
};

// A drop-down list of number texts ("0.001"): the field takes the chosen text's value.
struct ChoiceBinding {
  ControlPlace Place;
  std::string_view Control;
  std::string_view Caption;
  NumberField Field;
  std::span<const std::string_view> Items;
};

// A colour button: opens the colour chooser on the field's colour.
struct ColorBinding {
  ControlPlace Place;
  std::string_view Control;
  std::string_view Caption;
  WholeField Field;
};

// A frame of a page: its name and the caption of its heading. A frame that is also the
// control of an option or check binding carries a check box in its heading.
struct FrameInfo {
  ConfigPageId Page;
  std::string_view Name;
  std::string_view Caption;
};

// The frames of all pages, in the order they stand on their page.
std::span<const FrameInfo> ConfigFrames();

std::span<const OptionBinding> OptionBindings();
std::span<const CheckBinding> CheckBindings();
std::span<const NumberBinding> NumberBindings();
std::span<const TextBinding> TextBindings();
std::span<const ChoiceBinding> ChoiceBindings();
std::span<const ColorBinding> ColorBindings();

// The codes of a lathe G-code format (0 format A, 1 format B), one item a line.
std::span<const std::string_view> LatheFormatLines(int format);

// --- Number boxes ---

// Takes `typed` into the field with numeric text conversion and returns the box's new text: the
// field's value as number text (the old value when the field cannot hold the new one).
std::string TakeNumberText(const NumberBinding& binding, MachineConfig& record,
                           std::string_view typed);

// --- Text boxes ---

// The field's text as a box shows it: lines of a multi-line box end with "\n".
std::string BoxText(const TextBinding& binding, const MachineConfig& record);
// Stores the text of a box into the field, in the form the field holds (see TextRule).
void TakeBoxText(const TextBinding& binding, MachineConfig& record, std::string_view boxText);
// True when the box refuses the typed character `c`.
bool RefusesCharacter(TextRule rule, char c);

// --- Drop-down lists ---

// The item of the list equal to the field's value, or -1 when none is.
int ChoiceIndex(const ChoiceBinding& binding, const MachineConfig& record);
// The field takes the value of item `index` (0-based); an index out of range is ignored.
void TakeChoice(const ChoiceBinding& binding, MachineConfig& record, int index);

// --- Work offsets, held in the variable store ---

inline constexpr std::array<std::string_view, kWorkOffsetCount> kWorkOffsetNames = {
    "G54", "G55", "G56", "G57", "G58", "G59"};
inline constexpr std::array<std::string_view, 4> kWorkOffsetAxes = {"X", "Y", "Z", "4th"};

// Writes a number into the variable store.
using VariableWriter = std::function<void(int number, double value)>;

// Axis `axis` (0 to 3) of offset `offset` (0 G54 to 5 G59) as number text; an empty variable
// shows as 0.
std::string WorkOffsetText(const std::function<std::string(int)>& readVariable, int offset,
                           int axis);
// Stores `typed`, read with numeric text conversion, at the offset's variable, and returns the
// cell's new text.
std::string TakeWorkOffsetText(const VariableWriter& writeVariable, int offset, int axis,
                               std::string_view typed);

// The record's line of offset `offset` made again from the store ("#5221=0 #5222=0 #5223=0
// #5224=0"), so that applying the record puts back what the store holds.
void RecordWorkOffsetLine(MachineConfig& record,
                          const std::function<std::string(int)>& readVariable, int offset);

}  // namespace zemtra
