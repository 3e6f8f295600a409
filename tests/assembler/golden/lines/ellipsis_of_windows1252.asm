 NOP ; año… HOLA
