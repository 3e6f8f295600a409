; año
Ñandú: NOP ; señal € „comillas“
 JMP ñandú
