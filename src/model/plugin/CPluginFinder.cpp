// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/CPluginFinder.h"

#include <algorithm>
#include <array>
#include <system_error>

namespace quib {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kLibraryExtension = ".so";
constexpr int kDeepestFolder = 8;
constexpr std::size_t kMostFiles = 100000;

// ASCII only: the same in every locale.
std::string LowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return text;
}

// The last part of a path of any system, without the extension of a library.
std::string NameOf(std::string_view fileName) {
    if (const auto slash = fileName.find_last_of("/\\"); slash != std::string_view::npos) {
        fileName.remove_prefix(slash + 1);
    }
    const std::string folded = LowerCase(std::string(fileName));
    for (const std::string_view extension : {".so", ".dll", ".dylib", ".vst"}) {
        if (folded.ends_with(extension)) return std::string(fileName.substr(0, fileName.size() - extension.size()));
    }
    return std::string(fileName);
}

// The libraries of a folder by their path, in the order of their names, so that the result does not
// depend on the order in which the disk keeps them.
std::vector<fs::path> Libraries(const fs::path& folder, bool deep) {
    std::vector<fs::path> found;
    std::error_code error;
    fs::recursive_directory_iterator entry(
        folder, fs::directory_options::follow_directory_symlink | fs::directory_options::skip_permission_denied, error);
    for (; !error && entry != fs::recursive_directory_iterator() && found.size() < kMostFiles; entry.increment(error)) {
        if (!deep || entry.depth() >= kDeepestFolder) entry.disable_recursion_pending();
        std::error_code ignored;
        if (LowerCase(entry->path().extension().string()) != kLibraryExtension) continue;
        if (entry->is_regular_file(ignored)) found.push_back(entry->path());
    }
    std::sort(found.begin(), found.end());
    return found;
}

}  // namespace

CPluginFinder::CPluginFinder(const fs::path& programFolder, std::vector<fs::path> userFolders,
                             std::vector<fs::path> systemFolders)
    : instrumentFolder(programFolder / "PluginInstruments"), effectFolder(programFolder / "PluginEffects") {
    for (auto& folder : userFolders) others.push_back({std::move(folder), true});
    for (auto& folder : systemFolders) others.push_back({std::move(folder), true});
}

const CPluginFinder::Listing& CPluginFinder::ListingOf(const Folder& folder) {
    const auto [place, isNew] = listings.try_emplace(folder.path);
    Listing& listing = place->second;
    if (!isNew) return listing;
    for (const fs::path& file : Libraries(folder.path, folder.deep)) {
        std::string name = NameOf(file.filename().string());
        listing.folded.try_emplace(LowerCase(name), file);
        listing.exact.try_emplace(std::move(name), file);
    }
    return listing;
}

std::optional<fs::path> CPluginFinder::Find(std::string_view fileName, SlotKind kind) {
    const std::string name = NameOf(fileName);
    if (name.empty()) return std::nullopt;
    std::vector<Folder> folders = {{instrumentFolder, false}, {effectFolder, false}};
    if (kind == SlotKind::Effect) std::swap(folders[0], folders[1]);
    folders.insert(folders.end(), others.begin(), others.end());
    for (const bool exactly : {true, false}) {
        const std::string wanted = exactly ? name : LowerCase(name);
        for (const Folder& folder : folders) {
            const Listing& listing = ListingOf(folder);
            const auto& names = exactly ? listing.exact : listing.folded;
            const auto place = names.find(wanted);
            if (place == names.end()) continue;
            std::error_code error;
            const fs::path real = fs::canonical(place->second, error);
            if (!error) return real;
        }
    }
    return std::nullopt;
}

}  // namespace quib
