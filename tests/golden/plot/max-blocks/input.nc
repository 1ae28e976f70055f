G0 X0
G1 X1. F10.
X2.
X3.
X4.
