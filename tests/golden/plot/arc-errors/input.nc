(Arc checks: full circle by R, R too small, zero radius, radii that differ, no centre)
G0 X0 Y0
G2 X0 Y0 R1.
G2 X4. Y0 R1.
G2 X4. Y0 I0 J0
G3 X6. Y0 I1.1 J0
G2 X0 Y0 Z-1. I-3. R2. P2
G2 X1.
G2 X1. Y0 Z-2. I.5 P100
M30
