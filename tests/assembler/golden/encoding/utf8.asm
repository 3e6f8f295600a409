; año
Ñandú: NOP ; señal €
 JMP ñandú
