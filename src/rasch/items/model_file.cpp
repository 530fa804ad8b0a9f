#include "rasch/items/model_file.h"

#include <string_view>

#include "rasch/items/model_text.h"
#include "rasch/items/score_groups.h"
#include "shell/words.h"

namespace tarven {

namespace {

/// Terms in one line: "+AB " for each stays within 120 columns behind the keyword.
constexpr std::size_t MostTermsInLine = 28;

/// A variable as ITEMS and EXO read it: its label, or its number where the label means something
/// else there.
std::string Word_of(char label, int variable) {
    const bool plain =
        !Is_digit(label) && std::string_view("*#-+? !$").find(label) == std::string_view::npos;
    return plain ? std::string(1, label) : " " + std::to_string(variable) + " ";
}

std::string Items_line(const GLLRM& model) {
    std::string line = "ITEMS ";
    bool flipped = false;
    for (int i = 1; i <= model.NITEMS; ++i) {
        const Item& item = model.ItemNo(i);
        flipped = flipped || item.FlippedItem;
        line += (item.FlippedItem ? "-" : "") + Word_of(item.label, item.variable);
    }
    // A "-" in front of nothing: the flags are set all the same, and none of them is up.
    return flipped ? line : line + " -";
}

std::string Exogenous_line(const GLLRM& model) {
    std::string line = "EXO ";
    for (int x = 1; x <= model.NEXOGENE; ++x)
        line += Word_of(model.ExoNo(x).label, model.ExoNo(x).variable);
    return line;
}

void Add_terms(const GLLRM& model, std::vector<std::string>& lines) {
    const std::vector<ModelTerm> terms = Terms_of(model);
    if (terms.size() <= MostTermsInLine) {
        lines.push_back("GRM" + (terms.empty() ? "" : " " + Model_text(model)));
        return;
    }
    for (std::size_t k = 0; k < terms.size(); k += MostTermsInLine) {
        std::string line = "LLR";
        for (std::size_t t = k; t < std::min(terms.size(), k + MostTermsInLine); ++t)
            line += (k == 0 ? " " : " +") + Term_text(model, terms[t]);
        lines.push_back(line);
    }
    lines.push_back("GRM");
}

}  // namespace

std::vector<std::string> Model_file_lines(const GLLRM& model) {
    // Former exogenous variables would be kept from the items.
    std::vector<std::string> lines = {"DIS E", Items_line(model)};
    if (model.NEXOGENE > 0) lines.insert(lines.end(), {"ASY", Exogenous_line(model)});
    if (model.ItemScoreInteractions != 0) lines.push_back(Cut_command(model.groups));
    lines.push_back("REP");
    Add_terms(model, lines);
    return lines;
}

}  // namespace tarven
