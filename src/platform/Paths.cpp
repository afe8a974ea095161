// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Paths.h"

#include <cstdlib>
#include <string_view>
#include <system_error>

namespace quib {

namespace fs = std::filesystem;

namespace {

std::string Environment(const char* name) {
    const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): the program never sets variables
    return value != nullptr ? value : "";
}

void AppendList(std::vector<fs::path>& folders, const std::string& list) {
    std::size_t start = 0;
    while (start <= list.size()) {
        const std::size_t end = std::min(list.find(':', start), list.size());
        if (end > start) folders.emplace_back(list.substr(start, end - start));
        start = end + 1;
    }
}

// Installed places by their way from the programs, so that the whole installation may be moved.
fs::path Shipped(const char* name, const char* fromPrograms) {
    const fs::path programs = ExecutableFolder();
    std::error_code error;
    return fs::exists(programs / name, error) ? programs : (programs / fromPrograms).lexically_normal();
}

}  // namespace

fs::path ExecutableFolder() {
    std::error_code error;
    const fs::path executable = fs::read_symlink("/proc/self/exe", error);
    return error ? fs::path() : executable.parent_path();
}

fs::path ShippedLibraries() { return Shipped("PluginInstruments", QUIB_LIBRARIES_FROM_PROGRAMS); }

fs::path ShippedData() { return Shipped("Loops", QUIB_DATA_FROM_PROGRAMS); }

fs::path ShippedDocuments() { return Shipped("UserGuideEnglish.pdf", QUIB_DOCUMENTS_FROM_PROGRAMS); }

bool IsPortableCopy() {
    std::error_code error;
    return fs::exists(ExecutableFolder() / "quib-portable", error);
}

std::vector<fs::path> SystemPluginFolders() {
    std::vector<fs::path> folders;
    AppendList(folders, Environment("VST_PATH"));
    AppendList(folders, Environment("LXVST_PATH"));
    if (const std::string home = Environment("HOME"); !home.empty()) {
        folders.emplace_back(fs::path(home) / ".vst");
        folders.emplace_back(fs::path(home) / ".lxvst");
    }
    for (const std::string_view root : {"/usr/local/lib", "/usr/lib", "/usr/local/lib/x86_64-linux-gnu",
                                        "/usr/lib/x86_64-linux-gnu", "/usr/lib/aarch64-linux-gnu"}) {
        folders.emplace_back(fs::path(root) / "vst");
        folders.emplace_back(fs::path(root) / "lxvst");
    }
    std::erase_if(folders, [](const fs::path& folder) {
        std::error_code error;
        return !fs::is_directory(folder, error);
    });
    return folders;
}

}  // namespace quib
