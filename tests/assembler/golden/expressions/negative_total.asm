; a negative total fails, and its low byte is listed
 MVI A,5-10
 LXI H,5-10
 DFB 0-1,0-256
 DFW 0-1
