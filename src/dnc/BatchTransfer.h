#pragma once
// Sending and receiving without a window, for the command line: each call runs one whole
// transfer and returns when it has ended. Needs a QCoreApplication for the receive.
#include <functional>
#include <string>

namespace zemtra {

class Host;
struct ComConfig;

// Sends `filePath` with the port, line settings, StripSpaces and WaitForXON of `config`.
// `progress` gets each new percentage; `interrupted` is asked about 20 times a second and ends
// the send when it returns true. Returns "" after a complete send, else what went wrong
// ("Transmission aborted" after an interruption).
std::string SendFileAndWait(const ComConfig& config, const std::string& filePath,
                            const std::function<void(int)>& progress,
                            const std::function<bool()>& interrupted);

// Receives with the port and time-outs of `config`, appending the bytes to `received`, until
// a time-out, a line error or `interrupted` (as Esc). Status texts go to `host`'s "msg" panel.
// Returns false when the port could not be opened (the reason in `error`).
bool ReceiveAndWait(const ComConfig& config, Host& host, std::string& received,
                    const std::function<bool()>& interrupted, std::string& error);

}  // namespace zemtra
