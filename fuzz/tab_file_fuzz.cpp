// Whatever a TAB file holds, a store that is made of it is in strictly ascending order with counts
// of 1 or more, and a file that does not fit gives no store.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "project/data_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarven;
    const std::vector<int> dims = {2, 57, 3};
    LineReader file({reinterpret_cast<const char*>(data), size}, "x.TAB");
    CellStore store;
    std::int64_t cases = 0;
    const std::string error = Read_TAB_store(file, dims, store, cases);
    if (!error.empty() && store.Ncells() != 0) std::abort();
    std::int64_t sum = 0;
    for (std::int64_t cell = 1; cell <= store.Ncells(); ++cell) {
        const std::uint8_t* codes = store.Cell(cell);
        for (std::size_t v = 0; v < 3; ++v)
            if (codes[v] > dims[v]) std::abort();
        if (cell > 1 && !std::lexicographical_compare(codes - 3, codes, codes, codes + 3))
            std::abort();
        const std::int32_t count = store.counts[static_cast<std::size_t>(cell - 1)];
        if (count < 1) std::abort();
        sum += count;
    }
    if (sum != cases) std::abort();
    return 0;
}
