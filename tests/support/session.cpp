#include "support/session.h"

#include <stdlib.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>

#include "app/register.h"
#include "shell/command_stream.h"
#include "shell/dispatcher.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/workspace.h"

namespace tarven {

namespace fs = std::filesystem;

void SessionTest::SetUp() {
    [[maybe_unused]] static const bool registered = (Register_all(), true);
    Init_workspace();
    std::string name = (fs::temp_directory_path() / "tarven-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    folder = fs::canonical(name);
    before_ = fs::current_path();
    fs::current_path(folder);
    The_session.StartPath = folder;
}

void SessionTest::TearDown() {
    Init_workspace();
    fs::current_path(before_);
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

std::vector<std::string> SessionTest::Run(std::vector<std::string> lines) {
    // As they appear, for a line may erase the report.
    std::vector<std::string> added;
    const auto heard_before = The_report.on_line;
    The_report.on_line = [&](const std::string& line) {
        added.push_back(line);
        if (heard_before) heard_before(line);
    };
    Push_lines(std::move(lines));
    while (!The_session.QuitRequested) {
        const auto line = Next_line();
        if (!line) break;
        Run_line(*line);
    }
    Pop_line_source();
    The_report.on_line = heard_before;
    return added;
}

void SessionTest::Put(const std::string& name, const std::string& bytes) {
    std::ofstream(folder / name, std::ios::binary) << bytes;
}

std::string SessionTest::Bytes(const std::string& name) const {
    std::ostringstream bytes;
    bytes << std::ifstream(folder / name, std::ios::binary).rdbuf();
    return bytes.str();
}

bool SessionTest::Exists(const std::string& name) const {
    return fs::exists(folder / name);
}

std::vector<std::string> SessionTest::File_names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

void SessionTest::Copy_example(const std::string& name) {
    // Not what somebody who opened the example has left there.
    const std::set<std::string> kept = {".DEF", ".VAR", ".CAT", ".DAT"};
    for (const auto& entry : fs::directory_iterator(fs::path(TARVEN_EXAMPLES) / name))
        if (kept.contains(entry.path().extension().string()))
            fs::copy_file(entry.path(), folder / entry.path().filename());
}

bool Has_line_with(const std::vector<std::string>& lines, const std::string& text) {
    return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
        return line.find(text) != std::string::npos;
    });
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

}  // namespace tarven
