%
G90 G0 X0. Y0.
G1 X1. Y0. F100.
G3 X2. Y1. I0. J1.
G2 X3. Y2. R1.
G91 G1 X1.
G90 G0 Z5.
G1 Z-1.
(X1. stays)
%
