; INXB: the blank makes no difference
 IN XB
 DC XSP
 PU SHPSW
