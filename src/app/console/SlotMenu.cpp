// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/SlotMenu.h"

#include <QColorDialog>
#include <QInputDialog>
#include <QMenu>

#include "app/Dialogs.h"
#include "app/FileDialogs.h"
#include "app/ProgramNames.h"
#include "app/console/FreezeMenu.h"
#include "app/console/PatternMenu.h"
#include "app/learn/LearnMenu.h"
#include "controls/CLabelCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "document/CSettings.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kMostMenuPrograms = 128;  // what a menu can show

using FileAction = std::function<bool(const QString& path, QString& error)>;

void LoadFile(const ConsoleContext& context, QWidget* window, EFileKind kind, const FileAction& load) {
    const QString path = ChooseFileToOpen(window, context.station.Settings(), kind);
    QString error;
    if (!path.isEmpty() && !load(path, error)) TellError(window, error);
}

void SaveFile(const ConsoleContext& context, QWidget* window, EFileKind kind, const QString& name,
              const FileAction& save) {
    const QString path = ChooseFileToSave(window, context.station.Settings(), kind, name);
    QString error;
    if (!path.isEmpty() && !save(path, error)) TellError(window, error);
}

void AddFileItems(QMenu& menu, const ConsoleContext& context, const SlotPlace& place, QWidget* window) {
    CWorkstation& station = context.station;
    const auto load = [=, &menu, &station](const char* text, EFileKind kind, auto member) {
        menu.addAction(Text(text), [=, &station] {
            LoadFile(context, window, kind, [&](const QString& path, QString& error) {
                return (station.Places().*member)(place, path, error);
            });
        });
    };
    const auto save = [=, &menu, &station](const char* text, EFileKind kind, auto member) {
        menu.addAction(Text(text), [=, &station] {
            SaveFile(context, window, kind, QString(), [&](const QString& path, QString& error) {
                return (station.Places().*member)(place, path, error);
            });
        });
    };
    load(TextKey("Load Bank..."), EFileKind::kBank, &CPluginPlaces::LoadBank);
    save(TextKey("Save Bank As..."), EFileKind::kBank, &CPluginPlaces::SaveBank);
    load(TextKey("Load Program..."), EFileKind::kProgram, &CPluginPlaces::LoadProgram);
    save(TextKey("Save Program As..."), EFileKind::kProgram, &CPluginPlaces::SaveProgram);
}

void AddPrograms(QMenu& menu, const ConsoleContext& context, const std::shared_ptr<CPlugin>& plugin) {
    const QStringList names = ProgramNames(*plugin);
    if (names.size() < 2) return;
    QMenu* const programs = menu.addMenu(Text("Program"));
    const int now = plugin->CurrentProgram();
    CWorkstation& station = context.station;
    for (int program = 0; program < std::min(static_cast<int>(names.size()), kMostMenuPrograms); ++program) {
        QAction* const action = programs->addAction(names[program]);
        action->setCheckable(true);
        action->setChecked(program == now);
        QObject::connect(action, &QAction::triggered, &station,
                         [&station, plugin, program] { station.Places().SelectProgram(plugin, program); });
    }
}

void LoadInto(const ConsoleContext& context, const SlotPlace& place, const QString& path, QWidget* window) {
    QString error;
    if (!context.station.Places().LoadPlugin(place, path, error)) TellError(window, error);
}

// Of the switch and the level in front of the plug-in.
void AddSlotLearning(QMenu& menu, const ConsoleContext& context, const SlotPlace& place) {
    CControllers& controllers = context.station.Controllers();
    const auto owner = context.station.Stack().InstrumentById(place.instrument);
    const auto on = context.station.Places().OnSwitch(place);
    const auto add = [&](const void* setting, const QString& what) {
        const auto target = controllers.TargetOf(owner, setting);
        if (target) AddLearnItems(menu, controllers, *target, what);
    };
    if (!on) return;
    menu.addSeparator();
    add(on.get(), Text("On and off"));
    if (place.kind == SlotPlace::EKind::kEffect && owner)
        add(&owner->strip.sendLevel[static_cast<std::size_t>(place.index)], Text("Send level"));
}

void AddBypass(QMenu& menu, const ConsoleContext& context, const SlotPlace& place) {
    CWorkstation& station = context.station;
    const auto on = station.Places().OnSwitch(place);
    if (!on) return;
    QAction* const bypass = menu.addAction(Text("Bypass"), [&station, on] {
        const float before = on->Get();
        on->Set(on->IsOn() ? 0.0F : 1.0F);
        station.Changes().ValueEdited(on, before, on->Get(), Text("Bypass"));
    });
    bypass->setCheckable(true);
    bypass->setChecked(!on->IsOn());
}

}  // namespace

void OpenSlot(const ConsoleContext& context, const SlotPlace& place, CWinControl& window) {
    const auto slot = context.station.Places().Slot(place);
    if (slot && !slot->plugin && !slot->missing && context.actions.browse) return context.actions.browse({place});
    PopUpMenu(window, [&](QMenu& menu) { FillSlotMenu(menu, context, place, &window); });
}

void FillSlotMenu(QMenu& menu, const ConsoleContext& context, const SlotPlace& place, QWidget* window) {
    const auto slot = context.station.Places().Slot(place);
    if (slot && slot->plugin) {
        menu.addAction(Text("Open Plugin"), [context, place] { context.actions.openPlugin(place); });
        AddPrograms(menu, context, slot->plugin);
        AddFileItems(*menu.addMenu(Text("Bank and program files")), context, place, window);
        AddBypass(menu, context, place);
        menu.addSeparator();
    }
    const bool isInstrument = place.kind == SlotPlace::EKind::kInstrument;
    menu.addAction(Text("Choose a plug-in..."), [context, place] { context.actions.browse({place}); });
    menu.addAction(isInstrument ? Text("Select Plugin") : Text("Load Plugin..."),
                   [context, place, window, isInstrument] {
                       const EFileKind library = isInstrument ? EFileKind::kInstrumentPlugin : EFileKind::kEffectPlugin;
                       const QString path = ChooseFileToOpen(window, context.station.Settings(), library);
                       if (!path.isEmpty()) LoadInto(context, place, path, window);
                   });
    if (slot && (slot->plugin || slot->missing)) {
        menu.addAction(Text("Remove Plugin"), [context, place] { context.station.Places().ClearPlugin(place); });
    }
    AddSlotLearning(menu, context, place);
}

void FillInstrumentMenu(QMenu& menu, const ConsoleContext& context, std::uint32_t instrument, QWidget* window) {
    CWorkstation& station = context.station;
    // The place may have changed while the menu was open.
    const auto with = [&station, instrument](auto action) {
        return [&station, instrument, action] {
            if (const int index = station.Stack().IndexOf(instrument); index >= 0) action(index);
        };
    };
    menu.addSection(Text("Instrument"));
    menu.addAction(Text("Reset Instrument"), with([&station](int index) { station.Stack().ResetInstrument(index); }));
    menu.addAction(Text("Load Instrument..."), with([=, &station](int index) {
                       LoadFile(context, window, EFileKind::kInstrument, [&](const QString& path, QString& error) {
                           return station.Stack().LoadInstrument(index, path, error);
                       });
                       if (context.actions.showWarnings) context.actions.showWarnings(station.Stack().TakeWarnings());
                   }));
    menu.addAction(Text("Save Instrument As..."), with([=, &station](int index) {
                       const QString name = QString::fromStdString(station.Stack().Instrument(index)->title);
                       SaveFile(context, window, EFileKind::kInstrument, name,
                                [&](const QString& path, QString& error) {
                                    return station.Stack().SaveInstrument(index, path, error);
                                });
                   }));
    menu.addSection(Text("Patterns"));
    const auto owner = station.Stack().InstrumentById(instrument);
    if (!owner) return;
    FillPatternMenu(*menu.addMenu(Text("Pattern %1").arg(owner->patternSelected.Get() + 1)), station, instrument);
    menu.addAction(Text("Load Patterns (all sixteen) ..."), with([=, &station](int index) {
                       LoadFile(context, window, EFileKind::kPattern, [&](const QString& path, QString& error) {
                           return station.Contents().LoadPattern(index, path, error);
                       });
                   }));
    menu.addAction(Text("Save Patterns As (all sixteen) ..."), with([=, &station](int index) {
                       const QString name = QString::fromStdString(station.Stack().Instrument(index)->title);
                       SaveFile(context, window, EFileKind::kPattern, name, [&](const QString& path, QString& error) {
                           return station.Contents().SavePattern(index, path, error);
                       });
                   }));
    menu.addSeparator();
    FillSlotMenu(*menu.addMenu(Text("Select Plugin")), context, {SlotPlace::EKind::kInstrument, instrument, 0}, window);
    menu.addSeparator();
    menu.addAction(Text("Rename..."), with([&station, window](int index) {
                       bool accepted = false;
                       const QString title = QInputDialog::getText(
                           window, Text("Rename"), Text("Title"), QLineEdit::Normal,
                           QString::fromStdString(station.Stack().Instrument(index)->title), &accepted);
                       if (accepted) station.Stack().RenameInstrument(index, title);
                   }));
    QMenu* const icons = menu.addMenu(Text("Icon"));
    const QStringList names = {Text("Synthesiser"), Text("Drums"), Text("Bass"),    Text("Keys"),
                               Text("Pad"),         Text("Lead"),  Text("Strings"), Text("Loop")};
    for (int icon = 0; icon < names.size(); ++icon)
        icons->addAction(names[icon], with([&station, icon](int index) { station.Stack().SetIcon(index, icon); }));
    menu.addAction(Text("Colour..."), with([&station, window](int index) {
                       const QColor colour =
                           QColorDialog::getColor(station.Stack().StripColour(index), window, Text("Colour"));
                       if (colour.isValid()) station.Stack().SetStripColour(index, colour);
                   }));
    menu.addSeparator();
    QMenu* const learn = menu.addMenu(Text("MIDI learn"));
    ChannelStrip& strip = owner->strip;
    for (const auto& [setting, text] :
         {std::pair(&strip.level, TextKey("Level")), std::pair(&strip.pan, TextKey("Pan")),
          std::pair(&strip.mute, TextKey("Mute")), std::pair(&owner->swing, TextKey("Swing")),
          std::pair(&owner->arpeggiator.on, TextKey("Arpeggiator"))}) {
        const auto target = station.Controllers().TargetOf(owner, setting);
        if (target) AddLearnItems(*learn, station.Controllers(), *target, Text(text));
    }
    AddLearnItems(*learn, station.Controllers(), {EControlTarget::kSolo, instrument, 0}, Text("Solo"));
    menu.addSeparator();
    AddFreezeItems(menu, station, instrument);
    menu.addSeparator();
    menu.addAction(Text("Duplicate Instrument"),
                   with([&station](int index) { station.Stack().DuplicateInstrument(index); }));
    menu.addAction(Text("Move Up"), with([&station](int index) { station.Stack().MoveInstrument(index, index - 1); }));
    menu.addAction(Text("Move Down"),
                   with([&station](int index) { station.Stack().MoveInstrument(index, index + 1); }));
    menu.addAction(Text("Remove Instrument"), with([&station](int index) { station.Stack().RemoveInstrument(index); }));
}

QString ChannelText(int selector) {
    if (selector <= kChannelOff) return Text("MIDI off");
    return selector == kChannelOmni ? Text("MIDI omni") : QStringLiteral("MIDI %1").arg(selector - 1);
}

void FillMidiMenu(QMenu& menu, const ConsoleContext& context, std::uint32_t id, QWidget* window) {
    const auto instrument = context.station.Stack().InstrumentById(id);
    if (!instrument) return;
    CWorkstation& station = context.station;
    const auto change = [&station, instrument](CIntegerValue& value, int next, const QString& name) {
        const int before = value.Get();
        value.Set(next);
        const auto tell = [&station, instrument] { station.Changes().Tell({EChange::kInstrument, instrument->Id()}); };
        station.Changes().ValueEdited(Part(instrument, value), before, next, name, tell);
        tell();
    };
    MidiInputSettings& midi = instrument->midi;
    menu.addSection(Text("MIDI input"));
    QMenu* const channels = menu.addMenu(Text("Channel"));
    for (int selector = kChannelOff; selector <= 17; ++selector) {
        QAction* const action = channels->addAction(
            ChannelText(selector), [=, &midi] { change(midi.channel, selector, Text("MIDI channel")); });
        action->setCheckable(true);
        action->setChecked(selector == midi.channel.Get());
    }
    menu.addAction(Text("Lower limit: %1  (learn from the next key)").arg(midi.keyFrom.Get()),
                   [&midi] { midi.limitLearning.Set(0); });
    menu.addAction(Text("Upper limit: %1  (learn from the next key)").arg(midi.keyTo.Get()),
                   [&midi] { midi.limitLearning.Set(1); });
    menu.addAction(Text("All keys"), [=, &midi] {
        change(midi.keyFrom, 0, Text("Key range"));
        change(midi.keyTo, 128, Text("Key range"));
    });
    menu.addAction(Text("Transpose: %1 ...").arg(midi.transpose.Get()), [=, &midi] {
        bool accepted = false;
        const int semitones = QInputDialog::getInt(window, Text("Transpose"), Text("Semitones"), midi.transpose.Get(),
                                                   -127, 127, 1, &accepted);
        if (accepted) change(midi.transpose, semitones, Text("Transpose"));
    });
    menu.addSection(Text("Passes"));
    const auto addSwitch = [&](CIntegerValue& value, const char* text) {
        QAction* const action =
            menu.addAction(Text(text), [=, &value] { change(value, value.IsOn() ? 0 : 1, Text(text)); });
        action->setCheckable(true);
        action->setChecked(value.IsOn());
    };
    addSwitch(midi.pitchBend, TextKey("Pitch bend"));
    addSwitch(midi.modulationWheel, TextKey("Modulation wheel"));
    addSwitch(midi.aftertouch, TextKey("Aftertouch"));
    addSwitch(midi.programChange, TextKey("Program change"));
    addSwitch(midi.priority, TextKey("Takes its channel alone"));
}

void FillPresetMenu(QMenu& menu, const ConsoleContext& context, std::uint32_t id, int preset) {
    CWorkstation& station = context.station;
    const auto with = [&station, id](auto action) {
        return [&station, id, action] {
            if (const int index = station.Stack().IndexOf(id); index >= 0) action(index);
        };
    };
    menu.addAction(Text("Add Preset"), with([&station](int index) { station.Presets().AddPreset(index); }));
    if (preset < 0) return;
    menu.addAction(Text("Remove Preset %1").arg(preset + 1),
                   with([&station, preset](int index) { station.Presets().RemovePreset(index, preset); }));
    menu.addAction(Text("Paste to Preset %1").arg(preset + 1),
                   with([&station, preset](int index) { station.Presets().PastePreset(index, preset); }));
    menu.addSeparator();
    AddLearnItems(menu, station.Controllers(), {EControlTarget::kPreset, id, preset});
}

}  // namespace quib
