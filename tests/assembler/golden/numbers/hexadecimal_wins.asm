; the last letter decides: 1BH and 0DH are hexadecimal, 11B binary, 11D decimal
 DFB 1BH,0DH,11B,11D,0BH
