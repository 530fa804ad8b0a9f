#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "project/project.h"

namespace tarven {

/// The name of a category that the CAT file does not name: the interval of raw values of an ordinal
/// variable ("64-72"), else "Cat " and the number.
std::string Default_category_name(const Variable& variable, int category);

/// Default names for all categories of all variables.
void Set_default_category_names(ProjectDefinition& project);

/// Takes the names of a CAT file: label, category number and name a line; of the name the first 8
/// characters. Lines that name no category of the project are passed over, and counted in the
/// result.
int Read_CAT_file(const std::vector<std::string>& lines, ProjectDefinition& project);

/// The bytes of a CAT file when the cut points of its variables have changed: each name that the
/// program itself had given under `before` is the one that it gives under `now`, and a line of that
/// kind goes when its category is gone. All other bytes stay. `changed` counts these lines.
std::string Renewed_CAT(std::string_view bytes, const ProjectDefinition& before,
                        const ProjectDefinition& now, int& changed);

/// A category whose name is an interval of raw values that it does not have, as a default name is
/// after the cut points have changed.
struct StaleName {
    int variable = 0;
    int category = 0;
};

/// The categories of ordinal variables that have such names. An interval alone is no sign, since
/// people name categories so; the intervals of categories that follow each other must meet, as
/// those of default names do ("30-64", "64-72").
std::vector<StaleName> Stale_names(const ProjectDefinition& project);

/// How many they are, the first of them, and the mend; empty when there is none.
std::string Message_on_stale_names(const ProjectDefinition& project, const std::string& CAT_name);

/// The lines of a CAT file with the names that the categories have.
std::vector<std::string> CAT_lines(const ProjectDefinition& project);

}  // namespace tarven
