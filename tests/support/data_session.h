#pragma once

#include <string>

#include "support/session.h"

namespace tarven {

/// A session in whose scratch folder a project has been defined: The_project stands as after the
/// reading of DEF and VAR, the flags of DAT, SYS and TAB tell what is there.
class DataSession : public SessionTest {
  protected:
    /// An example project, its files copied.
    void Define_example(const std::string& name);
    /// A project x of variables in columns 1, 2, ... as Definition_of_dims makes it.
    void Define_project(const std::vector<int>& dims);
    /// Looks for DAT, SYS and TAB again.
    void Look_for_files();
};

}  // namespace tarven
