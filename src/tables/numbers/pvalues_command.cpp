#include "tables/numbers/pvalues_command.h"

#include <fmt/format.h>

#include <cmath>
#include <string>
#include <vector>

#include "shell/commands.h"
#include "shell/fields.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/user.h"
#include "shell/words.h"
#include "tables/numbers/binomial_tails.h"
#include "tables/numbers/distributions.h"

namespace tarven {

namespace {

/// What a line asks for, or why it cannot be told.
struct PValueReport {
    std::string refusal;  ///< empty: the lines hold
    std::vector<std::string> lines;
};

PValueReport Refused(std::string refusal) {
    return {std::move(refusal), {}};
}

/// "p = 0.0432", or "p < 0.0001" for what four decimals would show as nothing.
std::string Shown_p(double p) {
    return p < 0.00005 ? "< 0.0001" : "= " + Field(p, 6, 4);
}

/// A whole number from `least` on in the range of 32 bits.
bool Whole_number(const std::string& word, std::int32_t least, std::int32_t& value) {
    return To_integer(word, value) && value >= least;
}

PValueReport Chi_square_report(const std::vector<std::string>& words) {
    double x = 0;
    std::int32_t df = 0;
    if (words.size() != 2) return Refused("PVALUES CHI needs x and df: PVA CHI x df");
    if (!To_real(words[0], x)) return Refused(words[0] + " is not a number");
    if (x < 0) return Refused("A chi square is not negative: " + words[0]);
    if (!Whole_number(words[1], 1, df))
        return Refused("df is a whole number of at least 1: " + words[1]);
    return {
        "",
        {fmt::format("Chi square = {}  df = {}   p {}", words[0], df, Shown_p(Chi2_tail(df, x)))}};
}

PValueReport Normal_report(const std::vector<std::string>& words) {
    double z = 0;
    if (words.size() != 1) return Refused("PVALUES NOR needs z alone: PVA NOR z");
    if (!To_real(words[0], z)) return Refused(words[0] + " is not a number");
    const double p = Normal_p(std::fabs(z));
    return {"",
            {fmt::format("Normal z = {}   p (1-sided) {}   p (2-sided) {}", words[0], Shown_p(p),
                         Shown_p(2 * p))}};
}

PValueReport Binomial_report(const std::vector<std::string>& words) {
    std::int32_t x = 0;
    std::int32_t n = 0;
    double p = 0;
    if (words.size() != 3) return Refused("PVALUES BIN needs x, n and p: PVA BIN x n p");
    if (!Whole_number(words[0], 0, x))
        return Refused("x is a whole number of at least 0: " + words[0]);
    if (!Whole_number(words[1], 1, n))
        return Refused("n is a whole number of at least 1: " + words[1]);
    if (x > n) return Refused(fmt::format("x = {} is above n = {}", x, n));
    if (!To_real(words[2], p)) return Refused(words[2] + " is not a number");
    if (p < 0 || p > 1) return Refused("p lies between 0 and 1: " + words[2]);
    const BinomialTails tails = Binomial_tails(n, x, p);
    return {"",
            {fmt::format("Binomial n = {}  p = {}   P(X >= {}) {}   P(X <= {}) {}", n, words[2], x,
                         Shown_p(tails.upper), x, Shown_p(tails.lower))}};
}

PValueReport Report_of_line(const std::string& line) {
    std::vector<std::string> words;
    for (int n = 3; n <= Word_count(line); ++n) words.push_back(Get_word(n, line));
    const std::string distribution = Upper(Get_word(2, line)).substr(0, 3);
    if (distribution == "CHI") return Chi_square_report(words);
    if (distribution == "NOR") return Normal_report(words);
    if (distribution == "BIN") return Binomial_report(words);
    return Refused("PVALUES needs a distribution: CHI x df, NOR z or BIN x n p");
}

Outcome PVALUES() {
    const PValueReport report = Report_of_line(The_line.CommandLine);
    if (!report.refusal.empty()) {
        ShowMessage(report.refusal);
        return Outcome::refused;
    }
    Write_lines(report.lines);
    return Outcome::done;
}

constexpr const char* PvaluesHelp =
    "PVALUES CHI x df\n"
    "PVALUES NOR z\n"
    "PVALUES BIN x n p\n"
    "\n"
    "The p-value of a test statistic from elsewhere, by the functions that the tests use:\n"
    "\n"
    "  CHI  the upper tail of chi-square with df degrees of freedom at x\n"
    "  NOR  the tail of the standard normal distribution beyond z, on the side of z\n"
    "       (1-sided), and both tails (2-sided)\n"
    "  BIN  the tails of the binomial distribution of n trials with probability p:\n"
    "       x or more, and x or fewer\n"
    "\n"
    "A chi-square of more than 100 degrees of freedom has the approximation of Wilson and\n"
    "Hilferty, which may differ by 0.0001. Numbers have a point and no exponent.\n"
    "\n"
    "Example: PVA CHI 5.99 2\n"
    "\n"
    "Refused for a negative chi-square, df or n below 1 or not whole, x above n, and a p\n"
    "outside 0 to 1.";

}  // namespace

void Register_pvalues_command() {
    Register_command(
        {.keyword = "PVA",
         .run = PVALUES,
         .report = Report::opened,
         .spelling = "PVALUES",
         .summary = "calculates p-values for test statistics from a named distribution",
         .help = PvaluesHelp});
}

}  // namespace tarven
