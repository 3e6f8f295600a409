; less than -256: the low byte is listed, the high one stays 00
 DFW 1-1000
 LXI H,0-1234H
