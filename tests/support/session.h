#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace tarven {

/// A fresh workspace in a scratch folder that is the current and the start folder; nobody is at
/// the terminal. The folder is gone and the old one current again afterwards.
class SessionTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    /// Runs lines as a command file would, answers included, and returns what they added to the
    /// report.
    std::vector<std::string> Run(std::vector<std::string> lines);

    void Put(const std::string& name, const std::string& bytes);
    std::string Bytes(const std::string& name) const;  ///< empty when there is no such file
    bool Exists(const std::string& name) const;
    std::vector<std::string> File_names() const;  ///< of the scratch folder, sorted
    /// Copies the files of an example project into the scratch folder.
    void Copy_example(const std::string& name);

    std::filesystem::path folder;

  private:
    std::filesystem::path before_;
};

/// Whether one of the lines holds the text.
bool Has_line_with(const std::vector<std::string>& lines, const std::string& text);

/// Lines as one text, for messages of failing tests.
std::string Joined(const std::vector<std::string>& lines);

}  // namespace tarven
