#include "shell/lifecycle.h"

#include <algorithm>
#include <cassert>
#include <map>
#include <vector>

namespace tarven {

namespace {

template <class Function>
struct Named {
    std::string name;
    std::function<Function> run;
};

std::vector<Named<void()>>& Procedures(Moment moment) {
    static std::map<Moment, std::vector<Named<void()>>> procedures;
    return procedures[moment];
}

std::vector<Named<bool()>>& Exit_questions() {
    static std::vector<Named<bool()>> questions;
    return questions;
}

template <class Function>
void Add(std::vector<Named<Function>>& list, const std::string& name, std::function<Function> run) {
    assert(std::none_of(list.begin(), list.end(),
                        [&](const Named<Function>& entry) { return entry.name == name; }) &&
           "a procedure is added twice");
    list.push_back({name, std::move(run)});
}

}  // namespace

void At_moment(Moment moment, const std::string& name, std::function<void()> run) {
    Add(Procedures(moment), name, std::move(run));
}

void Run_moment(Moment moment) {
    for (const auto& procedure : Procedures(moment)) procedure.run();
}

void Ask_before_exit(const std::string& name, std::function<bool()> may_end) {
    Add(Exit_questions(), name, std::move(may_end));
}

bool May_end_by_questions() {
    const auto& questions = Exit_questions();
    return std::all_of(questions.begin(), questions.end(),
                       [](const auto& question) { return question.run(); });
}

}  // namespace tarven
