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

/// A word behind others; a blank parts them where one of them is a number.
void Add_word(const std::string& word, std::string& line) {
    const bool parted = line.back() == ' ' && word.front() == ' ';
    line += parted ? word.substr(1) : word;
}

/// With 59 variables, of which 18 at most have labels that stand for something else, the words of
/// a line without marks fit into the columns that are read.
std::string Line_of_items(const GLLRM& model, bool with_marks) {
    std::string line = "ITEMS ";
    bool flipped = false;
    for (int i = 1; i <= model.NITEMS; ++i) {
        const Item& item = model.ItemNo(i);
        const bool marked = with_marks && item.FlippedItem;
        flipped = flipped || marked;
        if (marked) line += "-";
        Add_word(Word_of(item.label, item.variable), line);
    }
    // A "-" in front of nothing: the flags are set all the same, and none of them is up.
    return flipped ? line : line + " -";
}

/// Items and their flags: by marks in the list, or where these make it too long by FLIP.
std::vector<std::string> Items_lines(const GLLRM& model) {
    std::string marked = Line_of_items(model, true);
    if (marked.size() <= MaxTextLength) return {std::move(marked)};
    std::string flips = "FLIP ";
    for (int i = 1; i <= model.NITEMS; ++i)
        if (model.ItemNo(i).FlippedItem)
            Add_word(Word_of(model.ItemNo(i).label, model.ItemNo(i).variable), flips);
    return {Line_of_items(model, false), std::move(flips)};
}

std::string Exogenous_line(const GLLRM& model) {
    std::string line = "EXO ";
    for (int x = 1; x <= model.NEXOGENE; ++x)
        Add_word(Word_of(model.ExoNo(x).label, model.ExoNo(x).variable), line);
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
    std::vector<std::string> lines = {"DIS E"};
    for (std::string& line : Items_lines(model)) lines.push_back(std::move(line));
    if (model.NEXOGENE > 0) lines.insert(lines.end(), {"ASY", Exogenous_line(model)});
    if (model.ItemScoreInteractions != 0) lines.push_back(Cut_command(model.groups));
    lines.push_back("REP");
    Add_terms(model, lines);
    return lines;
}

}  // namespace tarven
