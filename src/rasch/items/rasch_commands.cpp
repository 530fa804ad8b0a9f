#include "rasch/items/rasch_commands.h"

#include "rasch/items/item_commands.h"
#include "rasch/items/model_commands.h"
#include "rasch/items/score_commands.h"
#include "shell/later_commands.h"

namespace tarven {

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
         {Never("Define exogenous variables before criterion variables")}},
        {"DEP", "DEPENDENCE", "analysis of local dependence"},
        {"DET", "DETECT", "detects DIF and local dependence"},
        {"DIF",
         "DIF",
         "analysis of differential item functioning",
         {Never("This command requires both items and exogenous variables")}},
        {"EAP", "EAP", "expected a posteriori person estimates"},
        {"EQU", "EQUATE", "equates test scores"},
        {"IFI", "IFIT", "item fit statistics"},
        {"IMI",
         "IMISSING",
         "summarizes information on missing responses to items",
         {Never("Items have not been defined")}},
        {"IPR",
         "IPROFILE",
         "item probabilities",
         {Never("You have not estimates the parameters of the current GLLRM")}},
        {"JML", "JML", "person estimates by joint maximum likelihood"},
        {"LDE",
         "LDEPENDENCE",
         "tests of local independence of items",
         {Never("This command needs at least three items")}},
        {"LDI", "LDIF", "tests of local dependence and DIF"},
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
        {"SPR",
         "SPROFILE",
         "score probabilities",
         {Never("You have not estimates the parameters of the current GLLRM")}},
        {"STA",
         "STABLES",
         "creates tables with score groups and other variables",
         {Never("This command requires items")}},
        {"TFI", "TFIT", "test of fit of the current GLLRM"},
        {"TPR",
         "TPROFILE",
         "test probabilities",
         {Never("You have not estimates the parameters of the current GLLRM")}},
        {"UFI", "UFIT", "unconditional item fit"},
        {"WML", "WML", "weighted maximum likelihood person estimates"},
    });
}

}  // namespace tarven
