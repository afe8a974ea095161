// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CInstrumentStack.h"

#include <QFileInfo>
#include <algorithm>
#include <array>
#include <utility>

#include "document/CContents.h"
#include "document/CControllers.h"
#include "model/files/ContentFiles.h"
#include "model/files/InstrumentFile.h"
#include "texts/Texts.h"

namespace quib {

namespace {

bool IsInstrumentFile(const QString& path) { return path.endsWith(QLatin1String(".ist"), Qt::CaseInsensitive); }

// What ends a field or a line of a file is no part of a title.
std::string UsableTitle(std::string title) {
    std::erase_if(title, [](char character) { return character == ';' || character == '\r' || character == '\n'; });
    return title;
}

// The icon that a plug-in's name speaks of; that of a synthesiser where it speaks of none.
int IconFor(const std::string& name) {
    constexpr std::array<std::pair<const char*, int>, 14> kWords = {{{"drum", 1},
                                                                     {"beat", 1},
                                                                     {"kick", 1},
                                                                     {"perc", 1},
                                                                     {"bass", 2},
                                                                     {"piano", 3},
                                                                     {"organ", 3},
                                                                     {"keys", 3},
                                                                     {"pad", 4},
                                                                     {"lead", 5},
                                                                     {"string", 6},
                                                                     {"loop", 7},
                                                                     {"sampl", 7},
                                                                     {"brass", 5}}};
    const QString lower = QString::fromStdString(name).toLower();
    for (const auto& [word, icon] : kWords) {
        if (lower.contains(QLatin1String(word))) return icon;
    }
    return 0;
}

// Plug-ins that come back must not sound on where they were taken away.
void SilencePlugins(const CInstrument& instrument) {
    if (const auto& plugin = instrument.plugin.ForEdit()->plugin) plugin->Prepare();
    for (const auto& insert : instrument.inserts) {
        if (const auto& plugin = insert.ForEdit()->plugin) plugin->Prepare();
    }
}

}  // namespace

void CInstrumentStack::PublishInstruments(const InstrumentList& list, int nextCurrent) {
    for (const auto& instrument : list) {
        if (IndexOf(instrument->Id()) < 0) SilencePlugins(*instrument);
        context.audio.PrepareInstrument(*instrument);
    }
    context.audio.PublishInstruments(list);
    ApplySolo();
    context.changes.Tell({EChange::kStack});
    selection.Renew(nextCurrent);  // the same place may hold another instrument
}

void CInstrumentStack::SetInstruments(InstrumentList list, int nextCurrent, const QString& name) {
    context.changes.Push(
        name, [this, list = std::move(list), nextCurrent] { PublishInstruments(list, nextCurrent); },
        [this, before = Instruments(), currentBefore = selection.CurrentIndex()] {
            PublishInstruments(before, currentBefore);
        });
}

std::shared_ptr<CInstrument> CInstrumentStack::MakeInstrument(const QString& nameOrPath, QString& error) {
    if (IsInstrumentFile(nameOrPath)) {
        LoadContext loading{places.Loader(), {}};
        std::string reason;
        auto instrument = LoadInstrumentFile(nameOrPath.toStdString(), loading, reason);
        error = QString::fromStdString(reason);
        warnings = std::move(loading.warnings);
        return instrument;
    }
    const auto plugin = places.LoadLibrary(nameOrPath, ESlotKind::kInstrument, error);
    if (!plugin) return nullptr;
    auto instrument = std::make_shared<CInstrument>();
    instrument->title = UsableTitle(plugin->Identity().displayName);
    if (instrument->title.empty()) {
        instrument->title = UsableTitle(QFileInfo(nameOrPath).completeBaseName().toStdString());
    }
    instrument->icon = IconFor(instrument->title);
    auto slot = std::make_shared<PluginSlot>();
    slot->plugin = plugin;
    instrument->plugin.Prepare(std::move(slot));
    instrument->keyboardOn.Set(1.0F);
    return instrument;
}

void CInstrumentStack::StartSilent(CInstrument& loaded) const {
    if (context.settings.IsOn(QStringLiteral("LevelOffWhenLoadingInst"))) loaded.strip.level.Set(0.0F);
}

int CInstrumentStack::AddInstrument(const QString& nameOrPath, QString& error) {
    if (Instruments().size() >= kMaximumInstruments) {
        error = Text("There are too many instruments.");
        return -1;
    }
    const auto instrument = MakeInstrument(nameOrPath, error);
    if (!instrument) return -1;
    StartSilent(*instrument);
    KeepKeys(*instrument);
    InstrumentList list = Instruments();
    list.push_back(instrument);
    const int index = static_cast<int>(list.size()) - 1;
    SetInstruments(std::move(list), index, Text("Add instrument"));
    return index;
}

void CInstrumentStack::DropControllers(const CInstrument& instrument, const QString& name) {
    controllers.Drop([id = instrument.Id()](const ControlTarget& target) { return target.instrument == id; }, name);
}

bool CInstrumentStack::AddInstruments(const InstrumentList& added, const QString& name, QString& error) {
    InstrumentList list = Instruments();
    if (list.size() + added.size() > kMaximumInstruments) {
        error = Text("There are too many instruments.");
        return false;
    }
    const int first = static_cast<int>(list.size());
    list.insert(list.end(), added.begin(), added.end());
    SetInstruments(std::move(list), first, name);
    return true;
}

void CInstrumentStack::RemoveInstrument(int index) {
    const auto instrument = Instrument(index);
    if (!instrument) return;
    const CChanges::CMacro step(context.changes, Text("Remove instrument"));
    DropControllers(*instrument, Text("Remove instrument"));
    InstrumentList list = Instruments();
    list.erase(list.begin() + index);
    const int next = std::min(index, static_cast<int>(list.size()) - 1);
    SetInstruments(std::move(list), next, Text("Remove instrument"));
}

void CInstrumentStack::MoveInstrument(int from, int to) {
    InstrumentList list = Instruments();
    if (from == to || !Instrument(from) || !Instrument(to)) return;
    const auto moved = list[static_cast<std::size_t>(from)];
    list.erase(list.begin() + from);
    list.insert(list.begin() + to, moved);
    SetInstruments(std::move(list), to, Text("Move instrument"));
}

// The title with the first number from 2 that no instrument has: "Kick 2" of "Kick" or of "Kick 7".
std::string CInstrumentStack::FreshTitle(const std::string& title) const {
    const std::size_t letters = title.find_last_not_of("0123456789");
    const bool numbered = letters != std::string::npos && title[letters] == ' ' && letters + 1 < title.size();
    const std::string stem = numbered ? title.substr(0, letters) : title;
    const auto taken = [this](const std::string& wanted) {
        const auto& list = Instruments();
        return std::any_of(list.begin(), list.end(), [&](const auto& entry) { return entry->title == wanted; });
    };
    int copy = 2;
    while (taken(stem + ' ' + std::to_string(copy))) ++copy;
    return stem + ' ' + std::to_string(copy);
}

// By way of its records, so that a copy has all that a file has.
void CInstrumentStack::DuplicateInstrument(int index) {
    const auto instrument = Instrument(index);
    if (!instrument || Instruments().size() >= kMaximumInstruments) return;
    CRecordWriter writer;
    WriteInstrument(writer, *instrument, {});
    LoadContext loading{places.Loader(), {}};
    std::string error;
    const auto copy = ReadInstrumentFile({writer.Bytes().data(), writer.Bytes().size()}, loading, error);
    if (!copy) return;
    copy->title = FreshTitle(instrument->title);
    InstrumentList list = Instruments();
    list.insert(list.begin() + index + 1, copy);
    SetInstruments(std::move(list), index + 1, Text("Duplicate instrument"));
}

void CInstrumentStack::ReplaceInstrument(int index, std::shared_ptr<CInstrument> next, const QString& name) {
    InstrumentList list = Instruments();
    list[static_cast<std::size_t>(index)] = std::move(next);
    SetInstruments(std::move(list), index, name);
}

// The plug-in stays, in its state but without its automation; the equaliser and insert switches are not touched.
void CInstrumentStack::ResetInstrument(int index) {
    const auto old = Instrument(index);
    if (!old) return;
    auto fresh = std::make_shared<CInstrument>();
    fresh->title = old->title;
    fresh->icon = old->icon;
    fresh->stripColour = old->stripColour;
    fresh->stripCollapsed = old->stripCollapsed;
    fresh->plugin.Prepare(old->plugin.ForEdit());
    KeepThroughReset(fresh->strip, old->strip);
    for (std::size_t i = 0; i < old->inserts.size(); ++i) {
        fresh->inserts[i].Prepare(old->inserts[i].ForEdit());
    }
    const CChanges::CMacro step(context.changes, Text("Reset instrument"));
    const auto clear = [this, &old](const PluginSlot& slot, int family) {
        if (!slot.plugin) return;
        context.changes.Publish<CEventLanes>(
            {Part(slot.plugin, slot.plugin->lanes), {EChange::kLanes, old->Id(), family}},
            std::make_shared<const CEventLanes>(), Text("Reset instrument"));
    };
    clear(*old->plugin.ForEdit(), static_cast<int>(ELanes::kPlugin));
    clear(*old->inserts[0].ForEdit(), static_cast<int>(ELanes::kInsert1));
    clear(*old->inserts[1].ForEdit(), static_cast<int>(ELanes::kInsert2));
    controllers.Retarget(
        [from = old->Id(), to = fresh->Id()](ControlTarget& target) {
            if (target.instrument == from) target.instrument = to;
            return true;
        },
        Text("Reset instrument"));
    ReplaceInstrument(index, std::move(fresh), Text("Reset instrument"));
}

void CInstrumentStack::RenameInstrument(int index, const QString& title) {
    const auto instrument = Instrument(index);
    std::string next = UsableTitle(title.toStdString());
    if (!instrument || instrument->title == next) return;
    const auto set = [this, instrument](const std::string& text) {
        instrument->title = text;
        context.changes.Tell({EChange::kInstrument, instrument->Id()});
    };
    context.changes.Push(
        Text("Rename instrument"), [set, next = std::move(next)] { set(next); },
        [set, before = instrument->title] { set(before); });
}

void CInstrumentStack::SetIcon(int index, int icon) {
    const auto instrument = Instrument(index);
    if (!instrument || instrument->icon == icon) return;
    const auto set = [this, instrument](int value) {
        instrument->icon = value;
        context.changes.Tell({EChange::kInstrument, instrument->Id()});
    };
    context.changes.Push(
        Text("Change icon"), [set, icon] { set(icon); }, [set, before = instrument->icon] { set(before); });
}

bool CInstrumentStack::LoadInstrument(int index, const QString& path, QString& error) {
    if (!Instrument(index)) return false;
    LoadContext loading{places.Loader(), {}};
    std::string reason;
    auto instrument = LoadInstrumentFile(path.toStdString(), loading, reason);
    error = QString::fromStdString(reason);
    if (!instrument) return false;
    warnings = std::move(loading.warnings);
    StartSilent(*instrument);
    KeepKeys(*instrument);
    const CChanges::CMacro step(context.changes, Text("Load instrument"));
    DropControllers(*Instrument(index), Text("Load instrument"));
    ReplaceInstrument(index, std::move(instrument), Text("Load instrument"));
    return true;
}

bool CInstrumentStack::SaveInstrument(int index, const QString& path, QString& error) {
    const auto instrument = Instrument(index);
    if (!instrument) return false;
    std::string reason;
    const bool saved = SaveInstrumentFile(path.toStdString(), *instrument, HeldKeysOf(*instrument), reason);
    error = QString::fromStdString(reason);
    return saved;
}

QColor CInstrumentStack::StripColour(int index) const {
    const auto instrument = Instrument(index);
    if (!instrument || instrument->stripColour == 0) return {};
    return QColor::fromRgb(static_cast<QRgb>(instrument->stripColour - 1) | 0xff000000U);
}

void CInstrumentStack::SetStripColour(int index, const QColor& colour) {
    const auto instrument = Instrument(index);
    if (!instrument) return;
    const std::int32_t next = colour.isValid() ? static_cast<std::int32_t>(colour.rgb() & 0xffffffU) + 1 : 0;
    if (next == instrument->stripColour) return;
    const auto set = [this, instrument](std::int32_t value) {
        instrument->stripColour = value;
        context.changes.Tell({EChange::kInstrument, instrument->Id()});
    };
    context.changes.Push(
        Text("Colour strip"), [set, next] { set(next); }, [set, before = instrument->stripColour] { set(before); });
}

bool CInstrumentStack::IsCollapsed(int index) const {
    const auto instrument = Instrument(index);
    return instrument && instrument->stripCollapsed;
}

void CInstrumentStack::SetCollapsed(int index, bool collapsed) {
    const auto instrument = Instrument(index);
    if (!instrument || instrument->stripCollapsed == collapsed) return;
    const auto set = [this, instrument](bool value) {
        instrument->stripCollapsed = value;
        context.changes.Tell({EChange::kStack});
    };
    context.changes.Push(
        collapsed ? Text("Collapse strip") : Text("Expand strip"), [set, collapsed] { set(collapsed); },
        [set, collapsed] { set(!collapsed); });
}

bool CInstrumentStack::IsSolo(int index) const {
    const auto instrument = Instrument(index);
    return instrument && soloed.count(instrument->Id()) != 0;
}

std::uint32_t CInstrumentStack::SoloedId() const {
    if (soloed.empty()) return 0;
    const auto& list = Instruments();
    const auto first =
        std::find_if(list.begin(), list.end(), [this](const auto& entry) { return soloed.count(entry->Id()) != 0; });
    return first == list.end() ? 0 : (*first)->Id();
}

void CInstrumentStack::ToggleSolo(int index) {
    const auto instrument = Instrument(index);
    if (!instrument) return;
    const bool wasOn = soloed.erase(instrument->Id()) != 0;
    if (!context.settings.IsOn(QStringLiteral("SoloCumulMode"))) soloed.clear();
    if (!wasOn) soloed.insert(instrument->Id());
    ApplySolo();
    for (const auto& entry : Instruments()) context.changes.Tell({EChange::kInstrument, entry->Id()});
}

// Of instruments that are not in the list any more nothing remains but their solo, for when they return.
void CInstrumentStack::ApplySolo() {
    const bool any = std::any_of(Instruments().begin(), Instruments().end(),
                                 [this](const auto& entry) { return soloed.count(entry->Id()) != 0; });
    for (const auto& entry : Instruments()) {
        entry->strip.soloMuted.Set(any && soloed.count(entry->Id()) == 0 ? 1.0F : 0.0F);
    }
}

void CInstrumentStack::FollowEqualizer(const std::shared_ptr<CInstrument>& instrument, int band) const {
    (void)UpdateEqualizer(*instrument, band, context.audio.Format().sampleRate);
}

void CInstrumentStack::EqualizerEdited(const std::shared_ptr<CInstrument>& instrument, int band,
                                       const EqBandSettings& before) {
    const auto index = static_cast<std::size_t>(band);
    const auto set = [this, instrument, index, band](const EqBandSettings& settings) {
        instrument->strip.eqFreq[index].Set(settings.frequency);
        instrument->strip.eqQ[index].Set(settings.resonance);
        instrument->strip.eqGain[index].Set(settings.gain);
        FollowEqualizer(instrument, band);
    };
    const ChannelStrip& strip = instrument->strip;
    const EqBandSettings after{strip.eqFreq[index].Get(), strip.eqQ[index].Get(), strip.eqGain[index].Get()};
    FollowEqualizer(instrument, band);
    context.changes.PushDone(
        Text("Equaliser"), [set, after] { set(after); }, [set, before] { set(before); }, &strip.eqFreq[index]);
    // One hand may move two of them; the lane that is shown then is the frequency's.
    const CValue& moved = after.frequency != before.frequency ? strip.eqFreq[index]
                          : after.gain != before.gain         ? strip.eqGain[index]
                                                              : strip.eqQ[index];
    Q_EMIT context.changes.ValueMoved(&moved, 0);
}

// The engine pictures them for instruments that play; the others hold what they were loaded with.
std::vector<std::int32_t> CInstrumentStack::HeldKeysOf(const CInstrument& instrument) {
    if (const InstrumentPicture* const shown = context.audio.Picture().Find(instrument.Id())) {
        const std::size_t count = std::min<std::size_t>(shown->heldKeyCount, shown->heldKeys.size());
        return {shown->heldKeys.begin(), shown->heldKeys.begin() + static_cast<std::ptrdiff_t>(count)};
    }
    const auto loaded = loadedKeys.find(instrument.Id());
    return loaded != loadedKeys.end() ? loaded->second : std::vector<std::int32_t>();
}

void CInstrumentStack::ProjectReplaced() {
    soloed.clear();
    loadedKeys.clear();
    for (const auto& instrument : Instruments()) KeepKeys(*instrument);
    ApplySolo();
}

}  // namespace quib
