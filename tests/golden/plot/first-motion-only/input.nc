G0 X1. Y1.
