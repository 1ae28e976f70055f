#include "macro/VariableStore.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "core/NumberText.h"
#include "core/SettingsStore.h"

namespace zemtra {
namespace {

TEST(VariableStoreTest, NumbersRouteToTheirTables) {
  VariableStore store;
  for (const int n : {1, 99, 100, 999, 1000, 5399, 5400, 50000, 60000}) {
    EXPECT_TRUE(store.IsNull(n)) << n;
    store.WriteNumber(n, n + 0.5);
    bool isNull = true;
    EXPECT_EQ(store.ReadNumber(n, isNull), n + 0.5) << n;
    EXPECT_FALSE(isNull) << n;
  }
  store.WriteVariable(0, "5");
  store.WriteNumber(-3, 5);
  EXPECT_TRUE(store.IsNull(0));
  EXPECT_EQ(store.ReadVariable(0), "");
  EXPECT_EQ(store.ReadVariable(-3), "");
  // Only list numbers get rows, in order of first assignment.
  ASSERT_EQ(store.ListVarCount(), 3);
  EXPECT_EQ(store.ListVarNumber(1), 5400);
  EXPECT_EQ(store.ListVarNumber(3), 60000);
  EXPECT_EQ(store.GetListVar(5400), "5400.5");
  EXPECT_EQ(store.GetListVar(5401), "");
}

TEST(VariableStoreTest, TextValuesReadThroughNumericConversion) {
  VariableStore store;
  struct Case {
    const char* text;
    double value;
    bool isNull;
  } cases[] = {
      {"12.5", 12.5, false}, {"12.5ABC", 12.5, false}, {"ABC", 0, false},
      {" -3", -3, false},    {"1E3", 1000, false},     {"", 0, true},
  };
  for (const Case& c : cases) {
    store.WriteVariable(500, c.text);
    bool isNull = !c.isNull;
    EXPECT_EQ(store.ReadNumber(500, isNull), c.value) << c.text;
    EXPECT_EQ(isNull, c.isNull) << c.text;
    EXPECT_EQ(store.ReadVariable(500), c.text);
  }
}

TEST(VariableStoreTest, NumbersReadBackAsTheirFifteenDigitText) {
  VariableStore store;
  struct Case {
    double value;
    const char* text;
  } cases[] = {
      {1.0 / 3, "0.333333333333333"},
      {2.0 / 3, "0.666666666666667"},
      {0.1 + 0.2, "0.3"},
      {-1.0 / 3, "-0.333333333333333"},
      {100, "100"},
      {-0.0, "0"},
      {123456789012345678.0, "1.23456789012346E+17"},
  };
  for (const Case& c : cases) {
    store.WriteNumber(100, c.value);
    EXPECT_EQ(store.ReadVariable(100), c.text);
    EXPECT_EQ(store.ReadNumber(100), NumericTextValue(c.text)) << c.text;
  }
  // The same for any number: reading it equals converting its text.
  std::mt19937_64 random(12345);
  std::uniform_real_distribution<double> mantissa(-10, 10);
  std::uniform_int_distribution<int> exponent(-20, 20);
  std::uniform_int_distribution<int> digitCount(1, 17);
  std::uniform_int_distribution<int> digit(0, 9);
  for (int i = 0; i < 20000; ++i) {
    double value = mantissa(random) * std::pow(10.0, exponent(random));
    if (i % 2) {  // values typed as short decimals, as programs hold them
      std::string text = "0.";
      for (int d = digitCount(random); d > 0; --d) text += static_cast<char>('0' + digit(random));
      value = NumericTextValue(text) * std::pow(10.0, exponent(random));
    }
    store.WriteNumber(5001, value);
    ASSERT_EQ(store.ReadNumber(5001), NumericTextValue(FormatNumberText(value, ""))) << value;
  }
}

TEST(VariableStoreTest, CopyTakesTheValueAsItStands) {
  VariableStore store;
  store.WriteNumber(5041, 1.0 / 3);
  store.CopyVariable(5041, 5001);
  EXPECT_EQ(store.ReadVariable(5001), "0.333333333333333");
  EXPECT_EQ(store.ReadNumber(5001), store.ReadNumber(5041));
  store.WriteVariable(5042, "12.5ABC");
  store.CopyVariable(5042, 7001);
  EXPECT_EQ(store.ReadVariable(14001), "12.5ABC");
  store.CopyVariable(5043, 5001);
  EXPECT_TRUE(store.IsNull(5001));
  store.CopyVariable(6000, 14001);  // never written: the copy makes both twins empty
  EXPECT_TRUE(store.IsNull(7001));
}

TEST(VariableStoreTest, ExtendedOffsetNumbersHaveTwins) {
  struct Case {
    int written;
    int twin;  // 0: none
  } cases[] = {
      {7000, 14000},  {7001, 14001}, {7999, 14999}, {14001, 7001}, {15000, 8000},
      {19999, 12999}, {6999, 0},     {8000, 0},     {20000, 0},
  };
  for (const Case& c : cases) {
    VariableStore store;
    store.SetListVar(c.written, "5");
    EXPECT_EQ(store.ListVarCount(), c.twin ? 2 : 1) << c.written;
    if (c.twin == 0) continue;
    EXPECT_EQ(store.GetListVar(c.twin), "5") << c.written;
    store.WriteNumber(c.written, 6);
    EXPECT_EQ(store.ReadNumber(c.twin), 6) << c.written;
    store.WriteNull(c.written);
    EXPECT_TRUE(store.IsNull(c.twin)) << c.written;
  }
  VariableStore store;
  store.WriteVariable(7001, "5");
  EXPECT_EQ(store.ReadVariable(14001), "5");
  store.WriteVariable(14001, "6");
  EXPECT_EQ(store.ReadVariable(7001), "6");
}

TEST(VariableStoreTest, LocalsBelongToTheCurrentFrame) {
  VariableStore store;
  for (int level = 0; level < VariableStore::kCallFrames; ++level) {
    store.SetCallLevel(level);
    store.WriteNumber(1, level);
  }
  store.SetInCycleMacro(true);
  EXPECT_EQ(store.CurrentFrame(), VariableStore::kCycleFrame);
  EXPECT_TRUE(store.IsNull(1));
  store.WriteNumber(1, 80);
  store.SetInCycleMacro(false);
  for (int level = 0; level < VariableStore::kCallFrames; ++level) {
    store.SetCallLevel(level);
    EXPECT_EQ(store.ReadNumber(1), level);
  }
  EXPECT_EQ(store.Locals(VariableStore::kCycleFrame)[1].Number(), 80);

  store.Locals(3)[26].SetNumber(26);
  store.Locals(3)[27].SetNumber(27);
  store.Locals(4).Clear();
  store.CopyLocals(3, 4, 1, 26);
  EXPECT_EQ(store.Locals(4)[1].Number(), 3);
  EXPECT_EQ(store.Locals(4)[26].Number(), 26);
  EXPECT_TRUE(store.Locals(4)[27].IsNull());
}

TEST(VariableStoreTest, ClearingKeepsWhatOutlivesARun) {
  VariableStore store;
  for (int level = 0; level < VariableStore::kCallFrames; ++level)
    store.Locals(level)[5].SetNumber(1);
  store.Locals(VariableStore::kCycleFrame)[5].SetNumber(1);
  for (const int n : {100, 999, 1000, 5399, 6000}) store.WriteNumber(n, 1);

  store.ClearVariables();
  for (int level = 0; level < VariableStore::kClearedFrames; ++level)
    EXPECT_TRUE(store.Locals(level)[5].IsNull()) << level;
  EXPECT_FALSE(store.Locals(VariableStore::kClearedFrames)[5].IsNull());
  EXPECT_FALSE(store.Locals(VariableStore::kCycleFrame)[5].IsNull());
  EXPECT_TRUE(store.IsNull(100));
  EXPECT_TRUE(store.IsNull(999));
  EXPECT_FALSE(store.IsNull(1000));
  EXPECT_FALSE(store.IsNull(5399));
  EXPECT_FALSE(store.IsNull(6000));

  store.ClearAllFrames();
  EXPECT_TRUE(store.Locals(VariableStore::kCycleFrame)[5].IsNull());
  EXPECT_FALSE(store.IsNull(1000));

  store.ClearAll();
  EXPECT_TRUE(store.IsNull(1000));
  EXPECT_EQ(store.ListVarCount(), 0);
}

TEST(VariableStoreTest, StateSavesNumbersAndRestoresThem) {
  VariableStore store;
  store.WriteNumber(1, 9);  // locals are not kept
  store.WriteNumber(100, 1);
  store.WriteNull(101);
  store.WriteVariable(102, "abc");
  store.WriteNumber(1000, 1.0 / 3);
  store.WriteNumber(6000, -2.5);
  store.WriteNumber(7001, 4);
  MemorySettingsStore settings;
  store.SaveVariableState(settings);
  const std::string expected = "#100=1 #102=0 #1000=0.333333333333333 #6000=-2.5 #7001=4 #14001=4 ";
  EXPECT_EQ(settings.GetSetting("General", "Variable State"), expected);

  VariableStore restored;
  EXPECT_EQ(restored.RestoreVariableState(settings), 0);
  EXPECT_EQ(restored.VariableStateText(), expected);
  EXPECT_TRUE(restored.IsNull(1));
  EXPECT_TRUE(restored.IsNull(101));
  EXPECT_EQ(restored.ReadNumber(1000), store.ReadNumber(1000));
  ASSERT_EQ(restored.ListVarCount(), 3);
  EXPECT_EQ(restored.ListVarNumber(1), 6000);
}

TEST(VariableStoreTest, RestoreKeepsWhatReadsBeforeABadEntry) {
  MemorySettingsStore settings;
  VariableStore store;
  EXPECT_EQ(store.RestoreVariableState(settings), 0);
  EXPECT_EQ(store.VariableStateText(), "");

  settings.SaveSetting("General", "Variable State", "#100=1 junk #101=2");
  EXPECT_EQ(store.RestoreVariableState(settings), 12);
  EXPECT_EQ(store.ReadNumber(100), 1);
  EXPECT_TRUE(store.IsNull(101));

  settings.SaveSetting("General", "Variable State", "#100=LN[0]");
  EXPECT_NE(store.RestoreVariableState(settings), 0);
}

}  // namespace
}  // namespace zemtra
