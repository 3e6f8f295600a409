😀: NOP ; 😀
 JMP 😀
