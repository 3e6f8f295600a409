 MVI A,5+
 MVI A,5-
 MVI A,+
