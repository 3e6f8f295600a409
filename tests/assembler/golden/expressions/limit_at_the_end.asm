; every term is a word, and only the total is held against the byte
 MVI A,300-100
 MVI A,65535-65280
 LXI H,65535-65535+65535
