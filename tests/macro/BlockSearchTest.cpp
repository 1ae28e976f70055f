#include "macro/BlockSearch.h"

#include <gtest/gtest.h>

#include "macro/ProgramText.h"

namespace zemtra {
namespace {

TEST(BlockSearchTest, LinesAreComparedWithoutCommentsBlanksOrLeadingZeros) {
  struct Case {
    const char* line;
    const char* clean;
  } cases[] = {
      {"n0010 g01 x0.5 (note)", "N10G1X0.5"},
      {"/N0020 G1", "/N20G1"},
      {"[comment] N5", "N5"},
      {"; N5", ""},
      {"& N5", ""},
      {"G1 X1 ;N5", "G1X1;N5"},
      {"O0100 (MAIN)", "O100"},
      {"X-05 Y.050 Z10.0 N000", "X-5Y.050Z10.0N0"},
      {"G1 X1 [Y2]", "G1X1[Y2]"},
      {"\tN 12\r", "N12"},
  };
  std::string clean;
  for (const Case& c : cases) {
    CleanSearchLine(c.line, clean);
    EXPECT_EQ(clean, c.clean) << c.line;
  }
}

class FindBlockTest : public ::testing::Test {
 protected:
  FindBlockTest()
      : text(
            "N10 X1\n"       // 1
            "O100\n"         // 2
            "N0010 X2\n"     // 3
            "N20 GOTO 10\n"  // 4
            "O200\n"         // 5
            "N10 X3\n"       // 6
            "G1 X4 N100\n"   // 7
            "N1.5 X5\n"      // 8
        ) {}
  std::optional<std::size_t> Find(std::string_view target, SearchMode mode, int fromLine,
                                  std::int32_t program = kAnyProgram) {
    return FindBlock(text, target, mode, text.LineStart(fromLine), program);
  }
  std::optional<std::size_t> Line(int line) { return text.LineStart(line); }
  ProgramText text;
};

TEST_F(FindBlockTest, EachModeSearchesItsPartAndTakesItsHit) {
  EXPECT_EQ(Find("N10", SearchMode::kAfterFirst, 1), Line(1));
  EXPECT_EQ(Find("N10", SearchMode::kAfterFirst, 2), Line(3));
  EXPECT_EQ(Find("N10", SearchMode::kAfterLast, 1), Line(6));
  EXPECT_EQ(Find("N10", SearchMode::kBeforeFirst, 6), Line(1));
  EXPECT_EQ(Find("N10", SearchMode::kBeforeLast, 6), Line(3));
  EXPECT_EQ(Find("N10", SearchMode::kBeforeLast, 7), Line(6));
  // The line that starts at the position belongs to the part behind it.
  EXPECT_EQ(Find("N10", SearchMode::kBeforeFirst, 1), std::nullopt);
  EXPECT_EQ(Find("N20", SearchMode::kBeforeFirst, 4), std::nullopt);
  EXPECT_EQ(Find("N20", SearchMode::kAfterFirst, 4), Line(4));
}

TEST_F(FindBlockTest, NothingIsSearchedOutsideTheText) {
  EXPECT_EQ(FindBlock(text, "N10", SearchMode::kBeforeFirst, 0, kAnyProgram), std::nullopt);
  EXPECT_EQ(FindBlock(text, "N10", SearchMode::kAfterFirst, text.Size() + 1, kAnyProgram),
            std::nullopt);
  EXPECT_EQ(FindBlock(text, "", SearchMode::kAfterFirst, 0, kAnyProgram), std::nullopt);
  EXPECT_EQ(FindBlock(text, "N10", SearchMode::kBeforeLast, text.Size() + 5, kAnyProgram), Line(6));
}

TEST_F(FindBlockTest, HitMustNotRunIntoALongerNumber) {
  EXPECT_EQ(Find("N100", SearchMode::kAfterFirst, 1), Line(7));     // behind a word
  EXPECT_EQ(Find("n1", SearchMode::kAfterFirst, 1), std::nullopt);  // N10, N100, N1.5
  EXPECT_EQ(Find("N1.5", SearchMode::kAfterFirst, 1), Line(8));
  EXPECT_EQ(Find("X", SearchMode::kAfterFirst, 1), std::nullopt);  // always a digit behind
}

TEST_F(FindBlockTest, SearchKeepsToItsProgram) {
  EXPECT_EQ(Find("N10", SearchMode::kAfterFirst, 4, 100), std::nullopt);
  EXPECT_EQ(Find("N10", SearchMode::kAfterFirst, 4, 200), Line(6));
  EXPECT_EQ(Find("N10", SearchMode::kBeforeLast, 8, 100), Line(3));
  // Lines before the first O line count as the program asked for.
  EXPECT_EQ(Find("N10", SearchMode::kAfterFirst, 1, 200), Line(1));
}

TEST(BlockSearchTest, ProgramLinesMatchOnlyAtTheirStart) {
  const ProgramText text("M98 O100\nO0100\n:100\nN5 O100\n");
  EXPECT_EQ(FindBlock(text, "O100", SearchMode::kAfterFirst, 0, kAnyProgram), 0u);
  EXPECT_EQ(FindBlock(text, "O100", SearchMode::kAfterFirst, text.LineStart(2), kAnyProgram),
            text.LineStart(2));
  EXPECT_EQ(FindBlock(text, ":100", SearchMode::kAfterFirst, 0, kAnyProgram), text.LineStart(3));
  EXPECT_EQ(FindBlock(text, "100", SearchMode::kAfterFirst, text.LineStart(2), kAnyProgram),
            text.LineStart(4));
}

TEST(BlockSearchTest, BlockTargetsAreWholeNumbers) {
  EXPECT_EQ(BlockNumberTarget(20), "N20");
  EXPECT_EQ(BlockNumberTarget(7.6), "N8");
  EXPECT_EQ(FindBlockAround(ProgramText("N5\nX1\nN6\n"), "N5", 3, kAnyProgram), 0u);
}

}  // namespace
}  // namespace zemtra
