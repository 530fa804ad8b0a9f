#include "tables/independence/hypothesis_workspace.h"

#include "shell/lifecycle.h"
#include "shell/user.h"

namespace tarven {

void Fill_hypotheses(HypothesisWorkspace& w, std::vector<Hypothesis> list, HypothesisScope scope,
                     std::string labels) {
    if (list.size() > MaxHypotheses) list.resize(MaxHypotheses);
    w.list = std::move(list);
    w.results.assign(w.list.size(), TestResult{});
    w.hypotheses_ready = !w.list.empty();
    w.tested = false;
    w.scope = scope;
    w.labels = std::move(labels);
}

void Set_hypotheses(std::vector<Hypothesis> list, HypothesisScope scope, std::string labels) {
    Fill_hypotheses(The_hypotheses, std::move(list), scope, std::move(labels));
}

void Clear_hypotheses() {
    The_hypotheses = {};
}

void Register_hypotheses_lifecycle() {
    const auto lose = [] {
        if (!The_hypotheses.list.empty()) ShowMessage("HYPOTHESES HAVE BEEN LOST");
        Clear_hypotheses();
    };
    At_moment(Moment::workspace_reset, "hypotheses", Clear_hypotheses);
    At_moment(Moment::table_replaced, "hypotheses", [lose] {
        // A list over the project's variables does not rest on a table.
        if (The_hypotheses.scope == HypothesisScope::table) lose();
    });
    At_moment(Moment::variables_changed, "hypotheses", lose);
    At_moment(Moment::project_about_to_close, "hypotheses", Clear_hypotheses);
}

}  // namespace tarven
