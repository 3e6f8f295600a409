	mvi	a , 0fh	; Comentario	con TAB   
   Etiqueta :   hlt   
