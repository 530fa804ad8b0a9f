#include "shell/command_table.h"

#include <array>

namespace tarven {

namespace {

// Ten to a row. Help texts and other dispatchers go by these numbers, so an entry keeps its place.
constexpr std::array<std::string_view, CommandTableSize> Keywords = {
    "GRA", "EXA", "SCR", "DIF", "DET", "MAK", "INP", "OUT", "COR", "TAB", "REA", "MAR", "COL",
    "HYP", "FIT", "TES", "ASY", "LOC", "GLO", "LOG", "ONE", "TWO", "THR", "PAR", "FOR", "BAC",
    "NPA", "CAT", "FIS", "CHO", "NAI", "CHI", "CRE", "DEV", "ONL", "NOL", "POW", "HOM", "DES",
    "NEW", "CHE", "---", "DEL", "ADD", "---", "FIX", "PRE", "MOD", "MIS", "SEP", "RED", "REL",
    "PAT", "XPL", "MDD", "TIT", "SEQ", "PLO", "VAR", "ITE", "EXO", "---", "CUT", "PGA", "FLI",
    "GMP", "ROS", "MTE", "RAS", "MTA", "MAN", "ELA", "KAP", "REP", "EQU", "STA", "GRM", "INV",
    "SPL", "AUT", "DOT", "GAM", "FRE", "SOL", "HOR", "VER", "CRI", "CMD", "MOR", "MCA", "OPE",
    "PRI", "CMH", "HEL", "SHO", "DIS", "SAV", "EXP", "EXI", "QUI", "QV1", "REO", "REG", "CAU",
    "QV5", "QV6", "QV7", "QV8", "QV9", "BOO", "BAT", "APP", "ADH", "BEL", "S15", "THE", "FDR",
    "---", "MPL", "QVM", "S21", "MPI", "S23", "BIN", "---", "S26", "CLA", "GTE", "NOD", "CGP",
    "MDI", "PUR", "PU2", "S34", "S35", "S36", "S37", "S38", "S39", "RUN", "IPF", "S42", "S43",
    "PER", "ERA", "REC", "SEM", "PRU", "PRO", "S50", "S51", "S52", "S53", "ELI", "LDI", "S56",
    "S57", "LDE", "S59", "S60", "S61", "---", "S63", "S64", "IMP", "S66", "S67", "S68", "S69",
    "S70", "FAB", "ITA", "CHD", "S74", "S75", "S76", "S77", "ICO", "S79", "S80", "S81", "SEL",
    "S83", "LLR", "PBO", "IPR", "TPR", "PPR", "S89", "S90", "S91", "S92", "IFI", "S94", "UFI",
    "TFI", "CM3", "S98", "S99", "SPR", "FPB", "PCM", "IMI", "DEP", "T05", "T06", "T07", "T08",
    "CML", "T10", "JML", "RES", "T13", "T14", "T15", "T16", "T17", "T18", "T19", "T20", "T21",
    "TLA", "SLA", "PLX", "COM", "WML", "EAP", "T28", "PVA", "GLL", "T31", "DAT", "SYS", "T34",
    "T35", "T36", "T37", "PDI", "T39", "IMA", "T41", "CSV", "T43", "ICE", "---",
};

}  // namespace

std::string_view Command_keyword(int number) {
    if (number < 1 || number > CommandTableSize) return "---";
    return Keywords[static_cast<std::size_t>(number - 1)];
}

int Command_number(std::string_view keyword) {
    for (int number = 1; number <= CommandTableSize; ++number)
        if (Command_keyword(number) == keyword) return number;
    return 0;
}

}  // namespace tarven
