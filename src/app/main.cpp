#include <cstdio>
#include <iostream>
#include <string>

#include "app/register.h"
#include "shell/command_files.h"
#include "shell/command_stream.h"
#include "shell/dispatcher.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/text.h"
#include "shell/user.h"

int main(int argc, char** argv) {
    using namespace tarven;
    Register_all();
    The_session.StartPath = std::filesystem::current_path();
    The_report.on_line = [](const std::string& line) {
        std::puts(To_utf8(line).c_str());
        std::fflush(stdout);
    };
    for (int k = 1; k < argc && !The_session.QuitRequested; ++k) RunBatchfile(argv[k]);
    if (argc > 1) return 0;
    Push_line_source([]() -> std::optional<std::string> {
        std::string line;
        if (!std::getline(std::cin, line)) return {};
        return To_latin1(line);
    });
    while (!The_session.QuitRequested) {
        const auto line = Next_line();
        if (!line) break;
        Run_line(*line);
    }
}
