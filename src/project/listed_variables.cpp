#include "project/listed_variables.h"

#include <algorithm>

#include "shell/words.h"

namespace tarven {

namespace {

constexpr std::size_t CharactersRead = 120;

/// Letters of the two cases exchanged, those of Latin-1 among the default labels too.
char Other_case(char c) {
    const auto code = static_cast<unsigned char>(c);
    if (code >= 65 && code <= 93) return static_cast<char>(code + 32);
    if (code >= 97 && code <= 125) return static_cast<char>(code - 32);
    for (const auto& [upper, lower] : {std::pair{198, 230}, {216, 248}, {197, 229}}) {
        if (code == upper) return static_cast<char>(lower);
        if (code == lower) return static_cast<char>(upper);
    }
    return c;
}

int Number_of_label(char label, const ProjectDefinition& definition) {
    for (const char wanted : {label, Other_case(label)})
        for (int v = definition.N; v >= 1; --v)
            if (definition.variables[static_cast<std::size_t>(v)].label == wanted) return v;
    return 0;
}

}  // namespace

bool Listed_variables(std::string_view line, const ProjectDefinition& definition,
                      std::vector<int>& variables) {
    variables.clear();
    const std::string_view list = Behind_first_word(line.substr(0, CharactersRead));
    bool all = true;
    bool star = false;
    const auto add = [&](int v) {
        all = false;
        if (v >= 1 && v <= definition.N &&
            std::find(variables.begin(), variables.end(), v) == variables.end())
            variables.push_back(v);
    };
    for (std::size_t k = 0; k < list.size();) {
        const char c = list[k];
        if (c >= '0' && c <= '9') {
            unsigned number = 0;
            for (; k < list.size() && list[k] >= '0' && list[k] <= '9'; ++k)
                number = (number * 10 + static_cast<unsigned>(list[k] - '0')) & 255;
            add(static_cast<int>(number));
            continue;
        }
        ++k;
        if (c == '*') star = true;
        if (c == ' ' || c == '*' || c == '-' || c == '+' || c == '?') continue;
        const int v = Number_of_label(c, definition);
        if (v == 0) return false;
        add(v);
    }
    if (all || star) {
        variables.clear();
        for (int v = 1; v <= definition.N; ++v) variables.push_back(v);
    }
    return !variables.empty();
}

}  // namespace tarven
