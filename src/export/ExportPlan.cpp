// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ExportPlan.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "export/CSoundFile.h"
#include "project/ProjectEngine.h"

namespace quib {

namespace {

constexpr std::size_t kLongestName = 180;  // bytes, without extension
constexpr float kFullLevel = 127;

bool IsLeftOut(const ExportSettings& settings, int index) {
    return std::find(settings.leftOut.begin(), settings.leftOut.end(), index) != settings.leftOut.end();
}

bool IsSentTo(const ProjectState& state, std::size_t effect) {
    const auto& plugin = state.effects[effect]->plugin;
    return plugin != nullptr && plugin->CanReplace() && plugin->OutputCount() > 0;
}

std::vector<ExportFile> ListStems(const ProjectState& state, const ExportSettings& settings) {
    std::vector<ExportFile> files;
    for (std::size_t index = 0; index < state.instruments.size(); ++index) {
        const int place = static_cast<int>(index);
        if (!Sounds(*state.instruments[index]) || IsLeftOut(settings, place)) continue;
        files.push_back({ExportFile::ESource::kInstrument, place, state.instruments[index]->title, {}});
    }
    if (!settings.effectStems || settings.stemPoint == EStemPoint::kAfterMaster) return files;
    for (std::size_t effect = 0; effect < state.effects.size(); ++effect) {
        if (!IsSentTo(state, effect)) continue;
        files.push_back({ExportFile::ESource::kEffect,
                         static_cast<int>(effect),
                         state.effects[effect]->plugin->Identity().displayName,
                         {}});
    }
    return files;
}

// What a file name can hold, on every file system.
std::string SafeName(std::string name) {
    constexpr std::string_view kForbidden = "/\\:*?\"<>|";
    for (char& letter : name) {
        if (static_cast<unsigned char>(letter) < ' ' || kForbidden.find(letter) != std::string_view::npos) letter = '_';
    }
    if (name.starts_with('.')) name[0] = '_';
    std::size_t end = std::min(name.size(), kLongestName);
    while (end > 0 && end < name.size() && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80U) --end;
    while (end > 0 && name[end - 1] == ' ') --end;
    name.resize(end);
    return name;
}

void ReplaceWord(std::string& text, const std::string& word, const std::string& value) {
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + value.size())) {
        text.replace(at, word.size(), value);
    }
}

std::string NameOf(std::string pattern, const ExportFile& file, std::size_t number, const ExportSettings& settings) {
    const SoundTags& tags = settings.tags;
    // The values that the user types come last: braces in them are not words.
    ReplaceWord(pattern, "{number}", fmt::format("{:02}", number));
    ReplaceWord(pattern, "{bpm}", fmt::format("{:g}", tags.tempo));
    ReplaceWord(pattern, "{date}", settings.date);
    ReplaceWord(pattern, "{artist}", tags.artist);
    ReplaceWord(pattern, "{title}", tags.title);
    ReplaceWord(pattern, "{stem}", file.name);
    return SafeName(std::move(pattern));
}

}  // namespace

bool Sounds(const CInstrument& instrument) {
    const CPlugin* const plugin = instrument.plugin.ForEdit()->plugin.get();
    return plugin != nullptr && plugin->CanReplace() && plugin->OutputCount() > 0;
}

std::vector<ExportFile> PlanFiles(const ProjectState& state, const ExportSettings& settings) {
    const ExportFile mix{ExportFile::ESource::kMix, 0, "Mix", settings.mixPath};
    if (!settings.stems && !settings.mixPath.empty()) return {mix};
    std::vector<ExportFile> files = settings.stems ? ListStems(state, settings) : std::vector<ExportFile>{mix};
    std::string pattern = settings.namePattern;
    const bool isTold = pattern.find("{stem}") != std::string::npos || pattern.find("{number}") != std::string::npos;
    if (settings.stems && !isTold) pattern += pattern.empty() ? "{stem}" : " - {stem}";
    std::set<std::string> taken;
    for (std::size_t index = 0; index < files.size(); ++index) {
        std::string name = NameOf(pattern, files[index], index + 1, settings);
        if (name.empty()) name = "Untitled";
        const std::string wanted = name;
        for (int more = 2; !taken.insert(name).second; ++more) name = fmt::format("{} {}", wanted, more);
        files[index].path = settings.folder / (name + '.' + ExtensionOf(settings.format.kind));
    }
    if (!settings.mixPath.empty()) files.insert(files.begin(), mix);
    return files;
}

StepRange StepsOf(EExportRange range, const ProjectState& state) {
    switch (range) {
        case EExportRange::kSong:
            return {0, SongSteps(state)};
        case EExportRange::kLoop:
            if (state.master.loopEnd <= state.master.loopStart || state.master.loopStart < 0) return {};
            return {state.master.loopStart, state.master.loopEnd};
        case EExportRange::kPatterns:
            return {0, state.instruments.empty() ? 0 : PatternModeSteps(state)};
    }
    return {};
}

bool StemsAddUp(const ProjectState& state, const ExportSettings& settings) {
    if (!settings.stems || settings.stemPoint != EStemPoint::kBeforeMaster || !settings.leftOut.empty()) return false;
    if (settings.format.kind != ESoundFormat::kWave || settings.format.bits != 32) return false;
    if (state.master.level < kFullLevel || !state.masterLanes.Lanes(CEventLanes::kSongSlot).empty()) return false;
    const bool hasInsert = std::any_of(state.masterInserts.begin(), state.masterInserts.end(),
                                       [](const MasterInsert& insert) { return insert.on > 0 && insert.slot->plugin; });
    bool hasEffect = false;
    for (std::size_t effect = 0; effect < state.effects.size(); ++effect) hasEffect |= IsSentTo(state, effect);
    return !hasInsert && (settings.effectStems || !hasEffect);
}

}  // namespace quib
