

 NOP
 ; four
 HOLA
