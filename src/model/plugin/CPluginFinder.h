// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Finds the library of a plug-in by the name, or the identity, that a file has for it. Names are matched
// without their extension: "Synth.dll" finds "Synth.so". Keeps what it saw in the folders. Editing thread,
// or any other one alone.

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/plugin/PluginIdentity.h"

namespace quib {

// The plug-ins of a folder by their path, in the order of their names, so that the result does not depend on
// the order in which the disk keeps them. `deep`: with its sub-folders.
std::vector<std::filesystem::path> PluginFilesIn(const std::filesystem::path& folder, bool deep);

class CPluginFinder {
public:
    // `programFolder` holds PluginInstruments and PluginEffects; `userFolders` come next, then
    // `systemFolders`. Every folder counts with its sub-folders, except for the program's own two.
    CPluginFinder(const std::filesystem::path& programFolder, std::vector<std::filesystem::path> userFolders,
                  std::vector<std::filesystem::path> systemFolders);

    // The real path of the library. An exact name in any folder goes before one that differs in upper
    // and lower case; of equals, the folder that comes first wins.
    std::optional<std::filesystem::path> Find(std::string_view fileName, ESlotKind kind);
    // The same for a plug-in whose identity may be known: where no library has the name, or the one that has
    // it is known to be another plug-in, the identity decides.
    std::optional<std::filesystem::path> Find(const PluginReference& wanted, ESlotKind kind);

    // What libraries hold, as a catalogue has learnt it: identities by real path.
    using Identities = std::map<std::filesystem::path, std::string>;
    void SetIdentities(Identities known) { identities = std::move(known); }
    const Identities& KnownIdentities() const noexcept { return identities; }

    // Forgets what the folders held.
    void Refresh() { listings.clear(); }

private:
    struct Folder {
        std::filesystem::path path;
        bool deep;
    };
    struct Listing {
        std::map<std::string, std::filesystem::path> exact;   // by name, with the extension of its format
        std::map<std::string, std::filesystem::path> folded;  // the same in lower case
    };

    const Listing& ListingOf(const Folder& folder);

    std::filesystem::path instrumentFolder;
    std::filesystem::path effectFolder;
    std::vector<Folder> others;
    std::map<std::filesystem::path, Listing> listings;
    Identities identities;
};

}  // namespace quib
