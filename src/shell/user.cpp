#include "shell/user.h"

#include <algorithm>
#include <cassert>

#include "shell/command_stream.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/words.h"

namespace tarven {

namespace {

/// The display is redrawn at most this many times a run.
constexpr std::int64_t ProgressDraws = 200;

/// The answer that the next line of the command stream is, taken from it; nothing (and the line
/// stays) when it is no answer. Nor is an empty line: it was written to part commands.
std::optional<Answer> Answer_from_stream(bool with_cancel) {
    const std::optional<std::string> line = Peek_line();
    if (!line || Word_count(*line) != 1) return {};
    const std::string word = Upper(Get_word(1, *line));
    std::optional<Answer> answer;
    if (word == "Y" || word == "YES") answer = Answer::yes;
    if (word == "N" || word == "NO") answer = Answer::no;
    if (with_cancel && (word == "C" || word == "CANCEL")) answer = Answer::cancel;
    if (answer) Next_line();
    return answer;
}

/// Beside the report, which is the same whoever answers. At the end of the stream nobody is left
/// who could have meant to answer.
void Tell_unanswered(const std::string& question) {
    if (The_user.user.show_message && Peek_line())
        The_user.user.show_message(question + " No: the next line is no answer");
}

void Draw_progress(std::int64_t position) {
    if (!The_user.user.progress || !The_user.progress_shown ||
        std::this_thread::get_id() != The_user.progress_thread)
        return;
    // A step may be asked more than once where nobody knew before how long it would be.
    position = std::min(position, The_user.progress_end);
    const std::int64_t interval = The_user.progress_end / ProgressDraws + 1;
    if (position / interval != The_user.progress_drawn / interval || position == 0) {
        The_user.progress_drawn = position;
        The_user.user.progress(The_user.progress_title, position, The_user.progress_end);
    }
}

}  // namespace

void ShowMessage(const std::string& text) {
    Write_report(text);
    if (The_user.user.show_message) The_user.user.show_message(text);
}

void Show_machine_failure(const std::string& text) {
    The_session.machine_failed = true;
    ShowMessage(text);
}

bool AskYesNo_always(const std::string& text) {
    if (The_user.user.ask_yes_no) return The_user.user.ask_yes_no(text).value_or(false);
    const std::optional<Answer> answer = Answer_from_stream(false);
    if (!answer) Tell_unanswered(text);
    return answer == Answer::yes;
}

bool AskYesNo(const std::string& text) {
    return The_session.AUTOMATIC || AskYesNo_always(text);
}

std::optional<bool> AskYesNo_or_nobody(const std::string& text) {
    if (The_session.AUTOMATIC) return true;
    if (The_user.user.ask_yes_no) return The_user.user.ask_yes_no(text);
    const std::optional<Answer> answer = Answer_from_stream(false);
    return answer ? std::optional(answer == Answer::yes) : std::nullopt;
}

bool Yes_or_automatic(const std::string& text) {
    return AskYesNo(text);
}

bool No_or_automatic(const std::string& text) {
    return The_session.AUTOMATIC || !AskYesNo_always(text);
}

Answer AskYesNoCancel(const std::string& text) {
    if (The_session.AUTOMATIC) return Answer::yes;
    if (The_user.user.ask_yes_no_cancel) {
        const std::optional<bool> answer = The_user.user.ask_yes_no_cancel(text);
        if (!answer) return Answer::cancel;
        return *answer ? Answer::yes : Answer::no;
    }
    const std::optional<Answer> answer = Answer_from_stream(true);
    if (!answer) Tell_unanswered(text);
    return answer.value_or(Answer::no);
}

std::string AskUser(const std::string& caption, const std::string& prompt,
                    const std::string& initial) {
    if (The_user.user.ask_user)
        return The_user.user.ask_user(caption, prompt, initial).value_or(initial);
    const std::string answer = Next_line().value_or("");
    return answer.empty() ? initial : answer;
}

std::string SelectVariables(const std::string& title, const std::vector<std::string>& labels) {
    return The_user.user.select_variables ? The_user.user.select_variables(title, labels) : "";
}

std::string Choose_file(const std::string& title, const std::string& filter,
                        const std::string& folder) {
    return The_user.user.choose_file ? The_user.user.choose_file(title, filter, folder) : "";
}

std::vector<std::string> Warning_lines(const std::vector<std::string>& lines) {
    constexpr std::size_t Most = 10, Longest = 54, Cut = 50;
    const std::size_t count = std::min(lines.size(), Most);
    std::vector<std::string> shown((Most - count) / 2);
    for (std::size_t line_index = 0; line_index < count; ++line_index) {
        const std::string& line = lines[line_index];
        shown.push_back(line.size() > Longest ? line.substr(0, Cut) : line);
    }
    return shown;
}

bool WarningDialog(const std::vector<std::string>& lines) {
    return The_user.user.warning_dialog && The_user.user.warning_dialog(Warning_lines(lines));
}

void SetStatus(int panel, const std::string& text) {
    assert(panel >= 0 && panel <= 6 && "there are seven status panels");
    The_user.panels[static_cast<std::size_t>(panel)] = text;
}

void ShowWait(const std::string& text) {
    if (The_user.user.wait) The_user.user.wait(text);
}

void HideWait() {
    if (The_user.user.wait) The_user.user.wait("");
}

void ShowProgress(std::int64_t min, std::int64_t max, std::int64_t step, const std::string& title,
                  const std::string& subtitle) {
    Stop_requested.store(false, std::memory_order_relaxed);
    The_user.progress_title = subtitle.empty() ? title : title + " - " + subtitle;
    The_user.progress_position = min;
    The_user.progress_end = max;
    The_user.progress_step = step;
    The_user.progress_shown = true;
    The_user.progress_thread = std::this_thread::get_id();
    The_user.progress_drawn = min;
    Draw_progress(min);
}

bool StepProgress() {
    const std::atomic_ref position(The_user.progress_position);
    const std::int64_t step = The_user.progress_step;
    Draw_progress(position.fetch_add(step, std::memory_order_relaxed) + step);
    return Stop_asked();
}

void RetitleProgress(const std::string& title, std::int64_t position) {
    The_user.progress_title = title;
    if (The_user.user.progress && The_user.progress_shown)
        The_user.user.progress(title, position, The_user.progress_end);
}

bool Stop_asked() {
    return Stop_requested.load(std::memory_order_relaxed) && Stop_requested.exchange(false);
}

void HideProgress() {
    The_user.progress_shown = false;
    if (The_user.user.progress) The_user.user.progress("", -1, 0);
}

}  // namespace tarven
