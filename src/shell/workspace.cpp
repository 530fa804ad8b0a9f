#include "shell/workspace.h"

#include "shell/command_stream.h"
#include "shell/dispatcher.h"
#include "shell/lifecycle.h"
#include "shell/mode.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "shell/user.h"

namespace tarven {

namespace {

void Reset_shell() {
    The_settings = {};
    The_line = {};
    The_modes = {};
    The_command_stream = {};
    The_session = {};
    UserState user;
    user.user = The_user.user;
    The_user = std::move(user);
    ReportSink report;
    report.on_line = The_report.on_line;
    The_report = std::move(report);
    Stop_requested = false;
    Refresh_test_status();
}

}  // namespace

void Register_shell_lifecycle() {
    At_moment(Moment::workspace_reset, "shell", Reset_shell);
}

void Init_workspace() {
    Run_moment(Moment::workspace_reset);
}

}  // namespace tarven
