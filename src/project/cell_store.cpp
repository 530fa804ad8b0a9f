#include "project/cell_store.h"

#include <new>

namespace tarven {

namespace {

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

std::string Failure_of_overflow(int N) {
    return MaxTableCells * N > MaxDataBytes ? "Failure initializing TABdata"
                                            : "TABDATA not possible";
}

void Dispose_TABdata(CellStore& store) {
    store = CellStore();
}

}  // namespace tarven
