#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "macro/ProgramText.h"
#include "support/ScratchFolder.h"

namespace zemtra {
namespace {

TEST(ProgramText, ReadsLinesOfEveryLineEndAndNoneOfAnEmptyText) {
  ProgramText text("A\r\nB\nC\rD\r\n\r\nE");
  std::vector<std::string> lines;
  std::vector<int> numbers;
  std::string_view line;
  while (true) {
    const std::size_t start = text.Position();
    if (!text.ReadLine(line)) break;
    lines.emplace_back(line);
    numbers.push_back(text.LineFromPosition(start) + 1);
  }
  EXPECT_EQ(lines, (std::vector<std::string>{"A", "B", "C", "D", "", "E"}));
  EXPECT_EQ(numbers, (std::vector<int>{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(text.LineCount(), 6);
  EXPECT_TRUE(text.AtEnd());
  const ProgramText empty;
  std::size_t start = 0;
  EXPECT_FALSE(empty.ReadLineAt(start, line));
  EXPECT_EQ(empty.LineCount(), 0);
  EXPECT_EQ(empty.LineFromPosition(0), 0);
}

TEST(ProgramText, PositionsCanBeSavedAndRestored) {
  ProgramText text("N1\r\nN2\r\nN3\r\n");
  std::string_view line;
  text.ReadLine(line);
  const std::size_t second = text.Position();
  text.ReadLine(line);
  text.ReadLine(line);
  EXPECT_FALSE(text.ReadLine(line));
  text.Seek(second);
  ASSERT_TRUE(text.ReadLine(line));
  EXPECT_EQ(line, "N2");
  EXPECT_EQ(text.LineFromPosition(second), 1);  // one line starts before it
  EXPECT_EQ(text.LineStart(3), 8u);
  EXPECT_EQ(text.LineStart(4), text.Size());
  EXPECT_EQ(text.LineCount(), 3);  // the final line end opens no line
  text.Seek(1000);
  EXPECT_TRUE(text.AtEnd());
  // Readers of their own share one text.
  std::size_t mine = 0;
  ASSERT_TRUE(text.ReadLineAt(mine, line));
  EXPECT_EQ(line, "N1");
}

TEST(ProgramText, LoadsFilesByteForByte) {
  const test::ScratchFolder folder;
  const std::string bytes = std::string("G1\0X1\xE9\r\n", 9) + std::string(200000, 'Y');
  const std::string path = folder.Write("bytes.nc", bytes);
  ProgramText text;
  std::string error;
  ASSERT_TRUE(ProgramText::LoadFile(path, text, error)) << error;
  EXPECT_EQ(text.Bytes(), bytes);
  EXPECT_EQ(text.FileName(), path);
  EXPECT_FALSE(ProgramText::LoadFile(folder / "missing.nc", text, error));
  EXPECT_FALSE(error.empty());
  EXPECT_FALSE(ProgramText::LoadFile(folder.path(), text, error));
}

}  // namespace
}  // namespace zemtra
