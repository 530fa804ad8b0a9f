! Hypotheses from the project graph: a model by hand, its separators, cores and relevant edges, and their tests.
CHD survey
OPE survey
NEW 1
ADD PE PW EC EH ES KS CW CA WF WH HS AS
SEP P*
TES
SHO H
CHO 1
GMP PE PF
RED P+
TES
FDR
GTE PE
REL ECEA
REL ECPWS
REL **PW R
REP 400
SEP +
TES
GTE PK
ASY
SEP XY
SEP AA
REL ABC
TES R
TES XY
TES PE
TAB PEW
HYP PE
TES R
GTE PE
SHO H
CHO 9
