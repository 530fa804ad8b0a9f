#include "rasch/items/item_workspace.h"

#include "project/project.h"
#include "rasch/items/model_text.h"
#include "shell/lifecycle.h"

namespace tarven {

std::string The_current_GLLRM() {
    return Model_text(The_items.model);
}

std::string Project_labels() {
    std::string labels;
    for (int v = 1; v <= The_project.N; ++v)
        labels += The_project.variables[static_cast<std::size_t>(v)].label;
    return labels;
}

void Set_current_model(GLLRM model) {
    The_items.model = std::move(model);
    The_items.CurrentIRTparameters_ready = false;
    The_items.CurrentPersons_ready = false;
    Run_moment(Moment::items_changed);
}

}  // namespace tarven
