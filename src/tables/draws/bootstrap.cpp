#include "tables/draws/bootstrap.h"

#include <algorithm>
#include <vector>

namespace tarven {

std::int64_t Cases_of(const CellStore& store) {
    std::int64_t cases = 0;
    for (const std::int32_t count : store.counts) cases += count;
    return cases;
}

CellStore Bootstrap_sample(const CellStore& store, std::int32_t cases, RandomStream& stream) {
    std::vector<std::int64_t> up_to;  // cases of all cells up to this one
    std::int64_t total = 0;
    for (const std::int32_t count : store.counts) up_to.push_back(total += count);
    std::vector<std::int32_t> drawn(store.counts.size());
    if (total > 0)
        for (std::int32_t c = 0; c < cases; ++c) {
            const std::int64_t one = Random_int(stream, static_cast<std::uint32_t>(total));
            const auto cell = std::upper_bound(up_to.begin(), up_to.end(), one) - up_to.begin();
            ++drawn[static_cast<std::size_t>(cell)];
        }
    CellStore sample = store;
    sample.codes.clear();
    sample.counts.clear();
    for (std::size_t k = 0; k < drawn.size(); ++k) {
        if (drawn[k] == 0) continue;
        const std::uint8_t* codes = store.Cell(static_cast<std::int64_t>(k) + 1);
        sample.codes.insert(sample.codes.end(), codes, codes + store.N);
        sample.counts.push_back(drawn[k]);
    }
    return sample;
}

}  // namespace tarven
