#include "project/select_variables.h"

#include <gtest/gtest.h>

#include "shell/text.h"

namespace tarven {

TEST(SelectVariables, ABlockBeginsAtEachVariableOfAHigherBlockThanAllBefore) {
    ProjectDefinition project;
    project.N = 5;
    const int blocks[] = {1, 2, 1, 2, 4};
    for (std::size_t i = 1; i <= 5; ++i) {
        project.variables[i].label = static_cast<char>('A' + i - 1);
        project.variables[i].dim = 2;
        project.variables[i].Levnr = static_cast<std::uint8_t>(blocks[i - 1]);
    }
    const auto select = [&](const std::string& text, const ScoreGroups& score) {
        ParsedLine line;
        Parse_command(text, line);
        line.CommandLine = text;
        return Select_variables(line, project, score, true);
    };
    EXPECT_EQ(select("TAB *", {}).LevelEnd, (std::vector<int>{1, 4, 5}));
    EXPECT_EQ(select("TAB BCD", {}).LevelEnd, (std::vector<int>{3}));
    const SelectedVariables score = select("TAB AE#", {.count = 6, .block = 1});
    EXPECT_EQ(score.numbers, (std::vector<int>{255, 1, 5}));
    EXPECT_EQ(score.variables[0].dim, 6);
    EXPECT_EQ(score.LevelEnd, (std::vector<int>{2, 3}));
}

TEST(SelectVariables, NamesALetterOutsideLatin1AsItWasTyped) {
    ProjectDefinition project;
    project.N = 2;
    for (std::size_t i = 1; i <= 2; ++i) {
        project.variables[i].label = static_cast<char>('A' + i - 1);
        project.variables[i].dim = 2;
    }
    ParsedLine line;
    Parse_command(To_line("TAB A\xCE\xA9"), line);
    line.CommandLine = To_line("TAB A\xCE\xA9");
    EXPECT_EQ(To_utf8(Select_variables(line, project, {}, true).not_understood),
              ": \"\xCE\xA9\" in \"A\xCE\xA9\" is no variable");
}

}  // namespace tarven
