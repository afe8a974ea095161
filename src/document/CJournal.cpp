// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CJournal.h"

#include <utility>

#include "document/DetachedProject.h"
#include "model/plugin/BankUnheard.h"
#include "platform/Clock.h"

namespace quib {

namespace {

constexpr std::uint64_t kInterval = 4'000'000'000;  // nanoseconds between the beginnings of two passes
constexpr std::uint64_t kBudget = 400'000;          // nanoseconds of a tick
// A plug-in that needs long for its state is asked so rarely that it takes no more than this part of the time.
constexpr std::uint64_t kPatience = 500;

}  // namespace

void CJournal::Tick(const std::filesystem::path& path) {
    const std::uint64_t now = Nanoseconds();
    if (!passing) {
        if (!IsDue(now)) return;
        Begin(now);
    }
    do {
        if (Step()) continue;
        return Finish(path);
    } while (Nanoseconds() - now < kBudget);
}

void CJournal::Restart() {
    passing = false;
    state = {};
    plugins.clear();
    known.clear();
    written = changes.Revision();
}

bool CJournal::IsDue(std::uint64_t now) const { return changes.Revision() != written && now - begun >= kInterval; }

void CJournal::Begin(std::uint64_t now) {
    begun = now;
    passing = true;
    passed = changes.Revision();
    state = gather();
    plugins.clear();
    nextPlugin = nextInstrument = 0;
    ForEachSlot(state, [this](const PluginSlot& slot) {
        if (slot.plugin) plugins.push_back(slot.plugin);
    });
    std::erase_if(known, [](const auto& entry) { return entry.second.plugin.expired(); });
}

// One thing that cannot be divided; false when nothing is left.
bool CJournal::Step() {
    if (nextPlugin < plugins.size()) {
        Look(plugins[nextPlugin++]);
        return true;
    }
    if (nextInstrument == state.instruments.size()) return false;
    auto& instrument = state.instruments[nextInstrument++];
    instrument = Detached(*instrument);
    return true;
}

void CJournal::Look(const std::shared_ptr<CPlugin>& plugin) {
    Known& entry = known[plugin.get()];
    const std::uint64_t start = Nanoseconds();
    if (entry.image && start - entry.time < entry.cost * kPatience) return;
    const StateImage none;
    entry.image = std::make_shared<const StateImage>(SaveBankUnheard(*plugin, entry.image ? *entry.image : none));
    entry.program = plugin->CurrentProgram();
    entry.plugin = plugin;
    plugin->KeepState({entry.image, entry.program});
    entry.time = Nanoseconds();
    entry.cost = entry.time - start;
}

CPlugin::StoredState CJournal::StateOf(const std::shared_ptr<CPlugin>& plugin) {
    if (!known.contains(plugin.get())) Look(plugin);
    const Known& entry = known[plugin.get()];
    return {entry.image, entry.program};
}

std::shared_ptr<CInstrument> CJournal::Detached(CInstrument& instrument) {
    return quib::Detached(
        instrument, [this](const std::shared_ptr<CPlugin>& plugin) { return StateOf(plugin); }, heldKeys(instrument));
}

void CJournal::Finish(const std::filesystem::path& path) {
    DetachMaster(state, [this](const std::shared_ptr<CPlugin>& plugin) { return StateOf(plugin); });
    passing = false;
    written = passed;
    plugins.clear();
    auto whole = std::make_shared<const ProjectState>(std::exchange(state, {}));
    saver.Write(
        path, [whole] { return BytesOf(*whole); }, done);
}

}  // namespace quib
