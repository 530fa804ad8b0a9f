#include "app/terminal_user.h"

#include <fmt/format.h>
#include <histedit.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "app/ending_signals.h"
#include "app/line_history.h"
#include "app/output.h"
#include "app/progress_line.h"
#include "shell/files.h"
#include "shell/mode.h"
#include "shell/session.h"
#include "shell/shell_commands.h"
#include "shell/text.h"
#include "shell/user.h"
#include "shell/words.h"

extern char** environ;

namespace tarven {

namespace {

constexpr std::size_t LongestList = 60;  ///< completions shown

// What a signal handler may read.
inline std::atomic<bool> Command_runs{false};
inline std::atomic<bool> Interrupted_before{false};
inline std::atomic<bool> Line_interrupted{false};
inline std::atomic<bool> Suspension_asked{false};
inline std::atomic<bool> Continued{false};

/// libedit and what it holds; one for the program.
struct Line_editor {
    std::unique_ptr<EditLine, decltype(&el_end)> editor{nullptr, el_end};
    std::unique_ptr<::History, decltype(&history_end)> history{nullptr, history_end};
    std::string prompt;  ///< UTF-8
    std::FILE* screen = stdout;
    /// Set while a file of this folder is asked for: Tab completes its names.
    std::optional<std::filesystem::path> folder_of_file;
    /// The line typed last while it is not known to be kept: the Up key brings it back for
    /// correction, and the next line takes its place.
    std::optional<std::string> last_line;
    int last_event = 0;          ///< its number in `history`; 0: it stood there before
    bool reads_command = false;  ///< a command is typed, not an answer
};

inline Line_editor The_editor;
inline bool Banner_shown = false;

void Interrupt(int) {
    if (!Command_runs.load()) {
        Line_interrupted.store(true);  // the line editor gives up its line
        return;
    }
    // The second one ends the program, unless the first has been obeyed: a command file runs on.
    if (Interrupted_before.exchange(true) && Stop_requested.load()) {
        if (End_by_interrupt()) return;
        std::signal(SIGINT, SIG_DFL);
        std::raise(SIGINT);
        return;
    }
    Stop_requested.store(true);
}

char* Prompt(EditLine*) {
    return The_editor.prompt.data();
}

void Note_suspension(int) {
    Suspension_asked.store(true);
}

void Note_continuation(int) {
    Continued.store(true);
}

/// What a signal does while one lives; reads that wait are interrupted by it.
class Signal_handler {
  public:
    Signal_handler(int signal, void (*handler)(int)) : signal_(signal) {
        struct sigaction action {};
        action.sa_handler = handler;
        sigemptyset(&action.sa_mask);
        sigaction(signal, &action, &before_);
        // A shell without job control has the signal ignored.
        if (before_.sa_handler == SIG_IGN) sigaction(signal, &before_, nullptr);
    }
    ~Signal_handler() { sigaction(signal_, &before_, nullptr); }
    Signal_handler(const Signal_handler&) = delete;
    Signal_handler& operator=(const Signal_handler&) = delete;

  private:
    int signal_;
    struct sigaction before_ {};
};

/// Ctrl-Z at the prompt: the shell gets its terminal back as it was. Returns when the program is
/// continued.
void Suspend() {
    el_set(The_editor.editor.get(), EL_PREP_TERM, 0);
    const Signal_handler as_always(SIGTSTP, SIG_DFL);
    std::raise(SIGTSTP);
    Continued.store(true);
}

/// The shell has had the terminal meanwhile: it is set up anew.
void Take_terminal_again() {
    // The editor believes that nothing has changed unless it is told to let go first.
    el_set(The_editor.editor.get(), EL_PREP_TERM, 0);
    el_set(The_editor.editor.get(), EL_PREP_TERM, 1);
}

/// Waits until the terminal can be read; false when a signal came first. Signals are held back but
/// for the waiting itself, so that none slips in between looking for one and waiting.
bool Wait_for_input() {
    sigset_t held, before;
    sigemptyset(&held);
    for (const int signal : {SIGINT, SIGTSTP, SIGCONT}) sigaddset(&held, signal);
    sigprocmask(SIG_BLOCK, &held, &before);
    bool ready = false;
    if (!Line_interrupted.load() && !Suspension_asked.load() && !Continued.load()) {
        pollfd terminal{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
        // What is wrong with the terminal is told by the read.
        ready = ppoll(&terminal, 1, nullptr, &before) >= 0 || errno != EINTR;
    }
    sigprocmask(SIG_SETMASK, &before, nullptr);
    return ready;
}

constexpr unsigned char Redraw = 0x1F;  ///< bound to the drawing of prompt and line

/// One byte of the terminal: 1, 0 at the end of input, -1 with errno EINTR when Ctrl-C gives up the
/// line. Other interrupts (a window that changes its size) are waited out; after a stop of the
/// program the line is drawn again.
int Read_byte(unsigned char& byte) {
    for (;;) {
        if (Line_interrupted.exchange(false)) {
            errno = EINTR;
            return -1;
        }
        if (Suspension_asked.exchange(false)) Suspend();
        if (Continued.exchange(false)) {
            Take_terminal_again();
            byte = Redraw;
            return 1;
        }
        if (!Wait_for_input()) continue;
        const ssize_t got = read(STDIN_FILENO, &byte, 1);
        if (got >= 0) return static_cast<int>(got);
        if (errno != EINTR) return -1;
    }
}

/// One character (UTF-8) for libedit, which by itself tries an interrupted read again.
int Read_character(EditLine*, wchar_t* character) {
    unsigned char byte = 0;
    const int got = Read_byte(byte);
    if (got != 1) return got;
    // Ctrl-D typed while a command ran, before the editor had the terminal, arrives as NUL.
    constexpr wchar_t EndOfInput = 4;
    const int more = byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : byte >= 0xC0 ? 1 : 0;
    std::uint32_t point = more == 0 ? byte : byte & (0x3Fu >> more);
    for (int k = 0; k < more; ++k) {
        if (Read_byte(byte) != 1) return -1;
        point = point << 6 | (byte & 0x3F);
    }
    *character = point == 0 ? EndOfInput : static_cast<wchar_t>(point);
    return 1;
}

/// Tab: puts in what all completions share, or lists them.
unsigned char Complete(EditLine* editor, int) {
    const LineInfo* line = el_line(editor);
    const std::string before = To_line({line->buffer, line->cursor});
    const auto labels = Labels_to_complete ? Labels_to_complete() : std::vector<LabelAndName>();
    const Completions found = The_editor.folder_of_file
                                  ? Completions_of_file(before, *The_editor.folder_of_file)
                                  : Completions_of(before, labels);
    if (found.words.empty()) return CC_REFRESH_BEEP;
    std::string text = Common_beginning(found.words);
    if (found.words.size() == 1 && !found.goes_on) text += ' ';
    const int letters = static_cast<int>(One_byte_a_letter(text).size());
    if (letters > found.replaced || found.words.size() == 1) {
        el_deletestr(editor, found.replaced);
        el_insertstr(editor, To_utf8(text).c_str());
        return CC_REFRESH;
    }
    fmt::print(The_editor.screen, "\n");
    for (std::size_t line_index = 0; line_index < std::min(found.shown.size(), LongestList);
         ++line_index)
        fmt::print(The_editor.screen, "{}\n", To_utf8(Printable(found.shown[line_index])));
    std::fflush(The_editor.screen);
    return CC_REDISPLAY;
}

/// Ctrl-G: the log of commands on or off.
unsigned char Switch_log(EditLine*, int) {
    if (!The_editor.reads_command) return CC_ERROR;
    fmt::print(The_editor.screen, "\n");
    Toggle_log();
    return CC_REDISPLAY;
}

void Open_editor() {
    if (The_editor.editor) return;
    // Characters of the terminal alone: numbers keep their decimal point.
    if (!std::setlocale(LC_CTYPE, "") || MB_CUR_MAX == 1) std::setlocale(LC_CTYPE, "C.UTF-8");
    The_editor.screen = isatty(STDOUT_FILENO) ? stdout : stderr;
    The_editor.editor.reset(el_init("tarven", stdin, The_editor.screen, stderr));
    if (!The_editor.editor) return;
    EditLine* editor = The_editor.editor.get();
    The_editor.history.reset(history_init());
    HistEvent event;
    history(The_editor.history.get(), &event, H_SETSIZE, static_cast<int>(HistoryLength));
    history(The_editor.history.get(), &event, H_SETUNIQUE, 1);
    for (const std::string& line : Read_line_history(History_file()))
        history(The_editor.history.get(), &event, H_ENTER, To_utf8(line).c_str());
    el_set(editor, EL_PROMPT, Prompt);
    el_set(editor, EL_GETCFN, Read_character);
    el_set(editor, EL_EDITOR, "emacs");
    el_set(editor, EL_HIST, history, The_editor.history.get());
    el_set(editor, EL_ADDFN, "complete-word", "Complete the word", Complete);
    el_set(editor, EL_BIND, "\t", "complete-word", nullptr);
    el_set(editor, EL_BIND, std::string(1, static_cast<char>(Redraw)).c_str(), "ed-redisplay",
           nullptr);
    el_set(editor, EL_ADDFN, "switch-log", "Log of commands on or off", Switch_log);
    el_set(editor, EL_BIND, "^G", "switch-log", nullptr);
}

/// Puts a typed line where the Up key finds it, in the place of one that was not kept.
void Offer_line_again(const std::string& line) {
    ::History* const lines = The_editor.history.get();
    HistEvent event;
    if (The_editor.last_line && The_editor.last_event > 0)
        history(lines, &event, H_DEL, The_editor.last_event);
    The_editor.last_line = line;
    const std::string bytes = To_utf8(line);
    const bool stands = history(lines, &event, H_FIRST) == 0 && bytes == event.str;
    The_editor.last_event = 0;
    if (!stands && history(lines, &event, H_ENTER, bytes.c_str()) >= 0)
        The_editor.last_event = event.num;
}

/// The dispatcher has the line that was typed last in its history when it kept it: then it is kept
/// here, for the sessions to come too.
void Keep_last_line() {
    const auto& kept = The_session.history;
    if (!The_editor.last_line || kept.empty() ||
        kept.back() != The_editor.last_line->substr(0, kept.back().size()) ||
        kept.back().size() < std::min<std::size_t>(The_editor.last_line->size(), 120))
        return;
    Add_to_line_history(History_file(), *The_editor.last_line);
    The_editor.last_line.reset();
}

/// One typed line (Latin-1) behind a prompt; nothing at the end of input. An interrupted line is
/// given up and the prompt shown again, unless a question is asked, which then has no answer.
std::optional<std::string> Read_typed(const std::string& prompt, bool is_command) {
    Open_editor();
    if (!The_editor.editor) return {};
    The_editor.prompt = To_utf8(Printable(prompt));
    Suspension_asked.store(false);
    Continued.store(false);
    const Signal_handler suspension(SIGTSTP, Note_suspension);
    const Signal_handler continuation(SIGCONT, Note_continuation);
    The_editor.reads_command = is_command;
    for (;;) {
        int length = 0;
        errno = 0;
        Line_interrupted.store(false);
        // Before the prompt is seen, so that what is typed at once is not taken line by line.
        el_set(The_editor.editor.get(), EL_PREP_TERM, 1);
        const char* typed = el_gets(The_editor.editor.get(), &length);
        if (!typed || length <= 0) {
            fmt::print(The_editor.screen, "\n");
            if (length < 0 && errno == EINTR && is_command) {
                el_reset(The_editor.editor.get());
                continue;
            }
            return {};
        }
        std::string_view line(typed, static_cast<std::size_t>(length));
        while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.remove_suffix(1);
        std::string text = To_line(line);
        if (is_command && text.find_first_not_of(' ') != std::string::npos) Offer_line_again(text);
        return text;
    }
}

std::optional<std::string> Read_answer(const std::string& prompt) {
    if (The_output.before_line) The_output.before_line();
    const bool runs = Command_runs.exchange(false);
    std::optional<std::string> answer = Read_typed(prompt, false);
    Command_runs.store(runs);
    return answer;
}

void Show(const std::string& text) {
    if (The_output.before_line) The_output.before_line();
    for (const std::string& line : Split_lines(text))
        fmt::print(The_editor.screen, "{}\n", To_utf8(Printable(line)));
    std::fflush(The_editor.screen);
}

/// A question of several lines has its last line for a prompt.
std::optional<bool> Ask_question(const std::string& text, bool with_cancel) {
    std::vector<std::string> lines = Split_lines(text);
    const std::string question = lines.empty() ? "" : lines.back();
    if (!lines.empty()) lines.pop_back();
    for (const std::string& line : lines) Show(line);
    for (;;) {
        const std::optional<std::string> typed =
            Read_answer(question + (with_cancel ? " (Y/N/C) " : " (Y/N) "));
        if (!typed) return {};
        const std::string word = Upper(Get_word(1, *typed));
        if (word == "Y" || word == "YES") return true;
        if (word == "N" || word == "NO") return false;
        if (with_cancel && (word == "C" || word == "CANCEL")) return {};
    }
}

std::optional<bool> Ask_yes_no(const std::string& text) {
    return Ask_question(text, false);
}

std::optional<bool> Ask_yes_no_cancel(const std::string& text) {
    return Ask_question(text, true);
}

std::optional<std::string> Ask_text(const std::string& caption, const std::string& prompt,
                                    const std::string& initial) {
    if (!caption.empty()) Show(caption);
    const std::string shown = initial.empty() ? "" : fmt::format(" [{}]", initial);
    std::optional<std::string> typed = Read_answer(fmt::format("{}{}: ", prompt, shown));
    if (typed && typed->empty()) return initial;
    return typed;
}

std::string Ask_labels(const std::string& title, const std::vector<std::string>& labels) {
    Show(title);
    for (const std::string& label : labels) Show("  " + label);
    return Read_answer("Labels: ").value_or("");
}

/// The whole line is the name of a file, with or without quotes around it.
std::string Name_typed(const std::string& typed) {
    const auto first = typed.find_first_not_of(' ');
    if (first == std::string::npos) return "";
    const std::string name = typed.substr(first, typed.find_last_not_of(' ') - first + 1);
    const bool quoted = name.size() > 1 && name.front() == '"' && name.back() == '"';
    return quoted ? name.substr(1, name.size() - 2) : name;
}

std::string Ask_file(const std::string& title, const std::string& filter,
                     const std::string& folder) {
    Show(fmt::format("{} ({})", title, filter));
    The_editor.folder_of_file = Text_path(folder);
    const std::string prompt = folder.empty() ? "File: " : fmt::format("File in {}: ", folder);
    const std::string typed = Read_answer(prompt).value_or("");
    The_editor.folder_of_file.reset();
    const std::string name = Name_typed(typed);
    return name.empty() ? "" : Path_text(Text_path(folder) / Text_path(name));
}

std::optional<std::string> Ask_target(const std::string& title, const std::string& folder,
                                      const std::string& proposed) {
    Show(title);
    The_editor.folder_of_file = Text_path(folder);
    const auto typed = Read_answer(fmt::format("File in {} [{}]: ", folder, proposed));
    The_editor.folder_of_file.reset();
    if (!typed) return {};
    const std::string name = Name_typed(*typed);
    return Path_text(Text_path(folder) / Text_path(name.empty() ? proposed : name));
}

bool Ask_after_warning(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) Show(line.empty() ? " " : line);
    return Ask_yes_no("Go on?").value_or(false);
}

/// The editor may be a command with arguments, so a shell takes it apart.
bool Run_editor(const std::string& editor, const std::string& file) {
    const std::string script = "exec " + editor + " \"$1\"";
    const char* arguments[] = {"sh", "-c", script.c_str(), "sh", file.c_str(), nullptr};
    pid_t child = 0;
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    Set_signals_of_child(attributes);
    const int failed = posix_spawn(&child, "/bin/sh", nullptr, &attributes,
                                   const_cast<char**>(arguments), environ);
    posix_spawnattr_destroy(&attributes);
    if (failed != 0) return false;
    int status = 0;
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR) return false;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool Edit_file(const std::string& path) {
    const char* editor = std::getenv("VISUAL");
    if (!editor || !*editor) editor = std::getenv("EDITOR");
    if (!editor || !*editor) {
        ShowMessage(path + " cannot be edited: EDITOR names no editor");
        return false;
    }
    if (!Run_editor(editor, Text_path(path).string())) {
        ShowMessage(fmt::format("{} was not edited: {} failed", path, editor));
        return false;
    }
    return Ask_yes_no(fmt::format("Use {} as it stands now?", path)).value_or(false);
}

void Clear_banner() {
    if (!Banner_shown) return;
    Banner_shown = false;
    std::fputs("\r\x1b[K", stderr);
    std::fflush(stderr);
}

void Show_banner(const std::string& text) {
    Clear_banner();
    if (text.empty()) return;
    Banner_shown = true;
    // One line of the terminal, or it could not be taken away again.
    std::fputs(To_utf8(Printable(text.substr(0, 78))).c_str(), stderr);
    std::fflush(stderr);
}

std::string Panels() {
    std::string text;
    for (int panel = 0; panel <= 2; ++panel) {
        const std::string& shown = The_user.panels[static_cast<std::size_t>(panel)];
        if (shown.empty()) continue;
        if (!text.empty()) text += " | ";
        text += shown;
    }
    if (!The_modes.modes.empty()) text += (text.empty() ? "" : " | ") + The_modes.modes.back().name;
    return text.empty() ? "tarven" : text;
}

}  // namespace

bool Person_at_terminal() {
    return isatty(STDIN_FILENO) && (isatty(STDOUT_FILENO) || isatty(STDERR_FILENO));
}

bool Terminal_is_gone() {
    termios state{};
    return tcgetattr(STDIN_FILENO, &state) != 0;
}

void Install_terminal_user() {
    User& user = The_user.user;
    user.ask_yes_no = Ask_yes_no;
    user.ask_yes_no_cancel = Ask_yes_no_cancel;
    user.ask_user = Ask_text;
    user.select_variables = Ask_labels;
    user.choose_file = Ask_file;
    user.choose_target = Ask_target;
    user.warning_dialog = Ask_after_warning;
    user.edit_file = Edit_file;
}

std::optional<std::string> Type_line() {
    Keep_last_line();
    if (The_output.before_line) The_output.before_line();
    return Read_typed(Panels() + "> ", true);
}

void Install_banners() {
    if (!isatty(STDERR_FILENO)) return;
    The_output.before_line = Clear_banner;
    The_user.user.wait = Show_banner;
    using Clock = std::chrono::steady_clock;
    The_user.user.progress = [begin = Clock::now()](const std::string& title, std::int64_t position,
                                                    std::int64_t end) mutable {
        if (position < 0) return Show_banner("");
        if (position == 0) begin = Clock::now();
        const std::chrono::duration<double> passed = Clock::now() - begin;
        Show_banner(Progress_line(title, position, end, passed.count()));
    };
}

void Install_interrupt() {
    struct sigaction action {};
    action.sa_handler = Interrupt;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
}

void Command_begins() {
    Interrupted_before.store(false);
    Stop_requested.store(false);
    Command_runs.store(true);
}

void Command_ended() {
    Command_runs.store(false);
}

}  // namespace tarven
