#include "project/data.h"

#include <fmt/format.h>

#include <functional>
#include <new>

#include "project/code_line.h"

namespace tarven {

namespace {

/// Cases of DATA, as long as they fit; `too_large` tells that they do not.
TakeCase Append_to(std::vector<std::uint8_t>& codes, int N, bool& too_large) {
    return [&codes, N, &too_large](const std::uint8_t* code, std::int32_t) {
        too_large = static_cast<std::int64_t>(codes.size()) + N > MaxDataBytes;
        if (too_large) return false;
        codes.insert(codes.end(), code, code + N);
        return true;
    };
}

}  // namespace

DataSource Data_source(const DataAtHand& at_hand) {
    const bool cheaper = at_hand.N * at_hand.Nused <= (at_hand.N + 1) * at_hand.Ntabcells;
    if (at_hand.data_ready && (!at_hand.tabdata_ready || cheaper)) return DataSource::dataset;
    if (at_hand.tabdata_ready) return DataSource::tabdata;
    if (!at_hand.SYS && !at_hand.TAB) return at_hand.DAT ? DataSource::datfile : DataSource::none;
    if (at_hand.SYS && (!at_hand.TAB || cheaper)) return DataSource::sysfile;
    return DataSource::tabfile;
}

CasesAtHand Cases_of_project() {
    return {The_project, The_data, The_project.files, The_project.Nused,
            The_score.groups() > 0 ? &The_score : nullptr};
}

DataAtHand Data_at_hand(const CasesAtHand& cases) {
    return {.Nused = cases.Nused,
            .Ntabcells = cases.data.Ntabcells,
            .N = cases.definition.N,
            .data_ready = cases.data.data_ready,
            .tabdata_ready = cases.data.tabdata_ready,
            .DAT = cases.files.DAT.exists,
            .SYS = cases.files.SYS.exists,
            .TAB = cases.files.TAB.exists};
}

DataSource Data_source() {
    return Data_source(Data_at_hand(Cases_of_project()));
}

std::string Data_source_text(DataSource source) {
    switch (source) {
        case DataSource::dataset:
            return "Data source: Dataset in memory";
        case DataSource::tabdata:
            return "Data source: TABdata in memory";
        case DataSource::sysfile:
            return "Data source: SYSfile";
        case DataSource::tabfile:
            return "Data source: TABfile";
        case DataSource::datfile:
            return "Data source: DATfile";
        default:
            return "Data source: No data";
    }
}

std::string Read_cases(const CasesAtHand& cases, DataSource source, const TakeCase& take) {
    const std::vector<int> dims = Dimensions(cases.definition);
    const ProjectFiles& files = cases.files;
    switch (source) {
        case DataSource::dataset:
        case DataSource::tabdata:
            Take_cases_in_memory(cases, source, std::cref(take));
            return {};
        case DataSource::sysfile: {
            LineReader file(files.SYS.path);
            return Read_SYS_cases(file, dims, take);
        }
        case DataSource::tabfile: {
            LineReader file(files.TAB.path);
            return Read_TAB_cells(file, dims, take);
        }
        case DataSource::datfile: {
            LineReader file(files.DAT.path);
            RecordCounts counts;
            return Read_DAT_cases(file, Make_recoding(cases.definition), counts, take);
        }
        default:
            return "No data";
    }
}

std::string Read_data() {
    const int N = The_project.N;
    if (N < 1) return "No project";
    std::vector<std::uint8_t> codes;
    bool too_large = false;
    std::string failure;
    try {
        const DataSource source =
            The_project.files.SYS.exists ? DataSource::sysfile : DataSource::datfile;
        failure = Read_cases(Cases_of_project(), source, Append_to(codes, N, too_large));
        codes.shrink_to_fit();
    } catch (const std::bad_alloc&) {
        return "Insufficient memory for data";
    }
    if (too_large) return "Data too large. Try to use MAKE to create TABDATA";
    if (!failure.empty()) return "FAILURE READING DATASET\n" + failure;
    The_data.DATA = std::move(codes);
    The_data.data_ready = true;
    The_data.dims = Dimensions(The_project);
    const auto bytes = static_cast<std::int64_t>(The_data.DATA.size());
    The_data.Ndata_arrays = static_cast<int>(Arrays_for(bytes, DataArraySize));
    The_project.Nused = static_cast<std::int32_t>(bytes / N);
    return {};
}

std::string Read_TAB_file() {
    if (The_project.N < 1) return "No project";
    CellStore store;
    std::int64_t cases = 0;
    LineReader file(The_project.files.TAB.path);
    const std::vector<int> dims = Dimensions(The_project);
    std::string failure = Read_TAB_store(file, dims, store, cases);
    if (!failure.empty()) return failure;
    The_data.TABdata = std::move(store);
    The_data.tabdata_ready = true;
    The_data.Ntabcells = static_cast<std::int32_t>(The_data.TABdata.Ncells());
    The_data.dims = dims;
    return {};
}

void Dispose_data() {
    The_data = Data();
}

void Dispose_data_of_other_variables() {
    if (The_data.dims != Dimensions(The_project)) Dispose_data();
}

}  // namespace tarven
