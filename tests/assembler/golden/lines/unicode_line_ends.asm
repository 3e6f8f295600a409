 NOP ; uno  NOP ; dos  NOP
 HOLA
