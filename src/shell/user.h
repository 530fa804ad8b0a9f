#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace tarven {

/// What stands between the logic and a person. Each empty function means that there is nobody: the
/// operation below then has the answer of its description. All text is Latin-1.
struct User {
    std::function<void(const std::string& text)> show_message;  ///< beside the report
    /// Yes or no; nothing at the end of what the user types.
    std::function<std::optional<bool>(const std::string& text)> ask_yes_no;
    /// The same with a third answer, which leaves the question.
    std::function<std::optional<bool>(const std::string& text)> ask_yes_no_cancel;
    std::function<std::optional<std::string>(const std::string& caption, const std::string& prompt,
                                             const std::string& initial)>
        ask_user;
    std::function<std::string(const std::string& title, const std::vector<std::string>& labels)>
        select_variables;
    std::function<std::string(const std::string& title, const std::string& filter,
                              const std::string& folder)>
        choose_file;
    /// A file to write to, `proposed` when nothing is typed; nothing when the question is left.
    std::function<std::optional<std::string>(const std::string& title, const std::string& folder,
                                             const std::string& proposed)>
        choose_target;
    std::function<bool(const std::vector<std::string>& lines)> warning_dialog;
    /// Edits a file; true when the user accepts what stands in it then.
    std::function<bool(const std::string& path)> edit_file;
    std::function<void(const std::string& text)> wait;  ///< empty: the banner goes away
    /// position of -1: the display goes away
    std::function<void(const std::string& title, std::int64_t position, std::int64_t end)> progress;
};

/// The person, the status panels and the progress display of the workspace.
struct UserState {
    User user;
    std::vector<std::string> panels = std::vector<std::string>(7);  ///< [0..6]
    bool progress_shown = false;      ///< between ShowProgress and HideProgress
    std::thread::id progress_thread;  ///< that draws it
    std::string progress_title;
    std::int64_t progress_position = 0;  ///< moved by any thread, through std::atomic_ref
    std::int64_t progress_drawn = 0;
    std::int64_t progress_end = 0;
    std::int64_t progress_step = 1;
};

inline UserState The_user;

/// Set by Ctrl-C at a terminal, from a signal handler; read and cleared by StepProgress.
inline std::atomic<bool> Stop_requested{false};

/// An information message: to the report, and to whoever is there. AUTOMATIC does not silence it.
void ShowMessage(const std::string& text);

/// The same for a failure of the machine, with which the program will end in its exit status.
void Show_machine_failure(const std::string& text);

/// Yes at once in automatic mode. Without a user the next line of the command stream is the answer
/// when it is Y, YES, N or NO in any case; otherwise the answer is No and the line stays.
bool AskYesNo(const std::string& text);
bool Yes_or_automatic(const std::string& text);  ///< automatic mode, or Yes
bool No_or_automatic(const std::string& text);   ///< automatic mode, or No

/// AskYesNo that automatic mode does not answer, for the exit flow's questions.
bool AskYesNo_always(const std::string& text);

/// AskYesNo, or nothing when nobody answers: the question is left at the terminal, or the next line
/// of the command stream is no answer.
std::optional<bool> AskYesNo_or_nobody(const std::string& text);

enum class Answer : std::uint8_t { yes, no, cancel };
/// A question with three answers; "C" or "CANCEL" cancels, and so does leaving the question at a
/// terminal. Yes in automatic mode; without an answer No.
Answer AskYesNoCancel(const std::string& text);

/// One field of text. Without a user the next line of the command stream. An empty answer, and
/// the end of the stream, take `initial`.
/// Not affected by automatic mode.
std::string AskUser(const std::string& caption, const std::string& prompt,
                    const std::string& initial);

/// Labels chosen from `labels`, as typed; empty without a choice or a user.
std::string SelectVariables(const std::string& title, const std::vector<std::string>& labels);

/// The path of a file, empty without a user or a choice. filter as in "Report files|*.rep".
std::string Choose_file(const std::string& title, const std::string& filter,
                        const std::string& folder);

/// The lines as WarningDialog shows them: (10 - count) / 2 blank lines above, a line longer than
/// 54 characters cut to 50, at most 10 lines.
std::vector<std::string> Warning_lines(const std::vector<std::string>& lines);
/// Up to 10 lines and the user's Yes or No. Without a user No.
bool WarningDialog(const std::vector<std::string>& lines);

/// Panels: 0 project, 1 table, 2 items, 3 exogenous, 4 to 6 activity.
void SetStatus(int panel, const std::string& text);

void ShowWait(const std::string& text);
void HideWait();

void ShowProgress(std::int64_t min, std::int64_t max, std::int64_t step, const std::string& title,
                  const std::string& subtitle);
/// True when a stop was asked for since the last call: end at the next safe point. Cheap enough to
/// be called once per random table, and from any thread; the thread of ShowProgress alone draws.
bool StepProgress();
/// Another title and position of the display, drawn at once: for steps of unequal length.
void RetitleProgress(const std::string& title, std::int64_t position);
/// The same question without a step.
bool Stop_asked();
void HideProgress();

}  // namespace tarven
