#include "shell/words.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace tarven {
namespace {

TEST(Words, AreSeparatedByBlanksAndNothingElse) {
    EXPECT_EQ(Word_count(""), 0);
    EXPECT_EQ(Word_count("   "), 0);
    EXPECT_EQ(Word_count("  TAB  a\tb "), 2);
    EXPECT_EQ(Get_word(2, "  TAB  a\tb "), "a\tb");
    EXPECT_EQ(Get_word(3, "  TAB  a\tb "), "");
    EXPECT_EQ(Get_word(0, "TAB"), "");
}

TEST(Words, HoldBlanksBetweenQuotes) {
    const std::string line = "OPE  \"my study/a b\"  D  x\" y";
    EXPECT_EQ(Get_name(2, line), "my study/a b");
    EXPECT_EQ(Get_name(3, line), "D");
    EXPECT_EQ(Get_name(4, line), "x\"") << "a lone quote is a character";
    EXPECT_EQ(Get_name(5, line), "y");
    EXPECT_EQ(Get_name(6, line), "");
    EXPECT_EQ(Get_name(2, "OUT my\" \"file"), "my file");
    EXPECT_EQ(Get_name(2, "OUT \"\" x"), "");
}

TEST(Words, KnowWhatIsANumber) {
    struct Row {
        const char* text;
        StringType type;
    };
    const Row rows[] = {
        {"", StringType::empty},
        {"   ", StringType::blanks},
        {" 1 2 ", StringType::several_words},
        {"1E5", StringType::text},
        {"NA", StringType::text},
        {".", StringType::text},
        {"-", StringType::text},
        {"+.", StringType::text},
        {"--1", StringType::text},
        {"1-", StringType::text},
        {"0x10", StringType::text},
        {"nan", StringType::text},
        {"inf", StringType::text},
        {"1,5", StringType::text},
        {"1.2.3", StringType::text},
        {" -12 ", StringType::integer},
        {"+7", StringType::integer},
        {"-.5", StringType::real},
        {"5.", StringType::real},
        {"\t1", StringType::text},
    };
    for (const Row& row : rows) EXPECT_EQ(String_type(row.text), row.type) << row.text;
}

TEST(Words, ReadOnlyNumbersThatHaveAValue) {
    double real = 7;
    EXPECT_TRUE(To_real("+1.5", real));
    EXPECT_EQ(real, 1.5);
    EXPECT_FALSE(To_real("1E5", real));
    EXPECT_FALSE(To_real(std::string(400, '9'), real)) << "beyond the range of a double";
    EXPECT_EQ(real, 1.5) << "a refused text changes nothing";
    EXPECT_TRUE(To_real("0." + std::string(400, '1'), real));

    std::int32_t integer = 7;
    EXPECT_TRUE(To_integer("-2147483648", integer));
    EXPECT_EQ(integer, INT32_MIN);
    EXPECT_FALSE(To_integer("2147483648", integer));
    EXPECT_FALSE(To_integer("1.0", integer));
}

TEST(Words, TakeEveryRunOfDigitsAsANumber) {
    const auto numbers = [](const std::string& text) {
        const Numbers found = Extract_numbers(text);
        return std::vector<std::int32_t>(found.numbers.begin(),
                                         found.numbers.begin() + found.count);
    };
    using List = std::vector<std::int32_t>;
    EXPECT_EQ(numbers("QV7 100"), (List{7, 100}));
    EXPECT_EQ(numbers("EXA 0.05 -3 A1"), (List{0, 5, 3, 1}));
    EXPECT_EQ(numbers("EXA2000"), (List{2000}));
    // 2^32 + 5 wraps: there is no overflow test.
    EXPECT_EQ(numbers("4294967301"), (List{5}));
    EXPECT_EQ(numbers(std::string(119, ' ') + "123"), (List{1})) << "120 characters are read";
    EXPECT_EQ(numbers(std::string(120, ' ') + "123"), (List{}));
}

TEST(Words, KeepTheFirst58Numbers) {
    std::string text;
    for (int k = 0; k < 60; ++k) text += k % 2 ? "1 " : "2 ";
    const Numbers found = Extract_numbers(text);
    EXPECT_EQ(found.count, 58);
    EXPECT_TRUE(found.surplus);
    EXPECT_FALSE(Extract_numbers(text.substr(0, 116)).surplus) << "58 are no surplus";
}

TEST(Words, ReadRealsAndMarkTheRest) {
    const Reals found = Extract_reals("EXA .5 word -2 1E5 3.25");
    ASSERT_EQ(found.count, 3);
    EXPECT_EQ(found.reals[0], 0.5);
    EXPECT_EQ(found.reals[1], -2);
    EXPECT_EQ(found.reals[2], 3.25);
    EXPECT_EQ(found.reals[3], NoReal);
}

// Whatever the text, the n-th words are its non-blank characters in order.
TEST(Words, LoseNoCharacter) {
    std::mt19937 random(3);
    for (int k = 0; k < 500; ++k) {
        std::string text;
        for (auto n = random() % 40; n > 0; --n) text += " a\t1.$?"[random() % 7];
        std::string joined, bare;
        for (int i = 1; i <= Word_count(text); ++i) joined += Get_word(i, text);
        for (const char c : text)
            if (c != ' ') bare += c;
        EXPECT_EQ(joined, bare) << text;
    }
}

}  // namespace
}  // namespace tarven
