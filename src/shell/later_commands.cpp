#include "shell/later_commands.h"

#include <fmt/format.h>

#include "shell/commands.h"
#include "shell/parsed_line.h"
#include "shell/user.h"

namespace tarven {

namespace {

/// What a command needs that nothing can provide yet.
struct Refusal {
    const char* message;
    char letter = 0;  ///< only with this letter among the parameters; 0: always
    bool warning = false;
};

struct Later {
    const char* keyword;
    const char* spelling;
    const char* summary;
    std::vector<Refusal> refusals = {};
};

const std::vector<Later>& Later_commands() {
    static const std::vector<Later> commands = {
        {"ADD", "ADD", "adds edges to the project graph"},
        {"BAC", "BACKWARD", "backward model search"},
        {"BEL", "BELIEF", "beliefs on the edges of the project graph"},
        {"CAU", "CAUSAL", "analysis of causal relationships"},
        {"CGP", "CGP", "paths of the chain graph"},
        {"CHE", "CHECK", "checks the assumptions of the current model"},
        {"CLA", "CLASSIFY", "collapses categories by classes"},
        {"CM3", "CM3", "global tests of the current GLLRM"},
        {"CMH",
         "CMH",
         "tests of marginal and conditional homogeneity",
         {{"This command requires a table with at least two variables"}}},
        {"CML", "CML", "person estimates by conditional maximum likelihood"},
        {"COL", "COLLAPSE", "analysis of category collapsibility"},
        {"COM", "COMPONENTS", "components of the current GLLRM"},
        {"CRE", "CREATE", "creates a new project"},
        {"CRI",
         "CRITERION",
         "defines criterion variables for item analyses",
         {{"Define exogenous variables before criterion variables"}}},
        {"CSV", "CSV", "exports data as separated text"},
        {"CUT", "CUT", "defines score groups", {{"Items have not been defined"}}},
        {"DEL", "DELETE", "deletes edges of the project graph"},
        {"DEP", "DEPENDENCE", "analysis of local dependence"},
        {"DES", "DESCRIBE", "describes relationships of the project graph"},
        {"DET", "DETECT", "detects DIF and local dependence"},
        {"DIF",
         "DIF",
         "analysis of differential item functioning",
         {{"This command requires both items and exogenous variables"}}},
        {"EAP", "EAP", "expected a posteriori person estimates"},
        {"EQU", "EQUATE", "equates test scores"},
        {"EXO",
         "EXOGENOUS",
         "selects exogenous variables",
         {{"Items have not been selected", 0, true}}},
        {"EXP", "EXPAND", "expands or exports a project"},
        {"FIT", "FIT", "fits the model associated with the current table"},
        {"FIX", "FIX", "fixes edges of the project graph"},
        {"FLI", "FLIP", "reverses item scores"},
        {"FOR", "FORWARD", "forward model search"},
        {"GLL", "GLLRM", "describes the current GLLRM"},
        {"GMP", "GMP", "hypotheses from the global Markov property"},
        {"GRA", "GRAPH", "enters graph mode"},
        {"GRM",
         "GRM",
         "analysis of items by graphical Rasch models",
         {{"The GRM command requires items"}}},
        {"GTE", "GTEST", "tests hypotheses of the project graph"},
        {"HOM", "HOMOGENEITY", "tests of homogeneity", {{"No hypotheses"}}},
        {"ICO", "ICOMPONENTS", "components of items", {{"Items have not been defined"}}},
        {"IFI", "IFIT", "item fit statistics"},
        {"IMI",
         "IMISSING",
         "summarizes information on missing responses to items",
         {{"Items have not been defined"}}},
        {"IMP", "IMPORT", "imports data as a new project"},
        {"IPR",
         "IPROFILE",
         "item probabilities",
         {{"You have not estimates the parameters of the current GLLRM"}}},
        {"ITA", "ITANALYSIS", "item analysis", {{"The ITA command requires items"}}},
        {"ITE", "ITEMS", "selects items"},
        {"JML", "JML", "person estimates by joint maximum likelihood"},
        {"LDE",
         "LDEPENDENCE",
         "tests of local independence of items",
         {{"This command needs at least three items"}}},
        {"LDI", "LDIF", "tests of local dependence and DIF"},
        {"LLR", "LLR", "defines terms of the current GLLRM"},
        {"LOG", "LOGLINEAR", "loglinear analysis of the current table"},
        {"MAR", "MARKOV", "defines Markov chains"},
        {"MCA", "MCA", "multivariate category collapsibility"},
        {"MDD", "MDDIF", "analysis of multidimensional related DIF, kept beside MDI"},
        {"MDI", "MDIMENSIONALITY", "tests of unidimensionality"},
        {"MOD", "MODEL", "model search"},
        {"MPI", "MPITEMS", "exports items", {{"Items have not been defined"}}},
        {"MPL", "MPLUS", "exports data and a model"},
        {"MTA", "MTABLE", "tables of Markov chains", {{"Markov chains have not been defined"}}},
        {"MTE", "MTEST", "tests of Markov chains", {{"Markov chains have not been defined"}}},
        {"NAI", "NAIVE", "naive screening of the data"},
        {"NEW", "NEWMODEL", "starts a new project graph"},
        {"NOD", "NODECOLOR", "colours nodes of the project graph"},
        {"ONL", "ONLOG", "turns the log of commands on (in graph mode)"},
        {"NOL", "NOLOG", "turns the log of commands off (in graph mode)"},
        {"PAT", "PATH", "paths between variables of the project graph"},
        {"PER",
         "PERSONS",
         "person fit",
         {{"Items have not been defined!"},
          {"The item parameters of the current GLLRM have not been estimated"}}},
        {"PLX", "PLX", "person locations"},
        {"PPR",
         "PPROFILE",
         "person probabilities",
         {{"You have not estimates the parameters of the current GLLRM"}}},
        {"PRE", "PREVENT", "prevents edges of the project graph"},
        {"PRO", "PROFILE",
         "profile analysis of multidimensionality, conditionally given an exogenous variable"},
        {"PRU", "PRUNE", "removes superfluous terms of the current GLLRM"},
        {"PU2", "PURIFY2", "purification of items, second form"},
        {"PUR", "PURIFY", "purification of items"},
        {"PVA", "PVALUES", "calculates p-values for test statistics from a named distribution"},
        {"RAS",
         "RASCH",
         "analysis of dichotomous items by the Rasch model",
         {{"This command requires items"}}},
        {"REC", "RECODE", "recodes data into a new project"},
        {"RED", "REDUCE", "reduces hypotheses by the project graph"},
        {"REL", "RELEVANCE", "relevant variables of a hypothesis"},
        {"RES",
         "RESPONSES",
         "response analysis of subsets of items in different score groups",
         {{"Estimate the item parameters before you do this"}}},
        {"ROS",
         "ROSENBAUM",
         "Rosenbaum's test of items",
         {{"This command requires at least three items"}}},
        {"SCR",
         "SCREEN",
         "screens the data for a first model",
         {{"This command requires at least three items", 'I'},
          {"Sceening of effects on the score requires exogenous variables", 'E'}}},
        {"SEM", "SEM", "standard errors of measurement"},
        {"SEP", "SEPARATE", "separation hypotheses of the project graph"},
        {"SLA", "SLABELS", "labels of score groups"},
        {"SPL", "SPLIT", "splits a project"},
        {"SPR",
         "SPROFILE",
         "score probabilities",
         {{"You have not estimates the parameters of the current GLLRM"}}},
        {"STA",
         "STABLES",
         "creates tables with score groups and other variables",
         {{"This command requires items"}}},
        {"TFI", "TFIT", "test of fit of the current GLLRM"},
        {"THE", "THETA", "person locations of scores"},
        {"TLA", "TLABELS", "labels of the score"},
        {"TPR",
         "TPROFILE",
         "test probabilities",
         {{"You have not estimates the parameters of the current GLLRM"}}},
        {"UFI", "UFIT", "unconditional item fit"},
        {"WML", "WML", "weighted maximum likelihood person estimates"},
        {"XPL", "EXPLAIN", "explains the edges of the project graph"},

        // Their floors bring them; these lines stand until then.
        {"APP", "APPEND", "appends the report to a file"},
        {"BAT", "BATCH", "opens a project and runs a command file"},
        {"CAT", "CATEGORIES", "revises the names of categories"},
        {"CHD", "CHDIR", "changes the current folder to the folder in word 2"},
        {"CHO", "CHOOSE", "chooses hypotheses"},
        {"CMD", "CMD", "runs a command file"},
        {"COR", "CORRELATIONS",
         "calculates Goodman and Kruskal's gamma for binary and ordinal variables"},
        {"DAT", "DATA", "lists raw data"},
        {"ELA", "ELABORATE", "hypotheses of two variables given others"},
        {"ERA", "ERASE", "clears the report"},
        {"EXI", "EXIT", "ends the program"},
        {"FDR", "FDR", "Benjamini-Hochberg limits of the current test results"},
        {"FIS", "FISHER", "exact test by enumeration of all tables", {{"No table"}}},
        {"FRE", "FREQUENCIES", "frequencies of raw values and of categories"},
        {"GAM", "GAMMA", "gamma coefficients of all pairs"},
        {"HYP",
         "HYPOTHESES",
         "defines hypotheses of the current table",
         {{"Table has not been defined"}}},
        {"INP", "INPUT", "reads files of the project again"},
        {"KAP", "KAPPA", "writes kappa coefficients for a list of variables"},
        {"MAK", "MAKE", "makes SYS and TAB files from the raw data"},
        {"MAN", "MANTEL", "Mantel-Haenszel estimates"},
        {"MIS", "MISSING", "missing responses"},
        {"OPE", "OPEN", "opens a project"},
        {"OUT", "OUTPUT", "saves the report"},
        {"PGA", "PGAMMA", "pseudo gamma of nominal variables", {{"Items have not been defined"}}},
        {"PRI", "PRINT", "prints the report"},
        {"QUI", "QUIT", "ends the program"},
        {"REA", "READ", "reads files"},
        {"REO", "REOPEN", "opens the last project again"},
        {"RUN", "RUN", "runs a command file of the project"},
        {"SAV", "SAVE", "saves files"},
        {"SEL", "SELECT", "shows the selection of cases"},
        {"SYS", "SYS", "lists recoded data"},
        {"TAB", "TABULATE", "makes the current table", {{"No project"}}},
        {"TES", "TEST", "tests the hypotheses", {{"No table"}}},
        {"THR", "THREEWAY", "hypotheses of all three-way tables"},
        {"VAR", "VARIABLES", "revises the definition of variables"},
    };
    return commands;
}

Need Need_of(const Refusal& refusal) {
    const char letter = refusal.letter;
    return {[letter] { return letter != 0 && !Has_parameter(letter); }, refusal.message,
            refusal.warning};
}

}  // namespace

void Register_later_commands() {
    for (const Later& later : Later_commands()) {
        Command command{.keyword = later.keyword,
                        .spelling = later.spelling,
                        .summary = later.summary,
                        .available = false};
        // ONLOG and NOLOG are known to graph mode alone; here they take the unknown branch.
        const std::string spelling = later.spelling;
        if (spelling != "ONLOG" && spelling != "NOLOG")
            command.run = [spelling] {
                ShowMessage(fmt::format("The command {} is not available yet", spelling));
                return Outcome::refused;
            };
        for (const Refusal& refusal : later.refusals) command.needs.push_back(Need_of(refusal));
        Register_command(std::move(command));
    }
    Register_command({.keyword = "PBO",
                      .run =
                          [] {
                              ShowMessage("Not ready yet");
                              return Outcome::done;
                          },
                      .summary = "power of bootstrap tests (not ready yet)"});
}

}  // namespace tarven
