(Lathe arcs: diameters for X, radius centres, reversed arc codes, and a plane that is not ZX)
G18 G0 X20. Z2.
G1 Z0 F0.2
G2 X30. Z-5. I5. K0
G3 X40. Z-10. R5.
G17 G2 X50. Z-10. I2.5
M30
