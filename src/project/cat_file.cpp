#include "project/cat_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "shell/text.h"
#include "shell/words.h"

namespace tarven {

namespace {

/// The variable with exactly this label, the last of them; null if none.
template <class Definition>  // constant or not, and its variable likewise
auto Variable_with_label(Definition& project, char label) -> decltype(&project.variables[1]) {
    for (int i = project.N; i >= 1; --i)
        if (project.variables[static_cast<std::size_t>(i)].label == label)
            return &project.variables[static_cast<std::size_t>(i)];
    return nullptr;
}

struct CategoryLine {
    char label = ' ';
    std::int32_t category = 0;
    std::string whole;  ///< the name as it stands
    std::string name;   ///< at most 8 characters of it
};

/// What a line says whatever the variables are; nothing when it names no category.
std::optional<CategoryLine> Words_of_category(std::string line) {
    std::replace(line.begin(), line.end(), '\t', ' ');
    CategoryLine read;
    const std::string label = Get_word(1, line);
    if (label.size() != 1 || !To_integer(Get_word(2, line), read.category)) return {};
    const auto label_at = line.find_first_not_of(' ');
    const auto number_at = line.find_first_not_of(' ', label_at + 1);
    const auto name_at = line.find_first_not_of(' ', line.find(' ', number_at));
    if (name_at == std::string::npos || name_at <= number_at) return {};
    read.label = label[0];
    while (line.ends_with(' ')) line.pop_back();
    read.whole = line.substr(name_at);
    read.name = read.whole.substr(0, MaxNameLength);
    while (read.name.ends_with(' ')) read.name.pop_back();
    return read;
}

bool Read_category_line(const std::string& line, ProjectDefinition& project) {
    const auto read = Words_of_category(line);
    Variable* variable = read ? Variable_with_label(project, read->label) : nullptr;
    if (!variable || read->category < 1 || read->category > variable->dim) return false;
    variable->categoryname[static_cast<std::size_t>(read->category)] = read->name;
    return true;
}

/// Nothing when there is no such category.
std::optional<std::string> Default_name(const ProjectDefinition& project, const CategoryLine& of) {
    const Variable* variable = Variable_with_label(project, of.label);
    if (!variable || of.category < 1 || of.category > variable->dim) return {};
    return Default_category_name(*variable, of.category);
}

bool Is_whole_or_cut(const std::string& name, const std::string& of) {
    return name == of || name == of.substr(0, MaxNameLength);
}

/// The two numbers of "64-72" as they are written; nothing for any other name.
struct Interval {
    std::string from, to;
    bool cut = false;  ///< the name has the length that names are cut to
};

std::optional<Interval> Interval_of(const std::string& name) {
    const auto hyphen = name.find('-', 1);
    if (hyphen == std::string::npos || hyphen + 1 == name.size()) return {};
    Interval read{name.substr(0, hyphen), name.substr(hyphen + 1), name.size() >= MaxNameLength};
    double number = 0;
    if (!To_real(read.from, number) || (!read.cut && !To_real(read.to, number))) return {};
    return read;
}

/// Whether the interval of a category ends where the next begins.
bool Meet(const std::optional<Interval>& a, const std::optional<Interval>& b) {
    return a && b && (a->cut ? b->from.starts_with(a->to) : b->from == a->to);
}

}  // namespace

std::string Default_category_name(const Variable& variable, int category) {
    const auto c = static_cast<std::size_t>(category);
    if (variable.vtype != Ordinal) return fmt::format("Cat {}", category);
    const double lower = category == 1 ? variable.vfra : variable.vtil[c - 1];
    return fmt::format("{:g}-{:g}", lower, variable.vtil[c]);
}

void Set_default_category_names(ProjectDefinition& project) {
    for (int i = 1; i <= project.N; ++i) {
        Variable& variable = project.variables[static_cast<std::size_t>(i)];
        for (int c = 1; c <= variable.dim; ++c)
            variable.categoryname[static_cast<std::size_t>(c)] =
                Default_category_name(variable, c).substr(0, MaxNameLength);
    }
}

int Read_CAT_file(const std::vector<std::string>& lines, ProjectDefinition& project) {
    int passed_over = 0;
    for (const std::string& line : lines)
        if (!Read_category_line(line, project) && Word_count(line) > 0) ++passed_over;
    return passed_over;
}

std::string Renewed_CAT(std::string_view bytes, const ProjectDefinition& before,
                        const ProjectDefinition& now, int& changed) {
    changed = 0;
    std::string result;
    while (!bytes.empty()) {
        const std::size_t size = std::min(bytes.find('\n'), bytes.size() - 1) + 1;
        const std::string_view line = bytes.substr(0, size);
        bytes.remove_prefix(size);
        const auto end = line.find_last_not_of(" \t\r\n");
        const auto read =
            Words_of_category(To_latin1(line.substr(0, end == line.npos ? 0 : end + 1)));
        const auto was = read ? Default_name(before, *read) : std::nullopt;
        const bool generated = was && Is_whole_or_cut(read->whole, *was);
        const auto is = generated ? Default_name(now, *read) : was;
        if (is == was) {
            result += line;
            continue;
        }
        ++changed;
        if (!is) continue;
        result += line.substr(0, end + 1 - read->whole.size());
        result += is->substr(0, MaxNameLength);
        result += line.substr(end + 1);
    }
    return result;
}

std::vector<StaleName> Stale_names(const ProjectDefinition& project) {
    std::vector<StaleName> stale;
    for (int i = 1; i <= project.N; ++i) {
        const Variable& variable = project.variables[static_cast<std::size_t>(i)];
        if (variable.vtype != Ordinal) continue;
        const auto name = [&](int c) -> const std::string& {
            return variable.categoryname[static_cast<std::size_t>(c)];
        };
        const auto interval = [&](int c) {
            return c >= 1 && c <= variable.dim ? Interval_of(name(c)) : std::nullopt;
        };
        for (int c = 1; c <= variable.dim; ++c)
            if (!Is_whole_or_cut(name(c), Default_category_name(variable, c)) &&
                (Meet(interval(c - 1), interval(c)) || Meet(interval(c), interval(c + 1))))
                stale.push_back({i, c});
    }
    return stale;
}

std::string Message_on_stale_names(const ProjectDefinition& project, const std::string& CAT_name) {
    const std::vector<StaleName> stale = Stale_names(project);
    if (stale.empty()) return {};
    const Variable& variable = project.variables[static_cast<std::size_t>(stale[0].variable)];
    return fmt::format(
        "{}: {} are named by intervals that are not theirs. The first is {} {}, named {}, with "
        "values {}. CATEGORIES revises them",
        CAT_name, stale.size() == 1 ? "1 category" : fmt::format("{} categories", stale.size()),
        variable.label, stale[0].category,
        variable.categoryname[static_cast<std::size_t>(stale[0].category)],
        Default_category_name(variable, stale[0].category));
}

std::vector<std::string> CAT_lines(const ProjectDefinition& project) {
    std::vector<std::string> lines;
    for (int i = 1; i <= project.N; ++i) {
        const Variable& variable = project.variables[static_cast<std::size_t>(i)];
        for (int c = 1; c <= variable.dim; ++c)
            lines.push_back(fmt::format("{} {} {}", variable.label, c,
                                        variable.categoryname[static_cast<std::size_t>(c)]));
    }
    return lines;
}

}  // namespace tarven
