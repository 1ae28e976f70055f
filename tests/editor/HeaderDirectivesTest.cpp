#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "editor/HeaderDirectives.h"

namespace zemtra {
namespace {

using Statements = std::vector<std::string>;

TEST(HeaderDirectives, StatementsComeFromTheOpeningComments) {
  const struct {
    const char* name;
    std::string text;
    Statements expected;
  } cases[] = {
      {"plain", "(## ZMTSetConfig \"Lathe\")\r\nG1 X1\r\n", {"ZMTSetConfig \"Lathe\""}},
      {"brackets, closing optional", "[## A]\r\n[##B\r\n(##  C  \r\nG0", {"A", "B", "C"}},
      {"program line and filler do not end it", "%\r\n\r\n:100\r\nO1000\r\n&x\r\n(## A)", {"A"}},
      {"lower case runs as written",
       "o1000\r\n(## zmtsetconfig \"mill\")",
       {"zmtsetconfig \"mill\""}},
      {"comments without ## are skipped", "(PART 12)\r\n(## A)\r\n( ## B)", {"A"}},
      {"after the first block nothing runs", "(## A)\r\nN10 G0\r\n(## B)", {"A"}},
      {"indented lines are trimmed", "  \t(## A)\nG1", {"A"}},
      {"empty statement", "(##)\r\n(## )", {}},
      {"empty program", "", {}},
      {"LF and CR line ends", "(## A)\n(## B)\r(## C)", {"A", "B", "C"}},
  };
  for (const auto& c : cases) EXPECT_EQ(ScanHeaderDirectives(c.text), c.expected) << c.name;
}

}  // namespace
}  // namespace zemtra
