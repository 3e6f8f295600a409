; up to the first comma blanks disappear as well
 MV I A , 5
 L X I S P , 1 2 3 4 H
