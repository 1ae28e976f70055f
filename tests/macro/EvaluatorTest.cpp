#include "macro/Evaluator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <span>
#include <string>

#include "macro/VariableStore.h"

namespace zemtra {
namespace {

struct Outcome {
  int error = 0;
  double value = 0;
  bool isEmpty = false;
};

Outcome Evaluate(Evaluator& evaluator, std::string_view text) {
  Outcome outcome;
  int position = 1;
  std::string valueText;
  outcome.error = evaluator.ScanValue(text, position, valueText);
  if (outcome.error == 0) outcome.value = evaluator.EvaluateValue(outcome.isEmpty, outcome.error);
  return outcome;
}

class EvaluatorTest : public ::testing::Test {
 protected:
  Outcome Eval(std::string_view text) { return Evaluate(evaluator, text); }
  VariableStore store;
  Evaluator evaluator{store};
};

struct ValueCase {
  const char* text;
  double expected;
};

// Each text evaluates without an error to its value, within `tolerance` where one is given.
void ExpectValues(Evaluator& evaluator, std::span<const ValueCase> cases, double tolerance = 0) {
  for (const ValueCase& c : cases) {
    const Outcome outcome = Evaluate(evaluator, c.text);
    EXPECT_EQ(outcome.error, 0) << c.text;
    if (tolerance > 0) {
      EXPECT_NEAR(outcome.value, c.expected, tolerance) << c.text;
    } else {
      EXPECT_DOUBLE_EQ(outcome.value, c.expected) << c.text;
    }
  }
}

TEST_F(EvaluatorTest, PrecedenceIsByDecadeAndLeftToRight) {
  const ValueCase cases[] = {
      {"1+2*3", 7},    {"2*3^2", 36}, {"2^3*2", 16},       {"[1+2]*3", 9}, {"-2^2", -4},
      {"2*-3", -6},    {"10/4", 2.5}, {"8/2/2", 2},        {"10-2-3", 5},  {"1 OR 2 AND 3", 3},
      {"1+1 EQ 2", 1}, {"[[2]]", 2},  {"2*[3+[4-1]]", 12}, {"+5", 5},      {"[-5]*2", -10},
      {"3*-[2]", 0},   {"  7  ", 7},  {".5+1.", 1.5},      {"1E3", 1},     {"[*2]", 0},
      {"2*#0", 0},
  };
  ExpectValues(evaluator, cases);
}

TEST_F(EvaluatorTest, IntegerOperatorsRoundHalvesToEven) {
  const ValueCase cases[] = {
      {"10 MOD 3", 1}, {"2.5 MOD 1", 0}, {"7 MOD -3", 1}, {"[0-7] MOD 3", -1}, {"3.5 MOD 2", 0},
      {"7 AND 3", 3},  {"5 OR 2", 7},    {"6 XOR 3", 5},  {"2.5 OR 0", 2},     {"3.5 AND 7", 4},
  };
  ExpectValues(evaluator, cases);
}

// Without the two-operand form, "ATAN[1]/[2]" divides ATAN's angle.
TEST_F(EvaluatorTest, FunctionsWorkInDegrees) {
  const ValueCase cases[] = {
      {"SIN[30]", 0.5},      {"COS[60]", 0.5},
      {"TAN[45]", 1},        {"ATAN[1]", 45},
      {"ATN[-1]", -45},      {"ACOS[0]", 90},
      {"ACOS[1]", 0},        {"ACOS[0.5]", 60},
      {"ASIN[1]", 90},       {"ASIN[0.5]", 30},
      {"SQRT[16]", 4},       {"SQR[2.25]", 1.5},
      {"ABS[-3]", 3},        {"LN[1]", 0},
      {"EXP[0]", 1},         {"ROUND[2.5]", 2},
      {"ROUND[3.5]", 4},     {"RND[-2.5]", -2},
      {"ROUND[2.6]", 3},     {"FIX[-1.2]", -1},
      {"FIX[1.8]", 1},       {"FUP[1.2]", 2},
      {"FUP[-1.2]", -2},     {"FUP[2]", 2},
      {"FUP[-1.5]", -2},     {"BIN[37]", 25},
      {"BCD[25]", 37},       {"BIN[BCD[1234]]", 1234},
      {"BIN[-1]", 0},        {"BIN[4294967296]", 0},
      {"BCD[-5]", -11},      {"sin [ 90 ]", 1},
      {"2*SIN[30]+1", 2},    {"SIN[30]*COS[60]", 0.25},
      {"ATAN[1]/[2]", 22.5}, {"ATAN[-1]/[-1]", 45},
  };
  ExpectValues(evaluator, cases, 1e-12);
  // The conversion factor is the language's own, not pi / 180.
  EXPECT_EQ(Eval("SIN[30]").value, std::sin(30 * 0.0174532925199432));
}

TEST_F(EvaluatorTest, ComparisonsTellNullsFromZero) {
  store.WriteNumber(2, 0);
  const ValueCase cases[] = {
      {"1 EQ 1", 1},     {"1 NE 1", 0},     {"1 LT 2", 1},  {"2 LE 2", 1},  {"3 GT 2", 1},
      {"2 GE 3", 0},     {"#1 EQ #0", 1},   {"#1 EQ 0", 0}, {"#2 EQ 0", 1}, {"#1 EQ #2", 0},
      {"#1 NE #0", 0},   {"#1 NE 0", 1},    {"#1 LT 1", 1}, {"#1 GE 0", 1}, {"#[1] EQ #0", 1},
      {"[#1] EQ #0", 1}, {"#1+0 EQ #0", 0},
  };
  ExpectValues(evaluator, cases);
}

TEST_F(EvaluatorTest, VariablesReadByNumber) {
  store.WriteNumber(1, 100);
  store.WriteNumber(100, 7);
  store.WriteNumber(5400, 3);
  store.WriteNumber(50000, 4);
  struct Case {
    const char* text;
    double value;
    bool isEmpty;
    int error;
  } cases[] = {
      {"#1", 100, false, 0},     {"-#1", -100, false, 0},   {"##1", 7, false, 0},
      {"#[100]", 7, false, 0},   {"#[99+1]", 7, false, 0},  {"#[100.9]", 7, false, 0},
      {"#1.5", 0, true, 0},      {"#100", 7, false, 0},     {"#101", 0, true, 0},
      {"#0", 0, true, 0},        {"-#101", 0, false, 0},    {"#[0]", 0, true, 0},
      {"#5400", 3, false, 0},    {"#50000", 4, false, 0},   {"#5401", 0, true, 0},
      {"#60000", 0, false, 0},   {"#[60000]", 0, false, 4}, {"#[0-1]", 0, false, 4},
      {"#[50001]", 0, false, 4}, {"#101+1", 1, false, 0},   {"[#101]", 0, true, 0},
  };
  for (const Case& c : cases) {
    const Outcome outcome = Eval(c.text);
    EXPECT_EQ(outcome.error, c.error) << c.text;
    EXPECT_EQ(outcome.value, c.value) << c.text;
    EXPECT_EQ(outcome.isEmpty, c.isEmpty) << c.text;
  }
}

TEST_F(EvaluatorTest, ErrorsCarryTheirCodes) {
  struct Case {
    const char* text;
    int error;
  } cases[] = {
      {"SIN 30", 1},  {"SIN", 1},      {"1 2", 1},    {"[1][2]", 3}, {"[1", 2},
      {"1]", 2},      {"[2*]", 1},     {"5+", 1},     {"#", 1},      {"#A", 1},
      {"1+#", 1},     {"SQRT[-1]", 5}, {"LN[-1]", 6}, {"1/0", 7},    {"1/#1", 7},
      {"5 MOD 0", 8}, {"[[1]", 2},     {"1+[2", 2},   {"2+[]", 1},
  };
  for (const Case& c : cases) EXPECT_EQ(Eval(c.text).error, c.error) << c.text;
}

// The texts of the codes no statement test shows; codes without a text give none.
TEST(ErrorMessageTest, RemainingCodesHaveTheirTexts) {
  const std::pair<int, const char*> cases[] = {
      {6, "LN Operand Is Negative"},
      {8, "MOD Division by Zero"},
      {9, "Invalid Character"},
      {14, "Cannot change active plane while G68 is active"},
      {15, "ATAN Format Error"},
      {16, "Expected offset number \"P\""},
      {17, "Offset number out of range"},
      {0, ""},
      {18, ""},
      {-1, ""},
  };
  for (const auto& [code, text] : cases) EXPECT_EQ(ErrorMessage(code), text) << code;
}

TEST_F(EvaluatorTest, TwoOperandAtanGivesAFullCircle) {
  evaluator.SetFanucATANFormat(true);
  const ValueCase cases[] = {
      {"ATAN[1]/[1]", 45},
      {"ATAN[1]/[-1]", 135},
      {"ATAN[-1]/[-1]", 225},
      {"ATAN[-1]/[1]", 315},
      {"ATAN[0]/[1]", 0},
      {"ATAN[1]/[0]", 90},
      {"ATAN[0]/[-1]", 180},
      {"ATAN[-1]/[0]", 270},
      {"ATN[1]/[1]", 45},
      {"2*ATAN[1]/[1]", 90},
      {"ATAN[1+1]/[1+1]+1", 46},
      {"ATAN[ATAN[1]/[1]-44]/[1]", 45},
      {"8/2", 4},
  };
  ExpectValues(evaluator, cases, 1e-12);
  for (const char* text : {"ATAN[0]/[0]", "ATAN[1]", "ATAN[1]/2", "ATAN[1]*[2]", "ATAN[[1]/[2]+3]"})
    EXPECT_EQ(Eval(text).error, 15) << text;
}

TEST_F(EvaluatorTest, UnguardedArithmeticIsAFault) {
  const std::pair<const char*, const char*> cases[] = {
      {"LN[0]", "Invalid procedure call or argument"},
      {"ACOS[-1]", "Division by zero"},
      {"ASIN[2]", "Invalid procedure call or argument"},
      {"[0-8]^0.5", "Invalid procedure call or argument"},
      {"0^[0-1]", "Division by zero"},
      {"10^400", "Overflow"},
      {"EXP[1000]", "Overflow"},
      {"3000000000 AND 1", "Overflow"},
      {"5 MOD 0.4", "Division by zero"},
      {"#3000000000", "Overflow"},
  };
  for (const auto& [text, message] : cases) {
    try {
      Eval(text);
      ADD_FAILURE() << text << " did not fail";
    } catch (const ExpressionFault& fault) {
      EXPECT_STREQ(fault.what(), message) << text;
    }
  }
}

// "1+1+...+1" of `ones` numbers: 2 * ones - 1 tokens.
std::string Sum(int ones) {
  std::string text = "1";
  for (int i = 1; i < ones; ++i) text += "+1";
  return text;
}

TEST_F(EvaluatorTest, TheTokenTableHoldsOneHundredAndOneTokens) {
  EXPECT_EQ(Eval(Sum(51)).value, 51);
  EXPECT_EQ(evaluator.TokenCount(), 1);
  EXPECT_THROW(Eval(Sum(51) + "*2"), ExpressionTooLong);
  try {
    Eval("[" + Sum(51) + "]");
    ADD_FAILURE();
  } catch (const ExpressionFault& fault) {
    EXPECT_STREQ(fault.what(), "Expression too long");
  }
  // The two-operand ATAN rewrite adds two brackets and may overflow the table.
  evaluator.SetFanucATANFormat(true);
  EXPECT_EQ(Eval("ATAN[" + Sum(46) + "]/[1]").value, std::atan(46.0) * 57.2957795130823);
  EXPECT_THROW(Eval("ATAN[" + Sum(47) + "]/[1]"), ExpressionTooLong);
}

TEST_F(EvaluatorTest, ScanStopsWhereTheExpressionEnds) {
  struct Case {
    const char* text;
    int start;
    int end;
    const char* valueText;
  } cases[] = {
      {"10.5", 1, 5, "10.5"},
      {"x1.5y2", 2, 5, "1.5"},
      {"g1x[#1+2]y3", 4, 10, "[#1+2]"},
      {"12 X3", 1, 4, "12 "},
      {"=5", 1, 3, "=5"},
      {"#1=2 #3=4", 2, 3, "1"},
      {"#1=2 #3=4", 3, 6, "=2 "},
      {"1E3", 1, 2, "1"},
      {"2[3]", 1, 2, "2"},
      {"[1]#2", 1, 4, "[1]"},
      {"IF[#1GT0]GOTO5", 3, 10, "[#1GT0]"},
      {"1.2.3", 1, 6, "1.2.3"},
      {"", 1, 1, ""},
      {"5", 3, 3, ""},
  };
  for (const Case& c : cases) {
    int position = c.start;
    std::string valueText = "stale";
    EXPECT_EQ(evaluator.ScanValue(c.text, position, valueText), 0) << c.text;
    EXPECT_EQ(position, c.end) << c.text;
    EXPECT_EQ(valueText, c.valueText) << c.text;
  }
}

TEST_F(EvaluatorTest, AnEmptyScanEvaluatesToZero) {
  int position = 1;
  std::string valueText;
  ASSERT_EQ(evaluator.ScanValue("X", position, valueText), 0);
  EXPECT_EQ(evaluator.TokenCount(), 0);
  bool isEmpty = true;
  int error = -1;
  EXPECT_EQ(evaluator.EvaluateValue(isEmpty, error), 0);
  EXPECT_FALSE(isEmpty);
  EXPECT_EQ(error, 0);
}

TEST_F(EvaluatorTest, ReadNumberTakesOneNumberOrVariable) {
  store.WriteNumber(12, 4.5);
  struct Case {
    const char* text;
    double value;
    bool isEmpty;
    int end;
  } cases[] = {
      {"-.25", -0.25, false, 5}, {"+3X", 3, false, 3},     {"1.2.3", 1.2, false, 4},
      {"#12Y", 4.5, false, 4},   {"-#12", -4.5, false, 5}, {"#13", 0, true, 4},
      {"-", 0, false, 2},        {"X", 0, false, 1},       {"007", 7, false, 4},
  };
  for (const Case& c : cases) {
    int position = 1;
    bool isEmpty = !c.isEmpty;
    EXPECT_EQ(evaluator.ReadNumber(c.text, position, isEmpty), c.value) << c.text;
    EXPECT_EQ(isEmpty, c.isEmpty) << c.text;
    EXPECT_EQ(position, c.end) << c.text;
  }
}

TEST(IsNumberTextTest, TellsPlainNumbersFromExpressions) {
  for (const char* text : {"1", "-1.5", "+.5", "1-2", "..."})
    EXPECT_TRUE(IsNumberText(text)) << text;
  for (const char* text : {"", "#1", "[1]", "1E3", " 1", "1,5"})
    EXPECT_FALSE(IsNumberText(text)) << text;
}

TEST_F(EvaluatorTest, CalculatorShowsAValueOrAMessage) {
  store.WriteNumber(100, 2);
  struct Case {
    const char* text;
    int error;
    const char* shown;
  } cases[] = {
      {"1+2", 0, "3.0"},
      {"1/3", 0, "0.333333333333333"},
      {" [#100*-1.25] ", 0, "-2.5"},
      {"#101", 0, ""},
      {"1/0", 7, "Division by Zero"},
      {"", 13, "Expected Expression"},
      {"   ", 13, "Expected Expression"},
      {"1+2 X", 10, "Invalid Character in Expression"},
      {"LN[0]", -1, "Invalid procedure call or argument"},
  };
  for (const Case& c : cases) {
    const Calculation result = Calculate(c.text, evaluator);
    EXPECT_EQ(result.error, c.error) << c.text;
    EXPECT_EQ(result.text, c.shown) << c.text;
  }
}

}  // namespace
}  // namespace zemtra
