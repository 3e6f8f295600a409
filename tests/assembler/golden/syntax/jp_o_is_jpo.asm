O: NOP
 JP O
