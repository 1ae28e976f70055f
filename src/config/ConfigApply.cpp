// The engine's part of putting a configuration in force.
#include "config/ConfigFile.h"
#include "core/Host.h"
#include "core/TextUtil.h"

namespace zemtra {

std::string ConfigStatusText(const std::string& configName) {
  return "  " + ProperCase(configName) + "  ";
}

void ClearLatheFlagsOnMill(MachineConfig& active) {
  if (active.MachineType != 0) return;
  active.LatheXDiameter = kFlagFalse;
  active.LatheReverseArcs = kFlagFalse;
}

void ApplyConfig(const MachineConfig& record, ConfigSession& session, Host& host,
                 const StatementRunner& runStatement) {
  session.ActiveConfig = record;
  const MachineConfig& active = session.ActiveConfig;
  host.status("cfg", ConfigStatusText(active.ConfigName));
  for (const std::string& line : active.WorkOffsetText) {
    if (!line.empty() && runStatement) runStatement(line);
  }
  ClearLatheFlagsOnMill(session.ActiveConfig);
}

}  // namespace zemtra
