#include "core/NumberText.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <string>

namespace zemtra {
namespace {

struct FormatCase {
  double value;
  const char* format;
  const char* expected;
};

void ExpectFormats(const FormatCase* first, const FormatCase* last) {
  for (; first != last; ++first) {
    EXPECT_EQ(FormatNumberText(first->value, first->format), first->expected)
        << "value " << first->value << " format \"" << first->format << "\"";
  }
}

TEST(FormatNumberText, GeneralFormKeepsFifteenSignificantDigits) {
  const FormatCase cases[] = {
      {0.0, "", "0"},
      {-0.0, "", "0"},
      {0.1 + 0.2, "", "0.3"},
      {1.0 / 3.0, "", "0.333333333333333"},
      {2.0 / 3.0, "", "0.666666666666667"},
      {-1.5, "", "-1.5"},
      {100.0, "", "100"},
      {12.5, "", "12.5"},
      {0.003, "", "0.003"},
      {123456789012345.0, "", "123456789012345"},
      {999999999999999.0, "", "999999999999999"},
      {9999999999999999.0, "", "1E+16"},
      {1e15, "", "1E+15"},
      {123456789012345678.0, "", "1.23456789012346E+17"},
      {1e20, "", "1E+20"},
      {-1e100, "", "-1E+100"},
      {0.00001, "", "0.00001"},
      {0.0000123, "", "0.0000123"},
      {0.000001, "", "1E-06"},
      {1.5e-7, "", "1.5E-07"},
      {-2.5e-10, "", "-2.5E-10"},
      {1e-300, "", "1E-300"},
  };
  ExpectFormats(std::begin(cases), std::end(cases));
}

TEST(FormatNumberText, NonFiniteValuesAreNamed) {
  EXPECT_EQ(FormatNumberText(std::numeric_limits<double>::quiet_NaN(), ""), "NaN");
  EXPECT_EQ(FormatNumberText(std::numeric_limits<double>::infinity(), "0.0"), "Inf");
  EXPECT_EQ(FormatNumberText(-std::numeric_limits<double>::infinity(), ""), "-Inf");
}

TEST(FormatNumberText, IntegerPictures) {
  const FormatCase cases[] = {
      {0.5, "0", "1"},
      {1.5, "0", "2"},
      {2.5, "0", "3"},
      {-2.5, "0", "-3"},
      {-0.4, "0", "0"},
      {0.0, "0", "0"},
      {123.456, "0", "123"},
      {5, "00", "05"},
      {0, "00", "00"},
      {123, "00", "123"},
      {-7, "00", "-07"},
      {7, "#0", "7"},
      {0, "#0", "0"},
      {12, "#0", "12"},
      {10, "#####0", "10"},
      {9.5, "#####0", "10"},
      {1234567, "#####0", "1234567"},
      {5, "######00", "05"},
      {-3, "######00", "-03"},
      {1.5, "######00", "02"},
      {123, "00000", "00123"},
      {5001, "00000", "05001"},
      {123456, "00000", "123456"},
      {1e20, "0", "100000000000000000000"},
      // A "0" anywhere before the point forces every place from it to the point.
      {5, "0#", "05"},
  };
  ExpectFormats(std::begin(cases), std::end(cases));
}

TEST(FormatNumberText, HashOnlyPicturesDropZeros) {
  const FormatCase cases[] = {
      {0, "#", ""},       {0.4, "#", ""},   {-0.4, "#", ""},     {0.5, "#", "1"},
      {99.6, "#", "100"}, {0, "#.##", "."}, {0.5, "#.##", ".5"}, {-0.25, "#.##", "-.25"},
  };
  ExpectFormats(std::begin(cases), std::end(cases));
}

TEST(FormatNumberText, DisplayPictures) {
  const FormatCase cases[] = {
      {2, "###0.0##", "2.0"},
      {1.25, "###0.0##", "1.25"},
      {0.125, "###0.0##", "0.125"},
      {0.1234, "###0.0##", "0.123"},
      {0.1235, "###0.0##", "0.124"},
      {2, "###0.0###", "2.0"},
      {1.25, "###0.0###", "1.25"},
      {3.14159265, "###0.0###", "3.1416"},
      {-0.00004, "###0.0###", "0.0"},
      {-12345.67891, "###0.0###", "-12345.6789"},
      {1.0 / 3.0, "###0.0####", "0.33333"},
      {1.0 / 3.0, "###0.0#####", "0.333333"},
      {2, "###0.000", "2.000"},
      {0.0005, "###0.000", "0.001"},
      {0.00049, "###0.000", "0.000"},
      {-1.0005, "###0.000", "-1.001"},
      {12345.6789, "###0.0000", "12345.6789"},
      {0.5, "###0.00000", "0.50000"},
      {-12.3456789, "###0.000000", "-12.345679"},
      {0.003, "##0.0####", "0.003"},
      {0.000001, "##0.0####", "0.0"},
      {1234.5, "##0.0####", "1234.5"},
      {0.1 + 0.2, "######0.0###########", "0.3"},
      {1.0 / 3.0, "######0.0###########", "0.333333333333"},
      {-7, "######0.0###########", "-7.0"},
      {1.0 / 3.0, "##############0.0##############", "0.333333333333333"},
      {1234.1, "##############0.0##############", "1234.1"},
      {100, "##############0.0##############", "100.0"},
      {1e20, "##############0.0##############", "100000000000000000000.0"},
  };
  ExpectFormats(std::begin(cases), std::end(cases));
}

TEST(FormatNumberText, RoundsHalfAwayFromZeroOnTheDecimalValue) {
  const FormatCase cases[] = {
      // These halves are not exact in binary; they round as written.
      {0.125, "0.00", "0.13"},       {-0.125, "0.00", "-0.13"},      {1.005, "0.00", "1.01"},
      {2.675, "0.00", "2.68"},       {1.0049, "0.00", "1.00"},       {9.999, "0.00", "10.00"},
      {0.96, "0.0", "1.0"},          {-0.96, "0.0", "-1.0"},         {-0.001, "0.00", "0.00"},
      {0.0000001, "0.000", "0.000"}, {123456.78, "0.0", "123456.8"},
  };
  ExpectFormats(std::begin(cases), std::end(cases));
}

TEST(FormatNumberText, PointAndLiteralsStandWhereThePictureHasThem) {
  const FormatCase cases[] = {
      {5, "0.##", "5."},   {5.1, "0.##", "5.1"},      {12.345, ".00", "12.35"},
      {0.5, ".00", ".50"}, {1.5, "X0.000", "X1.500"}, {-1.5, "X0.000", "-X1.500"},
      {5, "\\#0", "#5"},   {5, "\"N\"00", "N05"},     {5, "abc", "abc5"},
      {0, "abc", "abc"},   {1234.5, ".", "1235."},    {1.5, "0.0.", "1.5."},
  };
  ExpectFormats(std::begin(cases), std::end(cases));
}

TEST(FormatNumberText, UsesPointWhateverTheLocale) {
  if (!std::setlocale(LC_ALL, "de_DE.UTF-8") && !std::setlocale(LC_ALL, "fr_FR.UTF-8")) {
    GTEST_SKIP() << "no locale with a decimal comma installed";
  }
  EXPECT_EQ(FormatNumberText(1.5, ""), "1.5");
  EXPECT_EQ(FormatNumberText(1.5, "0.000"), "1.500");
  EXPECT_EQ(FormatSingleText(2.25f), "2.25");
  EXPECT_EQ(NumericTextValue("1.5"), 1.5);
  std::setlocale(LC_ALL, "C");
}

TEST(FormatSingleText, KeepsSevenSignificantDigits) {
  const struct {
    float value;
    const char* expected;
  } cases[] = {
      {0.1f, "0.1"},
      {1.0f / 3.0f, "0.3333333"},
      {1.0f, "1"},
      {-2.5f, "-2.5"},
      {0.0f, "0"},
      {3.14159265f, "3.141593"},
      {1234567.0f, "1234567"},
      {12345678.0f, "1.234568E+07"},
      {0.000001f, "1E-06"},
  };
  for (const auto& c : cases) EXPECT_EQ(FormatSingleText(c.value), c.expected) << c.value;
}

TEST(NumericTextValue, ReadsTheLongestLeadingNumber) {
  const struct {
    const char* text;
    double expected;
  } cases[] = {
      {"12.5ABC", 12.5},
      {"ABC", 0},
      {"", 0},
      {"-", 0},
      {".", 0},
      {"+.", 0},
      {"1 2", 12},
      {"  -  3.5", -3.5},
      {"- 5", -5},
      {"+5", 5},
      {"--5", 0},
      {"#5", 0},
      {".5", 0.5},
      {"5.", 5},
      {"1.2.3", 1.2},
      {"1.5E3", 1500},
      {"1.5e-3", 0.0015},
      {"2D2", 200},
      {"1 E 2", 100},
      {"1E", 1},
      {"1E+", 1},
      {"1EX", 1},
      {"E5", 0},
      {"\t7\n", 7},
      {"12\r3", 12},
      {"0.1", 0.1},
      {"1E400", 0},
      {"1e-400", 0},
      {"-1.25X", -1.25},
      {"3 .5", 3.5},
      {"123456789012345678901234567890", 123456789012345678901234567890.0},
  };
  for (const auto& c : cases) EXPECT_EQ(NumericTextValue(c.text), c.expected) << c.text;
}

TEST(NumericTextValue, LongTextsAndNegativeZero) {
  EXPECT_EQ(NumericTextValue("1" + std::string(200, '0')), 1e200);
  EXPECT_EQ(NumericTextValue("0." + std::string(300, '0') + "1"), 1e-301);
  EXPECT_EQ(NumericTextValue("0." + std::string(400, '0') + "1"), 0.0);
  EXPECT_FALSE(std::signbit(NumericTextValue("-0")));
  EXPECT_FALSE(std::signbit(NumericTextValue("-0.0E5")));
}

TEST(NumericTextValue, ReadsBackTheGeneralForm) {
  for (double value : {1.0 / 3.0, -2.5e-10, 123456789012345678.0, 0.1 + 0.2, 1e15}) {
    const std::string text = FormatNumberText(value, "");
    EXPECT_EQ(FormatNumberText(NumericTextValue(text), ""), text);
  }
}

TEST(ScanNumber, TakesTheWholeRunOfSignsDigitsAndPoints) {
  constexpr const char* kList = "G120, G0, G130";  // walked scan by scan
  const struct {
    const char* text;
    int start;
    double expected;
    int after;
  } cases[] = {
      {"X-1.5Y+2", 1, -1.5, 6}, {"X-1.5Y+2", 6, 2, 9}, {"1-2 3", 1, 1, 4},
      {"abc", 1, 0, 4},         {"", 1, 0, 1},         {"L 12", 0, 12, 5},
      {"L 12", -3, 12, 5},      {"12", 9, 0, 9},       {"WHILE [#1 LT 3]", 1, 1, 10},
      {kList, 1, 120, 5},       {kList, 5, 0, 9},      {kList, 9, 130, 15},
      {kList, 15, 0, 15},
  };
  for (const auto& c : cases) {
    int position = c.start;
    EXPECT_EQ(ScanNumber(c.text, position), c.expected) << c.text << " from " << c.start;
    EXPECT_EQ(position, c.after) << c.text << " from " << c.start;
  }
}

}  // namespace
}  // namespace zemtra
