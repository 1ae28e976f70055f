#include "macro/Assignment.h"

#include <gtest/gtest.h>

#include "macro/Evaluator.h"
#include "macro/VariableStore.h"

namespace zemtra {
namespace {

class AssignmentTest : public ::testing::Test {
 protected:
  int Run(std::string_view line) { return ExecuteAssignments(line, evaluator, store); }
  VariableStore store;
  Evaluator evaluator{store};
};

TEST_F(AssignmentTest, WorkOffsetLineSetsEachVariable) {
  store.WriteNumber(1, 3);
  EXPECT_EQ(Run("#5221=0 #5222=-12.5 #5223=[#1+2]  #5224=1/3"), 0);
  EXPECT_EQ(store.ReadVariable(5221), "0");
  EXPECT_EQ(store.ReadNumber(5222), -12.5);
  EXPECT_EQ(store.ReadNumber(5223), 5);
  EXPECT_EQ(store.ReadVariable(5224), "0.333333333333333");
  EXPECT_EQ(Run("#5221=1#5222=2"), 0);
  EXPECT_EQ(store.ReadNumber(5222), 2);
  EXPECT_EQ(Run(""), 0);
  EXPECT_EQ(Run(" #3000=5 "), 0);  // stored like any other: no message here
  EXPECT_EQ(store.ReadNumber(3000), 5);
}

TEST_F(AssignmentTest, TargetsCanBeExpressions) {
  store.WriteNumber(100, 200);
  EXPECT_EQ(Run("##100=5 #[100+1]=6 #102.9=7"), 0);
  EXPECT_EQ(store.ReadNumber(200), 5);
  EXPECT_EQ(store.ReadNumber(101), 6);
  EXPECT_EQ(store.ReadNumber(102), 7);
}

TEST_F(AssignmentTest, EmptyValuesStayEmpty) {
  store.WriteNumber(101, 1);
  EXPECT_EQ(Run("#101=#102 #103=#0 #104=#102+1"), 0);
  EXPECT_TRUE(store.IsNull(101));
  EXPECT_TRUE(store.IsNull(103));
  EXPECT_EQ(store.ReadVariable(104), "1");
}

TEST_F(AssignmentTest, BadAssignmentsGiveTheirCodes) {
  struct Case {
    const char* line;
    int error;
  } cases[] = {
      {"#[#0]=1", 11}, {"##7=1", 11},   {"#0=1", 4},     {"#50001=1", 4}, {"#[0-1]=1", 4},
      {"#6=", 13},     {"#6", 13},      {"#6 X", 13},    {"#", 12},       {"#A=1", 12},
      {"#=1", 12},     {"X1", 12},      {"#1=2 G1", 12}, {"#1=[1/0]", 7}, {"#0=[1/0]", 7},
      {"#1=[2", 2},    {"#1=SIN 3", 1},
  };
  for (const Case& c : cases) EXPECT_EQ(Run(c.line), c.error) << c.line;
}

TEST_F(AssignmentTest, LocalsTakeEffectOnlyWhenTheWholeLineSucceeds) {
  EXPECT_EQ(Run("#1=1 #100=1 #0=2"), 4);
  EXPECT_TRUE(store.IsNull(1));
  EXPECT_EQ(store.ReadNumber(100), 1);
  EXPECT_EQ(Run("#1=5 #2=#1"), 0);
  EXPECT_EQ(store.ReadNumber(1), 5);
  EXPECT_TRUE(store.IsNull(2));  // #1 was still empty on its own line
}

}  // namespace
}  // namespace zemtra
