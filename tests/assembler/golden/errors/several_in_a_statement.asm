 DFB A,B
: MOVA,B
