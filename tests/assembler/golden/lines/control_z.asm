 NOP
