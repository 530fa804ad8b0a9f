#pragma once

#include <cstdint>

#include "project/data.h"
#include "tables/numbers/random_stream.h"

namespace tarven {

/// Bootstrap samples of the project's cases: while they are on, TABdata holds a sample drawn with
/// replacement from the cells, and every table is made from it.

struct BootstrapWorkspace {
    bool active = false;
    Data original;  ///< the data while they are swapped out
    std::int32_t cases = 0;
    int samples = 0;  ///< drawn so far
    /// Where the next sample goes on. A test between two samples sets the seed of the one stream
    /// again; without this every sample after it would be the same.
    RandomStream stream;
};

inline BootstrapWorkspace The_bootstrap;

/// QV7, QV8 and QV9: initialise, draw, end. Hidden commands for command files.
void Register_bootstrap_commands();

}  // namespace tarven
