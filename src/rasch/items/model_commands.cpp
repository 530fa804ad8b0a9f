#include "rasch/items/model_commands.h"

#include <fmt/format.h>

#include <filesystem>

#include "project/project.h"
#include "project/report_target.h"
#include "rasch/items/item_report.h"
#include "rasch/items/item_workspace.h"
#include "rasch/items/model_file.h"
#include "rasch/items/model_picture.h"
#include "rasch/items/model_text.h"
#include "shell/commands.h"
#include "shell/files.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/user.h"
#include "shell/variable_lists.h"
#include "shell/words.h"

namespace tarven {

namespace {

namespace fs = std::filesystem;

const Need Items_are_there{[] { return The_items.model.NITEMS > 0; },
                           "Items have not been defined"};

Outcome LLR() {
    const std::string_view text = Behind_keyword(The_line.CommandLine);
    const std::string labels = Project_labels();
    if (Is_amendment(text)) {
        const Result<AmendedModel> amended = Amended(The_items.model, text, labels);
        if (!amended) return Refuse(amended.failure());
        if (Model_text(amended->model) != The_current_GLLRM()) Set_current_model(amended->model);
        Write_report("Changes to the current GLLRM:");
        Write_lines(amended->lines);
        if (amended->lines.empty()) Write_report("no changes");
        Write_report("The_current_GLLRM      =   " + Text_or_Rasch_model(The_items.model));
    } else {
        const Result<GLLRM> model = With_terms(The_items.model, text, labels);
        if (!model) return Refuse(model.failure());
        Set_current_model(*model);
        Write_report("New GLLRM: " + Text_or_Rasch_model(The_items.model));
    }
    if (!The_items.CurrentIRTparameters_ready)
        Write_report("The parameters of the current GLLRM are not ready");
    return Outcome::done;
}

Outcome GLLRM_command() {
    Write_report("The_current_GLLRM      =   " + Text_or_Rasch_model(The_items.model));
    const auto state = [](bool ready) { return ready ? "estimated" : "not estimated"; };
    Write_report(fmt::format("Item parameters:   {}", state(The_items.CurrentIRTparameters_ready)));
    Write_report(fmt::format("Person parameters: {}", state(The_items.CurrentPersons_ready)));
    Write_report("");
    Write_lines(Model_picture(The_items.model, The_items));
    return Outcome::done;
}

void Write_components() {
    Write_lines(Component_lines(The_items.model));
}

Outcome ICOMPONENTS() {
    Write_components();
    return Outcome::done;
}

Outcome COMPONENTS() {
    Write_components();
    if (Item_components(The_items.model).NitemComponents == 0) return Outcome::done;
    if (!The_items.score_groups.ready) {
        ShowMessage("Scoregroups have not been defined");
        return Outcome::refused;
    }
    const Result<ResponseTable> responses = Current_responses();
    if (!responses) return Refuse(responses.failure());
    Write_lines(
        Component_score_lines(The_items.model, Component_scores(*responses, The_items.model)));
    return Outcome::done;
}

void Show_IRT_graphs() {
    if (The_items.model.NITEMS == 0) {
        ShowMessage("IRT graphs have note been defined");
        return;
    }
    Write_report("The current IRT graphs:");
    Write_report("");
    Write_lines(Model_picture(The_items.model, The_items));
}

// ---- SAVE R

/// The file behind the letter, or one that is chosen; empty without either.
fs::path Model_file() {
    std::string name = Get_name(3, The_line.CommandLine);
    const std::string folder = Path_text(The_project.ProjectPath);
    if (name.empty() && The_user.user.choose_target)
        name = The_user.user
                   .choose_target("Save the model: GLLRM (*.cmd)|*.cmd", folder,
                                  The_project.Projectname + "_model.cmd")
                   .value_or("");
    if (name.empty()) return {};
    fs::path file = Text_path(name);
    if (!file.has_extension()) file += ".cmd";
    return Existing_or(file);
}

/// What a file is kept for instead of a model; empty for nothing. What ends in REP or TMP may be
/// the only copy of a report.
std::string Other_use_of(const fs::path& file) {
    const std::string extension = Upper(file.extension().string());
    if (extension == ".REP" || extension == ".TMP") return "reports";
    return Refusal_of_target(file).empty() ? "" : "a file of a project or of the program";
}

void Save_model() {
    const fs::path file = Model_file();
    if (file.empty()) return ShowMessage("SAVE R needs the name of a file: SAVE R model.cmd");
    const std::string use = Other_use_of(file);
    if (!use.empty())
        return ShowMessage(
            fmt::format("{} is kept for other things ({}): no model is written there. Take another "
                        "name: SAVE R {}_model.cmd",
                        Path_text(file), use, The_project.Projectname));
    std::error_code ignored;
    if (fs::is_regular_file(file, ignored) &&
        !AskYesNo(Path_text(file) + " already exists. Continue?"))
        return;
    const std::string failure = Write_text_file(file, Model_file_lines(The_items.model));
    if (!failure.empty()) return Show_machine_failure(failure);
    ShowMessage("The current GLLRM was saved on " + Path_text(file));
}

constexpr const char* LlrHelp =
    "LLR terms        a new model\n"
    "LLR +AB -CY      changes of the model\n"
    "\n"
    "Defines the graphical loglinear Rasch model without estimating it. A term is two labels: two\n"
    "items are locally dependent (AB), an item has DIF relative to an exogenous variable (AY), an\n"
    "item interacts with the score groups (A#). Blanks mean nothing: AB CD AY is ABCDAY. Without\n"
    "terms it is the Rasch model. With + and - terms are put in and taken out one by one. Pairs "
    "of\n"
    "labels that are no term are passed over, and a label left over is dropped; the line is read\n"
    "whole, however long.\n"
    "\n"
    "Example: LLR AB CD BY DY\n"
    "\n"
    "Refused, the model staying as it was: no items, a term with # without score groups or with\n"
    "more than 59.";

}  // namespace

void Register_model_commands() {
    const auto defines = [](const char* keyword, const char* spelling, Outcome (*run)(),
                            const char* summary, const char* help) {
        Register_command({.keyword = keyword,
                          .run = run,
                          .needs = {Items_are_there},
                          .report = Report::opened,
                          .spelling = spelling,
                          .summary = summary,
                          .help = help});
    };
    defines("LLR", "LLR", LLR, "defines terms of the current GLLRM", LlrHelp);
    defines("GLL", "GLLRM", GLLRM_command, "describes the current GLLRM",
            "GLLRM\n\nThe current model: its terms, whether its parameters are estimated, and a\n"
            "picture. The items hang on a stem from the latent variable to the score; items that\n"
            "depend on each other are joined on the right; <== comes from the sources of DIF.\n\n"
            "Refused without items.");
    defines("ICO", "ICOMPONENTS", ICOMPONENTS, "components of items",
            "ICOMPONENTS\n\nThe connected components of locally dependent items.\n\n"
            "Refused without items.");
    defines("COM", "COMPONENTS", COMPONENTS, "components of items with their scores",
            "COMPONENTS\n\nThe connected components of locally dependent items, each with the\n"
            "distribution of its own score (the sum of its items) within the score groups.\n\n"
            "Refused without items, and without score groups when there are components.");
    Register_letter(
        LetterCommand::show,
        {.letter = 'R', .run = Show_IRT_graphs, .needs = {}, .summary = "the IRT graphs"});
    Extend_letter(LetterCommand::show, 'C', "and the components of the items", [] {
        if (The_items.model.NITEMS > 0) Write_components();
    });
    Register_letter(LetterCommand::save, {.letter = 'R',
                                          .run = Save_model,
                                          .needs = {Items_are_there},
                                          .summary = "the current GLLRM as a command file"});
    // No letter of the file's name is a letter of SAVE.
    Register_letter_word(LetterCommand::save, {.letter = 'R',
                                               .beginning = "",
                                               .spelling = "model.cmd",
                                               .run = Save_model,
                                               .needs = {Items_are_there},
                                               .summary = "the same on a file of that name"});
}

}  // namespace tarven
