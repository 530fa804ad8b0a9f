! Tests of survival on the Titanic: every statistic, both engines, exact p-values, marginal strata.
CHD titanic
OPE titanic
TAB SCAG
HYP **
TES
DEV
TES
POW
TES
CHI
EXA 1000
TES
REP 1000 9 50 1
TES
ASY
HYP SG
PAR
TES RM
TWO
EXA 500 17
TES
NPA
ONE
GLO
SHO H
