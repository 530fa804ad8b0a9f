#include "rasch/items/score_report.h"

#include <fmt/format.h>

#include "shell/fields.h"

namespace tarven {

namespace {

constexpr int ScoreWidth = 11;

std::string Count_line(const std::string& score, std::int64_t count, std::int64_t up_to,
                       std::int64_t total) {
    const auto percent = [&](std::int64_t part) {
        return total == 0 ? 0 : 100.0 * static_cast<double>(part) / static_cast<double>(total);
    };
    return Beside(Right(score, ScoreWidth), Field(count, 7)) + Field(percent(count), 8, 1) +
           Field(percent(up_to), 11, 1);
}

/// "NAME: 316 Cases" and the headings of the columns.
std::vector<std::string> Headings(const std::string& name, std::int64_t cases) {
    return {fmt::format("{}: {} Cases", name, cases), "",
            Right("Score", ScoreWidth) + "  Count Percent Cumulative"};
}

constexpr std::size_t MostGroupColumns = 12;

}  // namespace

std::string Cut_line(const CutRequest& request, const CutGroups& made) {
    switch (request.form) {
        case CutForm::median:
            return fmt::format(
                "Score groups: two, cut at the median of the complete scores ({}); CUT makes "
                "others",
                made.groups.ScoreCuts[1]);
        case CutForm::raw_scores:
            return "New score groups = raw scores.";
        case CutForm::cutpoint:
            return "New score groups by cutpoints.";
        case CutForm::interval:
            return "New score groups: Inteval of raw scores";
        case CutForm::min_cuts_max:
            return "New score groups by (min,cuts,max.)";
        case CutForm::persons:
            return fmt::format("New score groups: {} persons.", request.numbers[0]);
        default:
            return fmt::format("New score groups: {} groups.", request.numbers[0]);
    }
}

std::vector<std::string> Observed_range_lines(const ScoreGrouping& groups,
                                              int highest_possible_score) {
    if (groups.MinScore <= 0 && groups.MaxScore >= highest_possible_score) return {};
    return {"Observed:", fmt::format("Minimum score = {}", groups.MinScore),
            fmt::format("maximum score = {}", groups.MaxScore)};
}

std::vector<std::string> Group_distribution_lines(const ScoreGrouping& groups,
                                                  const ScoreGroupDistribution& distribution) {
    const std::int64_t total = distribution.Count(groups.ScoreDim + 1);
    std::vector<std::string> lines = Headings("ScoreGrp", total);
    std::int64_t up_to = 0;
    for (int g = 1; g <= groups.ScoreDim; ++g) {
        up_to += distribution.Count(g);
        lines.push_back(Count_line(Group_name(groups, g), distribution.Count(g), up_to, total));
    }
    if (distribution.Count(0) > 0)
        lines.push_back(Count_line("outside", distribution.Count(0), total, total));
    return lines;
}

std::vector<std::string> Score_distribution_lines(const ScoreDistribution& scores,
                                                  const ScoresOfCategory& all,
                                                  const std::string& Scorename) {
    std::vector<std::string> lines = Headings(Scorename, scores.complete);
    std::int64_t up_to = 0;
    for (int s = 0; s <= MaxTotalScore; ++s) {
        if (scores.Count(s) == 0) continue;
        up_to += scores.Count(s);
        lines.push_back(Count_line(std::to_string(s), scores.Count(s), up_to, scores.complete));
    }
    lines.insert(lines.end(), {"", fmt::format("Mean = {}  s.d. = {}", Field(all.mean, 0, 2),
                                               Field(all.standard_deviation, 0, 2))});
    return lines;
}

std::string Complete_persons_line(const ScoreDistribution& scores) {
    return fmt::format("{} person{}, {} with responses to all items", scores.persons,
                       scores.persons == 1 ? "" : "s", scores.complete);
}

std::vector<std::string> Scores_by_lines(const GLLRM& model, int x,
                                         const std::vector<ScoresOfCategory>& scores,
                                         const std::vector<std::string>& names) {
    const ExogenousVariable& exo = model.ExoNo(x);
    const auto groups = static_cast<std::size_t>(model.groups.ScoreDim);
    const bool by_group = groups >= 2 && groups <= MostGroupColumns;
    std::string heading = Blanks(12) + Right("Persons", 8) + Right("Mean", 8) + Right("s.d.", 8);
    for (std::size_t g = 1; by_group && g <= groups; ++g)
        heading = Beside(heading, Right(Group_name(model.groups, static_cast<int>(g)), 9));
    std::vector<std::string> lines = {fmt::format("Scores by {} {}", exo.label, exo.name), "",
                                      heading};
    for (std::size_t c = 0; c < scores.size(); ++c) {
        const std::size_t category = c + 1 < scores.size() ? c + 1 : 0;  // those without one last
        const ScoresOfCategory& of = scores[category];
        if (category == 0 && of.persons == 0) continue;
        const bool named =
            category >= 1 && category <= names.size() && !names[category - 1].empty();
        const std::string name = category == 0 ? "missing"
                                 : named       ? names[category - 1]
                                               : std::to_string(category);
        std::string line = Beside(Left(" " + name, 12), Field(of.persons, 8));
        line += of.persons > 0 ? Field(of.mean, 8, 2) : Right(".", 8);
        line += of.persons > 1 ? Field(of.standard_deviation, 8, 2) : Right(".", 8);
        for (std::size_t g = 1; by_group && g <= groups; ++g)
            line = Beside(line, Field(of.group_counts[g], 9));
        lines.push_back(line);
    }
    return lines;
}

}  // namespace tarven
