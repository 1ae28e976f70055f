#include "macro/Assignment.h"

#include <cmath>
#include <string>

#include "macro/Evaluator.h"
#include "macro/VariableStore.h"

namespace zemtra {

namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsBlank(char c) {
  return static_cast<unsigned char>(c) < 33;
}

int Size(std::string_view text) {
  return static_cast<int>(text.size());
}
char At(std::string_view text, int position) {
  return position >= 1 && position <= Size(text) ? text[static_cast<std::size_t>(position - 1)]
                                                 : '\0';
}

// Scans and reduces one expression from `position`.
int Evaluate(std::string_view line, int& position, Evaluator& evaluator, std::string& valueText,
             double& value, bool& isEmpty) {
  int error = evaluator.ScanValue(line, position, valueText);
  if (error == 0) value = evaluator.EvaluateValue(isEmpty, error);
  return error;
}

// The variable number behind the "#" at `position`.
int ReadTarget(std::string_view line, int& position, Evaluator& evaluator, std::string& valueText,
               double& target) {
  const char next = At(line, position + 1);
  if (!IsDigit(next) && next != '[' && next != '#') return ErrorCode::kExpectedVariableNumber;
  ++position;
  bool isEmpty = false;
  if (const int error = Evaluate(line, position, evaluator, valueText, target, isEmpty))
    return error;
  return isEmpty ? ErrorCode::kCannotAssignVariable0 : 0;
}

// One "#target=value" from the "#" at `position`; locals go to `locals`, the rest to the store.
int ExecuteAssignment(std::string_view line, int& position, Evaluator& evaluator,
                      VariableStore& variables, LocalVariables& locals, std::string& valueText) {
  double target = 0;
  if (const int error = ReadTarget(line, position, evaluator, valueText, target)) return error;
  if (At(line, position) != '=' || position >= Size(line)) return ErrorCode::kExpectedExpression;
  double value = 0;
  bool isEmpty = false;
  if (const int error = Evaluate(line, position, evaluator, valueText, value, isEmpty))
    return error;
  const double n = std::trunc(target);
  if (n < VariableStore::kFirstLocal || n > VariableStore::kLastList)
    return ErrorCode::kInvalidVariableNumber;
  const int number = static_cast<int>(n);
  if (number < VariableStore::kFirstCommon) {
    if (isEmpty)
      locals[number].SetNull();
    else
      locals[number].SetNumber(value);
  } else if (isEmpty) {
    variables.WriteNull(number);
  } else {
    variables.WriteNumber(number, value);
  }
  return 0;
}

}  // namespace

int ExecuteAssignments(std::string_view cleanedLine, Evaluator& evaluator,
                       VariableStore& variables) {
  // Locals are written to a copy of the frame, so expressions on the line read their old values.
  const int frame = variables.CurrentFrame();
  LocalVariables locals = variables.Locals(frame);
  std::string valueText;
  int position = 1;
  for (;;) {
    while (position <= Size(cleanedLine) && IsBlank(At(cleanedLine, position))) ++position;
    if (position > Size(cleanedLine)) break;
    if (At(cleanedLine, position) != '#') return ErrorCode::kExpectedVariableNumber;
    if (const int error =
            ExecuteAssignment(cleanedLine, position, evaluator, variables, locals, valueText))
      return error;
  }
  variables.Locals(frame) = locals;
  return 0;
}

}  // namespace zemtra
