#include "app/start.h"

#include "shell/user.h"

namespace tarven {

bool Open_project_at_start(const std::string& name) {
    ShowMessage(name + " was not opened: opening projects is not available yet");
    return false;
}

}  // namespace tarven
