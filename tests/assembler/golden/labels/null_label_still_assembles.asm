; a null label is an error; the rest of the line is split all the same
: NOP
: MVI A,5
