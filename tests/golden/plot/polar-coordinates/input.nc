(Polar coordinates: radius and angle by plane, incremental radius and angle)
G0 X0 Y0
G16 G1 X10. Y30. F100.
Y90.
G91 Y45.
G90 G18 X0 Z-1.
G17 G91 X2. Y0
M3
G15 G90 Y-5.
X0 Y0
M30
