 NOP
 HOLA ; señor
