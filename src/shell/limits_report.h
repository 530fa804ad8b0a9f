#pragma once

#include <string>
#include <vector>

namespace tarven {

/// The limits of the system, as SHOW L and every opening of a project print them.
std::vector<std::string> Limits_lines();

/// Two of those lines, for the refusal of what is above them.
std::string Line_on_items();
std::string Line_on_summary_score();

/// Writes the limits into the report.
void Limits_report();

/// One of 16 sayings of scientists in a frame. `r` in [0, 1] gives the smallest i in 1..16 with
/// i/16 >= r.
std::vector<std::string> Quotation(double r);

}  // namespace tarven
