G90 G0 X0. Y0.
G2 X2. Y0. I1. J0.
G2 X3. Y-1. I1. J0.
G2 X3. Y-1. I0. J1.
