; the text without blanks comes first: CM A is CMA, and only CM 10 is a call
 CM A
 CM 10
 CM C
 CM  A,
