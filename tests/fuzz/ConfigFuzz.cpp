// The machine configuration reader: any file text becomes a record, the record is put in
// force (its work offset lines run as macro statements), and its file text reads back.
#include <cstddef>
#include <cstdint>
#include <string>

#include "FuzzSupport.h"
#include "config/ConfigFile.h"
#include "config/ConfigText.h"
#include "interp/ConfigStatements.h"
#include "macro/Evaluator.h"
#include "macro/VariableStore.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zemtra;
  ConfigSession session;
  std::vector<std::string> warnings;
  ReadConfigRecord(ConfigText(fuzz::AsText(data, size)), session.EditConfig, &warnings);
  session.EditConfig.ConfigName = "fuzz";

  VariableStore& variables = fuzz::ClearedVariables();
  Evaluator evaluator(variables);
  fuzz::DeadlineHost host(std::chrono::milliseconds(300));
  ApplyConfig(session.EditConfig, session, host, ConfigStatementRunner(evaluator, variables));

  const std::string written = ConfigFileText(
      session.ActiveConfig, [&](int number) { return variables.ReadVariable(number); });
  MachineConfig reread;
  ReadConfigRecord(ConfigText(written), reread);
  return 0;
}
