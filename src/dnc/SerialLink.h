#pragma once
// Opening a serial port with the settings of an RS232 configuration.
#include <string>
#include <vector>

class QSerialPort;

namespace zemtra {

struct ComConfig;

// Opens `port` for reading and writing on the device of `config.Port` with its baud, data bits,
// parity and stop bits; with `useHandshaking` the configured flow control, else none. Returns
// false with a sentence in `error` (bad baud or data bits, missing, busy or refused device) and
// leaves the port closed.
bool OpenSerialLink(QSerialPort& port, const ComConfig& config, bool useHandshaking,
                    std::string& error);

// Ports to offer in a list: the serial devices present now, then /dev/ttyS0 to /dev/ttyS3,
// without repeats. Any other path may still be typed.
std::vector<std::string> PortChoices();

}  // namespace zemtra
