 MVI A,1,2
 LXI H,1,2
 JMP 1,2
