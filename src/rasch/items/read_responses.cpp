#include "rasch/items/read_responses.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <numeric>

namespace tarven {

namespace {

/// How often the user is asked whether to stop, in cases or cells.
constexpr std::int64_t CasesBetweenQuestions = 1 << 14;

/// Where a column of the patterns comes from, and what each code of it becomes.
struct Column {
    std::size_t place = 0;  ///< of the variable in a case, from 0
    std::array<std::uint8_t, 256> code{};
};

std::vector<Column> Columns_of(const GLLRM& model) {
    std::vector<Column> columns;
    for (int i = 1; i <= model.NITEMS; ++i) {
        const Item& item = model.ItemNo(i);
        Column column{.place = static_cast<std::size_t>(item.variable - 1)};
        column.code.fill(NoResponse);
        for (int c = 1; c <= item.item_dim; ++c)
            column.code[static_cast<std::size_t>(c)] =
                static_cast<std::uint8_t>(item.FlippedItem ? item.item_dim - c : c - 1);
        columns.push_back(column);
    }
    for (int x = 1; x <= model.NEXOGENE; ++x) {
        const ExogenousVariable& exo = model.ExoNo(x);
        Column column{.place = static_cast<std::size_t>(exo.variable - 1)};
        for (int c = 1; c <= exo.exo_dim; ++c)
            column.code[static_cast<std::size_t>(c)] = static_cast<std::uint8_t>(c);
        columns.push_back(column);
    }
    return columns;
}

/// Distinct rows of `width` bytes with counts, found by a hash table of their places with linear
/// probing, at most half full.
class RowCounter {
  public:
    explicit RowCounter(std::size_t width) : width_(width), slots_(1 << 10, Free) {}

    /// False when a count would leave 32 bits.
    bool Add(const std::uint8_t* row, std::int32_t count) {
        std::size_t slot = Hash(row) & (slots_.size() - 1);
        for (; slots_[slot] != Free; slot = (slot + 1) & (slots_.size() - 1)) {
            const std::uint32_t at = slots_[slot];
            if (std::memcmp(Row(at), row, width_) != 0) continue;
            if (counts[at] > INT32_MAX - count) return false;
            counts[at] += count;
            return true;
        }
        slots_[slot] = static_cast<std::uint32_t>(counts.size());
        rows.insert(rows.end(), row, row + width_);
        counts.push_back(count);
        if (counts.size() * 2 > slots_.size()) Grow();
        return true;
    }

    const std::uint8_t* Row(std::size_t at) const { return rows.data() + at * width_; }

    std::vector<std::uint8_t> rows;
    std::vector<std::int32_t> counts;

  private:
    static constexpr std::uint32_t Free = UINT32_MAX;

    /// FNV-1a over words of eight bytes, folded: the high bits of the product depend on all bytes.
    std::size_t Hash(const std::uint8_t* row) const {
        std::uint64_t hash = 0xCBF29CE484222325;
        for (std::size_t at = 0; at < width_; at += 8) {
            std::uint64_t part = 0;
            std::memcpy(&part, row + at, std::min<std::size_t>(8, width_ - at));
            hash = (hash ^ part) * 0x9E3779B97F4A7C15;
            hash ^= hash >> 32;
        }
        return hash;
    }

    void Grow() {
        slots_.assign(slots_.size() * 2, Free);
        for (std::size_t at = 0; at < counts.size(); ++at) {
            std::size_t slot = Hash(Row(at)) & (slots_.size() - 1);
            while (slots_[slot] != Free) slot = (slot + 1) & (slots_.size() - 1);
            slots_[slot] = static_cast<std::uint32_t>(at);
        }
    }

    std::size_t width_;
    std::vector<std::uint32_t> slots_;
};

/// The rows in ascending order of their bytes.
void Put_in_order(const RowCounter& counted, ResponseTable& table) {
    std::vector<std::uint32_t> order(counted.counts.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        return std::memcmp(counted.Row(a), counted.Row(b), table.width()) < 0;
    });
    table.codes.reserve(counted.rows.size());
    table.counts.reserve(order.size());
    for (const std::uint32_t at : order) {
        table.codes.insert(table.codes.end(), counted.Row(at), counted.Row(at) + table.width());
        table.counts.push_back(counted.counts[at]);
    }
}

}  // namespace

namespace {

Result<ResponseTable> Counted_responses(const CasesAtHand& cases, const GLLRM& model,
                                        const StopCheck& stop) {
    ResponseTable table;
    table.NITEMS = model.NITEMS;
    table.NEXOGENE = model.NEXOGENE;
    const std::vector<Column> columns = Columns_of(model);
    if (columns.empty()) return Failed{.messages = {"No items"}};
    const DataSource source = Data_source(Data_at_hand(cases));
    if (source == DataSource::none) return Failed{.messages = {"Data is not available"}};
    RowCounter counted(columns.size());
    std::vector<std::uint8_t> row(columns.size());
    bool too_many = false, stopped = false;
    std::int64_t taken = 0;
    const std::string failure =
        Read_cases(cases, source, [&](const std::uint8_t* codes, std::int32_t count) {
            stopped = stop && ++taken % CasesBetweenQuestions == 0 && stop();
            for (std::size_t k = 0; k < columns.size(); ++k)
                row[k] = columns[k].code[codes[columns[k].place]];
            too_many = !stopped && !counted.Add(row.data(), count);
            return !stopped && !too_many;
        });
    if (stopped)
        return Failed{.messages = {"Stopped: the responses have not been counted"},
                      .stopped = true};
    if (too_many) return Failed{.messages = {"There are more cases than can be counted"}};
    if (!failure.empty()) return Failed{.messages = {failure}};
    Put_in_order(counted, table);
    return table;
}

}  // namespace

Result<ResponseTable> Read_responses(const CasesAtHand& cases, const GLLRM& model,
                                     const StopCheck& stop) {
    try {
        return Counted_responses(cases, model, stop);
    } catch (const std::bad_alloc&) {
        return Failed{.messages = {"There is not enough memory for the responses"}};
    }
}

}  // namespace tarven
