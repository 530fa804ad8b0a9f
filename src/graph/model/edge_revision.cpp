#include "graph/model/edge_revision.h"

#include <algorithm>

#include "shell/limits.h"
#include "shell/text.h"
#include "shell/variable_lists.h"
#include "shell/words.h"

namespace tarven {

namespace {

/// No variable has a number of four digits.
constexpr int LargestNumberTold = 999;

/// Reads a run of digits from `at` on, and moves behind it.
int Number_at(std::string_view text, std::size_t& at) {
    int number = 0;
    for (; at < text.size() && Is_digit(text[at]); ++at)
        number = std::min(number * 10 + (text[at] - '0'), LargestNumberTold);
    return number;
}

bool Is_variable(const ChainGraph& graph, int v) {
    return v >= 1 && v <= graph.nvar;
}

void Revise_pair(EdgeRevision& revision, TypedPair pair, EdgeStatus status) {
    ChainGraph& graph = revision.graph;
    if (!Is_variable(graph, pair.first) || !Is_variable(graph, pair.second) ||
        pair.first == pair.second) {
        revision.pairs.push_back({pair, Revised::refused, 0});
        return;
    }
    const std::uint8_t before = graph.StatusOf(pair.first, pair.second);
    // Of a pair that was read with two statuses, the one that stays must be that of both ways.
    const bool same = before == status && graph.StatusOf(pair.second, pair.first) == status;
    revision.pairs.push_back({pair, same ? Revised::unchanged : Revised::yes, before});
    if (same) return;
    Set_status(graph, pair.first, pair.second, status);
    revision.changed = true;
}

}  // namespace

std::string Part_read(std::string_view text) {
    const std::string whole = One_byte_a_letter(text);
    std::string part = whole.substr(0, MaxTextLength);
    if (part.size() < whole.size() && Is_digit(whole[part.size()]))
        while (!part.empty() && Is_digit(part.back())) part.pop_back();
    return part;
}

// As String_to_variables reads it, except that a number stays what it is: there 260 would be
// variable 4, and the number behind the last variable "*".
std::vector<int> Typed_places(std::string_view whole, std::string_view labels) {
    const std::string text = Part_read(whole);
    std::vector<int> places;
    for (std::size_t at = 0; at < text.size();) {
        if (Is_digit(text[at])) {
            places.push_back(Number_at(text, at));
            continue;
        }
        const char c = text[at++];
        if (c == ' ') continue;
        if (c == '*')
            places.push_back(EveryOther);
        else if (const int v = c == '#' ? 0 : Find_label(c, labels))
            places.push_back(v);
        else if (c != '-' && c != '+' && c != '?')
            return {};
    }
    return places;
}

std::vector<TypedPair> Typed_pairs(std::string_view line, std::string_view labels) {
    const std::vector<int> places = Typed_places(Behind_keyword(line), labels);
    std::vector<TypedPair> pairs;
    for (std::size_t k = 1; k < places.size(); k += 2) pairs.push_back({places[k - 1], places[k]});
    return pairs;
}

EdgeRevision Revise_edges(const ChainGraph& graph, const std::vector<TypedPair>& pairs,
                          EdgeStatus status) {
    EdgeRevision revision{graph, {}, false};
    for (const TypedPair& pair : pairs) {
        if (pair.second != EveryOther || !Is_variable(graph, pair.first)) {
            Revise_pair(revision, pair, status);
            continue;
        }
        for (int v = 1; v <= graph.nvar; ++v)
            if (v != pair.first) Revise_pair(revision, {pair.first, v}, status);
    }
    if (revision.changed) revision.graph.revised = true;
    return revision;
}

ExplanatoryRevision Fix_explanatory(const ChainGraph& graph) {
    ExplanatoryRevision revision{graph};
    if (graph.Nblocks < 2) {
        revision.reason = NotFixed::one_block;
        return revision;
    }
    const int before = graph.Cutpoints[static_cast<std::size_t>(graph.Nblocks - 1)];
    if (graph.nvar - before < 2) {
        revision.reason = NotFixed::one_variable;
        return revision;
    }
    for (int i = before + 1; i <= graph.nvar; ++i)
        for (int j = i + 1; j <= graph.nvar; ++j) Set_status(revision.graph, i, j, Fixed);
    if (revision.graph.Status == graph.Status) {
        revision.reason = NotFixed::all_fixed_already;
        return revision;
    }
    revision.graph.revised = true;
    return revision;
}

}  // namespace tarven
