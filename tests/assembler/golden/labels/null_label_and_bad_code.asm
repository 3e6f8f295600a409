; both errors of one statement, in this order
: HOLA
