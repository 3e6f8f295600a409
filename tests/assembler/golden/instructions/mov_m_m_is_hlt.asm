; the code of MOV M,M is the one of HLT
 MOV M,M
 HLT
