#include "interp/ConfigStatements.h"

#include <cstdint>
#include <exception>

#include "interp/BlockReader.h"
#include "macro/Assignment.h"

namespace zemtra {

void RunConfigStatement(const std::string& line, Evaluator& evaluator, VariableStore& variables) {
  std::string cleaned;
  std::int32_t blockNumber = 0;
  CleanBlock(line, false, cleaned, blockNumber);
  if (cleaned.empty()) return;
  try {
    ExecuteAssignments(cleaned, evaluator, variables);
  } catch (const std::exception&) {
  }
}

StatementRunner ConfigStatementRunner(Evaluator& evaluator, VariableStore& variables) {
  return [&evaluator, &variables](const std::string& line) {
    RunConfigStatement(line, evaluator, variables);
  };
}

}  // namespace zemtra
