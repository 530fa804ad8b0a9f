#include "support/data_session.h"

#include "project/project.h"
#include "support/definitions.h"

namespace tarven {

namespace {

void Define(const ProjectDefinition& definition, const std::string& name,
            const std::filesystem::path& folder) {
    static_cast<ProjectDefinition&>(The_project) = definition;
    The_project.Projectname = name;
    The_project.ProjectPath = folder;
    The_project.ProjectOpen = true;
    The_project.files.DAT.path = folder / (name + ".DAT");
    The_project.files.SYS.path = folder / (name + ".SYS");
    The_project.files.TAB.path = folder / (name + ".TAB");
}

}  // namespace

void DataSession::Define_example(const std::string& name) {
    Copy_example(name);
    Define(Example_definition(name), name, folder);
    Look_for_files();
}

void DataSession::Define_project(const std::vector<int>& dims) {
    Define(Definition_of_dims(dims), "x", folder);
    Look_for_files();
}

void DataSession::Look_for_files() {
    ProjectFiles& files = The_project.files;
    for (ProjectFile* file : {&files.DAT, &files.SYS, &files.TAB})
        file->exists = std::filesystem::exists(file->path);
}

}  // namespace tarven
