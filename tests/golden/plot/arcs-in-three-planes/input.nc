(I/J/K and R arcs in XY, ZX and YZ, a full circle and helixes)
G90 G17 G0 X0 Y0 Z0
G1 X10. F100.
G2 X20. Y0 I5. J0
G3 X30. Y0 R5.
G2 X40. Y0 R-5.
G3 X40. Y0 I-3. J0
G2 X50. Y0 Z-2. I5. P3
G18 G3 X60. Z-2. K0 I5.
G19 G2 Y10. Z-2. J5. K0
G17 G3 X60. Y10. Z-4. I-5. J0
M30
