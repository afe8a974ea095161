// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/LoopFolders.h"

#include <QDir>
#include <QFileInfo>
#include <filesystem>
#include <map>
#include <set>

#include "document/CWorkstation.h"
#include "model/plugin/LoopList.h"
#include "platform/CAtomicFile.h"
#include "platform/Paths.h"
#include "texts/Texts.h"

namespace quib {

namespace {

namespace fs = std::filesystem;

// That the patterns of an instrument play.
std::set<int> KeysOf(const CInstrument& instrument) {
    std::set<int> keys;
    for (const auto& pattern : instrument.patterns) {
        for (const Note& note : pattern.ForEdit()->Notes()) {
            if (note.velocity > 0) keys.insert(note.key);
        }
    }
    return keys;
}

const CPlugin* LoopPlayerOf(const CInstrument& instrument) {
    const CPlugin* const plugin = instrument.plugin.ForEdit()->plugin.get();
    return plugin != nullptr && plugin->Identity().isLoopPlayer ? plugin : nullptr;
}

// The file behind a loop that a player tells; names of more than 63 bytes are told cut.
fs::path FileOf(const Folders& folders, const std::string& name) {
    constexpr std::size_t kLongest = 63;
    for (const fs::path& folder :
         {fs::path(folders.loops.toStdString()), ShippedData() / "Loops", ExecutableFolder() / "Loops"}) {
        std::error_code error;
        for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
            const std::string stem = entry->path().stem().string();
            const bool isIt = name.size() < kLongest ? stem == name : stem.starts_with(name);
            if (isIt && entry->is_regular_file(error)) return entry->path();
        }
    }
    return {};
}

// By key, so that each is copied once.
std::map<int, std::string> LoopsInUse(CWorkstation& document) {
    std::map<int, std::string> used;
    for (const auto& instrument : document.Stack().Instruments()) {
        const CPlugin* const player = LoopPlayerOf(*instrument);
        if (player == nullptr) continue;
        const std::set<int> keys = KeysOf(*instrument);
        for (const LoopEntry& loop : ListLoops(*player)) {
            if (keys.contains(loop.key)) used[loop.key] = loop.name;
        }
    }
    return used;
}

bool CopyLoop(const fs::path& from, const fs::path& folder, int key, std::string& error) {
    const std::string name = from.filename().string();
    const bool hasKey = name.starts_with(std::to_string(key) + ' ');
    std::error_code failure;
    fs::create_directories(folder, failure);
    if (!failure) {
        fs::copy_file(from, folder / (hasKey ? name : std::to_string(key) + ' ' + name),
                      fs::copy_options::overwrite_existing, failure);
    }
    if (failure) error = from.string() + ": " + failure.message();
    return !failure;
}

}  // namespace

QString FileOfLoop(const CWorkstation& document, const std::string& name) {
    return QString::fromStdString(FileOf(document.ProgramFolders(), name).string());
}

// One of them has the folders read for all of its library.
void FollowLoopFolders(CWorkstation& document) {
    document.Places().ForEachSlot([](const PluginSlot& slot, const SlotPlace&) {
        if (slot.plugin) slot.plugin->CountLoops();
    });
}

QStringList MissingLoops(CWorkstation& document) {
    QStringList lines;
    for (const auto& instrument : document.Stack().Instruments()) {
        const CPlugin* const player = LoopPlayerOf(*instrument);
        if (player == nullptr) continue;
        std::set<int> keys = KeysOf(*instrument);
        for (const LoopEntry& loop : ListLoops(*player)) keys.erase(loop.key);
        QStringList names;
        for (const int key : keys) names.append(QString::number(key));
        if (names.isEmpty()) continue;
        lines.append(Text("%1: there is no loop at key %2")
                         .arg(QString::fromStdString(instrument->title), names.join(QStringLiteral(", "))));
    }
    return lines;
}

bool CollectProject(CWorkstation& document, const QString& folder, QStringList& told, QString& error) {
    std::string reason;
    const std::string bytes = document.Session().Bytes();
    const QString project = QDir(folder).filePath(document.Session().ProjectName() + QStringLiteral(".prg"));
    if (!QDir().mkpath(folder) || !CAtomicFile().Replace(project.toStdString(), bytes, reason)) {
        error = reason.empty() ? Text("Cannot write %1").arg(folder) : QString::fromStdString(reason);
        return false;
    }
    int copied = 0;
    for (const auto& [key, name] : LoopsInUse(document)) {
        const fs::path from = FileOf(document.ProgramFolders(), name);
        if (from.empty() || !CopyLoop(from, fs::path(folder.toStdString()) / "Loops", key, reason)) {
            error = from.empty() ? Text("Cannot find the loop %1").arg(QString::fromStdString(name))
                                 : QString::fromStdString(reason);
            return false;
        }
        ++copied;
    }
    told.append(Text("%1 and %2 loops.").arg(project).arg(copied));
    if (copied > 0) told.append(Text("Copy its folder Loops into that of the other machine."));
    told += MissingLoops(document);
    std::set<std::string> plugins;
    document.Places().ForEachSlot([&plugins](const PluginSlot& slot, const SlotPlace&) {
        if (slot.plugin && !slot.plugin->Identity().effectName.starts_with("QUIB ")) {
            plugins.insert(slot.plugin->Identity().displayName);
        }
    });
    for (const std::string& plugin : plugins) {
        told.append(Text("The other machine needs the plug-in %1.").arg(QString::fromStdString(plugin)));
    }
    return true;
}

}  // namespace quib
