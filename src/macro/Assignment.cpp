#include "macro/Assignment.h"

#include "macro/MacroStatement.h"

namespace zemtra {

int ExecuteAssignments(std::string_view cleanedLine, Evaluator& evaluator,
                       VariableStore& variables) {
  MacroStatements statements(evaluator, variables);
  return statements.ExecuteAssignments(cleanedLine);
}

}  // namespace zemtra
