[COM SETUP]
Port = /dev/ttyUSB0
Baud = 9600
Data Bits = 8
Stop Bits = 0
Parity = None
Handshaking = 1

[TRANSMIT OPTIONS]
Strip Spaces = False
Wait For XON = False

[RECEIVE OPTIONS]
RXTimeoutBefore = 0
RXTimeoutAfter = 5

