; a JPE without operand, although there is a label E
E: NOP
 JP E
