// SPDX-License-Identifier: GPL-3.0-or-later
// The list of instruments, and files of one instrument.
#include <QFileInfo>
#include <algorithm>
#include <utility>

#include "document/CSettings.h"
#include "document/CWorkstation.h"
#include "model/files/ContentFiles.h"
#include "model/files/InstrumentFile.h"
#include "texts/Texts.h"

namespace quib {

namespace {

bool IsInstrumentFile(const QString& path) { return path.endsWith(QLatin1String(".ist"), Qt::CaseInsensitive); }

// Plug-ins that come back must not sound on where they were taken away.
void SilencePlugins(const CInstrument& instrument) {
    if (const auto& plugin = instrument.plugin.ForEdit()->plugin) plugin->Prepare();
    for (const auto& insert : instrument.inserts) {
        if (const auto& plugin = insert.ForEdit()->plugin) plugin->Prepare();
    }
}

}  // namespace

std::shared_ptr<CInstrument> CWorkstation::Instrument(int index) const {
    const InstrumentList& list = Instruments();
    if (index < 0 || index >= static_cast<int>(list.size())) return nullptr;
    return list[static_cast<std::size_t>(index)];
}

int CWorkstation::IndexOf(std::uint32_t id) const {
    const InstrumentList& list = Instruments();
    const auto place = std::find_if(list.begin(), list.end(), [id](const auto& entry) { return entry->Id() == id; });
    return place == list.end() ? -1 : static_cast<int>(place - list.begin());
}

std::shared_ptr<CInstrument> CWorkstation::InstrumentById(std::uint32_t id) const { return Instrument(IndexOf(id)); }

void CWorkstation::SetCurrent(int index) {
    const int limited = std::clamp(index, -1, static_cast<int>(Instruments().size()) - 1);
    if (limited == current) return;
    current = limited;
    Q_EMIT CurrentChanged(current);
}

void CWorkstation::PublishInstruments(const InstrumentList& list, int nextCurrent) {
    for (const auto& instrument : list) {
        if (IndexOf(instrument->Id()) < 0) SilencePlugins(*instrument);
        audio.PrepareInstrument(*instrument);
    }
    audio.PublishInstruments(list);
    ApplySolo();
    Q_EMIT InstrumentsChanged();
    current = -2;  // the same place may hold another instrument
    SetCurrent(nextCurrent);
}

void CWorkstation::SetInstruments(InstrumentList list, int nextCurrent, const QString& name) {
    PushChange(
        name, [this, list = std::move(list), nextCurrent] { PublishInstruments(list, nextCurrent); },
        [this, before = Instruments(), currentBefore = current] { PublishInstruments(before, currentBefore); });
}

std::shared_ptr<CInstrument> CWorkstation::MakeInstrument(const QString& nameOrPath, QString& error) {
    if (IsInstrumentFile(nameOrPath)) {
        LoadContext context{Loader(), {}};
        std::string reason;
        auto instrument = LoadInstrumentFile(nameOrPath.toStdString(), context, reason);
        error = QString::fromStdString(reason);
        warnings = std::move(context.warnings);
        return instrument;
    }
    const auto plugin = LoadLibrary(nameOrPath, SlotKind::Instrument, error);
    if (!plugin) return nullptr;
    auto instrument = std::make_shared<CInstrument>();
    instrument->title = plugin->Identity().displayName;
    if (instrument->title.empty()) instrument->title = QFileInfo(nameOrPath).completeBaseName().toStdString();
    auto slot = std::make_shared<PluginSlot>();
    slot->plugin = plugin;
    instrument->plugin.Prepare(std::move(slot));
    return instrument;
}

int CWorkstation::AddInstrument(const QString& nameOrPath, QString& error) {
    if (Instruments().size() >= kMaximumInstruments) {
        error = Text("There are too many instruments.");
        return -1;
    }
    const auto instrument = MakeInstrument(nameOrPath, error);
    if (!instrument) return -1;
    if (settings.IsOn(QStringLiteral("LevelOffWhenLoadingInst"))) instrument->strip.level.Set(0.0F);
    loadedKeys[instrument->Id()] = instrument->play.heldKeys.Items();
    InstrumentList list = Instruments();
    list.push_back(instrument);
    const int index = static_cast<int>(list.size()) - 1;
    SetInstruments(std::move(list), index, Text("Add instrument"));
    return index;
}

void CWorkstation::RemoveInstrument(int index) {
    if (!Instrument(index)) return;
    InstrumentList list = Instruments();
    list.erase(list.begin() + index);
    const int next = std::min(index, static_cast<int>(list.size()) - 1);
    SetInstruments(std::move(list), next, Text("Remove instrument"));
}

void CWorkstation::MoveInstrument(int from, int to) {
    InstrumentList list = Instruments();
    if (from == to || !Instrument(from) || !Instrument(to)) return;
    const auto moved = list[static_cast<std::size_t>(from)];
    list.erase(list.begin() + from);
    list.insert(list.begin() + to, moved);
    SetInstruments(std::move(list), to, Text("Move instrument"));
}

// By way of its records, so that a copy has all that a file has.
void CWorkstation::DuplicateInstrument(int index) {
    const auto instrument = Instrument(index);
    if (!instrument || Instruments().size() >= kMaximumInstruments) return;
    CRecordWriter writer;
    WriteInstrument(writer, *instrument, {});
    LoadContext context{Loader(), {}};
    std::string error;
    const auto copy = ReadInstrumentFile({writer.Bytes().data(), writer.Bytes().size()}, context, error);
    if (!copy) return;
    InstrumentList list = Instruments();
    list.insert(list.begin() + index + 1, copy);
    SetInstruments(std::move(list), index + 1, Text("Duplicate instrument"));
}

void CWorkstation::ReplaceInstrument(int index, Instrumented next, const QString& name) {
    InstrumentList list = Instruments();
    list[static_cast<std::size_t>(index)] = std::move(next);
    SetInstruments(std::move(list), index, name);
}

// The plug-in stays, in its state; the equaliser and insert switches are not touched either.
void CWorkstation::ResetInstrument(int index) {
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
    ReplaceInstrument(index, std::move(fresh), Text("Reset instrument"));
}

void CWorkstation::RenameInstrument(int index, const QString& title) {
    const auto instrument = Instrument(index);
    std::string next = title.toStdString();
    if (!instrument || instrument->title == next) return;
    const auto set = [this, instrument](const std::string& text) {
        instrument->title = text;
        Q_EMIT InstrumentChanged(instrument->Id());
    };
    PushChange(
        Text("Rename instrument"), [set, next = std::move(next)] { set(next); },
        [set, before = instrument->title] { set(before); });
}

void CWorkstation::SetIcon(int index, int icon) {
    const auto instrument = Instrument(index);
    if (!instrument || instrument->icon == icon) return;
    const auto set = [this, instrument](int value) {
        instrument->icon = value;
        Q_EMIT InstrumentChanged(instrument->Id());
    };
    PushChange(
        Text("Change icon"), [set, icon] { set(icon); }, [set, before = instrument->icon] { set(before); });
}

bool CWorkstation::LoadInstrument(int index, const QString& path, QString& error) {
    if (!Instrument(index)) return false;
    LoadContext context{Loader(), {}};
    std::string reason;
    auto instrument = LoadInstrumentFile(path.toStdString(), context, reason);
    error = QString::fromStdString(reason);
    if (!instrument) return false;
    warnings = std::move(context.warnings);
    loadedKeys[instrument->Id()] = instrument->play.heldKeys.Items();
    ReplaceInstrument(index, std::move(instrument), Text("Load instrument"));
    return true;
}

bool CWorkstation::SaveInstrument(int index, const QString& path, QString& error) {
    const auto instrument = Instrument(index);
    if (!instrument) return false;
    std::string reason;
    const bool saved = SaveInstrumentFile(path.toStdString(), *instrument, HeldKeysOf(*instrument), reason);
    error = QString::fromStdString(reason);
    return saved;
}

QColor CWorkstation::StripColour(int index) const {
    const auto instrument = Instrument(index);
    if (!instrument || instrument->stripColour == 0) return {};
    return QColor::fromRgb(static_cast<QRgb>(instrument->stripColour - 1) | 0xff000000U);
}

void CWorkstation::SetStripColour(int index, const QColor& colour) {
    const auto instrument = Instrument(index);
    if (!instrument) return;
    const std::int32_t next = colour.isValid() ? static_cast<std::int32_t>(colour.rgb() & 0xffffffU) + 1 : 0;
    if (next == instrument->stripColour) return;
    const auto set = [this, instrument](std::int32_t value) {
        instrument->stripColour = value;
        Q_EMIT InstrumentChanged(instrument->Id());
    };
    PushChange(
        Text("Colour strip"), [set, next] { set(next); }, [set, before = instrument->stripColour] { set(before); });
}

bool CWorkstation::IsCollapsed(int index) const {
    const auto instrument = Instrument(index);
    return instrument && instrument->stripCollapsed;
}

void CWorkstation::SetCollapsed(int index, bool collapsed) {
    const auto instrument = Instrument(index);
    if (!instrument || instrument->stripCollapsed == collapsed) return;
    const auto set = [this, instrument](bool value) {
        instrument->stripCollapsed = value;
        Q_EMIT InstrumentsChanged();
    };
    PushChange(
        collapsed ? Text("Collapse strip") : Text("Expand strip"), [set, collapsed] { set(collapsed); },
        [set, collapsed] { set(!collapsed); });
}

bool CWorkstation::IsSolo(int index) const {
    const auto instrument = Instrument(index);
    return instrument && soloed.count(instrument->Id()) != 0;
}

void CWorkstation::ToggleSolo(int index) {
    const auto instrument = Instrument(index);
    if (!instrument) return;
    const bool wasOn = soloed.erase(instrument->Id()) != 0;
    if (!settings.IsOn(QStringLiteral("SoloCumulMode"))) soloed.clear();
    if (!wasOn) soloed.insert(instrument->Id());
    ApplySolo();
    for (const auto& entry : Instruments()) Q_EMIT InstrumentChanged(entry->Id());
}

// Of instruments that are not in the list any more nothing remains but their solo, for when they return.
void CWorkstation::ApplySolo() {
    const bool any = std::any_of(Instruments().begin(), Instruments().end(),
                                 [this](const auto& entry) { return soloed.count(entry->Id()) != 0; });
    for (const auto& entry : Instruments()) {
        entry->strip.soloMuted.Set(any && soloed.count(entry->Id()) == 0 ? 1.0F : 0.0F);
    }
}

}  // namespace quib
