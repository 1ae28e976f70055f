[COM]
Port = COM99999999999999999999
Baud = 99999999999999999999
DataBits = -5
StopBits = 1e10
Handshaking = -2147483649
RXTimeoutBefore = nan
