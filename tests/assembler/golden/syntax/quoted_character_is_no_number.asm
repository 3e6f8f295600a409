 MVI A,'A'
