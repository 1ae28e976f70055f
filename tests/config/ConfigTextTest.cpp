#include "config/ConfigText.h"

#include <gtest/gtest.h>

namespace zemtra {
namespace {

struct KeyCase {
  const char* name;
  const char* text;
  const char* section;
  const char* key;
  const char* expected;
};

TEST(ConfigText, ReadKeyFollowsTheLookupRules) {
  const KeyCase cases[] = {
      {"spaced", "[A]\r\nKey = 1\r\n", "A", "key", "1"},
      {"packed", "[A]\r\nKey=1\r\n", "A", "KEY", "1"},
      {"no equals sign", "[A]\r\nKey 1\r\n", "A", "key", "1"},
      {"blanks around the value", "[A]\r\nKey =   x y   \r\n", "A", "key", "x y"},
      {"tab is part of the value", "[A]\r\nKey =\t1\r\n", "A", "key", "\t1"},
      {"only one equals sign dropped", "[A]\r\nKey == 1\r\n", "A", "key", "= 1"},
      {"present without value", "[A]\r\nKey = \r\n", "A", "key", ""},
      {"missing key", "[A]\r\nOther = 1\r\n", "A", "key", "default"},
      {"missing section", "[B]\r\nKey = 1\r\n", "A", "key", "default"},
      {"section is case sensitive", "[a]\r\nKey = 1\r\n", "A", "key", "default"},
      {"key matches by prefix", "[OPTIONS]\r\nModal IJKX = 1\r\n", "OPTIONS", "Modal IJK", "X = 1"},
      {"first match wins", "[A]\r\nKey = 1\r\nKey = 2\r\n", "A", "key", "1"},
      {"header with trailing blank", "[OPTIONS] \r\nKey = 1\r\n", "OPTIONS", "key", "default"},
      {"...names its own section", "[OPTIONS] \r\nKey = 1\r\n", "OPTIONS]", "key", "1"},
      {"indented key not seen", "[A]\r\n Key = 1\r\n", "A", "key", "default"},
      {"indented header not seen", "[B]\r\n [A]\r\nKey = 1\r\n", "A", "key", "default"},
      {"key before any header", "Key = 1\r\n[A]\r\n", "A", "key", "default"},
      {"repeated section searched on", "[A]\r\n[B]\r\n[A]\r\nKey = 3\r\n", "A", "key", "3"},
      {"LF line ends", "[A]\nKey = 1\nNext = 2\n", "A", "next", "2"},
      {"CR line ends", "[A]\rKey = 1\rNext = 2", "A", "next", "2"},
      {"lone bracket is a nameless section", "[\r\nKey = 1\r\n", "", "key", "1"},
  };
  for (const KeyCase& c : cases) {
    EXPECT_EQ(ConfigText(c.text).ReadKey(c.section, c.key, "default"), c.expected) << c.name;
  }
}

TEST(ConfigText, ReadMultiKeyJoinsNonEmptyValuesWithLineEnds) {
  const ConfigText text(
      "[A]\r\nH = G90\r\nH = \r\nH G17\r\nOther = 1\r\nH=  M3 S1000  \r\n[B]\r\nH = M30\r\n");
  EXPECT_EQ(text.ReadMultiKey("A", "h"), "G90\r\nM3 S1000\r\n");
  EXPECT_EQ(text.ReadMultiKey("A", "none"), "");
  EXPECT_EQ(text.ReadMultiKey("B", "H"), "M30\r\n");
}

}  // namespace
}  // namespace zemtra
