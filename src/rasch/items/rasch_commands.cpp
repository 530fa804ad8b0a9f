#include "rasch/items/rasch_commands.h"

#include "rasch/items/item_commands.h"
#include "rasch/items/item_workspace.h"
#include "rasch/items/model_commands.h"
#include "rasch/items/score_commands.h"
#include "shell/later_commands.h"
#include "shell/parsed_line.h"

namespace tarven {

namespace {

bool Concerns(char letter) {
    return letter == 0 || Has_parameter(letter);
}

// Needs of lines with a letter when one is given.

Need Items(int at_least, const char* message, char letter = 0) {
    return {[=] { return !Concerns(letter) || The_items.model.NITEMS >= at_least; }, message};
}

Need Exogenous(const char* message, char letter = 0) {
    return {[=] { return !Concerns(letter) || The_items.model.NEXOGENE > 0; }, message};
}

Need Estimates(const char* message) {
    return {[] { return The_items.CurrentIRTparameters_ready; }, message};
}

}  // namespace

void Register_rasch_commands() {
    Register_item_commands();
    Register_score_commands();
    Register_model_commands();
    Register_later_commands({
        {"CM3", "CM3", "global tests of the current GLLRM"},
        {"CML", "CML", "person estimates by conditional maximum likelihood"},
        {"CRI",
         "CRITERION",
         "defines criterion variables for item analyses",
         {Exogenous("Define exogenous variables before criterion variables")}},
        {"DEP", "DEPENDENCE", "analysis of local dependence"},
        {"DET", "DETECT", "detects DIF and local dependence"},
        {"DIF",
         "DIF",
         "analysis of differential item functioning",
         {Items(1, "This command requires both items and exogenous variables"),
          Exogenous("This command requires both items and exogenous variables")}},
        {"EAP", "EAP", "expected a posteriori person estimates"},
        {"EQU", "EQUATE", "equates test scores"},
        {"IFI", "IFIT", "item fit statistics"},
        {"IMI",
         "IMISSING",
         "summarizes information on missing responses to items",
         {Items(1, "Items have not been defined")}},
        {"IPR",
         "IPROFILE",
         "item probabilities",
         {Estimates("You have not estimates the parameters of the current GLLRM")}},
        {"JML", "JML", "person estimates by joint maximum likelihood"},
        {"LDE",
         "LDEPENDENCE",
         "tests of local independence of items",
         {Items(3, "This command needs at least three items")}},
        {"LDI", "LDIF", "tests of local dependence and DIF"},
        {"MDD", "MDDIF", "analysis of multidimensional related DIF, kept beside MDI"},
        {"MDI", "MDIMENSIONALITY", "tests of unidimensionality"},
        {"MPI", "MPITEMS", "exports items", {Items(1, "Items have not been defined")}},
        {"PER",
         "PERSONS",
         "person fit",
         {Items(1, "Items have not been defined!"),
          Estimates("The item parameters of the current GLLRM have not been estimated")}},
        {"PLX", "PLX", "person locations"},
        {"PPR",
         "PPROFILE",
         "person probabilities",
         {Estimates("You have not estimates the parameters of the current GLLRM")}},
        {"PRO", "PROFILE",
         "profile analysis of multidimensionality, conditionally given an exogenous variable"},
        {"PRU", "PRUNE", "removes superfluous terms of the current GLLRM"},
        {"PU2", "PURIFY2", "purification of items, second form"},
        {"PUR", "PURIFY", "purification of items"},
        {"RAS",
         "RASCH",
         "analysis of dichotomous items by the Rasch model",
         {Items(1, "This command requires items")}},
        {"RES",
         "RESPONSES",
         "response analysis of subsets of items in different score groups",
         {Estimates("Estimate the item parameters before you do this")}},
        {"ROS",
         "ROSENBAUM",
         "Rosenbaum's test of items",
         {Items(3, "This command requires at least three items")}},
        {"SCR",
         "SCREEN",
         "screens the data for a first model",
         {Items(3, "This command requires at least three items", 'I'),
          Exogenous("Sceening of effects on the score requires exogenous variables", 'E')}},
        {"SEM", "SEM", "standard errors of measurement"},
        {"SPR",
         "SPROFILE",
         "score probabilities",
         {Estimates("You have not estimates the parameters of the current GLLRM")}},
        {"STA",
         "STABLES",
         "creates tables with score groups and other variables",
         {Items(1, "This command requires items")}},
        {"TFI", "TFIT", "test of fit of the current GLLRM"},
        {"TPR",
         "TPROFILE",
         "test probabilities",
         {Estimates("You have not estimates the parameters of the current GLLRM")}},
        {"UFI", "UFIT", "unconditional item fit"},
        {"WML", "WML", "weighted maximum likelihood person estimates"},
    });
}

}  // namespace tarven
