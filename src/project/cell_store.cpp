#include "project/cell_store.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <new>

#include "project/project.h"
#include "shell/files.h"
#include "shell/user.h"

namespace tarven {

namespace {

bool Holds(const CellStore& store, std::int64_t cell) {
    return cell >= 1 && cell <= store.Ncells();
}

bool Allocate(CellStore& store, std::int64_t ncells) {
    try {
        store.codes.resize(static_cast<std::size_t>(ncells * store.N));
        store.counts.resize(static_cast<std::size_t>(ncells));
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

}  // namespace

DataPoint Data_point(std::int64_t caseno, int Nvar, int vno, std::int64_t size, int arrays) {
    DataPoint place;
    place.n = (caseno - 1) * Nvar + vno;
    place.array_no = place.n <= 0 ? 0 : Arrays_for(place.n, size);
    place.point = place.n - size * (place.array_no - 1);
    place.ok = place.array_no >= 1 && place.array_no <= arrays;
    return place;
}

void Report_data_point(std::int64_t caseno, int Nvar, int vno, const DataPoint& place, int arrays) {
    const std::string failure = Write_text_file(
        The_project.ProjectPath / "dataerror.txt",
        {fmt::format("caseno = {}", caseno), fmt::format("Nvar   = {}", Nvar),
         fmt::format("vno    = {}", vno), fmt::format("n      = {}", place.n),
         fmt::format("array_no = {}", place.array_no), fmt::format("point    = {}", place.point)});
    if (!failure.empty()) ShowMessage(failure);
    ShowMessage(
        fmt::format("Data point error: array_no = {}  of {} data arrays", place.array_no, arrays));
}

std::string Init_TABdata(CellStore& store, std::int64_t ncells, int N) {
    Dispose_TABdata(store);
    const bool growing = ncells == 0;
    if (N < 1 || N > MaxVariables || ncells < 0 || ncells > MaxDataBytes ||
        Arrays_for(ncells * N, DataArraySize) > MaxDataArrays)
        return "Failure initializing TABdata";
    if (Arrays_for(ncells, CountArraySize) > MaxCountArrays) return "TABDATA not possible";
    store.N = N;
    store.Ntabdata_arrays =
        growing ? MaxDataArrays : static_cast<int>(Arrays_for(ncells * N, DataArraySize));
    store.Ntabcount_arrays =
        growing ? MaxCountArrays : static_cast<int>(Arrays_for(ncells, CountArraySize));
    if (!Allocate(store, ncells)) {
        Dispose_TABdata(store);
        return "Not enough memory for TABdata";
    }
    return {};
}

void Dispose_TABdata(CellStore& store) {
    store = CellStore();
}

bool DefineTABdataCell(CellStore& store, std::int64_t cell, const std::uint8_t* codes,
                       std::int32_t count) {
    const DataPoint first = Data_point(cell, store.N, 1, DataArraySize, store.Ntabdata_arrays);
    const DataPoint last = Data_point(cell, store.N, store.N, DataArraySize, store.Ntabdata_arrays);
    if (!first.ok || !last.ok) {
        Report_data_point(cell, store.N, first.ok ? store.N : 1, first.ok ? last : first,
                          store.Ntabdata_arrays);
        ShowMessage("QVDATA5 - error in DefineTABdataCell");
        return false;
    }
    const DataPoint place = Data_point(cell, 1, 1, CountArraySize, store.Ntabcount_arrays);
    if (!place.ok) {
        ShowMessage(
            fmt::format("QVDATA5 - tabcount error in DefineTABdataCell. tabcellno {} "
                        "arrays {} array_no {}",
                        cell, store.Ntabcount_arrays, place.array_no));
        return false;
    }
    if (cell > store.Ncells() && !Allocate(store, cell)) {
        ShowMessage("Not enough memory for TABdata");
        return false;
    }
    std::copy_n(codes, store.N, store.codes.begin() + (cell - 1) * store.N);
    store.counts[static_cast<std::size_t>(cell - 1)] = count;
    return true;
}

bool GetTABdataCell(const CellStore& store, std::int64_t cell, std::uint8_t (&codes)[86]) {
    std::fill(std::begin(codes), std::end(codes), std::uint8_t{255});
    if (!Holds(store, cell)) {
        ShowMessage("QVDATA5 - error in GetTABdataCell");
        return false;
    }
    std::copy_n(store.Cell(cell), store.N, codes + 1);
    return true;
}

std::int32_t GetTABdataCount(const CellStore& store, std::int64_t cell) {
    if (Holds(store, cell)) return store.counts[static_cast<std::size_t>(cell - 1)];
    ShowMessage("QVDATA5 - error in GetTABdataCount");
    return 0;
}

bool Increment_cell(CellStore& store, std::int64_t cell) {
    return Add_to_cell(store, cell, 1);
}

bool Add_to_cell(CellStore& store, std::int64_t cell, std::int32_t n) {
    if (!Holds(store, cell)) return false;
    std::int32_t& count = store.counts[static_cast<std::size_t>(cell - 1)];
    const std::int64_t sum = std::int64_t{count} + n;
    if (sum < std::numeric_limits<std::int32_t>::min() ||
        sum > std::numeric_limits<std::int32_t>::max())
        return false;
    count = static_cast<std::int32_t>(sum);
    return true;
}

}  // namespace tarven
