 MVI A,2*3
 MVI A,6/2
 MVI A,(1)
 MVI A,(1+2)
