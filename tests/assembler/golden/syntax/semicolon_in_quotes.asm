; no quoted texts: the statement ends at the mark
 DFB ';'
