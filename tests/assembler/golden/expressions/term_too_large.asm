; a term that is no word fails the whole
 LXI H,65536-1
 LXI H,1+65536
 MVI A,99999999999-1
