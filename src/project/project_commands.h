#pragma once

namespace tarven {

/// Opening and closing of projects, command files, what can be done with the report, and what is
/// shown of a project's definitions.
void Register_project_commands();

}  // namespace tarven
