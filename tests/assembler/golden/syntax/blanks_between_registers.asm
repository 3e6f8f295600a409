 MOV A,B
 MOV  A , B
 MOV   A,   B
 MOV A ,B
 LXI  SP , 10H
 MVI  B , 7
