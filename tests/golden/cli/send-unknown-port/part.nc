%
O0001 (PART)
G0 X1. Y2.
M30
%
