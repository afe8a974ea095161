// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/CPluginFinder.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "model/plugin/PluginFormats.h"

namespace quib {

namespace fs = std::filesystem;

namespace {

constexpr int kDeepestFolder = 8;
constexpr std::size_t kMostFiles = 100000;

// ASCII only: the same in every locale.
std::string LowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return text;
}

// The last part of a path of any system.
std::string_view LastPart(std::string_view fileName) {
    const auto slash = fileName.find_last_of("/\\");
    return slash == std::string_view::npos ? fileName : fileName.substr(slash + 1);
}

// What the libraries that a name may mean are listed under: the name with the extension that its format has
// here. One without the extension of any format may be of each.
std::vector<std::string> NamesOf(std::string_view fileName) {
    const std::string_view name = LastPart(fileName);
    const auto stem = [name](std::string_view extension) {
        return std::string(name.substr(0, name.size() - extension.size()));
    };
    std::vector<std::string> names;
    std::vector<std::string> any;
    for (const PluginFormat& format : PluginFormats()) {
        any.push_back(std::string(name).append(format.extension));
        std::vector<std::string_view> own = {format.extension};
        own.insert(own.end(), format.foreignExtensions.begin(), format.foreignExtensions.end());
        for (const std::string_view extension : own) {
            if (HasExtension(name, extension)) names.push_back(stem(extension).append(format.extension));
        }
    }
    return names.empty() && !name.empty() ? any : names;
}

bool IsPluginFile(const fs::directory_entry& entry) {
    std::error_code error;
    const std::string name = entry.path().filename().string();
    for (const PluginFormat& format : PluginFormats()) {
        if (!HasExtension(name, format.extension)) continue;
        if (format.isFolder ? entry.is_directory(error) : entry.is_regular_file(error)) return true;
    }
    return false;
}

}  // namespace

std::vector<fs::path> PluginFilesIn(const fs::path& folder, bool deep) {
    std::vector<fs::path> found;
    std::error_code error;
    fs::recursive_directory_iterator entry(
        folder, fs::directory_options::follow_directory_symlink | fs::directory_options::skip_permission_denied, error);
    for (; !error && entry != fs::recursive_directory_iterator() && found.size() < kMostFiles; entry.increment(error)) {
        const bool isPlugin = IsPluginFile(*entry);
        if (isPlugin) found.push_back(entry->path());
        if (!deep || isPlugin || entry.depth() >= kDeepestFolder) entry.disable_recursion_pending();
    }
    std::sort(found.begin(), found.end());
    return found;
}

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
    for (const fs::path& file : PluginFilesIn(folder.path, folder.deep)) {
        for (std::string& name : NamesOf(file.filename().string())) {
            listing.folded.try_emplace(LowerCase(name), file);
            listing.exact.try_emplace(std::move(name), file);
        }
    }
    return listing;
}

std::optional<fs::path> CPluginFinder::Find(std::string_view fileName, ESlotKind kind) {
    std::vector<Folder> folders = {{instrumentFolder, false}, {effectFolder, false}};
    if (kind == ESlotKind::kEffect) std::swap(folders[0], folders[1]);
    folders.insert(folders.end(), others.begin(), others.end());
    const std::vector<std::string> wanted = NamesOf(fileName);
    for (const bool exactly : {true, false}) {
        for (const Folder& folder : folders) {
            const Listing& listing = ListingOf(folder);
            const auto& names = exactly ? listing.exact : listing.folded;
            for (const std::string& name : wanted) {
                const auto place = names.find(exactly ? name : LowerCase(name));
                if (place == names.end()) continue;
                std::error_code error;
                const fs::path real = fs::canonical(place->second, error);
                if (!error) return real;
            }
        }
    }
    return std::nullopt;
}

std::optional<fs::path> CPluginFinder::Find(const PluginReference& wanted, ESlotKind kind) {
    auto named = Find(wanted.fileName, kind);
    if (wanted.identity.empty()) return named;
    if (named) {
        const auto known = identities.find(*named);
        if (known == identities.end() || known->second == wanted.identity) return named;
    }
    for (const auto& [path, identity] : identities) {
        std::error_code error;
        if (identity == wanted.identity && fs::exists(path, error)) return path;
    }
    return named;
}

}  // namespace quib
