#include "project/pattern_counter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <utility>

namespace tarven {

/// Where the code of a variable lies in the packed words.
struct PlaceOfCode {
    std::uint8_t word = 0;
    std::uint8_t shift = 0;
    std::uint8_t mask = 0;
};

namespace {

/// Fields are given out from the highest bit of word 0 downward; none crosses a word.
std::vector<PlaceOfCode> Places_of(const std::vector<int>& dims, std::size_t& words) {
    std::vector<PlaceOfCode> places;
    std::size_t word = 0;
    int free = 64;
    for (const int dim : dims) {
        assert(dim >= 0 && dim <= 255 && "a category code is one byte");
        const int width = std::max(1, static_cast<int>(std::bit_width(static_cast<unsigned>(dim))));
        if (width > free) {
            ++word;
            free = 64;
        }
        free -= width;
        places.push_back({.word = static_cast<std::uint8_t>(word),
                          .shift = static_cast<std::uint8_t>(free),
                          .mask = static_cast<std::uint8_t>((1u << width) - 1)});
    }
    words = word + 1;
    return places;
}

constexpr std::size_t ChunkCases = 1u << 16;  // with its copy, half of a cache of one megabyte
constexpr std::size_t FewKeys = 256;
constexpr int MostDigitBits = 11;

/// Ascending order of keys of W words, by the `bits` highest bits of each: counting sorts of one
/// digit after another, the last word's first. What all keys share costs no pass.
template <std::size_t W>
void Sort_by_digits(std::vector<std::array<std::uint64_t, W>>& keys,
                    std::vector<std::array<std::uint64_t, W>>& scratch,
                    const std::array<int, W>& bits) {
    scratch.resize(keys.size());
    std::vector<std::uint32_t> place;
    for (std::size_t word = W; word-- > 0;) {
        if (bits[word] == 0) continue;
        const int passes = (bits[word] + MostDigitBits - 1) / MostDigitBits;
        const int width = (bits[word] + passes - 1) / passes;
        const std::size_t digits = std::size_t{1} << width;
        for (int pass = 0; pass < passes; ++pass) {
            const int shift = std::max(0, 64 - bits[word]) + pass * width;
            const auto digit = [&](const auto& key) { return key[word] >> shift & (digits - 1); };
            place.assign(digits, 0);
            for (const auto& key : keys) ++place[digit(key)];
            if (place[digit(keys[0])] == keys.size()) continue;
            std::uint32_t before = 0;
            for (std::uint32_t& one : place) before += std::exchange(one, before);
            for (const auto& key : keys) scratch[place[digit(key)]++] = key;
            keys.swap(scratch);
        }
    }
}

}  // namespace

struct PatternCounter::Counts {
    explicit Counts(std::vector<PlaceOfCode> p) : places(std::move(p)) {}
    virtual ~Counts() = default;
    virtual void Add(const std::uint8_t* codes) = 0;
    /// Brings everything into one run.
    virtual void Settle() = 0;
    virtual std::int64_t Ncells() const = 0;
    virtual std::string Move_to(CellStore& store) = 0;

    int N() const { return static_cast<int>(places.size()); }
    std::vector<PlaceOfCode> places;
    bool overflowed = false;
};

/// Patterns of W words. Cases are collected in a chunk; a full chunk is sorted and becomes a run,
/// patterns in ascending order with their counts. Runs are merged as soon as one is not at least
/// twice as long as the next, so they hold less than twice what the longest holds, and each case
/// is merged a logarithmic number of times.
template <std::size_t W>
struct PatternCounter::CountsOfWords : PatternCounter::Counts {
    using Key = std::array<std::uint64_t, W>;
    struct Entry {
        Key key;
        std::int32_t count;
    };
    /// Its memory may be longer than the run: it goes round from merge to merge, since fresh pages
    /// cost more than the merge itself.
    struct Run {
        std::vector<Entry> memory;
        std::size_t size = 0;
    };

    explicit CountsOfWords(std::vector<PlaceOfCode> p) : Counts(std::move(p)) {
        for (const PlaceOfCode& place : places) bits[place.word] = 64 - place.shift;
    }

    void Add(const std::uint8_t* codes) override {
        Key key{};
        for (const PlaceOfCode& place : places)
            key[W == 1 ? 0 : place.word] |= static_cast<std::uint64_t>(*codes++) << place.shift;
        chunk.push_back(key);
        if (chunk.size() == ChunkCases) Close_chunk();
    }

    /// As ==, which becomes a call of memcmp.
    static bool Same(const Key& a, const Key& b) {
        std::uint64_t differing = 0;
        for (std::size_t w = 0; w < W; ++w) differing |= a[w] ^ b[w];
        return differing == 0;
    }

    void Close_chunk() {
        if (chunk.empty() || overflowed) {
            chunk.clear();
            return;
        }
        if (W > 2 || chunk.size() < FewKeys)
            std::sort(chunk.begin(), chunk.end());
        else
            Sort_by_digits<W>(chunk, scratch, bits);
        Run run = Memory_for(chunk.size());
        Entry* const entries = run.memory.data();
        for (const Key& key : chunk) {
            if (run.size > 0 && Same(entries[run.size - 1].key, key))
                ++entries[run.size - 1].count;
            else
                entries[run.size++] = {key, 1};
        }
        chunk.clear();
        runs.push_back(std::move(run));
        while (runs.size() > 1 && runs[runs.size() - 2].size < 2 * runs.back().size)
            Merge_last_two();
        Check_limit();
    }

    /// A run without entries that has room for `size`.
    Run Memory_for(std::size_t size) {
        Run run;
        run.memory.swap(spare);
        if (run.memory.size() < size) run.memory = std::vector<Entry>(size);
        return run;
    }

    void Merge_last_two() {
        Run b = std::move(runs.back());
        runs.pop_back();
        Run& a = runs.back();
        Run merged = Memory_for(a.size + b.size);
        Entry* out = merged.memory.data();
        const Entry *x = a.memory.data(), *const x_end = x + a.size;
        const Entry *y = b.memory.data(), *const y_end = y + b.size;
        while (x != x_end && y != y_end) {
            // Without a jump, which would be foreseen only half of the time.
            const bool take_x = x->key <= y->key, take_y = y->key <= x->key;
            *out = take_x ? *x : *y;
            if (take_x && take_y) out->count += y->count;
            ++out;
            x += take_x;
            y += take_y;
        }
        out = std::copy(y, y_end, std::copy(x, x_end, out));
        merged.size = static_cast<std::size_t>(out - merged.memory.data());
        spare.swap(a.memory.size() > b.memory.size() ? a.memory : b.memory);
        a = std::move(merged);
    }

    void Check_limit() {
        if (Cells_fit(static_cast<std::int64_t>(runs.back().size), N())) return;
        overflowed = true;
        runs.clear();
    }

    void Settle() override {
        Close_chunk();
        while (runs.size() > 1) {
            Merge_last_two();
            Check_limit();
        }
        chunk = {};
        scratch = {};
        spare = {};
    }

    std::int64_t Ncells() const override {
        return runs.empty() ? 0 : static_cast<std::int64_t>(runs.back().size);
    }

    std::string Move_to(CellStore& store) override {
        Settle();
        std::string failure =
            overflowed ? Failure_of_overflow(N()) : Init_TABdata(store, Ncells(), N());
        const Run run = runs.empty() ? Run() : std::move(runs.back());
        runs.clear();
        overflowed = false;
        if (!failure.empty()) {
            Dispose_TABdata(store);
            return failure;
        }
        // Codes are bytes, which may lie anywhere; what does not change is not fetched anew for
        // each.
        std::uint8_t* code = store.codes.data();
        std::int32_t* const counts = store.counts.data();
        const PlaceOfCode* const first = places.data();
        const PlaceOfCode* const last = first + places.size();
        for (std::size_t k = 0; k < run.size; ++k) {
            const Entry entry = run.memory[k];
            for (const PlaceOfCode* place = first; place != last; ++place)
                *code++ =
                    static_cast<std::uint8_t>(entry.key[W == 1 ? 0 : place->word] >> place->shift) &
                    place->mask;
            counts[k] = entry.count;
        }
        return {};
    }

    std::array<int, W> bits{};  ///< used of each word, its highest
    std::vector<Key> chunk, scratch;
    std::vector<Run> runs;
    std::vector<Entry> spare;
};

PatternCounter::PatternCounter(const std::vector<int>& dims) {
    std::size_t words = 0;
    std::vector<PlaceOfCode> places = Places_of(dims, words);
    assert(!dims.empty() && dims.size() <= static_cast<std::size_t>(MaxVariables));
    // 59 variables of up to 8 bits: at most 8 words.
    if (words == 1)
        counts_ = std::make_unique<CountsOfWords<1>>(std::move(places));
    else if (words == 2)
        counts_ = std::make_unique<CountsOfWords<2>>(std::move(places));
    else if (words <= 4)
        counts_ = std::make_unique<CountsOfWords<4>>(std::move(places));
    else
        counts_ = std::make_unique<CountsOfWords<8>>(std::move(places));
}

PatternCounter::~PatternCounter() = default;
PatternCounter::PatternCounter(PatternCounter&&) noexcept = default;

void PatternCounter::Add(const std::uint8_t* codes) {
    counts_->Add(codes);
}

bool PatternCounter::Overflowed() {
    counts_->Settle();
    return counts_->overflowed;
}

std::int64_t PatternCounter::Ncells() {
    counts_->Settle();
    return counts_->Ncells();
}

std::string PatternCounter::Move_to(CellStore& store) {
    return counts_->Move_to(store);
}

}  // namespace tarven
