#pragma once

#include <filesystem>
#include <string>

#include "project/def_file.h"
#include "project/project.h"

namespace tarven {

/// Reads the project whose folder and name stand in The_project: definitions, category names, data;
/// writes its summary. False leaves a project without variables, closed, with the reason shown.
bool Open_project_files();

/// The interactive opening. Without `chosen` the user chooses a DEF file; with it that file is
/// taken as chosen. Keeps the start-up memory and the project log, and runs project.INI. False when
/// no project was opened.
bool OpenTarvenProjectClick(const std::filesystem::path& chosen = {});

/// The DEF file of a project as the command line names it: a name in the current folder or a path,
/// with or without ".DEF". It need not exist.
std::filesystem::path Definition_named(const std::string& name);

/// The interactive opening of a project named on the command line.
bool Open_project_at_start(const std::string& name);

/// Takes the names that the FILES section of a DEF file gives instead of the project's own.
void Replace_files(const DefFile& def, ProjectFiles& files);

/// Runs project.INI, when there is one.
void Run_ini_file();

/// Sets folder and name of a project and forgets all else of the one before.
void Set_project(const std::filesystem::path& folder, const std::string& name);

/// The exit flow with disposal for the project that is open, if any; then there is none. False when
/// the exit flow was left: the project stays.
bool Give_up_project();

/// Changes the current folder; false when that fails.
bool Change_folder(const std::filesystem::path& folder);

}  // namespace tarven
