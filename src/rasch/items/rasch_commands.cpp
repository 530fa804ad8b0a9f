#include "rasch/items/rasch_commands.h"

#include "shell/commands.h"
#include "shell/later_commands.h"
#include "shell/lifecycle.h"
#include "shell/user.h"

namespace tarven {

namespace {

bool Nothing_there() {
    return false;
}

void Register_letters() {
    Register_letter(LetterCommand::show,
                    {.letter = 'R', .summary = "the IRT graphs", .available = false});
    Register_letter(LetterCommand::show,
                    {.letter = 'I', .summary = "the items", .available = false});
    Register_letter(LetterCommand::show,
                    {.letter = 'S', .summary = "the scores", .available = false});
    Register_letter(LetterCommand::dispose,
                    {.letter = 'I', .summary = "the items and their score", .available = false});
    Register_letter(LetterCommand::dispose,
                    {.letter = 'E', .summary = "the exogenous variables", .available = false});
    Register_letter(LetterCommand::save,
                    {.letter = 'R', .summary = "the current GLLRM", .available = false});
}

/// Panels 2 and 3: no project has items or exogenous variables before they are selected.
void Show_no_items() {
    SetStatus(2, "No items");
    SetStatus(3, "No exogenous");
}

}  // namespace

void Register_rasch_commands() {
    At_moment(Moment::project_read, "items", Show_no_items);
    At_moment(Moment::project_about_to_close, "items", Show_no_items);
    Register_later_commands({
        {"CM3", "CM3", "global tests of the current GLLRM"},
        {"CML", "CML", "person estimates by conditional maximum likelihood"},
        {"COM", "COMPONENTS", "components of the current GLLRM"},
        {"CRI",
         "CRITERION",
         "defines criterion variables for item analyses",
         {Never("Define exogenous variables before criterion variables")}},
        {"CUT", "CUT", "defines score groups", {Never("Items have not been defined")}},
        {"DEP", "DEPENDENCE", "analysis of local dependence"},
        {"DET", "DETECT", "detects DIF and local dependence"},
        {"DIF",
         "DIF",
         "analysis of differential item functioning",
         {Never("This command requires both items and exogenous variables")}},
        {"EAP", "EAP", "expected a posteriori person estimates"},
        {"EQU", "EQUATE", "equates test scores"},
        {"EXO",
         "EXOGENOUS",
         "selects exogenous variables",
         {{Nothing_there, "Items have not been selected", true}}},
        {"FLI", "FLIP", "reverses item scores"},
        {"GLL", "GLLRM", "describes the current GLLRM"},
        {"GRM",
         "GRM",
         "analysis of items by graphical Rasch models",
         {Never("The GRM command requires items")}},
        {"ICO", "ICOMPONENTS", "components of items", {Never("Items have not been defined")}},
        {"IFI", "IFIT", "item fit statistics"},
        {"IMI",
         "IMISSING",
         "summarizes information on missing responses to items",
         {Never("Items have not been defined")}},
        {"IPR",
         "IPROFILE",
         "item probabilities",
         {Never("You have not estimates the parameters of the current GLLRM")}},
        {"ITA", "ITANALYSIS", "item analysis", {Never("The ITA command requires items")}},
        {"ITE", "ITEMS", "selects items"},
        {"JML", "JML", "person estimates by joint maximum likelihood"},
        {"LDE",
         "LDEPENDENCE",
         "tests of local independence of items",
         {Never("This command needs at least three items")}},
        {"LDI", "LDIF", "tests of local dependence and DIF"},
        {"LLR", "LLR", "defines terms of the current GLLRM"},
        {"MDD", "MDDIF", "analysis of multidimensional related DIF, kept beside MDI"},
        {"MDI", "MDIMENSIONALITY", "tests of unidimensionality"},
        {"MPI", "MPITEMS", "exports items", {Never("Items have not been defined")}},
        {"PER",
         "PERSONS",
         "person fit",
         {Never("Items have not been defined!"),
          Never("The item parameters of the current GLLRM have not been estimated")}},
        {"PLX", "PLX", "person locations"},
        {"PPR",
         "PPROFILE",
         "person probabilities",
         {Never("You have not estimates the parameters of the current GLLRM")}},
        {"PRO", "PROFILE",
         "profile analysis of multidimensionality, conditionally given an exogenous variable"},
        {"PRU", "PRUNE", "removes superfluous terms of the current GLLRM"},
        {"PU2", "PURIFY2", "purification of items, second form"},
        {"PUR", "PURIFY", "purification of items"},
        {"RAS",
         "RASCH",
         "analysis of dichotomous items by the Rasch model",
         {Never("This command requires items")}},
        {"RES",
         "RESPONSES",
         "response analysis of subsets of items in different score groups",
         {Never("Estimate the item parameters before you do this")}},
        {"ROS",
         "ROSENBAUM",
         "Rosenbaum's test of items",
         {Never("This command requires at least three items")}},
        {"SEM", "SEM", "standard errors of measurement"},
        {"SLA", "SLABELS", "labels of score groups"},
        {"SPR",
         "SPROFILE",
         "score probabilities",
         {Never("You have not estimates the parameters of the current GLLRM")}},
        {"STA",
         "STABLES",
         "creates tables with score groups and other variables",
         {Never("This command requires items")}},
        {"TFI", "TFIT", "test of fit of the current GLLRM"},
        {"THE", "THETA", "person locations of scores"},
        {"TLA", "TLABELS", "labels of the score"},
        {"TPR",
         "TPROFILE",
         "test probabilities",
         {Never("You have not estimates the parameters of the current GLLRM")}},
        {"UFI", "UFIT", "unconditional item fit"},
        {"WML", "WML", "weighted maximum likelihood person estimates"},
    });
    Register_letters();
}

}  // namespace tarven
