INICIO: NOP ; día
 JMP inicio
