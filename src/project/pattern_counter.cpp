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
    virtual void Add(const std::uint8_t* codes) = 0;
    /// Counts what is pending.
    virtual void Settle() = 0;
    virtual std::int64_t Ncells() const = 0;
    virtual std::string Move_to(CellStore& store) = 0;

    int N() const { return static_cast<int>(places.size()); }
    std::vector<Place> places;
    bool overflowed = false;
};

/// Patterns of W words, in slots of open addressing; a count of 0 marks an empty slot. Cases wait
/// in small batches between the fetching of their slots and the counting, since the slots of a
/// large table are far away in memory.
template <std::size_t W>
struct PatternCounter::CountsOfWords : PatternCounter::Counts {
    using Key = std::array<std::uint64_t, W>;
    struct Entry {
        Key key;
        std::int32_t count;
    };
    static constexpr std::size_t FirstSlots = 1u << 12;
    static constexpr std::size_t Batch = 32;

    explicit CountsOfWords(std::vector<Place> p) : Counts(std::move(p)), slots(FirstSlots) {}

    static std::uint64_t Hash(const Key& key) {
        std::uint64_t hash = 0;
        for (const std::uint64_t word : key) hash = Mixed(hash ^ word);
        return hash;
    }

    void Add(const std::uint8_t* codes) override {
        Key key{};
        for (const Place& place : places)
            key[place.word] |= static_cast<std::uint64_t>(*codes++) << place.shift;
        keys[pending] = key;
        hashes[pending] = Hash(key);
        __builtin_prefetch(&slots[hashes[pending] & (slots.size() - 1)]);
        if (++pending == Batch) Settle();
    }

    void Settle() override {
        for (std::size_t k = 0; k < pending; ++k) Count(keys[k], hashes[k]);
        pending = 0;
    }

    void Count(const Key& key, std::uint64_t hash) {
        const std::size_t mask = slots.size() - 1;
        std::size_t slot = hash & mask;
        for (; slots[slot].count != 0; slot = (slot + 1) & mask)
            if (slots[slot].key == key) {
                ++slots[slot].count;
                return;
            }
        if (!Cells_fit(Ncells() + 1, N())) {
            overflowed = true;
            return;
        }
        slots[slot] = {key, 1};
        if (2 * ++used > slots.size()) Grow();
    }

    void Grow() {
        const std::vector<Entry> old = std::move(slots);
        slots = std::vector<Entry>(2 * old.size());
        const std::size_t mask = slots.size() - 1;
        for (const Entry& entry : old) {
            if (entry.count == 0) continue;
            std::size_t slot = Hash(entry.key) & mask;
            while (slots[slot].count != 0) slot = (slot + 1) & mask;
            slots[slot] = entry;
        }
    }

    std::int64_t Ncells() const override { return static_cast<std::int64_t>(used); }

    std::string Move_to(CellStore& store) override {
        Settle();
        std::vector<Entry> entries = std::move(slots);
        slots = std::vector<Entry>(FirstSlots);
        std::erase_if(entries, [](const Entry& entry) { return entry.count == 0; });
        std::sort(entries.begin(), entries.end(),
                  [](const Entry& a, const Entry& b) { return a.key < b.key; });
        const std::string failure = Init_TABdata(store, Ncells(), N());
        used = 0;
        overflowed = false;
        if (!failure.empty()) return failure;
        std::uint8_t* code = store.codes.data();
        std::size_t cell = 0;
        for (const Entry& entry : entries) {
            for (const Place& place : places)
                *code++ =
                    static_cast<std::uint8_t>(entry.key[place.word] >> place.shift) & place.mask;
            store.counts[cell++] = entry.count;
        }
        return {};
    }

    std::vector<Entry> slots;  ///< a power of two, at most half of them used
    std::size_t used = 0;
    std::array<Key, Batch> keys{};
    std::array<std::uint64_t, Batch> hashes{};
    std::size_t pending = 0;
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
