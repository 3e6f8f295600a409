 NOP 
