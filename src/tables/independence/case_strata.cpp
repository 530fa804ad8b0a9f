#include "tables/independence/case_strata.h"

#include <algorithm>
#include <array>
#include <bit>
#include <numeric>
#include <utility>

#include "tables/table/tabulate.h"

namespace tarven {

namespace {

std::size_t At(int v) {
    return static_cast<std::size_t>(v);
}

/// What a hypothesis reads of a pattern.
struct KeyOfStratum {
    struct Word {
        std::size_t word;
        std::uint64_t mask;  ///< of the conditioning variables
    };
    std::vector<Word> words;     ///< ascending; those without conditioning variables left out
    std::uint64_t involved = 0;  ///< bit v-1 of every variable of the hypothesis
    PackedCases::Place x, y;
    /// Where the conditioning variables stand; neighbours in a word are one piece.
    struct Piece {
        PackedCases::Place place;
        int bits;
    };
    std::vector<Piece> pieces;  ///< ascending
    int bits = 0;               ///< of all of them
};

KeyOfStratum Key_of(const PackedCases& packed, const Hypothesis& row, const TestedPair& pair) {
    KeyOfStratum key;
    key.x = packed.place[At(pair.X)];
    key.y = packed.place[At(pair.Y)];
    key.involved = std::uint64_t{1} << (pair.X - 1) | std::uint64_t{1} << (pair.Y - 1);
    for (const int v : Conditioning_variables(row)) {
        const PackedCases::Place& place = packed.place[At(v)];
        key.involved |= std::uint64_t{1} << (v - 1);
        if (key.words.empty() || key.words.back().word != place.word)
            key.words.push_back({place.word, 0});
        key.words.back().mask |= place.mask << place.shift;
        const int bits = std::popcount(place.mask);
        key.bits += bits;
        KeyOfStratum::Piece* last = key.pieces.empty() ? nullptr : &key.pieces.back();
        if (!last || last->place.word != place.word ||
            static_cast<int>(last->place.shift) + last->bits != static_cast<int>(place.shift)) {
            key.pieces.push_back({place, bits});
            continue;
        }
        last->place.mask |= place.mask << last->bits;
        last->bits += bits;
    }
    return key;
}

/// Ascending order of the bits from `from` on, `bits` of them: counting sorts of one digit after
/// another, the lowest first.
void Sort_by_bits(std::vector<std::uint64_t>& keys, std::vector<std::uint64_t>& scratch, int from,
                  int bits) {
    constexpr int MostDigitBits = 11;
    if (keys.empty() || bits == 0) return;
    const int passes = (bits + MostDigitBits - 1) / MostDigitBits;
    const int width = (bits + passes - 1) / passes;
    const std::uint64_t digit_mask = (std::uint64_t{1} << width) - 1;
    std::array<std::uint32_t, std::size_t{1} << MostDigitBits> place;
    scratch.resize(keys.size());
    for (int pass = 0; pass < passes; ++pass) {
        const int shift = from + pass * width;
        const auto digit = [&](std::uint64_t key) { return key >> shift & digit_mask; };
        place.fill(0);
        for (const std::uint64_t key : keys) ++place[digit(key)];
        if (place[digit(keys[0])] == keys.size()) continue;
        std::uint32_t before = 0;
        for (std::uint32_t& one : place) before += std::exchange(one, before);
        for (const std::uint64_t key : keys) scratch[place[digit(key)]++] = key;
        keys.swap(scratch);
    }
}

/// Puts the patterns of a hypothesis into groups of the same conditions. Where conditions and the
/// number of a pattern fit into one word, these words are sorted, which is several times faster
/// than what any number of words needs: a hash table, and a sort of the groups.
class Grouping {
  public:
    Grouping(const PackedCases& packed, const KeyOfStratum& key, StrataMemory& memory)
        : packed_(packed), key_(key), memory_(memory) {}

    /// Groups the patterns that the hypothesis uses, and finds the informative groups in the order
    /// of a table's slices. Returns the cases of all these patterns.
    std::int64_t Find_strata() {
        const auto number_bits = static_cast<int>(std::bit_width(packed_.patterns()));
        if (key_.bits + number_bits <= 64) {
            const std::int64_t cases = Sort_narrow(number_bits);
            Take_informative();
            return cases;
        }
        const std::int64_t cases = Group();
        Sort_patterns();
        Take_informative();
        std::sort(memory_.strata.begin(), memory_.strata.end(),
                  [this](std::uint32_t a, std::uint32_t b) { return Before(a, b); });
        return cases;
    }

    std::span<const std::uint32_t> Patterns_of(std::uint32_t group) const {
        return {memory_.sorted.data() + memory_.begin[group],
                memory_.sorted.data() + memory_.begin[group + 1]};
    }

    int Category(const PackedCases::Place& place, std::size_t pattern) const {
        return static_cast<int>(packed_.keys[pattern * packed_.words + place.word] >> place.shift &
                                place.mask);
    }

  private:
    static constexpr std::uint32_t None = UINT32_MAX;

    /// Sorts words of conditions, the last variable highest, and below them `number_bits` of the
    /// pattern's number.
    std::int64_t Sort_narrow(int number_bits) {
        std::int64_t cases = 0;
        memory_.keys.clear();
        for (std::size_t k = 0; k < packed_.patterns(); ++k) {
            if (packed_.missing[k] & key_.involved) continue;
            cases += packed_.counts[k];
            const std::uint64_t* pattern = packed_.keys.data() + k * packed_.words;
            std::uint64_t narrow = 0;
            int at = number_bits;
            for (const auto& [place, bits] : key_.pieces) {
                narrow |= (pattern[place.word] >> place.shift & place.mask) << at;
                at += bits;
            }
            memory_.keys.push_back(narrow | k);
        }
        Sort_by_bits(memory_.keys, memory_.scratch, number_bits, key_.bits);
        memory_.sorted.clear();
        memory_.begin.clear();
        const std::uint64_t number = (std::uint64_t{1} << number_bits) - 1;
        std::uint64_t before = 0;
        for (const std::uint64_t key : memory_.keys) {
            const bool again = !memory_.sorted.empty() && ((key ^ before) & ~number) == 0;
            if (!again) memory_.begin.push_back(static_cast<std::uint32_t>(memory_.sorted.size()));
            memory_.sorted.push_back(static_cast<std::uint32_t>(key & number));
            before = key;
        }
        memory_.begin.push_back(static_cast<std::uint32_t>(memory_.sorted.size()));
        return cases;
    }

    /// The groups in which X and Y both vary.
    void Take_informative() {
        memory_.strata.clear();
        for (std::uint32_t g = 0; g + 1 < memory_.begin.size(); ++g)
            if (Informative(g)) memory_.strata.push_back(g);
    }

    /// Gives every pattern that the hypothesis uses its group; returns their cases.
    std::int64_t Group() {
        const std::size_t n = packed_.patterns();
        memory_.slots.assign(std::bit_ceil(2 * n + 1), 0);
        memory_.group.resize(n);
        memory_.first.clear();
        std::int64_t cases = 0;
        for (std::size_t k = 0; k < n; ++k) {
            memory_.group[k] = None;
            if (packed_.missing[k] & key_.involved) continue;
            cases += packed_.counts[k];
            memory_.group[k] = Group_of(k);
        }
        return cases;
    }

    /// Puts the patterns of each group together.
    void Sort_patterns() {
        std::vector<std::uint32_t>& begin = memory_.begin;
        begin.assign(memory_.first.size() + 1, 0);
        for (const std::uint32_t g : memory_.group)
            if (g != None) ++begin[g + 1];
        std::partial_sum(begin.begin(), begin.end(), begin.begin());
        memory_.sorted.resize(begin.back());
        for (std::size_t k = packed_.patterns(); k-- > 0;)
            if (const std::uint32_t g = memory_.group[k]; g != None)
                memory_.sorted[--begin[g + 1]] = static_cast<std::uint32_t>(k);
        // Each begin[g + 1] has come down to where group g begins.
        begin.erase(begin.begin());
        begin.push_back(static_cast<std::uint32_t>(memory_.sorted.size()));
    }

    std::uint32_t Group_of(std::size_t k) {
        const std::size_t last = memory_.slots.size() - 1;
        for (std::size_t slot = Hash(k) & last;; slot = (slot + 1) & last) {
            const std::uint32_t group = memory_.slots[slot];
            if (group == 0) {
                memory_.first.push_back(static_cast<std::uint32_t>(k));
                memory_.slots[slot] = static_cast<std::uint32_t>(memory_.first.size());
                return memory_.slots[slot] - 1;
            }
            if (Same(k, memory_.first[group - 1])) return group - 1;
        }
    }

    std::size_t Hash(std::size_t k) const {
        std::uint64_t hash = 0;
        for (const auto& [word, mask] : key_.words) {
            hash = (hash ^ (packed_.keys[k * packed_.words + word] & mask)) * 0x9E3779B97F4A7C15U;
            hash ^= hash >> 29;
        }
        return static_cast<std::size_t>(hash);
    }

    bool Same(std::size_t a, std::size_t b) const {
        const std::uint64_t* one = packed_.keys.data() + a * packed_.words;
        const std::uint64_t* other = packed_.keys.data() + b * packed_.words;
        std::uint64_t difference = 0;
        for (const auto& [word, mask] : key_.words) difference |= (one[word] ^ other[word]) & mask;
        return difference == 0;
    }

    bool Before(std::uint32_t a, std::uint32_t b) const {
        const std::uint64_t* one = packed_.keys.data() + memory_.first[a] * packed_.words;
        const std::uint64_t* other = packed_.keys.data() + memory_.first[b] * packed_.words;
        for (auto w = key_.words.rbegin(); w != key_.words.rend(); ++w) {
            const std::uint64_t p = one[w->word] & w->mask, q = other[w->word] & w->mask;
            if (p != q) return p < q;
        }
        return false;
    }

    bool Informative(std::uint32_t group) const {
        const auto patterns = Patterns_of(group);
        const auto varies = [&](const PackedCases::Place& place) {
            return std::any_of(patterns.begin() + 1, patterns.end(), [&](std::uint32_t k) {
                return Category(place, k) != Category(place, patterns.front());
            });
        };
        return patterns.size() > 1 && varies(key_.x) && varies(key_.y);
    }

    const PackedCases& packed_;
    const KeyOfStratum& key_;
    StrataMemory& memory_;
};

/// Whether Z has more combinations than these strata.
bool More_combinations(const PackedCases& packed, const Hypothesis& row, std::int64_t strata) {
    std::int64_t combinations = 1;
    for (const int v : Conditioning_variables(row)) {
        combinations *= packed.DIM[At(v)];
        if (combinations > strata) return true;
    }
    return combinations > strata;
}

/// Puts equal patterns together. Their order means nothing.
void Merge_patterns(PackedCases& packed) {
    const std::size_t n = packed.patterns(), words = packed.words;
    std::vector<std::uint32_t> order(n);
    std::iota(order.begin(), order.end(), 0U);
    const auto key = [&](std::uint32_t k) { return packed.keys.data() + k * words; };
    std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        return std::lexicographical_compare(key(a), key(a) + words, key(b), key(b) + words);
    });
    PackedCases merged = packed;
    merged.keys.clear();
    merged.missing.clear();
    merged.counts.clear();
    for (const std::uint32_t k : order) {
        const bool again = !merged.counts.empty() &&
                           std::equal(key(k), key(k) + words,
                                      merged.keys.end() - static_cast<std::ptrdiff_t>(words));
        if (again) {
            merged.counts.back() += packed.counts[k];
            continue;
        }
        merged.keys.insert(merged.keys.end(), key(k), key(k) + words);
        merged.missing.push_back(packed.missing[k]);
        merged.counts.push_back(packed.counts[k]);
    }
    packed = std::move(merged);
}

}  // namespace

PackedCases Packed_cases_of(std::span<const int> dims, std::span<const int> types) {
    PackedCases packed;
    packed.nvar = static_cast<int>(dims.size());
    std::uint32_t bit = 0;
    for (int v = 1; v <= packed.nvar; ++v) {
        packed.DIM[At(v)] = dims[At(v - 1)];
        packed.VTYPE[At(v)] = types[At(v - 1)];
        const auto width =
            static_cast<std::uint32_t>(std::bit_width(static_cast<unsigned>(dims[At(v - 1)])));
        if (bit % 64 + width > 64) bit += 64 - bit % 64;
        packed.place[At(v)] = {bit / 64, bit % 64, (std::uint64_t{1} << width) - 1};
        bit += width;
    }
    packed.words = (bit + 63) / 64;
    return packed;
}

void Add_cases(PackedCases& packed, const std::uint8_t* codes, std::int32_t count) {
    const std::size_t at = packed.keys.size();
    packed.keys.resize(at + packed.words);
    std::uint64_t missing = 0;
    for (int v = 1; v <= packed.nvar; ++v) {
        const int code = codes[v - 1];
        if (code < 1 || code > packed.DIM[At(v)]) {
            missing |= std::uint64_t{1} << (v - 1);
            continue;
        }
        const PackedCases::Place& place = packed.place[At(v)];
        packed.keys[at + place.word] |= static_cast<std::uint64_t>(code) << place.shift;
    }
    packed.missing.push_back(missing);
    packed.counts.push_back(count);
}

Result<PackedCases> Pack_cases(const CasesAtHand& cases, const StopCheck& stop) {
    std::vector<int> dims, types;
    for (int v = 1; v <= cases.definition.N; ++v) {
        dims.push_back(cases.definition.variables[At(v)].dim);
        types.push_back(cases.definition.variables[At(v)].vtype);
    }
    PackedCases packed = Packed_cases_of(dims, types);
    const DataSource source = Table_source(Data_at_hand(cases), MaxTableVariables);
    if (source == DataSource::none) return Failed{.messages = {"Data is not available"}};
    bool stopped = false;
    std::int64_t taken = 0;
    const std::string failure =
        Read_cases(cases, source, [&](const std::uint8_t* codes, std::int32_t count) {
            stopped = stop && ++taken % (1 << 14) == 0 && stop();
            if (!stopped) Add_cases(packed, codes, count);
            return !stopped;
        });
    if (stopped)
        return Failed{.messages = {"Stopped: the cases have not been counted"}, .stopped = true};
    if (!failure.empty()) return Failed{.messages = {failure}};
    if (source != DataSource::tabdata && source != DataSource::tabfile) Merge_patterns(packed);
    return packed;
}

StrataFound For_each_stratum(const PackedCases& packed, const Hypothesis& row, StrataMemory& memory,
                             const std::function<void(const TwoWayTable&)>& visit) {
    const TestedPair pair = Tested_pair(row);
    assert(pair.proper() && "a hypothesis tests two variables");
    const KeyOfStratum key = Key_of(packed, row, pair);
    Grouping grouping(packed, key, memory);
    StrataFound found;
    found.cases = grouping.Find_strata();
    for (const std::uint32_t stratum : memory.strata) {
        memory.counts.Shape(packed.DIM[At(pair.X)], packed.DIM[At(pair.Y)]);
        for (const std::uint32_t k : grouping.Patterns_of(stratum))
            memory.counts(grouping.Category(key.x, k), grouping.Category(key.y, k)) +=
                packed.counts[k];
        Fill_margins(memory.counts);
        visit(memory.counts);
    }
    found.strata = static_cast<std::int64_t>(memory.strata.size());
    found.missing_slices = More_combinations(packed, row, found.strata);
    return found;
}

GammaFromCases Gamma_from_cases(const PackedCases& packed, const Hypothesis& row,
                                StrataMemory& memory) {
    const TestedPair pair = Tested_pair(row);
    GammaFromCases result;
    if (!Gamma_is_defined(packed, pair.X, pair.Y)) return result;
    double P = 0, Q = 0, V = 0;
    result.found = For_each_stratum(packed, row, memory, [&](const TwoWayTable& counts) {
        const GammaRecord gamma = Gamma_without_p(counts);
        P += gamma.P;
        Q += gamma.Q;
        V += gamma.V;
    });
    result.tested = result.found.strata > 0;
    if (result.tested) result.gamma = Partial_gamma(P, Q, V);
    return result;
}

bool Gamma_is_defined(const PackedCases& packed, int x, int y) {
    return Gamma_is_defined(packed.DIM[At(x)], packed.VTYPE[At(x)], packed.DIM[At(y)],
                            packed.VTYPE[At(y)]);
}

}  // namespace tarven
