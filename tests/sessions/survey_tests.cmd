! Students' pulse and habits: nominal and ordinal variables, missing answers, sparse strata.
CHD survey
OPE survey
TAB PEKHS
HYP P*
TES
SEQ 1000 9 20
TES
ASY
THR
ELA PE 2
EXA 400
TES
CHO 3
GLO
TAB EAS
HYP EA
TES CJE
TAB WS
HYP WS
TES
FIS
Y
TES XY
HYP WQ
