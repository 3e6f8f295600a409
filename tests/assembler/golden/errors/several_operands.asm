 DFB A,2,B
 LXI H,Z
