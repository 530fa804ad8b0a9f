#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace tarven {

/// Moments at which every floor has something to do. The procedures of a moment run in the order
/// in which they were added, which is the order of the floors.
enum class Moment : std::uint8_t {
    workspace_reset,         ///< start values, at program start and before each test
    project_read,            ///< definitions are read; data follow
    project_opened_by_hand,  ///< a person opened the project (-p, the start dialogue, OPE that
                             ///< finds none and asks); its data are there, and files may be
                             ///< completed
    project_about_to_close,  ///< what rests on the project is given up
    variables_changed,       ///< other variables, or another recursive structure
    data_replaced,           ///< other cases of the same variables: what was computed from those
                             ///< before is given up
    table_replaced,          ///< the current table is gone or another
    items_changed            ///< the current item model is gone or another
};

/// Adds a procedure under a name that says whose it is. A second one of that name at the same
/// moment is a programming error.
void At_moment(Moment moment, const std::string& name, std::function<void()> run);

void Run_moment(Moment moment);

/// Adds a question that the exit flow asks before anything is given up, "Save Graph" say. It
/// returns false to keep the project open.
void Ask_before_exit(const std::string& name, std::function<bool()> may_end);

/// Asks them in the order of the floors; false as soon as one keeps the project open.
bool May_end_by_questions();

}  // namespace tarven
