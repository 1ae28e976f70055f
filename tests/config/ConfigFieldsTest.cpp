#include <gtest/gtest.h>

#include <map>
#include <set>

#include "config/ConfigFields.h"
#include "config/ConfigFile.h"

namespace zemtra {
namespace {

// What one control does to the record, by kind, for the tests below.
void Operate(const std::string& control, const std::string& input, MachineConfig& record) {
  for (const OptionBinding& b : OptionBindings())
    if (b.Control == control) return b.Field.Set(record, b.Value);
  for (const CheckBinding& b : CheckBindings())
    if (b.Control == control) return b.Field.Set(record, input == "off" ? kFlagFalse : kFlagTrue);
  for (const NumberBinding& b : NumberBindings())
    if (b.Control == control) return void(TakeNumberText(b, record, input));
  for (const TextBinding& b : TextBindings())
    if (b.Control == control) return TakeBoxText(b, record, input);
  for (const ChoiceBinding& b : ChoiceBindings())
    if (b.Control == control) return TakeChoice(b, record, std::stoi(input));
  for (const ColorBinding& b : ColorBindings())
    if (b.Control == control) return b.Field.Set(record, std::stoi(input));
  FAIL() << "no control " << control;
}

std::size_t BindingCount() {
  return OptionBindings().size() + CheckBindings().size() + NumberBindings().size() +
         TextBindings().size() + ChoiceBindings().size() + ColorBindings().size();
}

// Each control of every page writes the field that the file then carries under its key. The
// table names every bound control once, so a control left out of the binding tables or bound
// to the wrong field fails here.
TEST(ConfigFields, EveryControlWritesItsFieldAsTheFileCarriesIt) {
  struct Row {
    const char* control;
    const char* input;
    const char* line;  // a line of the written file
  };
  const Row rows[] = {
      {"optTypeLathe", "", "Machine Type = 1\r\n"},
      {"optTypeMill", "", "Machine Type = 0\r\n"},
      {"optMillHorizontal", "", "Mill Type = 1\r\n"},
      {"optMillVertical", "", "Mill Type = 0\r\n"},
      {"optTypeDiameter", "", "Lathe X Diameter = -1 \r\n"},
      {"optTypeRadius", "", "Lathe X Diameter =  0 \r\n"},
      {"chkReverseArc", "on", "Lathe Reverse Arcs = -1 \r\n"},
      {"optFormatB", "", "Lathe G Code Format = 1\r\n"},
      {"optFormatA", "", "Lathe G Code Format = 0\r\n"},
      {"txtDefaultFolder", "/home/cnc", "Default Program Folder = /home/cnc\r\n"},
      {"txtFileTypes", "*.nc;*.tap", "Default File Types = *.nc;*.tap\r\n"},
      {"optRapid2", "", "Rapid Type = 2\r\n"},
      {"optRapid1", "", "Rapid Type = 1\r\n"},
      {"optRapid0", "", "Rapid Type = 0\r\n"},
      {"chkAbsArc", "on", "Absolute Arc Center = -1 \r\n"},
      {"chkModalIJK", "on", "Modal IJK = -1 \r\n"},
      {"txtArcTolerance", "0.0025", "Arc Tolerance = 0.0025\r\n"},
      {"cmbCoordRes", "5", "Coordinate Resolution = 0.00001\r\n"},
      {"optATAN1", "", "Fanuc ATAN Format = False\r\n"},
      {"optATAN2", "", "Fanuc ATAN Format = True\r\n"},
      {"txtDwellAddress", "p", "Dwell Address = P\r\n"},
      {"txtInitialState", "G17 G40\nG80", "Initial State = G17 G40 G80\r\n"},
      {"optM98Format0", "", "M98 Format = 0\r\n"},
      {"optM98Format1", "", "M98 Format = 1\r\n"},
      {"optM98Format2", "", "M98 Format = 2\r\n"},
      {"optM98Format3", "", "M98 Format = 3\r\n"},
      {"optM98Format4", "", "M98 Format = 4\r\n"},
      {"txtXMirrorON", "21", "MCode X Mirror ON = 21\r\n"},
      {"txtYMirrorON", "22", "MCode Y Mirror ON = 22\r\n"},
      {"txtBothMirrorOFF", "23", "MCode Mirror OFF = 23\r\n"},
      {"cmdColor0", "11", "Selection Color = 11\r\n"},
      {"cmdColor1", "12", "Viewport Background Color = 12\r\n"},
      {"cmdColor2", "13", "Marker Color = 13\r\n"},
      {"cmdColor3", "14", "G00 Color = 14\r\n"},
      {"cmdColor4", "15", "G01 Color = 15\r\n"},
      {"cmdColor5", "16", "G02 Color = 16\r\n"},
      {"cmdColor6", "17", "G03 Color = 17\r\n"},
      {"frmColorByTool", "", "Color by G-Code =  0 \r\n"},
      {"frmColorByGCode", "", "Color by G-Code = -1 \r\n"},
      {"optCCTCode", "", "Color Change Code = 1\r\n"},
      {"optCCM06", "", "Color Change Code = 0\r\n"},
      {"cmdToolColor", "255", "Unspecified Tool Color = 255\r\n"},
      {"txtZRetract", "1.5", "DXF Default Z Retract = 1.5\r\n"},
      {"txtZApproach", "0.1", "DXF Default Z Approach = 0.1\r\n"},
      {"txtZDepth", "-0.25", "DXF Default Z Depth = -0.25\r\n"},
      {"txtFeedrate", "20", "DXF Default Feedrate = 20\r\n"},
      {"txtPlungeRate", "5", "DXF Default Plunge Feedrate = 5\r\n"},
      {"txtZTop", "0.5", "DXF Default Material Top = 0.5\r\n"},
      {"frmZIncrement", "on", "DXF Default Enable Z Increment = True\r\n"},
      {"txtZIncrement", "0.05", "DXF Default Z Increment = 0.05\r\n"},
      {"txtHeader", "G90\n\nM3",
       "DXF Default Layer Header = G90\r\nDXF Default Layer Header = M3\r\n"},
      {"txtFooter", "M5", "DXF Default Layer Footer = M5\r\n"},
      {"cmbAxisName", "a", "Rotary Axis Identifier = A\r\n"},
      {"cmbRCoordRes", "1", "Rotary Axis Resolution = 0.1\r\n"},
      {"optRotateX", "", "Rotary Axis Plane = 19\r\n"},
      {"optRotateY", "", "Rotary Axis Plane = 18\r\n"},
      {"txtRotaryCenterX", "1.25", "Rotary Axis Centerline X = 1.25\r\n"},
      {"txtRotaryCenterY", "-3.1", "Rotary Axis Centerline Y = -3.1\r\n"},
      {"txtRotaryCenterZ", "0.3333333333", "Rotary Axis Centerline Z = 0.3333333\r\n"},
  };
  std::set<std::string> tested;
  for (const Row& row : rows) {
    MachineConfig record;
    Operate(row.control, row.input, record);
    EXPECT_NE(ConfigFileText(record, {}).find(row.line), std::string::npos) << row.control;
    tested.insert(row.control);
  }
  EXPECT_EQ(tested.size(), BindingCount());
}

// The binding of `control` in one of the binding tables.
template <typename Binding>
const Binding& Bound(std::span<const Binding> bindings, std::string_view control) {
  for (const Binding& b : bindings)
    if (b.Control == control) return b;
  throw std::out_of_range(std::string(control));
}

// Nothing typed in a number box is refused: it reads as its leading number, 0 for none, and
// the box shows the value again.
TEST(ConfigFields, NumberBoxReadsWhatIsTypedAsANumber) {
  struct Row {
    const char* control;
    const char* typed;
    const char* shown;
  };
  const Row rows[] = {
      {"txtArcTolerance", "abc", "0"},      {"txtArcTolerance", " 0.002 mm", "0.002"},
      {"txtArcTolerance", "1e-3", "0.001"}, {"txtXMirrorON", "87.5", "88"},
      {"txtXMirrorON", "99999", "87"},     // a 16-bit code cannot take it: the old one stays
      {"txtRotaryCenterX", "0.1", "0.1"},  // a 32-bit float shows 7 digits
  };
  for (const Row& row : rows) {
    MachineConfig record;
    record.ArcTolerance = 0.001;
    record.MCodeXMirrorOn = 87;
    EXPECT_EQ(TakeNumberText(Bound(NumberBindings(), row.control), record, row.typed), row.shown)
        << row.control << " " << row.typed;
  }
}

TEST(ConfigFields, TextBoxesKeepTheFormOfTheirField) {
  MachineConfig record;
  // Layer text is CR LF ended lines; the box shows them without the last line end.
  TakeBoxText(Bound(TextBindings(), "txtHeader"), record, "G90\r\nM3");
  EXPECT_EQ(record.DXFDefaults.Header, "G90\r\nM3\r\n");
  EXPECT_EQ(BoxText(Bound(TextBindings(), "txtHeader"), record), "G90\nM3");
  TakeBoxText(Bound(TextBindings(), "txtFooter"), record, "\n\n");
  EXPECT_EQ(record.DXFDefaults.Footer, "");
  // A pasted file-type list loses the characters typing refuses.
  TakeBoxText(Bound(TextBindings(), "txtFileTypes"), record, "*.nc|c:\\x");
  EXPECT_EQ(record.DefaultFileTypes, "*.nccx");
  for (char c : std::string("\\/:<>|")) EXPECT_TRUE(RefusesCharacter(TextRule::FileTypes, c));
  EXPECT_FALSE(RefusesCharacter(TextRule::FileTypes, '*'));
  EXPECT_TRUE(RefusesCharacter(TextRule::Letter, '1'));
  EXPECT_FALSE(RefusesCharacter(TextRule::Letter, 'q'));
}

TEST(ConfigFields, ResolutionListFindsTheFieldsValue) {
  const ChoiceBinding& list = ChoiceBindings()[0];
  MachineConfig record;
  record.CoordinateResolution = 0.0001;
  EXPECT_EQ(ChoiceIndex(list, record), 4);
  record.CoordinateResolution = 0.5;
  EXPECT_EQ(ChoiceIndex(list, record), -1);
  TakeChoice(list, record, 9);  // out of range: ignored
  EXPECT_EQ(record.CoordinateResolution, 0.5);
}

TEST(ConfigFields, WorkOffsetCellsGoToTheVariableStore) {
  std::map<int, double> store;
  const VariableWriter write = [&store](int number, double value) { store[number] = value; };
  EXPECT_EQ(TakeWorkOffsetText(write, 5, 3, "abc"), "0");
  EXPECT_EQ(TakeWorkOffsetText(write, 1, 2, "-2.5"), "-2.5");
  EXPECT_EQ(store, (std::map<int, double>{{5243, -2.5}, {5324, 0}}));
  const auto read = [](int number) { return number == 5222 ? std::string("1.50") : std::string(); };
  EXPECT_EQ(WorkOffsetText(read, 0, 1), "1.5");
  EXPECT_EQ(WorkOffsetText(read, 0, 0), "0");  // an empty variable shows as 0
  MachineConfig record;
  RecordWorkOffsetLine(record, read, 0);
  EXPECT_EQ(record.WorkOffsetText[0], "#5221=0 #5222=1.5 #5223=0 #5224=0");
}

}  // namespace
}  // namespace zemtra
