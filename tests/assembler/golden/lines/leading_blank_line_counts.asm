 

 NOP
 HOLA
