#include "rasch/estimation/score_polynomial.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace tarven {

namespace {

std::size_t At(int i) {
    return static_cast<std::size_t>(i);
}

/// Response vectors below a node of a walk at which the user is asked whether to stop: some
/// microseconds of work.
constexpr std::int64_t VectorsBetweenQuestions = 4096;

using ItemRow = std::array<Extended, ItemScores>;

/// One item of a component on the walk over its response vectors.
struct MemberItem {
    int item = 0;
    int low = 0;
    int high = 0;
    ItemRow effective{};  ///< eps times the DIF parameters of the cell
    /// A pair with an item before this one: its place, and the parameter table.
    struct Link {
        int earlier = 0;
        int pair = 0;
        const ScoreTable<Extended>* lambda = nullptr;
    };
    std::vector<Link> links;
    std::vector<int> terms;  ///< its terms of DIF
};

/// The items of a component that take part, with what their response vectors are made of.
struct Members {
    std::vector<MemberItem> items;
    int low = 0;   ///< sum of the lowest scores
    int span = 0;  ///< sum of high - low
    /// The items from here on have few response vectors, those from the one before on many; past
    /// the last item when there are few of all.
    std::size_t asking_depth = 0;

    void Set_asking_depth() {
        std::int64_t vectors = 1;
        asking_depth = items.size();
        for (std::size_t depth = items.size(); depth-- > 0;) {
            vectors *= items[depth].high - items[depth].low + 1;
            if (vectors <= VectorsBetweenQuestions) continue;
            asking_depth = depth + 1;
            return;
        }
    }

    void Add(const ModelStructure& structure, const GLLRMParameters& parameters,
             const ItemComponent& component, int item) {
        MemberItem member{.item = item,
                          .low = parameters.low[At(item)],
                          .high = parameters.high[At(item)],
                          .effective = parameters.eps[At(item)],
                          .links = {},
                          .terms = structure.terms_of(item)};
        for (const int k : component.pairs) {
            if (structure.pairs[At(k)].other != item) continue;
            for (int e = 0; e < static_cast<int>(items.size()); ++e)
                if (items[At(e)].item == structure.pairs[At(k)].item)
                    member.links.push_back({e, k, &parameters.lambda[At(k)]});
        }
        low += member.low;
        span += member.high - member.low;
        items.push_back(std::move(member));
    }

    /// The parameters of the items in the cell.
    void Set_cell(const ModelStructure& structure, const GLLRMParameters& parameters,
                  std::span<const std::uint8_t> categories) {
        for (MemberItem& member : items) {
            member.effective = parameters.eps[At(member.item)];
            for (const int k : member.terms) {
                const int column = categories[At(structure.terms[At(k)].source)] - 1;
                assert(column >= 0 && "a source without a category");
                for (int x = member.low; x <= member.high; ++x)
                    member.effective[At(x)] *= parameters.delta[At(k)](x, column);
            }
        }
    }
};

/// What item `depth` adds to the product of the items before it, at score x.
Extended Factor(const Members& members, std::size_t depth, int x, const int* chosen) {
    const MemberItem& member = members.items[depth];
    Extended factor = member.effective[At(x)];
    for (const MemberItem::Link& link : member.links)
        factor *= (*link.lambda)(chosen[link.earlier], x);
    return factor;
}

/// Asks whether to stop, and keeps a Yes: who answers it may forget it.
class Watch {
  public:
    explicit Watch(const StopCheck& stop) : stop_(stop) {}
    bool Asked() {
        if (!stopped && stop_) stopped = stop_();
        return stopped;
    }
    bool stopped = false;

  private:
    const StopCheck& stop_;
};

/// Adds the products of all response vectors to f[score - low], an odometer whose last item turns
/// fastest and whose products are kept from wheel to wheel.
void Add_vectors(const Members& members, std::size_t depth, Extended product, int* chosen,
                 Extended* f, Watch& watch) {
    if (depth == members.asking_depth && watch.Asked()) return;
    const MemberItem& member = members.items[depth];
    const bool last = depth + 1 == members.items.size();
    for (int x = member.low; x <= member.high; ++x) {
        const Extended next = product * Factor(members, depth, x, chosen);
        if (next == 0) continue;
        if (last) {
            f[x - member.low] += next;
            continue;
        }
        chosen[depth] = x;
        Add_vectors(members, depth + 1, next, chosen, f + (x - member.low), watch);
    }
}

/// The polynomial of a component from its lowest score on, into f[0..span].
void Component_polynomial(const Members& members, std::vector<int>& positions, Extended* f,
                          Watch& watch) {
    if (members.items.size() == 1) {
        const MemberItem& only = members.items.front();
        std::copy(&only.effective[At(only.low)], &only.effective[At(only.high)] + 1, f);
        return;
    }
    std::fill(f, f + members.span + 1, Extended{0});
    positions.resize(members.items.size());
    Add_vectors(members, 0, 1, positions.data(), f, watch);
}

/// to[0..size+span] = g[0..size] times f[0..span].
void Convolve(const Extended* g, int size, const Extended* f, int span, Extended* to) {
    if (span == 1) {  // a dichotomous item
        const Extended f0 = f[0], f1 = f[1];
        to[0] = g[0] * f0;
        for (int s = 1; s <= size; ++s) to[s] = g[s] * f0 + g[s - 1] * f1;
        to[size + 1] = g[size] * f1;
        return;
    }
    if (span == 2 && size >= 1) {
        const Extended f0 = f[0], f1 = f[1], f2 = f[2];
        to[0] = g[0] * f0;
        to[1] = g[1] * f0 + g[0] * f1;
        for (int s = 2; s <= size; ++s) to[s] = g[s] * f0 + g[s - 1] * f1 + g[s - 2] * f2;
        to[size + 1] = g[size] * f1 + g[size - 1] * f2;
        to[size + 2] = g[size] * f2;
        return;
    }
    std::fill(to, to + size + span + 1, Extended{0});
    for (int x = 0; x <= span; ++x)
        for (int s = 0; s <= size; ++s) to[s + x] += f[x] * g[s];
}

/// The way back: f_bar[x] = sum over s of bar[s+x] g[s], and g_bar[s] = sum over x of
/// bar[s+x] f[x].
void Convolve_back(const Extended* bar, const Extended* g, int size, const Extended* f, int span,
                   Extended* f_bar, Extended* g_bar) {
    if (span == 1) {
        const Extended f0 = f[0], f1 = f[1];
        Extended sum0 = 0, sum1 = 0;
        for (int s = 0; s <= size; ++s) {
            sum0 += bar[s] * g[s];
            sum1 += bar[s + 1] * g[s];
            g_bar[s] = bar[s] * f0 + bar[s + 1] * f1;
        }
        f_bar[0] = sum0;
        f_bar[1] = sum1;
        return;
    }
    if (span == 2) {
        const Extended f0 = f[0], f1 = f[1], f2 = f[2];
        Extended sum0 = 0, sum1 = 0, sum2 = 0;
        for (int s = 0; s <= size; ++s) {
            sum0 += bar[s] * g[s];
            sum1 += bar[s + 1] * g[s];
            sum2 += bar[s + 2] * g[s];
            g_bar[s] = bar[s] * f0 + bar[s + 1] * f1 + bar[s + 2] * f2;
        }
        f_bar[0] = sum0;
        f_bar[1] = sum1;
        f_bar[2] = sum2;
        return;
    }
    std::fill(g_bar, g_bar + size + 1, Extended{0});
    for (int x = 0; x <= span; ++x) {
        Extended sum = 0;
        for (int s = 0; s <= size; ++s) {
            sum += bar[s + x] * g[s];
            g_bar[s] += bar[s + x] * f[x];
        }
        f_bar[x] = sum;
    }
}

/// Walks the cells of one stratum.
class StratumWalk {
  public:
    StratumWalk(const ModelStructure& structure, const GLLRMParameters& parameters,
                const Stratum& stratum, PolynomialMemory& memory, ExpectedMargins& expected,
                Extended* log_gamma, Watch& watch)
        : structure_(structure),
          parameters_(parameters),
          stratum_(stratum),
          memory_(memory),
          expected_(expected),
          log_gamma_(log_gamma),
          watch_(watch),
          categories_(structure.sources.size(), 1) {
        Place_components();
    }

    void Run() {
        if (stratum_.cells.empty()) return;
        Extended one = 1, unused = 0;
        Visit(0, 0, stratum_.cells.size(), &one, 0, &unused);
    }

  private:
    /// A component at the level of its last source: there all that it depends on is known.
    struct Placed {
        Members members;
        bool fixed = false;  ///< a single response vector: a factor that cancels
    };

    const ModelStructure& structure_;
    const GLLRMParameters& parameters_;
    const Stratum& stratum_;
    PolynomialMemory& memory_;
    ExpectedMargins& expected_;
    Extended* log_gamma_;
    Watch& watch_;
    std::vector<std::uint8_t> categories_;  ///< of every source of the structure
    std::vector<std::vector<Placed>> levels_;
    std::size_t used_ = 0;
    int low_ = 0;  ///< sum of the lowest scores of the stratum's items

    int Level_of(const ItemComponent& component) const {
        int level = 0;
        for (std::size_t k = 0; k < stratum_.sources.size(); ++k)
            if (Has_number(component.sources, stratum_.sources[k] + 1))
                level = static_cast<int>(k) + 1;
        return level;
    }

    void Place_components() {
        levels_.resize(stratum_.sources.size() + 1);
        std::size_t span = 0, parts = 2;
        for (const int c : stratum_.components) {
            const ItemComponent& component = structure_.components[At(c)];
            Placed placed;
            for (const int i : component.items)
                placed.members.Add(structure_, parameters_, component, i);
            placed.members.Set_asking_depth();
            low_ += placed.members.low;
            span += At(placed.members.span);
            ++parts;
            levels_[At(Level_of(component))].push_back(std::move(placed));
        }
        // Each component leaves its polynomial, its product and two derivatives, each level one.
        const std::size_t wanted = (parts * 2 + levels_.size() * 3) * (span + 2) + 4 * span;
        if (memory_.numbers.size() < wanted) memory_.numbers.resize(wanted);
    }

    Extended* Take(int count) {
        Extended* start = memory_.numbers.data() + used_;
        used_ += At(count);
        assert(used_ <= memory_.numbers.size() && "the chain of polynomials outgrew its memory");
        return start;
    }

    /// The cells first..end share the categories of the sources before `level`. Extends the
    /// polynomial g[0..size], and adds the derivatives by it, of the sum of n(s) ln gamma(s), to
    /// g_bar.
    void Visit(std::size_t level, std::size_t first, std::size_t end, const Extended* g, int size,
               Extended* g_bar) {
        if (watch_.Asked()) return;
        const std::size_t mark = used_;
        std::vector<Placed>& here = levels_[level];
        struct Link {
            const Extended* g;
            int size;
            Extended* f;
        };
        // At most one a component and a level, so the list is short.
        std::vector<Link> chain;
        chain.reserve(here.size());
        const Extended* top = g;
        int top_size = size;
        for (Placed& placed : here) {
            if (level > 0) placed.members.Set_cell(structure_, parameters_, categories_);
            const int span = placed.members.span;
            Extended* f = Take(span + 1);
            Component_polynomial(placed.members, memory_.positions, f, watch_);
            Extended* product = Take(top_size + span + 1);
            Convolve(top, top_size, f, span, product);
            chain.push_back({top, top_size, f});
            top = product;
            top_size += span;
        }
        Extended* bar = Take(top_size + 1);
        std::fill(bar, bar + top_size + 1, Extended{0});
        if (level == stratum_.sources.size())
            Weigh_scores(stratum_.cells[first], top, top_size, bar);
        else
            Visit_categories(level, first, end, top, top_size, bar);
        for (std::size_t k = here.size(); k-- > 0;) {
            const Members& members = here[k].members;
            Extended* f_bar = Take(members.span + 1);
            Extended* next = Take(chain[k].size + 1);
            Convolve_back(bar, chain[k].g, chain[k].size, chain[k].f, members.span, f_bar, next);
            Add_expected(members, f_bar);
            bar = next;
        }
        for (int s = 0; s <= size; ++s) g_bar[s] += bar[s];
        used_ = mark;
    }

    void Visit_categories(std::size_t level, std::size_t first, std::size_t end, const Extended* g,
                          int size, Extended* bar) {
        for (std::size_t from = first; from < end;) {
            const std::uint8_t category = stratum_.cells[from].categories[level];
            std::size_t to = from;
            while (to < end && stratum_.cells[to].categories[level] == category) ++to;
            categories_[At(stratum_.sources[level])] = category;
            Visit(level + 1, from, to, g, size, bar);
            from = to;
        }
    }

    void Weigh_scores(const CellScores& cell, const Extended* gamma, int size, Extended* bar) {
        for (const ScoreCount& count : cell.scores) {
            const int s = count.score - low_;
            if (s < 0 || s > size || !(gamma[s] > 0)) continue;
            bar[s] = static_cast<Extended>(count.persons) / gamma[s];
            if (log_gamma_)
                *log_gamma_ += static_cast<Extended>(count.persons) * std::log(gamma[s]);
        }
    }

    void Add_to_item(const MemberItem& member, int x, Extended persons) {
        expected_.items[At(member.item)][At(x)] += persons;
        for (const int k : member.terms)
            expected_.terms[At(k)](x, categories_[At(structure_.terms[At(k)].source)] - 1) +=
                persons;
    }

    void Add_expected(const Members& members, const Extended* f_bar) {
        if (members.items.size() > 1) {
            memory_.positions.resize(members.items.size());
            Sum_vectors(members, 0, 1, f_bar);
            return;
        }
        const MemberItem& only = members.items.front();
        for (int x = only.low; x <= only.high; ++x)
            Add_to_item(only, x, only.effective[At(x)] * f_bar[x - only.low]);
    }

    /// Expected persons of all response vectors that go on from here, added to the margins on the
    /// way back.
    Extended Sum_vectors(const Members& members, std::size_t depth, Extended product,
                         const Extended* f_bar) {
        if (depth == members.items.size()) return product * *f_bar;
        if (depth == members.asking_depth && watch_.Asked()) return 0;
        const MemberItem& member = members.items[depth];
        Extended sum = 0;
        for (int x = member.low; x <= member.high; ++x) {
            const Extended next = product * Factor(members, depth, x, memory_.positions.data());
            if (next == 0) continue;
            memory_.positions[depth] = x;
            const Extended persons =
                Sum_vectors(members, depth + 1, next, f_bar + (x - member.low));
            Add_to_item(member, x, persons);
            for (const MemberItem::Link& link : member.links)
                expected_.pairs[At(link.pair)](memory_.positions[At(link.earlier)], x) += persons;
            sum += persons;
        }
        return sum;
    }
};

}  // namespace

NumberSet All_items(int n) {
    return n == 0 ? 0 : ~NumberSet{0} >> (64 - n);
}

ScorePolynomial Product(const ScorePolynomial& one, const ScorePolynomial& other) {
    ScorePolynomial product{.low = one.low + other.low,
                            .g = std::vector<Extended>(one.g.size() + other.g.size() - 1)};
    Convolve(one.g.data(), static_cast<int>(one.g.size()) - 1, other.g.data(),
             static_cast<int>(other.g.size()) - 1, product.g.data());
    return product;
}

ScorePolynomial Score_polynomial(const ModelStructure& structure, const GLLRMParameters& parameters,
                                 std::span<const std::uint8_t> categories, NumberSet items,
                                 const StopCheck& stop) {
    ScorePolynomial whole;
    Watch watch(stop);
    std::vector<int> positions;
    for (const ItemComponent& component : structure.components) {
        Members members;
        for (const int i : component.items)
            if (Has_number(items, i)) members.Add(structure, parameters, component, i);
        if (members.items.empty()) continue;
        members.Set_asking_depth();
        members.Set_cell(structure, parameters, categories);
        ScorePolynomial part{.low = members.low, .g = std::vector<Extended>(At(members.span + 1))};
        Component_polynomial(members, positions, part.g.data(), watch);
        whole = Product(whole, part);
    }
    whole.stopped = watch.stopped;
    return whole;
}

bool Expect_margins(const ModelStructure& structure, const GLLRMParameters& parameters,
                    std::span<const Stratum> strata, PolynomialMemory& memory,
                    ExpectedMargins& expected, Extended* log_gamma, const StopCheck& stop) {
    for (auto& row : expected.items.entries) row.fill(0);
    expected.pairs.resize(structure.pairs.size());
    for (auto& table : expected.pairs) table = ScoreTable<Extended>(ItemScores);
    expected.terms.resize(structure.terms.size());
    for (std::size_t k = 0; k < structure.terms.size(); ++k)
        expected.terms[k] =
            ScoreTable<Extended>(structure.sources[At(structure.terms[k].source)].categories);
    if (log_gamma) *log_gamma = 0;
    Watch watch(stop);
    for (const Stratum& stratum : strata)
        StratumWalk(structure, parameters, stratum, memory, expected, log_gamma, watch).Run();
    return !watch.stopped;
}

}  // namespace tarven
