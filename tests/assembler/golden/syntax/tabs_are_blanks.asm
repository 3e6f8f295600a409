	MOV	A,	B
X:	MVI	A ,	10H	; comment	with tabs
	DFB	1,	2
