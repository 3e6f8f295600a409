 NOP ; año
