#include "shell/lifecycle.h"

#include <algorithm>
#include <cassert>
#include <map>
#include <vector>

namespace tarven {

namespace {

struct Procedure {
    std::string name;
    std::function<void()> run;
};

std::vector<Procedure>& Procedures(Moment moment) {
    static std::map<Moment, std::vector<Procedure>> procedures;
    return procedures[moment];
}

}  // namespace

void At_moment(Moment moment, const std::string& name, std::function<void()> run) {
    std::vector<Procedure>& procedures = Procedures(moment);
    assert(std::none_of(procedures.begin(), procedures.end(),
                        [&](const Procedure& procedure) { return procedure.name == name; }) &&
           "a procedure is added twice");
    procedures.push_back({name, std::move(run)});
}

void Run_moment(Moment moment) {
    for (const Procedure& procedure : Procedures(moment)) procedure.run();
}

}  // namespace tarven
