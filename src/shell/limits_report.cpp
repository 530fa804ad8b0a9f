#include "shell/limits_report.h"

#include <array>

#include "shell/fields.h"
#include "shell/limits.h"
#include "shell/report.h"

namespace tarven {

namespace {

struct Saying {
    const char* text;
    const char* author;
};

constexpr std::array<Saying, 16> Sayings = {{
    {"All models are wrong but some are useful.", "George E. P. Box, 1979"},
    {"The null hypothesis is never proved or established, but is possibly disproved, in the course "
     "of experimentation.",
     "R. A. Fisher, 1935"},
    {"The greatest value of a picture is when it forces us to notice what we never expected to "
     "see.",
     "John W. Tukey, 1977"},
    {"To consult the statistician after an experiment is finished is often merely to ask him to "
     "conduct a post mortem examination.",
     "R. A. Fisher, 1938"},
    {"The unity of all science consists alone in its method, not in its material.",
     "Karl Pearson, 1892"},
    {"When you can measure what you are speaking about, and express it in numbers, you know "
     "something about it.",
     "Lord Kelvin, 1883"},
    {"It is remarkable that a science which began with the consideration of games of chance should "
     "have become the most important object of human knowledge.",
     "Pierre-Simon Laplace, 1812"},
    {"If I have seen further it is by standing on the shoulders of giants.", "Isaac Newton, 1675"},
    {"The purpose of computing is insight, not numbers.", "Richard W. Hamming, 1962"},
    {"In the fields of observation chance favours only the prepared mind.", "Louis Pasteur, 1854"},
    {"Science is built up of facts, as a house is built of stones; but an accumulation of facts is "
     "no more a science than a heap of stones is a house.",
     "Henri Poincare, 1902"},
    {"The first principle is that you must not fool yourself, and you are the easiest person to "
     "fool.",
     "Richard P. Feynman, 1974"},
    {"Nothing in life is to be feared, it is only to be understood.", "Marie Curie"},
    {"Far better an approximate answer to the right question, which is often vague, than an exact "
     "answer to the wrong question.",
     "John W. Tukey, 1962"},
    {"It is the mark of an educated mind to look for precision in each class of things just so far "
     "as the nature of the subject admits.",
     "Aristotle, Nicomachean Ethics"},
    {"No isolated experiment, however significant in itself, can suffice for the experimental "
     "demonstration of any natural phenomenon.",
     "R. A. Fisher, 1935"},
}};

constexpr std::size_t SayingWidth = 66;

/// Words of a text in lines of at most SayingWidth characters.
std::vector<std::string> Wrapped(std::string_view text) {
    std::vector<std::string> lines;
    while (text.size() > SayingWidth) {
        const std::size_t cut = text.rfind(' ', SayingWidth);
        lines.emplace_back(text.substr(0, cut));
        text.remove_prefix(cut + 1);
    }
    lines.emplace_back(text);
    return lines;
}

std::string Limit(const char* text, std::int64_t number) {
    return text + Field(number, 10);
}

}  // namespace

std::string Line_on_items() {
    return Limit("Number of items =                         ", MaxItems);
}

std::string Line_on_summary_score() {
    return Limit("Maximum summary score =                   ", MaxTotalScore);
}

std::vector<std::string> Limits_lines() {
    const std::string additions =
        "Use the SHOW N command to get a list of additions to TARVEN since the publication of the "
        "2003 User Guide";
    return {
        "The current version of TARVEN has the following limitations:",
        "",
        Limit("Number of project variables =             ", MaxVariables),
        Limit("Number of categories per variable =       ", MaxCategories),
        "",
        Limit("Number of variables in the DAT file      =", MaxRecordLength),
        Limit("Number of cases * Number of project      =", MaxDataBytes),
        "",
        Limit("Number of cells in tables                =", MaxTableCells),
        Limit("Number of cells in tables with marginals =", MaxTableCells),
        "",
        Line_on_items(),
        Limit("Maximum item score =                      ", MaxItemScore),
        Line_on_summary_score(),
        "",
        "Parametric bootstrapping from GLLRMs are only possible under the following conditions",
        "",
        Limit("Number of items =                         ", MaxBootstrapItems),
        Limit("Maximum item score =                      ", MaxItemScore),
        "",
        additions,
        "",
        "A \"?\" after a command will print some information on some (eventually all) commands.",
        "",
    };
}

void Limits_report() {
    for (const std::string& line : Limits_lines()) Write_report(line);
}

std::vector<std::string> Quotation(double r) {
    std::size_t i = 1;
    while (i < Sayings.size() && static_cast<double>(i) / Sayings.size() < r) ++i;
    const Saying& saying = Sayings[i - 1];
    const std::string rule = "+" + std::string(SayingWidth + 2, '-') + "+";
    std::vector<std::string> lines = {rule};
    for (const std::string& line : Wrapped(saying.text))
        lines.push_back("| " + Left(line, SayingWidth) + " |");
    lines.push_back("| " + Right(saying.author, SayingWidth) + " |");
    lines.push_back(rule);
    return lines;
}

}  // namespace tarven
