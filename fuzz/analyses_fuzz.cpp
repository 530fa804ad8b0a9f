// Commands on the tables of a small project, put together from bytes: every byte is a command or a
// character of its parameters. Simulations are short, and stopped as a user would after a while.

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <string>

#include "app/register.h"
#include "shell/command_stream.h"
#include "shell/dispatcher.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "shell/user.h"
#include "shell/workspace.h"

namespace {

using namespace tarven;

constexpr int MostReplicates = 60;
constexpr int MostSteps = 3000;
constexpr std::size_t MostLines = 25;

const char* const commands[] = {"TAB", "HYP", "THR", "ELA", "TES", "TES", "CHO", "FDR", "MAN",
                                "KAP", "COR", "GAM", "PGA", "PGA", "EXA", "REP", "SEQ", "ASY",
                                "ONE", "TWO", "CHI", "DEV", "POW", "LOC", "GLO", "PAR", "NPA",
                                "SHO", "DIS", "FRE", "MIS", "Y",   "N",   "SEL"};
constexpr char characters[] = "ABCDEABCDE*LDGKQMRTOFX# 1234-";

/// A has four nominal categories, B two, C three ordinal ones, D three nominal, E no cases in one.
void Write_project() {
    std::ofstream("P.DEF") << "5\n";
    std::ofstream("P.VAR") << "5\nA 1 4 2\n0 1 2 3 4\nB 2 2 3\n0 1 2\nC 3 3 3\n0 1 2 3\n"
                              "D 4 3 2\n0 1 2 3\nE 5 4 3\n0 1 2 3 4\n2\n2 5\n";
    std::ofstream data("P.DAT");
    for (unsigned k = 0; k < 70; ++k) {
        const unsigned word = k * 2654435761u >> 8;
        data << 1 + word % 4 << ' ' << 1 + (word >> 4) % 2 << ' ' << 1 + (word >> 7) % 3 << ' '
             << word % 17 % 4 << ' ' << 1 + (word >> 11) % 3 << '\n';
    }
}

std::vector<std::string> Lines_of(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> lines;
    std::size_t at = 0;
    const auto next = [&] { return at < size ? data[at++] : std::uint8_t{0}; };
    while (at < size && lines.size() < MostLines) {
        std::string line = commands[next() % std::size(commands)];
        const int length = next() % 6;
        if (length > 0) line += ' ';
        for (int k = 0; k < length; ++k) line += characters[next() % (sizeof characters - 1)];
        lines.push_back(line);
    }
    return lines;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    Register_all();
    Write_project();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Init_workspace();
    The_session.StartPath = ".";
    int steps = 0;
    The_user.user.progress = [&](const std::string&, std::int64_t, std::int64_t) {
        if (++steps > MostSteps) Stop_requested = true;
    };
    std::vector<std::string> lines = Lines_of(data, size);
    lines.insert(lines.begin(), {"OPE P", "TAB ABCD", "HYP **"});
    Push_lines(std::move(lines));
    while (const auto line = Next_line()) {
        The_settings.Nsim = std::min(The_settings.Nsim, MostReplicates);
        Run_line(*line);
    }
    The_command_stream.sources.clear();
    Stop_requested = false;
    The_user.user = {};
    return 0;
}
