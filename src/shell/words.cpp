#include "shell/words.h"

#include <charconv>
#include <cmath>

namespace tarven {

namespace {

std::string_view Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string_view Without_plus(std::string_view text) {
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    return text;
}

/// The next word at or behind `from`; moves `from` behind it. Empty at the end.
std::string_view Next_word(std::string_view text, std::size_t& from) {
    const auto first = text.find_first_not_of(' ', from);
    if (first == std::string_view::npos) {
        from = text.size();
        return {};
    }
    auto last = text.find(' ', first);
    if (last == std::string_view::npos) last = text.size();
    from = last;
    return text.substr(first, last - first);
}

}  // namespace

int Word_count(std::string_view text) {
    int words = 0;
    std::size_t from = 0;
    while (!Next_word(text, from).empty()) ++words;
    return words;
}

std::string Get_word(int n, std::string_view text) {
    std::size_t from = 0;
    std::string_view word;
    for (int i = 1; i <= n; ++i) {
        word = Next_word(text, from);
        if (word.empty()) return {};
    }
    return std::string(word);
}

std::string Get_name(int n, std::string_view text) {
    std::size_t at = 0;
    std::string name;
    for (int i = 1; i <= n; ++i) {
        at = text.find_first_not_of(' ', at);
        if (at == std::string_view::npos) return {};
        name.clear();
        for (; at < text.size() && text[at] != ' '; ++at) {
            const auto end = text[at] == '"' ? text.find('"', at + 1) : std::string_view::npos;
            if (end == std::string_view::npos) {
                name += text[at];
                continue;
            }
            name += text.substr(at + 1, end - at - 1);
            at = end;
        }
    }
    return name;
}

StringType String_type(std::string_view text) {
    if (text.empty()) return StringType::empty;
    const std::string_view word = Trimmed(text);
    if (word.empty()) return StringType::blanks;
    if (word.find(' ') != std::string_view::npos) return StringType::several_words;
    std::size_t k = word[0] == '+' || word[0] == '-' ? 1 : 0;
    int digits = 0;
    int points = 0;
    for (; k < word.size(); ++k) {
        if (Is_digit(word[k]))
            ++digits;
        else if (word[k] == '.')
            ++points;
        else
            return StringType::text;
    }
    if (digits == 0 || points > 1) return StringType::text;
    return points == 0 ? StringType::integer : StringType::real;
}

Numbers Extract_numbers(std::string_view text) {
    Numbers result;
    text = text.substr(0, MaxTextLength);
    for (std::size_t k = 0; k < text.size(); ++k) {
        if (!Is_digit(text[k])) continue;
        std::uint32_t value = 0;
        for (; k < text.size() && Is_digit(text[k]); ++k)
            value = value * 10u + static_cast<std::uint32_t>(text[k] - '0');
        if (result.count == MaxNumbers) {
            result.surplus = true;
            break;
        }
        result.numbers[static_cast<std::size_t>(result.count++)] = static_cast<std::int32_t>(value);
    }
    return result;
}

Reals Extract_reals(std::string_view text) {
    Reals result;
    result.reals.fill(NoReal);
    std::size_t from = 0;
    for (std::string_view word = Next_word(text, from); !word.empty() && result.count < MaxReals;
         word = Next_word(text, from)) {
        double value = 0;
        if (To_real(word, value)) result.reals[static_cast<std::size_t>(result.count++)] = value;
    }
    return result;
}

bool To_real(std::string_view text, double& value) {
    const StringType type = String_type(text);
    if (type != StringType::integer && type != StringType::real) return false;
    const std::string_view word = Without_plus(Trimmed(text));
    double read = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), read);
    if (error != std::errc() || end != word.data() + word.size() || !std::isfinite(read))
        return false;
    value = read;
    return true;
}

bool To_integer(std::string_view text, std::int32_t& value) {
    if (String_type(text) != StringType::integer) return false;
    const std::string_view word = Without_plus(Trimmed(text));
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    return error == std::errc() && end == word.data() + word.size();
}

char Upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::string Upper(std::string_view text) {
    std::string result(text);
    for (char& c : result) c = Upper(c);
    return result;
}

}  // namespace tarven
