#include "core/TextUtil.h"

#include <gtest/gtest.h>

namespace zemtra {
namespace {

struct TextCase {
  const char* input;
  const char* expected;
};

TEST(ProperCase, CapitalisesEachWord) {
  const TextCase cases[] = {
      {"", ""},
      {"default", "Default"},
      {"LATHE 2-axis", "Lathe 2-Axis"},
      {"mill_3axis", "Mill_3axis"},
      {"a1b", "A1b"},
      {"o'neil", "O'Neil"},
      {"  x", "  X"},
      {"\xC3\xBC"
       "BER fast",
       "\xC3\xBC"
       "ber Fast"},
  };
  for (const auto& c : cases) EXPECT_EQ(ProperCase(c.input), c.expected) << c.input;
}

TEST(PathText, SplitsAtTheLastSeparatorOfEitherKind) {
  const struct {
    const char* path;
    const char* folder;
    const char* name;
    const char* withoutExtension;
  } cases[] = {
      {"/cnc/part.nc", "/cnc/", "part.nc", "/cnc/part"},
      {"C:\\parts\\a b.nc", "C:\\parts\\", "a b.nc", "C:\\parts\\a b"},
      {"a\\b/c.tap", "a\\b/", "c.tap", "a\\b/c"},
      {"part.nc", "", "part.nc", "part"},
      {"a.tar.gz", "", "a.tar.gz", "a.tar"},
      {"/a.b/part", "/a.b/", "part", "/a.b/part"},
      {"/x/.zemtra", "/x/", ".zemtra", "/x/.zemtra"},
      {"file.", "", "file.", "file"},
      {"dir/", "dir/", "", "dir/"},
      {"/", "/", "", "/"},
      {"", "", "", ""},
      {"   ", "", "", ""},
      {" \t", "", "", ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(FolderOf(c.path), c.folder) << c.path;
    EXPECT_EQ(FileNameOf(c.path), c.name) << c.path;
    EXPECT_EQ(PathWithoutExtension(c.path), c.withoutExtension) << c.path;
  }
}

TEST(TextHelpers, TrimAndCase) {
  EXPECT_EQ(TrimText(" \t G01 X1 \t "), "G01 X1");
  EXPECT_EQ(TrimText(" \t "), "");
  EXPECT_EQ(TrimText("\r\nA\r\n"), "\r\nA\r\n");
  EXPECT_EQ(ToUpperAscii("g01 x1.5 \xC3\xBC"), "G01 X1.5 \xC3\xBC");
  EXPECT_EQ(ToLowerAscii("CONFIG\\G810.PRG"), "config\\g810.prg");
  EXPECT_TRUE(EqualsNoCase("Default.ZMT", "default.zmt"));
  EXPECT_FALSE(EqualsNoCase("default.zmt", "default.zm"));
  EXPECT_FALSE(EqualsNoCase("[", "{"));  // no case folding outside the letters
  EXPECT_TRUE(StartsWithNoCase("config=\"m\"", "CONFIG="));
  EXPECT_FALSE(StartsWithNoCase("CONF", "CONFIG="));
  EXPECT_TRUE(EndsWithNoCase("part.dxf", "DXF"));
  EXPECT_FALSE(EndsWithNoCase("xf", "DXF"));
}

}  // namespace
}  // namespace zemtra
