#include "project/raw_record.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <tuple>

#include "project/data_files.h"
#include "support/definitions.h"

namespace tarven {
namespace {

struct Records {
    std::vector<std::vector<double>> values;  ///< without slot 0
    std::string error;
};

Records Read_all(std::string_view text, int NTAL) {
    LineReader file(text, "x.DAT");
    Records records;
    std::vector<double> values;
    while (true) {
        const RecordReading reading = Read_record(file, NTAL, values);
        if (!reading.ok) {
            EXPECT_NE(reading.at_end, !reading.error.empty());
            records.error = reading.error;
            return records;
        }
        records.values.emplace_back(values.begin() + 1, values.end());
    }
}

using Values = std::vector<std::vector<double>>;

TEST(RawRecord, ReadsRecordsOverLinesAndEndings) {
    const Values two = {{1, 2, 3}, {4, 5, 6}};
    for (const std::string text : {"1 2 3\n4 5 6\n", "1 2 3\n4 5 6", "1 2 3\r\n4 5 6\r\n",
                                   "1\n2\n3\n4 5\n6\n", "\t1\t2 \t 3\n\n  \n4 5 6\n\n \n",
                                   "\xEF\xBB\xBF"
                                   "1 2 3\n4 5 6\n"}) {
        const Records records = Read_all(text, 3);
        EXPECT_EQ(records.values, two) << text;
        EXPECT_EQ(records.error, "") << text;
    }
    EXPECT_EQ(Read_all("", 3).values.size(), 0u);
    EXPECT_EQ(Read_all("", 3).error, "");
}

TEST(RawRecord, TakesNumbersAndNothingElse) {
    const Records records = Read_all(
        std::string("1,5 -2 +3. .5 -0,25 007 NA . 1E5 nan inf 1.2.3 - + 1-2 0x1 a\0b", 63), 17);
    const double no = NotANumber;
    EXPECT_EQ(records.error, "");
    EXPECT_EQ(records.values,
              (Values{{1.5, -2, 3, .5, -.25, 7, no, no, no, no, no, no, no, no, no, no, no}}));
}

// The short cut for up to 15 digits and the long road give what the C library gives.
TEST(RawRecord, GivesTheNearestDouble) {
    std::mt19937 random(1);
    for (int k = 0; k < 20000; ++k) {
        const std::size_t digits = 1 + random() % 22;
        std::string word;
        for (std::size_t d = 0; d < digits; ++d) word += static_cast<char>('0' + random() % 10);
        if (random() % 4) word.insert(random() % (digits + 1), ".");
        if (random() % 3 == 0) word.insert(0, random() % 2 ? "-" : "+");
        const Records records = Read_all(word, 1);
        ASSERT_EQ(records.values.size(), 1u) << word;
        ASSERT_EQ(records.values[0][0], std::strtod(word.c_str(), nullptr)) << word;
    }
}

TEST(RawRecord, SaysWhatIsWrongAndWhere) {
    const std::string huge(400, '9');
    const struct {
        std::string text;
        int NTAL;
        std::size_t records;
        std::string error;
    } rows[] = {
        {"1 2\n", 1, 0, "Error reading data: Too many variables (2) in 1 2 (x.DAT, line 1)"},
        {"1 2\n3\n4 5 6\n", 4, 0,
         "Error reading data: Too many variables (6) in 4 5 6 (x.DAT, line 3)"},
        {"1 2\n3 4\n5\n", 2, 2, "Error reading data: Missing records (x.DAT, line 3)"},
        {"1\n", 1601, 0, "Error reading data: 1601 variables > 1600"},
        {"1 " + huge + "\n", 2, 0,
         "Error reading data: Non-numerical data: \"" + huge.substr(0, 120) + "\" (x.DAT, line 1)"},
    };
    for (const auto& row : rows) {
        const Records records = Read_all(row.text, row.NTAL);
        EXPECT_EQ(records.error, row.error);
        EXPECT_EQ(records.values.size(), row.records) << row.error;
    }
    // A line of a megabyte is one line with too many values; its message stays short.
    std::string megabyte;
    while (megabyte.size() < (1u << 20)) megabyte += "12 ";
    EXPECT_LT(Read_all(megabyte, 3).error.size(), 250u);
    EXPECT_NE(Read_all(megabyte, 3).error.find("Too many variables (349526)"), std::string::npos);
}

TEST(Recoding, FollowsCutPointsConditionsAndSelections) {
    ProjectDefinition definition = Definition_of_dims({3, 2});
    definition.NTAL = 4;
    definition.variables[1].vfra = 0;
    definition.variables[1].vtil[1] = 1.5;
    definition.variables[1].vtil[2] = 2;
    definition.variables[1].vtil[3] = 10;
    const auto codes = [&](double a, double b, double c = 0, double d = 0) {
        std::uint8_t found[2] = {9, 9};
        const bool accepted = Recode_record(Make_recoding(definition), {0, a, b, c, d}, found);
        return std::vector<int>{accepted, found[0], found[1]};
    };
    using Row = std::vector<int>;
    EXPECT_EQ(codes(0, 1), (Row{1, 1, 1}));  // at vfra
    EXPECT_EQ(codes(-0.001, 0.999), (Row{1, 0, 0}));
    EXPECT_EQ(codes(1.5, 1.001), (Row{1, 1, 2}));  // at a cut point
    EXPECT_EQ(codes(1.501, 2), (Row{1, 2, 2}));
    EXPECT_EQ(codes(10, 2.001), (Row{1, 3, 0}));
    EXPECT_EQ(codes(10.001, NotANumber), (Row{1, 0, 0}));
    definition.conditions = {{.column = 3, .lower = 16, .upper = 40}};
    EXPECT_EQ(codes(1, 1, 15.99), (Row{0, 0, 0}));
    EXPECT_EQ(codes(1, 1, 16), (Row{1, 1, 1}));
    EXPECT_EQ(codes(1, 1, 40), (Row{1, 1, 1}));
    definition.selections = {{.column = 4, .values = {2, -4}}};
    EXPECT_EQ(codes(1, 1, 20, 2.5), (Row{1, 1, 1}));  // ties go to the even number
    EXPECT_EQ(codes(1, 1, 20, 1.5), (Row{1, 1, 1}));
    EXPECT_EQ(codes(1, 1, 20, -4.5), (Row{1, 1, 1}));
    EXPECT_EQ(codes(1, 1, 20, 3.5), (Row{0, 0, 0}));
    EXPECT_EQ(codes(1, 1, 20, 1e300), (Row{0, 0, 0}));
    EXPECT_EQ(codes(1, 1, 15, 2), (Row{0, 0, 0}));
}

/// Cases by Read_record and Recode_record alone, and how the file ends.
std::string Plain_cases(std::string_view text, const Recoding& recoding,
                        std::vector<std::vector<int>>& cases) {
    LineReader file(text, "x.DAT");
    std::vector<double> values;
    std::vector<std::uint8_t> codes(static_cast<std::size_t>(recoding.N()));
    while (true) {
        const RecordReading reading = Read_record(file, recoding.NTAL, values);
        if (!reading.ok) return reading.error;
        if (Recode_record(recoding, values, codes.data()))
            cases.emplace_back(codes.begin(), codes.end());
    }
}

using Counted_words = std::map<std::string, std::tuple<std::int64_t, std::int64_t, int>>;

/// The words of the first records that are no number, in columns that are used: how many of each,
/// line and column of the first.
Counted_words Plain_words(const std::string& text, const ProjectDefinition& definition,
                          std::int64_t records) {
    std::set<int> used;
    for (std::size_t v = 1; v <= 3; ++v) used.insert(definition.variables[v].VARNO);
    for (const RangeCondition& c : definition.conditions) used.insert(c.column);
    for (const ValueSelection& s : definition.selections) used.insert(s.column);
    Counted_words counted;
    std::istringstream lines(text);
    std::int64_t words = 0, line_number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++line_number;
        std::istringstream in(line);
        for (std::string word; in >> word; ++words) {
            const int column = static_cast<int>(words % definition.NTAL) + 1;
            const bool number = word.find_first_not_of("+-.,0123456789") == std::string::npos &&
                                word.find_first_of("0123456789") != std::string::npos;
            if (number || words >= records * definition.NTAL || !used.contains(column)) continue;
            auto& [count, first_line, first_column] = counted[word];
            if (count++ == 0) std::tie(first_line, first_column) = std::tie(line_number, column);
        }
    }
    return counted;
}

TEST(Recoding, ReadsCasesByTheShortRoadAsByThePlainOne) {
    std::mt19937 random(9);
    const auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    const char* const words[] = {"1",
                                 "2",
                                 "3",
                                 "0",
                                 "2.5",
                                 "1,5",
                                 "-1",
                                 "17",
                                 "NA",
                                 ".",
                                 "+2",
                                 "00000000000002",
                                 "0000000000000000000001",
                                 "1234567890123456",
                                 "nan",
                                 "2 ",
                                 "1\t",
                                 "-0",
                                 "99.99",
                                 "a"};
    for (int round = 0; round < 400; ++round) {
        ProjectDefinition definition = Definition_of_dims({3, 2, 3});
        definition.NTAL = 5;
        for (std::size_t v = 1; v <= 3; ++v) definition.variables[v].VARNO = 1 + pick(5);
        if (pick(3) == 0) definition.conditions = {{.column = 1 + pick(5), .lower = 1, .upper = 2}};
        if (pick(3) == 0) definition.selections = {{.column = 1 + pick(5), .values = {1, 2, 3}}};
        std::string text;
        for (int k = pick(60); k > 0; --k) {
            text += words[pick(pick(4) == 0 ? 20 : 4)];
            text += k % 5 == 1 && pick(12) > 0 ? "\n"
                    : pick(9) > 0              ? " "
                    : pick(2) > 0              ? "  "
                                               : "\n";
        }
        const Recoding recoding = Make_recoding(definition);
        std::vector<std::vector<int>> plain, found;
        const std::string error = Plain_cases(text, recoding, plain);
        LineReader file(text, "x.DAT");
        RecordCounts counts;
        EXPECT_EQ(Read_DAT_cases(file, recoding, counts,
                                 [&](const std::uint8_t* codes, std::int32_t) {
                                     found.emplace_back(codes, codes + 3);
                                     return true;
                                 }),
                  error);
        EXPECT_EQ(found, plain) << text;
        EXPECT_EQ(counts.no_numbers.others, 0);
        Counted_words counted;
        for (const auto& [first, count] : counts.no_numbers.kinds)
            counted[first.text] = {count, first.line, first.column};
        EXPECT_EQ(counted, Plain_words(text, definition, counts.read)) << text;
    }
}

TEST(Recoding, RefusesColumnsOutsideTheRecord) {
    ProjectDefinition definition = Definition_of_dims({2, 2});
    EXPECT_EQ(Make_recoding(definition).failure, "");
    definition.variables[2].VARNO = 3;
    EXPECT_EQ(Make_recoding(definition).failure,
              "Variable B refers to column 3 of records of 2 values");
    definition.variables[2].VARNO = 0;
    EXPECT_NE(Make_recoding(definition).failure, "");
    definition = Definition_of_dims({2, 2});
    definition.conditions = {{.column = 3, .lower = 0, .upper = 1}};
    EXPECT_NE(Make_recoding(definition).failure, "");
}

}  // namespace
}  // namespace tarven
