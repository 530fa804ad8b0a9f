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
    std::string caption = "TARVEN";
    for (;;) {
        const std::string answer =
            AskUser(caption, reopen + "O opens a project, Enter goes on without", "");
        const std::string word = Upper(answer);
        if (Word_count(answer) == 0) return;
        if (Get_word(1, word) == word) {
            if (word == "O" || word == "OPEN") return (void)OpenTarvenProjectClick();
            if (last.found && (word == "R" || word == "REOPEN")) return (void)Run_from_code("REO");
        }
        caption = answer + " was not understood. Commands follow at the prompt.";
    }
}

}  // namespace tarven
