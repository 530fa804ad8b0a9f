#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "shell/limits.h"
#include "shell/one_based.h"

namespace tarven {

inline constexpr int Nominal = 2;
inline constexpr int Ordinal = 3;
inline constexpr std::uint32_t White = 16777215;

/// One project variable. All text is Latin-1, one byte a character.
struct Variable {
    char label = '?';        ///< unique one-character name
    std::int32_t VARNO = 0;  ///< column of the DAT record, 1..NTAL
    std::uint8_t dim = 0;    ///< number of categories, 2..57
    std::uint8_t vtype = 0;  ///< Nominal or Ordinal; two categories print as binary either way
    double vfra = 0;         ///< the lowest accepted raw value, of category 1
    One_based<double, MaxCategories> vtil;  ///< vtil[1..dim]: upper cut points, ascending
    std::uint8_t Levnr = 0;                 ///< recursive block, 1 = first (the responses)
    std::string name;                       ///< at most 8 characters when read from the VAR file
    bool hasname = false;
    One_based<std::string, MaxCategories> categoryname;  ///< at most 8 characters when read
    std::uint32_t projectvarcolor = White;

    bool operator==(const Variable&) const = default;
};

/// A case is used only if lower <= value of the column <= upper.
struct RangeCondition {
    int column = 0;  ///< of the DAT record, 1..NTAL when well-formed
    double lower = 0;
    double upper = 0;

    bool operator==(const RangeCondition&) const = default;
};

/// A case is used only if the value of the column, rounded to nearest with ties to even, is one
/// of the values.
struct ValueSelection {
    int column = 0;
    std::vector<std::int32_t> values;  ///< 1..85 of them

    bool operator==(const ValueSelection&) const = default;
};

/// What it takes to read a raw record and recode it: the DEF file's case selection and the VAR
/// file's variables and recursive blocks.
struct ProjectDefinition {
    int NTAL = 0;                            ///< values in a DAT record, at most 1600
    std::vector<RangeCondition> conditions;  ///< NBET of them
    std::vector<ValueSelection> selections;  ///< Nselectvar of them, at most 85
    int N = 0;                               ///< project variables, in VAR file order
    One_based<Variable, 85> variables;       ///< [1..N]
    int Nlevels = 0;                         ///< recursive blocks
    One_based<int, MaxVariables> LevelEnd;   ///< [1..Nlevels]: last variable of each block
    std::vector<std::string> comments;       ///< the stored ones, at most nine
    int Ncomments = 0;                       ///< counted, at most ten
    std::string title;

    bool operator==(const ProjectDefinition&) const = default;
};

/// One file of a project: the path it has or would have, and whether it was there at the opening.
struct ProjectFile {
    std::filesystem::path path;
    bool exists = false;
};

struct ProjectFiles {
    ProjectFile DEF, VAR, CAT, DAT, GRF, EXA, SYS, TAB, REP, TMP, BEL;
};

struct Project : ProjectDefinition {
    std::string Projectname;            ///< base name, as the user wrote it
    std::filesystem::path ProjectPath;  ///< folder
    bool ProjectOpen = false;
    ProjectFiles files;
    std::int32_t Nused = 0;  ///< cases accepted
};

inline Project The_project;

}  // namespace tarven
