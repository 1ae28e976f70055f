#include <gtest/gtest.h>

#include <string>

#include "core/RecordingHost.h"
#include "editor/DocumentPrograms.h"
#include "support/ScratchFolder.h"
#include "support/TestSupport.h"

namespace zemtra {
namespace {

const std::string kTwoPrograms =
    "%\r\n"
    "O1000 ( FIRST PART )\r\n"
    "G0 X1\r\n"
    ": 20(SECOND)\r\n"
    "M30\r\n";

TEST(DocumentPrograms, ListingHasOneRowPerProgram) {
  EXPECT_EQ(ProgramsListing(kTwoPrograms),
            "   Program    Size  Description\r\n"
            "================================\r\n"
            "      1000     25  FIRST PART\r\n"
            "        20     15  SECOND\r\n");
  // Without a program number the number field stays blank.
  EXPECT_EQ(ProgramsListing("G1 X1\r\nG2\r\n"),
            "   Program    Size  Description\r\n"
            "================================\r\n"
            "                7  \r\n");
}

TEST(DocumentPrograms, SaveSeparateWritesOneFilePerProgram) {
  test::ScratchFolder scratch;
  RecordingHost host;
  EXPECT_EQ(SaveSeparatePrograms(kTwoPrograms, scratch.path().string(), TextEncoding::Utf8, host),
            2);
  EXPECT_EQ(test::ReadFileBytes(scratch / "O1000.TXT"),
            "%\r\nO1000 ( FIRST PART )\r\nG0 X1\r\n%\r\n");
  EXPECT_EQ(test::ReadFileBytes(scratch / "O20.TXT"), "%\r\n: 20(SECOND)\r\nM30\r\n");  // no "%"

  // Nothing is written for a text without programs, nor for no folder.
  EXPECT_EQ(
      SaveSeparatePrograms("G1\r\nG2\r\n", (scratch / "none").string(), TextEncoding::Utf8, host),
      0);
  EXPECT_FALSE(std::filesystem::exists(scratch / "none"));
  EXPECT_EQ(SaveSeparatePrograms(kTwoPrograms, "", TextEncoding::Utf8, host), 0);

  // A Latin-1 document's programs are written in Latin-1.
  EXPECT_EQ(SaveSeparatePrograms("O5 (\xC3\xA4)\r\n", scratch.path().string(), TextEncoding::Latin1,
                                 host),
            1);
  EXPECT_EQ(test::ReadFileBytes(scratch / "O5.TXT"), "%\r\nO5 (\xE4)\r\n");

  EXPECT_EQ(
      SaveSeparatePrograms(kTwoPrograms, (scratch / "missing").string(), TextEncoding::Utf8, host),
      0);
  EXPECT_EQ(host.lastText(), "Error in SaveSeparate!\r\nNo such file or directory");
  EXPECT_TRUE(host.shown.size() == 1);  // it stops at the first failure
}

}  // namespace
}  // namespace zemtra
