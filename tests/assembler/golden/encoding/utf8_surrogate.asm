 NOP ; í €
