 MVI A,5--5
 MVI A,5+-5
 MVI A,5++5
