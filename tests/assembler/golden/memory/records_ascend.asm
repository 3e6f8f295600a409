; in the order of addresses, not of the source
 ORG 300H
 DFB 3
 ORG 100H
 DFB 1
 ORG 200H
 DFB 2
