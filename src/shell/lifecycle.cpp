#include "shell/lifecycle.h"

#include <map>

namespace tarven {

namespace {

std::map<Moment, std::vector<LifecycleProcedure>>& Procedures() {
    static std::map<Moment, std::vector<LifecycleProcedure>> procedures;
    return procedures;
}

}  // namespace

void At_moment(Moment moment, const std::string& name, std::function<void()> run) {
    auto& procedures = Procedures()[moment];
    for (LifecycleProcedure& procedure : procedures) {
        if (procedure.name != name) continue;
        procedure.run = std::move(run);
        return;
    }
    procedures.push_back({name, std::move(run)});
}

void Run_moment(Moment moment) {
    for (const LifecycleProcedure& procedure : Procedures()[moment]) procedure.run();
}

}  // namespace tarven
