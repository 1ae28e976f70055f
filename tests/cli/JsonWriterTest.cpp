#include "cli/JsonWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <regex>
#include <sstream>

#include "core/GeoTypes.h"

namespace zemtra {
namespace {

// Reads back a string literal written by JsonWriter: \u00XX gives the byte XX, so for every input
// the bytes read back equal the bytes written.
std::string ReadBackBytes(std::string_view literal) {
  constexpr std::string_view kEscapes = "nrtbf", kBytes = "\n\r\t\b\f";
  std::string bytes;
  for (std::size_t i = 1; i + 1 < literal.size(); ++i) {
    if (literal[i] != '\\') {
      bytes += literal[i];
    } else if (literal[++i] == 'u') {
      bytes += static_cast<char>(std::stoi(std::string(literal.substr(i + 1, 4)), nullptr, 16));
      i += 4;
    } else {
      const std::size_t named = kEscapes.find(literal[i]);
      bytes += named == std::string_view::npos ? literal[i] : kBytes[named];
    }
  }
  return bytes;
}

// A number as the writer writes it on its own.
template <typename Number>
std::string NumberText(Number value) {
  std::ostringstream out;
  JsonWriter json(out, 0);
  if constexpr (std::is_same_v<Number, float>) {
    json.floatValue(value);
  } else {
    json.doubleValue(value);
  }
  json.finish();
  const std::string text = out.str();
  return text.substr(0, text.size() - 1);  // less the newline of finish()
}

TEST(JsonWriter, EscapesStringsAndKeepsEveryByte) {
  struct Case {
    const char* name;
    std::string input;
    std::string expected;
  };
  const Case cases[] = {
      {"plain", "G1 X1", R"("G1 X1")"},
      {"quote and backslash", R"(a"b\c)", R"("a\"b\\c")"},
      {"line ends and tab", "a\r\nb\tc", R"("a\r\nb\tc")"},
      {"other controls", std::string("\x01\x1f\x00\b\f", 5), R"("\u0001\u001f\u0000\b\f")"},
      {"delete passes", "\x7f", "\"\x7f\""},
      {"valid UTF-8 is copied", "90\xc2\xb0 \xe2\x82\xac \xf0\x9f\x98\x80",
       "\"90\xc2\xb0 \xe2\x82\xac \xf0\x9f\x98\x80\""},
      {"Latin-1 degree", "90\xb0", R"("90\u00b0")"},
      {"one bad byte makes the whole text Latin-1", "\xc2\xb0\xff", R"("\u00c2\u00b0\u00ff")"},
      {"overlong", "\xc0\x80", R"("\u00c0\u0080")"},
      {"surrogate", "\xed\xa0\x80", R"("\u00ed\u00a0\u0080")"},
      {"above U+10FFFF", "\xf4\x90\x80\x80", R"("\u00f4\u0090\u0080\u0080")"},
      {"truncated at the end", "x\xe2\x82", R"("x\u00e2\u0082")"},
      {"stray continuation", "\x80", R"("\u0080")"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(JsonQuoted(c.input), c.expected) << c.name;
  }
}

TEST(JsonWriter, AnyBytesGiveValidJsonThatReadsBackToThem) {
  const std::regex kEscapedHighByte(R"(\\u00[89a-fA-F])");
  std::mt19937 random(12345);
  std::uniform_int_distribution<int> byte(0, 255), length(0, 12);
  for (int round = 0; round < 20000; ++round) {
    std::string input(static_cast<std::size_t>(length(random)), '\0');
    for (char& c : input) c = static_cast<char>(byte(random));
    const std::string literal = JsonQuoted(input);
    ASSERT_EQ(ReadBackBytes(literal), input);
    // A text is either copied as UTF-8 or escaped as Latin-1 throughout, never a mix.
    const bool rawHighBytes =
        std::ranges::any_of(literal, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    ASSERT_FALSE(rawHighBytes && std::regex_search(literal, kEscapedHighByte)) << literal;
    for (const char c : literal) ASSERT_GE(static_cast<unsigned char>(c), 0x20);
  }
}

TEST(JsonWriter, FloatsAreShortestTextThatReadsBackExactly) {
  struct Case {
    float value;
    const char* expected;
  };
  const Case cases[] = {
      {0.1f, "0.1"},
      {1e-7f, "1e-07"},
      {16777217.0f, "16777216"},  // not representable: the stored float is 2^24
      {-0.0f, "-0"},
      {1.0f / 3.0f, "0.33333334"},
      {123.4567f, "123.4567"},
      {-25.4f, "-25.4"},
      {std::numeric_limits<float>::max(), "3.4028235e+38"},
      {std::numeric_limits<float>::denorm_min(), "1e-45"},
      {0.0f, "0"},
  };
  for (const Case& c : cases) EXPECT_EQ(NumberText(c.value), c.expected) << c.expected;

  // Whole numbers, written by a quicker path, agree with the general shortest form.
  for (int whole = -20000; whole <= 120000; whole += 7) {
    const auto value = static_cast<float>(whole);
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    ASSERT_EQ(NumberText(value), std::string(digits, end)) << whole;
  }

  std::mt19937 random(7);
  std::uniform_int_distribution<std::uint32_t> bits;
  for (int round = 0; round < 100000; ++round) {
    const std::uint32_t pattern = bits(random);
    float value;
    std::memcpy(&value, &pattern, sizeof value);
    if (!std::isfinite(value)) continue;
    const std::string text = NumberText(value);
    const float back = std::strtof(text.c_str(), nullptr);
    ASSERT_EQ(std::memcmp(&back, &value, sizeof value), 0) << text;
  }
}

TEST(JsonWriter, DoublesIntegersAndNonFiniteNumbers) {
  EXPECT_EQ(NumberText(0.1), "0.1");
  EXPECT_EQ(NumberText(1.0 / 3.0), "0.3333333333333333");
  EXPECT_EQ(NumberText(static_cast<double>(0.1f)), "0.10000000149011612");
  EXPECT_EQ(NumberText(1e300), "1e+300");
  // JSON has no NaN or infinity: they are written as null.
  EXPECT_EQ(NumberText(std::nan("")), "null");
  EXPECT_EQ(NumberText(-HUGE_VAL), "null");
  EXPECT_EQ(NumberText(std::numeric_limits<float>::infinity()), "null");

  std::ostringstream out;
  JsonWriter(out, 0)
      .beginArray()
      .intValue(std::numeric_limits<std::int64_t>::min())
      .intValue(0)
      .boolValue(true)
      .boolValue(false)
      .nullValue()
      .endArray()
      .finish();
  EXPECT_EQ(out.str(), "[-9223372036854775808,0,true,false,null]\n");
}

TEST(JsonWriter, PointsWriteTheSameTextEachTime) {
  // Points recur in a path and their texts are reused; equal-comparing but different floats
  // (-0 and 0) must still come out as written.
  const GeoPoint points[] = {{1.5f, 0, 0, 0},    {-0.0f, 2, 0, 0}, {0.0f, 2, 0, 0},
                             {0.1f, 0.2f, 0, 0}, {1.5f, 0, 0, 0},  {7, 8, 9, 10},
                             {1e-7f, 0, 0, 0},   {-0.0f, 2, 0, 0}, {1.5f, 0, 0, 0}};
  const char* expected =
      "[[1.5,0,0,0],[-0,2,0,0],[0,2,0,0],[0.1,0.2,0,0],[1.5,0,0,0],[7,8,9,10],[1e-07,0,0,0],"
      "[-0,2,0,0],[1.5,0,0,0]]\n";
  std::ostringstream out;
  JsonWriter json(out, 0);
  json.beginArray();
  for (const GeoPoint& point : points) json.pointValue(point);
  json.endArray().finish();
  EXPECT_EQ(out.str(), expected);
}

// A small plot-like document: top-level members and top-level array elements get their own
// lines; deeper containers stay on one line; empty containers stay closed up.
void WriteSample(JsonWriter& json) {
  GeoPoint start{1, 2, 3, 0};
  GeoPoint end{0.1f, -0.0f, 1e-7f, 90};
  json.beginObject();
  json.key("file").stringValue("a.nc");
  json.key("messages").beginArray().endArray();
  json.key("extents").beginObject().key("min").pointValue(start).key("max").pointValue(end);
  json.endObject();
  json.key("entities").beginArray();
  for (int i = 1; i <= 2; ++i) {
    json.beginObject().key("type").intValue(i).key("start").pointValue(start);
    json.key("tags").beginArray().stringValue("x").endArray().key("o").beginObject().endObject();
    json.endObject();
  }
  json.endArray();
  json.endObject();
  json.finish();
}

TEST(JsonWriter, LayoutBreaksOnlyTheOuterLevels) {
  std::ostringstream broken;
  {
    JsonWriter json(broken);
    WriteSample(json);
  }
  EXPECT_EQ(broken.str(),
            "{\n"
            "  \"file\":\"a.nc\",\n"
            "  \"messages\":[],\n"
            "  \"extents\":{\n"
            "    \"min\":[1,2,3,0],\n"
            "    \"max\":[0.1,-0,1e-07,90]\n"
            "  },\n"
            "  \"entities\":[\n"
            "    {\"type\":1,\"start\":[1,2,3,0],\"tags\":[\"x\"],\"o\":{}},\n"
            "    {\"type\":2,\"start\":[1,2,3,0],\"tags\":[\"x\"],\"o\":{}}\n"
            "  ]\n"
            "}\n");

  std::ostringstream compact;
  {
    JsonWriter json(compact, 0);
    WriteSample(json);
  }
  EXPECT_EQ(compact.str(),
            "{\"file\":\"a.nc\",\"messages\":[],\"extents\":{\"min\":[1,2,3,0],"
            "\"max\":[0.1,-0,1e-07,90]},\"entities\":[{\"type\":1,\"start\":[1,2,3,0],"
            "\"tags\":[\"x\"],\"o\":{}},{\"type\":2,\"start\":[1,2,3,0],\"tags\":[\"x\"],"
            "\"o\":{}}]}\n");
}

TEST(JsonWriter, LargeDocumentsArriveWholeAcrossFlushes) {
  std::ostringstream out;
  constexpr int kCount = 50000;
  {
    JsonWriter json(out, 1);
    json.beginArray();
    for (int i = 0; i < kCount; ++i) json.beginArray().intValue(i).stringValue("\"").endArray();
    json.endArray();
    // Nothing written by the destructor beyond what is buffered: no finish() here.
  }
  const std::string text = out.str();
  ASSERT_EQ(text.substr(0, 13), "[\n  [0,\"\\\"\"],");
  EXPECT_TRUE(text.ends_with("\n  [49999,\"\\\"\"]\n]")) << text.substr(text.size() - 20);
  std::size_t lines = 0;
  for (const char c : text) lines += c == '\n';
  EXPECT_EQ(lines, static_cast<std::size_t>(kCount) + 1);
}

}  // namespace
}  // namespace zemtra
