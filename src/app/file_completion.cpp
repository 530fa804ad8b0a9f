#include "app/file_completion.h"

#include <algorithm>

#include "shell/files.h"
#include "shell/words.h"

namespace tarven {

namespace fs = std::filesystem;

namespace {

bool Has_extension(const std::string& name, const std::vector<std::string>& extensions) {
    return std::any_of(extensions.begin(), extensions.end(), [&](const std::string& extension) {
        return name.size() > extension.size() && Upper(name).ends_with(extension);
    });
}

}  // namespace

std::vector<std::string> Names_beginning(std::string_view typed, const fs::path& folder,
                                         const FilesMeant& meant) {
    const auto separator = typed.rfind('/');
    const std::string before(
        typed.substr(0, separator == std::string_view::npos ? 0 : separator + 1));
    const std::string beginning = Upper(typed.substr(before.size()));
    std::vector<std::string> folders, files, others;
    std::error_code error;
    const fs::path looked_in = (folder.empty() ? fs::path(".") : folder) / Text_path(before);
    for (fs::directory_iterator entry(looked_in, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = Path_text(entry->path().filename());
        if (!Upper(name).starts_with(beginning)) continue;
        if (name.front() == '.' && beginning.empty()) continue;
        std::error_code ignored;
        if (entry->is_directory(ignored))
            folders.push_back(before + name + "/");
        else if (Has_extension(name, meant.extensions))
            files.push_back(before +
                            (meant.without_extension ? name.substr(0, name.rfind('.')) : name));
        else
            others.push_back(before + name);
    }
    std::vector<std::string> names = folders;
    if (!meant.folders_only) {
        if (files.empty() && !meant.without_extension) files = others;
        names.insert(names.end(), files.begin(), files.end());
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace tarven
