#pragma once

namespace tarven {

/// Commands that make projects from others or hand data on, none of which is available yet.
void Register_later_project_commands();

}  // namespace tarven
