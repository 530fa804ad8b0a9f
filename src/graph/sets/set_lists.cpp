#include "graph/sets/set_lists.h"

#include <algorithm>
#include <cstddef>
#include <unordered_set>

namespace tarven {

SetList RemoveSubsets(const SetList& list) {
    SetList last_of_each;
    std::unordered_set<VariableSet> seen;
    for (auto set = list.rbegin(); set != list.rend(); ++set)
        if (seen.insert(*set).second) last_of_each.push_back(*set);
    std::reverse(last_of_each.begin(), last_of_each.end());

    // Only a larger set can hold another one, and one that goes itself has a larger one that stays.
    SetList by_size = last_of_each;
    std::stable_sort(by_size.begin(), by_size.end(),
                     [](VariableSet a, VariableSet b) { return Size(a) > Size(b); });
    SetList maximal;
    for (const VariableSet set : by_size) {
        const auto holds = [set](VariableSet other) { return Is_subset(set, other); };
        if (std::none_of(maximal.begin(), maximal.end(), holds)) maximal.push_back(set);
    }
    const std::unordered_set<VariableSet> stays(maximal.begin(), maximal.end());
    std::erase_if(last_of_each, [&](VariableSet set) { return !stays.contains(set); });
    return last_of_each;
}

bool SameSetLists(const SetList& a, const SetList& b) {
    if (a.size() != b.size()) return false;
    const std::unordered_set<VariableSet> of_b(b.begin(), b.end());
    return std::all_of(a.begin(), a.end(), [&](VariableSet set) { return of_b.contains(set); });
}

}  // namespace tarven
