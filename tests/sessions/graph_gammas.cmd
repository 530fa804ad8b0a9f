! Gammas under the project graph: their hypotheses, what keeps them, and edges removed by them.
CHD survey
OPE survey
SAV G
GAM
SHO G
GAM OR
GAM M
SAV G
DEL MAXEDGES 7
Y
SHO G
SAV G
REA G
FIX PE PK PC PF PW PH PA PS
DEL MAXEDGES 6
Y
DEL MAXEDGES
CHD ../titanic
OPE titanic
Y
NEW 1
ADD SC CA AG
GAM
