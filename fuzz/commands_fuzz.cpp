// Lines of any bytes through the word utilities, the parser and the dispatcher. Answers to
// questions come from the lines too. The session runs in the folder that the program is started in
// and writes nowhere else: lines with a path in them are parsed and not run.

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "app/completion.h"
#include "app/register.h"
#include "shell/command_stream.h"
#include "shell/dispatcher.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/text.h"
#include "shell/words.h"
#include "shell/workspace.h"

namespace {

using namespace tarven;

/// A name of a file that a line could lead out of the scratch folder by.
bool Leads_outside(const std::string& line) {
    return line.find("..") != std::string::npos || line.find('/') != std::string::npos ||
           line.find('\\') != std::string::npos || line.find('~') != std::string::npos;
}

void Require(bool holds) {
    if (!holds) std::abort();
}

/// What holds for the readings of every text.
void Read_words(const std::string& line) {
    const int count = Word_count(line);
    for (int n = 1; n <= std::min(count, 200); ++n) Require(!Get_word(n, line).empty());
    Require(Get_word(count + 1, line).empty());
    const int type = static_cast<int>(String_type(line));
    Require(type >= 0 && type <= 5);
    Extract_reals(line);
    ParsedLine parsed;
    Parse_command(line, parsed);
    Require(parsed.NumericCount <= MaxNumbers && parsed.ParameterCount <= MaxParameters);
    Require(parsed.Keyword.size() <= 3 && parsed.CommandNumber <= 245);
    Require(!parsed.IsComment || parsed.CommandNumber == 0);
    Require(To_latin1(To_utf8(line)) == line || line.find("\xEF\xBB\xBF") == 0 ||
            line.find('\0') != std::string::npos);
    Completions_of(line, {{'A', "AGE"}, {'\xE6', ""}});
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    Register_all();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Init_workspace();
    The_session.StartPath = ".";
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::vector<std::string> lines;
    for (std::string& line : Split_lines(bytes)) {
        Read_words(line);
        if (!Leads_outside(line)) lines.push_back(std::move(line));
    }
    Push_lines(std::move(lines));
    while (!The_session.QuitRequested) {
        const auto line = Next_line();
        if (!line) break;
        Run_line(*line);
    }
    The_command_stream.sources.clear();
    return 0;
}
