#pragma once

namespace tarven {

/// OPE, REO, S69, BAT, CMD, RUN, CHD, S70, EXI and QUI.
void Register_start_commands();

}  // namespace tarven
