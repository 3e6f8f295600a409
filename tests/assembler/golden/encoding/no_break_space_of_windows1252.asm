 MVI A,5 ; año
