#include "graph/hypotheses/pairs_of_parameter.h"

#include <string>

#include "graph/model/edge_revision.h"
#include "shell/limits.h"
#include "shell/variable_lists.h"

namespace tarven {

namespace {

/// Which pairs a mark leaves.
enum class Mode : std::uint8_t { all, linked, absent };

bool Fits(Mode mode, std::uint8_t status) {
    return mode == Mode::all || status == (mode == Mode::linked ? Free : Absent);
}

/// One place of a list of pairs.
struct Place {
    int first = 0, last = 0;  ///< variables; none when last is less
    Mode mode = Mode::all;
};

Place Place_of(int number, int nvar) {
    if (number > nvar) return {1, nvar};
    return {number, number > 0 ? number : -1};
}

struct Marked {
    std::string text;         ///< with "*" for every mark
    std::vector<Mode> modes;  ///< of the marks, in their order
};

Marked Modes_of(std::string_view parameters) {
    Marked marked;
    for (char c : parameters) {
        const bool mark = c == '*' || c == '+' || c == '?' || c == '-';
        if (mark)
            marked.modes.push_back(c == '*' ? Mode::all : c == '-' ? Mode::absent : Mode::linked);
        marked.text += mark ? '*' : c;
    }
    return marked;
}

/// Pairs that places choose.
class PairChoice {
  public:
    explicit PairChoice(const ChainGraph& graph) : graph_(graph) {}

    void Choose(const Place& one, const Place& other) {
        for (int v = one.first; v <= one.last; ++v)
            for (int w = other.first; w <= other.last; ++w) {
                const int i = v < w ? v : w, j = v < w ? w : v;
                if (i == j) continue;
                const std::uint8_t status = graph_.StatusOf(i, j);
                if (Fits(one.mode, status) && Fits(other.mode, status))
                    chosen_[static_cast<std::size_t>(i)] |= Only(j);
            }
    }
    PairList Pairs() const {
        PairList pairs;
        for (int i = 1; i <= graph_.nvar; ++i)
            for (const int j : Members(chosen_[static_cast<std::size_t>(i)]))
                pairs.emplace_back(i, j);
        return pairs;
    }

  private:
    const ChainGraph& graph_;
    One_based<VariableSet, MaxVariables> chosen_;  ///< [i]: each j > i
};

}  // namespace

PairList Pairs_of_status(const ChainGraph& graph, std::uint8_t status) {
    PairList pairs;
    for (int i = 1; i <= graph.nvar; ++i)
        for (int j = i + 1; j <= graph.nvar; ++j)
            if (graph.StatusOf(i, j) == status) pairs.emplace_back(i, j);
    return pairs;
}

std::optional<PairList> Pairs_of_parameter(std::string_view line, const ChainGraph& graph) {
    const Marked marked = Modes_of(Behind_keyword(line.substr(0, MaxTextLength)));
    std::vector<Place> places;
    std::size_t marks = 0;
    for (const int typed : Typed_places(marked.text, graph.Labels)) {
        places.push_back(Place_of(typed == EveryOther ? graph.nvar + 1 : typed, graph.nvar));
        if (typed == EveryOther) places.back().mode = marked.modes[marks++];
    }
    if (places.empty()) return std::nullopt;
    PairChoice choice(graph);
    if (places.size() == 1 && marks == 1) choice.Choose(places[0], {1, graph.nvar});
    for (std::size_t k = 1; k < places.size(); k += 2) choice.Choose(places[k - 1], places[k]);
    return choice.Pairs();
}

}  // namespace tarven
