#pragma once
// Runs a line made only of macro assignments, "#5221=0 #5222=-12.5 #5223=[#1+2]", such as the
// work offset lines of a machine configuration.
#include <string_view>

namespace zemtra {

class Evaluator;
class VariableStore;

// `cleanedLine` holds assignments "#target=value", blanks between them allowed. Returns 0, or
// the error code of the first bad assignment (11, 12, 13, 4 or an evaluator code); assignments
// before it stand, except those to #1-#99, which take effect only when the whole line succeeds.
// Text where an assignment must start is error 12. An assignment to #3000 is stored like any
// other. Throws ExpressionFault (incl. ExpressionTooLong) like the evaluator. The same as
// MacroStatements::ExecuteAssignments.
int ExecuteAssignments(std::string_view cleanedLine, Evaluator& evaluator,
                       VariableStore& variables);

}  // namespace zemtra
