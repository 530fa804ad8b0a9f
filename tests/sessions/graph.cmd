! The project graph by hand: opened, revised, shown, compared, saved, and found again.
CHD titanic
OPE titanic
SHO G
PRE SC AG
ADD SC
FIX CA CG
ADD SC
ADD SS
ADD S
ADD SX
DEL SA
SHO G COM
SAV
SHO G COM
SHO G
NEW
NEW 1
ADD S*
XPL
SHO G
SHO G MARGINAL SG
SHO G MAR CA
SHO G MAR SX
INP G
SHO G
ADD SA
GAM
SHO G
SAV G
PRE SG
SHO G
REA titanic.grf
Y
REA G
SHO G
REA none.grf
SAV Q
CHD ../survey
OPE survey
Y
SHO G
NEW 1
ADD PE KS EA
DIS T
OPE ../titanic/titanic
Y
C
OPE ../titanic/titanic
Y
Y
N
SHO G
OPE ../survey/survey
Y
N
SHO G
SAV
N
PRE PK
EXI
C
EXI
Y
