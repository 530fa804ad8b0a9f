#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "project/cell_store.h"
#include "project/data_files.h"
#include "project/project.h"
#include "project/score_variable.h"

namespace tarven {

/// The data of the project in memory: DATA, one code a variable a case, and TABdata, one cell a
/// response pattern. Either, both or neither is there.
struct Data {
    bool data_ready = false;
    bool tabdata_ready = false;
    std::vector<std::uint8_t> DATA;  ///< code of variable v of case c at (c-1)*N + v-1
    CellStore TABdata;
    std::int32_t Ntabcells = 0;  ///< cells of TABdata, or of the TAB file
    int Ndata_arrays = 0;        ///< arrays of 655000 codes that DATA fills
    std::vector<int> dims;       ///< dim of each variable when DATA or TABdata was read

    int Ntabcount_arrays() const { return TABdata.Ntabcount_arrays; }
};

inline Data The_data;

/// Where the cases of a command come from.
enum class DataSource : std::uint8_t {
    dataset = 1,  ///< DATA in memory
    tabdata = 2,  ///< TABdata in memory
    sysfile = 3,
    tabfile = 4,
    datfile = 5,
    none = 6
};

/// The cases as computation reads them: the variables, what is in memory, which files there are.
/// Nothing is owned; what stands behind the references must outlive the record.
struct CasesAtHand {
    const ProjectDefinition& definition;
    const Data& data;
    const ProjectFiles& files;
    std::int64_t Nused = 0;                ///< cases accepted
    const ScoreVariable* score = nullptr;  ///< that tables may hold as "#"; null: there is none
};

/// The cases of the workspace.
CasesAtHand Cases_of_project();

/// What decides on the source.
struct DataAtHand {
    std::int64_t Nused = 0;
    std::int64_t Ntabcells = 0;
    int N = 0;
    bool data_ready = false;
    bool tabdata_ready = false;
    bool DAT = false;
    bool SYS = false;
    bool TAB = false;
};

/// The cheapest source: DATA and TABdata in memory before files, and cases before cells when they
/// are not larger, N*Nused <= (N+1)*Ntabcells.
DataSource Data_source(const DataAtHand& at_hand);
DataAtHand Data_at_hand(const CasesAtHand& cases);
/// The cheapest source of the workspace.
DataSource Data_source();

/// "Data source: TABdata in memory" and so on.
std::string Data_source_text(DataSource source);

/// Gives every case of DATA or TABdata to `take`, cells with their counts, until it returns false.
/// A call of `take` costs nothing beyond what it does.
template <class Take>
void Take_cases_in_memory(const CasesAtHand& cases, DataSource source, Take take) {
    if (source == DataSource::tabdata) {
        const CellStore& store = cases.data.TABdata;
        const std::uint8_t* codes = store.codes.data();
        for (const std::int32_t count : store.counts) {
            if (!take(codes, count)) return;
            codes += store.N;
        }
        return;
    }
    const auto N = static_cast<std::size_t>(cases.definition.N);
    const std::vector<std::uint8_t>& codes = cases.data.DATA;
    for (std::size_t at = 0; N > 0 && at + N <= codes.size(); at += N)
        if (!take(codes.data() + at, 1)) return;
}

/// Gives every case of a source to `take`, cells with their counts. What went wrong, or empty.
std::string Read_cases(const CasesAtHand& cases, DataSource source, const TakeCase& take);

/// Fills DATA from the SYS file or, without one, from the DAT file; Nused is counted. The message
/// of the failure, DATA staying as it was, or empty.
std::string Read_data();

/// Fills TABdata from the TAB file. The message of the failure, TABdata staying as it was, or
/// empty.
std::string Read_TAB_file();

/// Gives up DATA and TABdata.
void Dispose_data();
/// Gives them up when they were read under other variables than the project has now.
void Dispose_data_of_other_variables();

}  // namespace tarven
