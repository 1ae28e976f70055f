%
o100 sub
G1 X[#1] F10
o100 endsub
G0 X0 Y0
o100 call [2]
M2
%
