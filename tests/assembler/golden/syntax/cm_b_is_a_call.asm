; CMB is nothing, so this is a call if minus to the label B
B: NOP
 CM B
