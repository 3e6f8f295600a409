 HLT
