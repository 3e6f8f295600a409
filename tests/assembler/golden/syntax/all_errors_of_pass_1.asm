: NOP
:
: HOLA
: MOVA,B
 NADA
X:: NOP
