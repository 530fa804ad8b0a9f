#include "project/pattern_counter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>

namespace tarven {

namespace {

/// Where the code of a variable lies in the packed words.
struct Place {
    std::uint8_t word = 0;
    std::uint8_t shift = 0;
    std::uint8_t mask = 0;
};

/// Fields are given out from the highest bit of word 0 downward; none crosses a word.
std::vector<Place> Places_of(const std::vector<int>& dims, std::size_t& words) {
    std::vector<Place> places;
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

/// The finalizer of MurmurHash3 (Appleby, 2011, public domain): every bit of x reaches every bit.
std::uint64_t Mixed(std::uint64_t x) {
    x ^= x >> 33;
    x *= 0xff51afd7ed558ccdULL;
    x ^= x >> 33;
    x *= 0xc4ceb9fe1a85ec53ULL;
    x ^= x >> 33;
    return x;
}

}  // namespace

struct PatternCounter::Counts {
    explicit Counts(std::vector<Place> p) : places(std::move(p)) {}
    virtual ~Counts() = default;
    virtual bool Add(const std::uint8_t* codes) = 0;
    virtual std::int64_t Ncells() const = 0;
    virtual std::string Move_to(CellStore& store) = 0;

    int N() const { return static_cast<int>(places.size()); }
    std::vector<Place> places;
};

/// Patterns of W words. `slots` holds numbers of entries plus one, 0 for an empty slot; entries
/// stand in the order in which they were first met.
template <std::size_t W>
struct PatternCounter::CountsOfWords : PatternCounter::Counts {
    using Key = std::array<std::uint64_t, W>;
    struct Entry {
        Key key;
        std::int32_t count;
    };

    explicit CountsOfWords(std::vector<Place> p) : Counts(std::move(p)), slots(1u << 12) {}

    static std::uint64_t Hash(const Key& key) {
        std::uint64_t hash = 0;
        for (const std::uint64_t word : key) hash = Mixed(hash ^ word);
        return hash;
    }

    bool Add(const std::uint8_t* codes) override {
        Key key{};
        for (const Place& place : places)
            key[place.word] |= static_cast<std::uint64_t>(*codes++) << place.shift;
        const std::size_t mask = slots.size() - 1;
        std::size_t slot = Hash(key) & mask;
        for (; slots[slot] != 0; slot = (slot + 1) & mask) {
            Entry& entry = entries[slots[slot] - 1];
            if (entry.key == key) {
                ++entry.count;
                return true;
            }
        }
        if (!Cells_fit(Ncells() + 1, N())) return false;
        entries.push_back({key, 1});
        slots[slot] = static_cast<std::uint32_t>(entries.size());
        if (2 * entries.size() > slots.size()) Grow();
        return true;
    }

    void Grow() {
        std::fill(slots.begin(), slots.end(), 0);
        slots.resize(4 * slots.size());
        const std::size_t mask = slots.size() - 1;
        for (std::size_t k = 0; k < entries.size(); ++k) {
            std::size_t slot = Hash(entries[k].key) & mask;
            while (slots[slot] != 0) slot = (slot + 1) & mask;
            slots[slot] = static_cast<std::uint32_t>(k + 1);
        }
    }

    std::int64_t Ncells() const override { return static_cast<std::int64_t>(entries.size()); }

    std::string Move_to(CellStore& store) override {
        std::vector<std::uint32_t>().swap(slots);
        std::sort(entries.begin(), entries.end(),
                  [](const Entry& a, const Entry& b) { return a.key < b.key; });
        const std::string failure = Init_TABdata(store, Ncells(), N());
        if (failure.empty()) {
            std::uint8_t* code = store.codes.data();
            std::size_t cell = 0;
            for (const Entry& entry : entries) {
                for (const Place& place : places)
                    *code++ = static_cast<std::uint8_t>(entry.key[place.word] >> place.shift) &
                              place.mask;
                store.counts[cell++] = entry.count;
            }
        }
        std::vector<Entry>().swap(entries);
        slots.resize(1u << 12);
        return failure;
    }

    std::vector<Entry> entries;
    std::vector<std::uint32_t> slots;
};

PatternCounter::PatternCounter(const std::vector<int>& dims) {
    std::size_t words = 0;
    std::vector<Place> places = Places_of(dims, words);
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

bool PatternCounter::Add(const std::uint8_t* codes) {
    return counts_->Add(codes);
}

std::int64_t PatternCounter::Ncells() const {
    return counts_->Ncells();
}

std::string PatternCounter::Move_to(CellStore& store) {
    return counts_->Move_to(store);
}

}  // namespace tarven
