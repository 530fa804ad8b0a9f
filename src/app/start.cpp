#include "app/start.h"

#include "project/open_project.h"
#include "project/project_log.h"
#include "shell/dispatcher.h"
#include "shell/user.h"
#include "shell/words.h"

namespace tarven {

void Offer_a_project() {
    const RememberedProject last = Remembered_project();
    const std::string reopen = last.found ? "R reopens " + last.name + ", " : "";
    const std::string answer = Upper(
        Get_word(1, AskUser("TARVEN", reopen + "O opens a project, Enter goes on without", "")));
    if (answer == "R" && last.found) Run_from_code("REO");
    if (answer == "O") OpenTarvenProjectClick();
}

}  // namespace tarven
