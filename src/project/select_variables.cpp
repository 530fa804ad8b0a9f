#include "project/select_variables.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/text.h"
#include "shell/variable_lists.h"
#include "shell/words.h"

namespace tarven {

namespace {

constexpr std::size_t LongestList = 8;

std::string Labels_of(const ProjectDefinition& project) {
    std::string labels;
    for (int i = 1; i <= project.N; ++i)
        labels += project.variables[static_cast<std::size_t>(i)].label;
    return labels;
}

/// The first character behind the keyword that is no label, and its word.
std::string First_not_understood(const std::string& line, const std::string& labels) {
    const auto understood = [&](const std::string& text) {
        return Select_list_to_variables("SELECT " + text, labels, true).ok;
    };
    for (int n = 2; n <= Word_count(line); ++n) {
        const std::string word = Get_word(n, line);
        if (understood(word)) continue;
        for (std::size_t at = 0; at < word.size();) {
            // A letter outside Latin-1 is several characters of the line and named as one.
            const std::string letter =
                word.substr(at, Is_other_letter(word, at) ? OtherLetterLength : 1);
            at += letter.size();
            if (understood(letter)) continue;
            const std::string in = letter == word ? std::string() : fmt::format(" in \"{}\"", word);
            return fmt::format(": \"{}\"{} is no variable", letter, in);
        }
    }
    return {};
}

Variable Score_variable(const ScoreGroups& score) {
    Variable v;
    v.label = '#';
    v.VARNO = ScoreCode;
    v.dim = static_cast<std::uint8_t>(score.count);
    v.vtype = Ordinal;
    v.vfra = 1.0;
    // Groups may be more than a variable has categories; they are never recoded by their cuts.
    for (std::size_t c = 1; c <= std::min<std::size_t>(v.dim, MaxCategories); ++c)
        v.vtil[c] = static_cast<double>(c);
    v.Levnr = static_cast<std::uint8_t>(score.block);
    return v;
}

/// The last variable of each block.
std::vector<int> Ends_of_blocks(const std::vector<Variable>& variables) {
    std::vector<int> ends;
    int highest = 0;
    for (std::size_t k = 0; k < variables.size(); ++k) {
        if (k > 0 && variables[k].Levnr > highest) ends.push_back(static_cast<int>(k));
        highest = std::max<int>(highest, variables[k].Levnr);
    }
    if (!variables.empty()) ends.push_back(static_cast<int>(variables.size()));
    return ends;
}

}  // namespace

SelectedVariables Select_variables(const ParsedLine& line, const ProjectDefinition& project,
                                   const ScoreGroups& score, bool at_most_eight) {
    SelectedVariables selected;
    const auto fail = [&](const char* message) {
        selected.messages = {message};
        return selected;
    };
    if (line.ParameterCount < 1) return fail("Select variables: Not enough variables");
    const std::string labels = Labels_of(project);
    const bool all = line.ParameterCount == 1 && line.ParameterField[0] == '*';
    const VariableList list =
        Select_list_to_variables(all ? "SELECT " + labels : line.CommandLine, labels, true);
    if (list.list.size() > LongestList) return fail("Too many variables have been selected");
    if (!list.ok) {
        selected.not_understood = First_not_understood(line.CommandLine, labels);
        return selected;
    }

    const auto listed = [&](int code) {
        return std::find(list.list.begin(), list.list.end(), code) != list.list.end();
    };
    if (listed(ScoreCode)) {
        if (score.count < 1) return fail("Scoregroups have not been defined: CUT makes them");
        selected.numbers.push_back(ScoreCode);
        selected.variables.push_back(Score_variable(score));
    }
    for (int i = 1; i <= project.N; ++i) {
        if (!listed(i)) continue;
        selected.numbers.push_back(i);
        selected.variables.push_back(project.variables[static_cast<std::size_t>(i)]);
    }
    if (at_most_eight && selected.numbers.size() > LongestList)
        return fail("QVDATA0 - Select_variables: FAILURE - TOO MANY VARIABLES ");
    if (selected.numbers.size() < 2)
        return fail("QVDATA0 - Select_variables: FAILURE - TOO FEW VARIABLES ");
    selected.LevelEnd = Ends_of_blocks(selected.variables);
    selected.ok = true;
    return selected;
}

}  // namespace tarven
