// The two stages of the report: what is on disk, what is in sight, and when.

#include "shell/report.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "shell/session.h"
#include "support/session.h"

namespace tarven {
namespace {

using Lines = std::vector<std::string>;

struct TwoStages : SessionTest {};

TEST_F(TwoStages, KeepLinesOnDiskUntilTheyAreClosedIntoSight) {
    Open_report();
    Write_report("first");
    EXPECT_EQ(Bytes("TARVEN.TMP"), "first\n") << "on disk at once, for a crash";
    EXPECT_EQ(The_report.OutputField, Lines{});
    Flush_report();
    EXPECT_EQ(The_report.OutputField, Lines{"first"});
    Write_report("second");
    EXPECT_EQ(Bytes("TARVEN.TMP"), "second\n") << "those since the last flush alone";
    ShowReportLine("straight");
    Close_report();
    EXPECT_EQ(The_report.OutputField, (Lines{"first", "straight", "second"}));
    EXPECT_EQ(The_report.ReportOpen, 0);
    EXPECT_TRUE(The_report.OutputChanged);
    EXPECT_EQ(Bytes("TARVEN.TMP"), "second\n") << "nothing is deleted by closing";
    Open_report();
    EXPECT_EQ(Bytes("TARVEN.TMP"), "") << "the next opening overwrites";
}

TEST_F(TwoStages, MoveTheLinesOfAReportWithinAReportWithTheOuterOne) {
    Open_report();
    Write_report("before");
    Open_report();
    Write_report("within");
    Close_report();
    Write_report("behind");
    EXPECT_EQ(The_report.OutputField, Lines{});
    EXPECT_EQ(Bytes("TARVEN.TMP"), "before\nwithin\nbehind\n");
    Open_report();
    Flush_report();
    EXPECT_EQ(The_report.OutputField, (Lines{"before", "within", "behind"}));
    Write_report("flushed");
    Close_report();
    EXPECT_EQ(The_report.OutputField.size(), 3U) << "the outer report is open still";
    EXPECT_EQ(Bytes("TARVEN.TMP"), "flushed\n");
    Close_report();
    EXPECT_EQ(The_report.OutputField.back(), "flushed");
    EXPECT_EQ(The_report.ReportOpen, 0);
}

TEST_F(TwoStages, GoOnInTheFileOfTheNextProjectWithinAnOpenReport) {
    Open_report();
    Write_report("before");
    Release_report_file();
    EXPECT_EQ(The_report.OutputField, Lines{"before"});
    Write_report("between");
    The_report.ReportFile = folder / "next.TMP";
    Open_report();
    Write_report("after");
    Close_report();
    EXPECT_EQ(Bytes("next.TMP"), "between\nafter\n") << "what memory held goes first";
    Close_report();
    EXPECT_EQ(The_report.OutputField, (Lines{"before", "between", "after"}));
}

TEST_F(TwoStages, CopyWhatACrashWouldTake) {
    Open_report();
    Write_report("at risk");
    EXPECT_EQ(Backup_report(), "");
    EXPECT_EQ(Bytes("TMPcopy.txt"), "Copy of TMPfile\nat risk\n");
    Write_report("more");
    EXPECT_EQ(Bytes("TARVEN.TMP"), "at risk\nmore\n") << "it goes on where it was";
}

TEST_F(TwoStages, LoseNothingWhenTheFileCannotBeWritten) {
    std::filesystem::create_directory(folder / "TARVEN.TMP");
    for (int time = 1; time <= 2; ++time) {
        Open_report();
        Write_report("kept");
        Open_report();
        Write_report("kept");
        Close_report();
        Close_report();
    }
    int told = 0;
    int kept = 0;
    for (const std::string& line : The_report.OutputField) {
        if (line.find("TARVEN.TMP could not be written: ") != std::string::npos) ++told;
        if (line == "kept") ++kept;
    }
    EXPECT_EQ(told, 1) << Joined(The_report.OutputField);
    EXPECT_EQ(kept, 4);
}

TEST_F(TwoStages, HandEveryLineOnOnceAndInOrder) {
    Lines heard;
    The_report.on_line = [&](const std::string& line) { heard.push_back(line); };
    Write_report("closed");
    Open_report();
    Write_report("a\r\nb");
    Write_report("\xE6\x1B[31m\tx");
    EXPECT_EQ(heard, Lines{"closed"});
    Close_report();
    The_report.on_line = nullptr;
    EXPECT_EQ(heard, (Lines{"closed", "a", "b", "\xE6?[31m x"}));
    EXPECT_EQ(The_report.OutputField, heard);
    EXPECT_EQ(Bytes("TARVEN.TMP"), "a\nb\n\xC3\xA6?[31m x\n") << "UTF-8 on disk";
}

TEST_F(TwoStages, FrameAndUnderlineByCharacters) {
    Write_header("\xD8rsted");
    Write_underlined("\xD8l");
    EXPECT_EQ(The_report.OutputField,
              (Lines{"", "+--------+", "| \xD8rsted |", "+--------+", "", "\xD8l", "--"}));
}

}  // namespace
}  // namespace tarven
