! Vision of the two eyes: ten thousand cases, gamma far beyond z = 4, two-sided exact p of gamma.
CHD vision
OPE vision
TAB RLG
HYP **
TES
TWO
EXA 500
TES
LOC
HYP RG
TES O
GLO
TAB RL
HYP RL
TES Z
