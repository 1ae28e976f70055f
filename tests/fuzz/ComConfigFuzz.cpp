// The RS232 configuration reader: any `.rs` text gives a configuration whose own file text
// reads back to the same configuration.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "FuzzSupport.h"
#include "dnc/ComConfig.h"

namespace {

bool SameConfig(const zemtra::ComConfig& a, const zemtra::ComConfig& b) {
  return a.Baud == b.Baud && a.DataBits == b.DataBits && a.StopBits == b.StopBits &&
         a.Handshaking == b.Handshaking && a.StripSpaces == b.StripSpaces &&
         a.WaitForXON == b.WaitForXON && a.RXTimeoutBefore == b.RXTimeoutBefore &&
         a.RXTimeoutAfter == b.RXTimeoutAfter;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zemtra;
  const ComConfig config = ReadComConfig(fuzz::AsText(data, size));
  const ComConfig reread = ReadComConfig(ComConfigText(config));
  if (!SameConfig(config, reread)) std::abort();
  PortDeviceName(config.Port);
  PortLabel(config.Port);
  return 0;
}
