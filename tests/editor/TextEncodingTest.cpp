#include <gtest/gtest.h>

#include <string>

#include "editor/LineEnds.h"
#include "editor/TextEncoding.h"

namespace zemtra {
namespace {

TEST(TextEncoding, Utf8ValidityFollowsTheStandard) {
  const struct {
    std::string bytes;
    bool valid;
  } cases[] = {
      {"G1 X1 (plain)", true},
      {"(caf\xC3\xA9)", true},
      {"(\xE2\x82\xAC \xF0\x9F\x98\x80)", true},  // euro sign, emoji
      {"(caf\xE9)", false},                       // Latin-1 e acute
      {"\xC0\xAF", false},                        // overlong "/"
      {"\xED\xA0\x80", false},                    // surrogate
      {"\xF4\x90\x80\x80", false},                // past U+10FFFF
      {"\xE2\x82", false},                        // cut short
      {"\x80", false},                            // stray continuation
  };
  for (const auto& c : cases) EXPECT_EQ(IsValidUtf8(c.bytes), c.valid) << c.bytes;
}

TEST(TextEncoding, EveryByteSurvivesDecodeAndEncode) {
  // All 256 byte values: not UTF-8, so taken as Latin-1 and written back byte for byte.
  std::string bytes;
  for (int b = 0; b < 256; ++b) bytes += static_cast<char>(b);
  TextEncoding encoding;
  const std::string text = DecodeProgramBytes(bytes, encoding);
  EXPECT_EQ(encoding, TextEncoding::Latin1);
  EXPECT_TRUE(IsValidUtf8(text));
  EXPECT_EQ(EncodeProgramText(text, encoding), bytes);
  EXPECT_EQ(encoding, TextEncoding::Latin1);

  const std::string utf8 =
      "(Bohrung \xC3\x98 10 \xE2\x80\x93 \xC2\xB1"
      "0.1)\tG1 \r\n";
  EXPECT_EQ(DecodeProgramBytes(utf8, encoding), utf8);
  EXPECT_EQ(encoding, TextEncoding::Utf8);
  EXPECT_EQ(EncodeProgramText(utf8, encoding), utf8);
}

TEST(TextEncoding, LatinOneDocumentWithNewCharacterIsSavedAsUtf8) {
  TextEncoding encoding;
  std::string text = DecodeProgramBytes("(caf\xE9)", encoding);
  ASSERT_EQ(encoding, TextEncoding::Latin1);
  text += "(\xE2\x82\xAC)";  // a euro sign typed by the user
  EXPECT_EQ(EncodeProgramText(text, encoding), text);
  EXPECT_EQ(encoding, TextEncoding::Utf8);
}

TEST(TextEncoding, Utf16OffsetsCountQtUnits) {
  const std::string line =
      "A\xC3\xA9"
      "B\xF0\x9F\x98\x80"
      "C";  // A é B 😀 C
  const struct {
    std::size_t bytes;
    std::size_t units;
  } cases[] = {{0, 0}, {1, 1}, {3, 2}, {4, 3}, {8, 5}, {9, 6}};
  for (const auto& c : cases) {
    EXPECT_EQ(Utf16OffsetOf(line, c.bytes), c.units) << c.bytes;
    EXPECT_EQ(ByteOffsetOf(line, c.units), c.bytes) << c.units;
  }
  EXPECT_EQ(Utf16OffsetOf(line, 2), 1u);  // inside é: its start
  EXPECT_EQ(Utf16OffsetOf(line, 100), 6u);
  EXPECT_EQ(ByteOffsetOf(line, 100), line.size());
}

TEST(LineEnds, EolSequenceIsTheFirstShortRun) {
  const struct {
    std::string bytes;
    std::string eol;
  } cases[] = {
      {"G1\r\nG2\r\n", "\r\n"},
      {"G1\nG2\n", "\n"},
      {"G1\rG2\r", "\r"},
      {"G1\nG2\r\nG3", "\n"},  // mixed: the first decides
      {"G1 X1", "\r\n"},       // one line without a line end
      {"", "\r\n"},
      {"%\r\n\r\n\r\n\r\n\r\nG1\nG2", "\n"},  // blank lines at the top are passed over
      {"G1\r\n\nG2", "\r\n\n"},               // a 3-character line end
      {"G1\r\r\nG2", "\r\r\n"},
      {"G1\n\nG2\n\nG3", "\n\n"},
      {"G1\r\n", "\r\n"},  // ends inside the run
  };
  for (const auto& c : cases) EXPECT_EQ(GetEOLSequence(c.bytes), c.eol) << c.bytes;

  // The probe is 1024 bytes: a line end behind it is not seen, nor one cut by its end.
  const std::string longLine(1024, 'X');
  EXPECT_EQ(GetEOLSequence(longLine + "\nG1"), "\r\n");
  EXPECT_EQ(GetEOLSequence(std::string(1023, 'X') + "\n\nG1"), "\r\n");
}

TEST(LineEnds, NormalizingMakesEveryLineEndCrLf) {
  const struct {
    std::string text;
    std::string eol;
    std::string expected;
    bool changed;
  } cases[] = {
      {"A\r\nB\r\n", "\r\n", "A\r\nB\r\n", false},
      {"A\nB\n", "\n", "A\r\nB\r\n", true},
      {"A\rB", "\r", "A\r\nB", true},
      {"A\nB\r\nC", "\n", "A\r\nB\r\nC", true},  // a CR LF in an LF file stays one line end
      {"A\r\nB\rC", "\r\n", "A\r\nB\r\nC", true},
      {"A\r\n\nB\r\n\nC", "\r\n\n", "A\r\nB\r\nC", true},
      {"A\r\r\nB", "\r\r\n", "A\r\nB", true},
      {"A\n\nB\nC", "\n\n", "A\r\nB\r\nC", true},
      {"", "\r\n", "", false},
      {"(tab\t and trailing  )  ", "\r\n", "(tab\t and trailing  )  ", false},
  };
  for (const auto& c : cases) {
    std::string text = c.text;
    EXPECT_EQ(NormalizeLineEnds(text, c.eol), c.changed) << c.text;
    EXPECT_EQ(text, c.expected) << c.text;
  }
}

}  // namespace
}  // namespace zemtra
