; case makes no difference, and the listing keeps it
inicio: mvi a,0ffh
 Lxi h,Fin
 jmp INICIO
fin: hlt
