#pragma once
// The work offset lines of a machine configuration, run as macro assignments.
#include <string>

#include "config/ConfigFile.h"

namespace zemtra {

class Evaluator;
class VariableStore;

// Runs one line of assignments of a configuration (a work offset line) on `variables`. A bad
// line leaves what it set and is otherwise passed over: a configuration never stops a plot or
// a script.
void RunConfigStatement(const std::string& line, Evaluator& evaluator, VariableStore& variables);

// A runner for ApplyConfig that runs each line with RunConfigStatement; both objects must
// outlive it.
StatementRunner ConfigStatementRunner(Evaluator& evaluator, VariableStore& variables);

}  // namespace zemtra
