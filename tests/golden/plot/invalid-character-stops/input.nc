G0 X0 Y0
G1 X1. F10.
G1 X2. ;comment
G1 X3.
