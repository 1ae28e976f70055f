G0 X1.
