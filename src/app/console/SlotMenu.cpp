// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/SlotMenu.h"

#include <QColorDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>

#include "controls/SkinNumbers.h"
#include "document/CSettings.h"
#include "texts/Texts.h"

namespace quib {

namespace {

using FileAction = std::function<bool(const QString& path, QString& error)>;

void Tell(QWidget* window, const QString& error) {
    if (!error.isEmpty()) QMessageBox::warning(window, QStringLiteral("QUIBBOX"), error);
}

struct FileKind {
    const char* title;
    const char* filter;
    const char* extension;
    const char* folder;  // setting that remembers where such files lie
};
constexpr FileKind kInstrumentFile = {"Choose the Instrument file", "Quib Instrument File (*.ist)", ".ist",
                                      "InstrumentDir"};
constexpr FileKind kPatternFile = {"Choose the Pattern file", "Quib Pattern File (*.ptn)", ".ptn", "PatternDir"};
constexpr FileKind kBankFile = {"Choose the Bank file", "Bank (*.fxb)", ".fxb", "PresetDir"};
constexpr FileKind kProgramFile = {"Choose the Program file", "Program (*.fxp)", ".fxp", "PresetDir"};

void Remember(CSettings& settings, const FileKind& kind, const QString& path) {
    settings.WriteSettingString(kSettingsSection, QString::fromLatin1(kind.folder),
                                QFileInfo(path).absolutePath() + QLatin1Char('/'));
}

void LoadFile(const ConsoleContext& context, QWidget* window, const FileKind& kind, const FileAction& load) {
    CSettings& settings = context.station.Settings();
    const QString folder = settings.ReadSettingString(kSettingsSection, QString::fromLatin1(kind.folder));
    const QString path =
        QFileDialog::getOpenFileName(window, Text(kind.title), folder, QString::fromLatin1(kind.filter));
    if (path.isEmpty()) return;
    Remember(settings, kind, path);
    QString error;
    if (!load(path, error)) Tell(window, error);
}

// The desktop's dialog asks before it replaces a file.
void SaveFile(const ConsoleContext& context, QWidget* window, const FileKind& kind, const QString& name,
              const FileAction& save) {
    CSettings& settings = context.station.Settings();
    const QString folder = settings.ReadSettingString(kSettingsSection, QString::fromLatin1(kind.folder));
    QString path =
        QFileDialog::getSaveFileName(window, Text(kind.title), folder + name + QLatin1String(kind.extension),
                                     QString::fromLatin1(kind.filter), nullptr, QFileDialog::DontConfirmOverwrite);
    if (path.isEmpty()) return;
    if (!path.endsWith(QLatin1String(kind.extension))) path += QLatin1String(kind.extension);
    if (QFileInfo::exists(path) &&
        QMessageBox::question(window, QStringLiteral("QUIBBOX"),
                              Text("This file exists !\r\nDo you want to replace it ?")) != QMessageBox::Yes) {
        return;
    }
    Remember(settings, kind, path);
    QString error;
    if (!save(path, error)) Tell(window, error);
}

void AddFileItems(QMenu& menu, const ConsoleContext& context, const SlotPlace& place, QWidget* window) {
    CWorkstation& station = context.station;
    const auto load = [=, &menu, &station](const char* text, const FileKind& kind, auto member) {
        menu.addAction(Text(text), [=, &station] {
            LoadFile(context, window, kind, [&](const QString& path, QString& error) {
                return (station.Places().*member)(place, path, error);
            });
        });
    };
    const auto save = [=, &menu, &station](const char* text, const FileKind& kind, auto member) {
        menu.addAction(Text(text), [=, &station] {
            SaveFile(context, window, kind, QString(), [&](const QString& path, QString& error) {
                return (station.Places().*member)(place, path, error);
            });
        });
    };
    load("Load Bank...", kBankFile, &CPluginPlaces::LoadBank);
    save("Save Bank As...", kBankFile, &CPluginPlaces::SaveBank);
    load("Load Program...", kProgramFile, &CPluginPlaces::LoadProgram);
    save("Save Program As...", kProgramFile, &CPluginPlaces::SaveProgram);
}

void AddPrograms(QMenu& menu, const ConsoleContext& context, const std::shared_ptr<CPlugin>& plugin) {
    const int count = plugin->ProgramCount();
    if (count < 2) return;
    QMenu* const programs = menu.addMenu(Text("Program"));
    const int now = plugin->CurrentProgram();
    CWorkstation& station = context.station;
    for (int program = 0; program < std::min(count, 128); ++program) {
        QString name = QString::fromStdString(plugin->ProgramName(program)).trimmed();
        if (name.isEmpty()) name = Text("Program %1").arg(program + 1);
        QAction* const action = programs->addAction(QStringLiteral("%1  %2").arg(program + 1).arg(name));
        action->setCheckable(true);
        action->setChecked(program == now);
        QObject::connect(action, &QAction::triggered, &station,
                         [&station, plugin, program] { station.Places().SelectProgram(plugin, program); });
    }
}

void LoadInto(const ConsoleContext& context, const SlotPlace& place, const QString& path, QWidget* window) {
    QString error;
    if (!context.station.Places().LoadPlugin(place, path, error)) Tell(window, error);
}

}  // namespace

void FillSlotMenu(QMenu& menu, const ConsoleContext& context, const SlotPlace& place, QWidget* window) {
    const auto slot = context.station.Places().Slot(place);
    if (slot && slot->plugin) {
        menu.addAction(Text("Open Plugin"), [context, place] { context.actions.openPlugin(place); });
        AddPrograms(menu, context, slot->plugin);
        AddFileItems(menu, context, place, window);
        menu.addSeparator();
    }
    const bool isInstrument = place.kind == SlotPlace::EKind::kInstrument;
    const ESlotKind kind = isInstrument ? ESlotKind::kInstrument : ESlotKind::kEffect;
    for (const PluginChoice& choice : context.actions.pluginChoices(kind)) {
        menu.addAction(choice.text,
                       [context, place, choice, window] { LoadInto(context, place, choice.path, window); });
    }
    menu.addSeparator();
    menu.addAction(
        isInstrument ? Text("Select Plugin") : Text("Load Plugin..."), [context, place, window, isInstrument] {
            const QString setting = isInstrument ? QStringLiteral("PluginDir") : QStringLiteral("EffectDir");
            const QString path =
                QFileDialog::getOpenFileName(window, Text("Choose the VST Plugin"),
                                             context.station.Settings().ReadSettingString(kSettingsSection, setting),
                                             QStringLiteral("VST (%1)").arg(PluginFilePatterns()));
            if (!path.isEmpty()) LoadInto(context, place, path, window);
        });
    if (slot && (slot->plugin || slot->missing)) {
        menu.addAction(Text("Remove Plugin"), [context, place] { context.station.Places().ClearPlugin(place); });
    }
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
                       LoadFile(context, window, kInstrumentFile, [&](const QString& path, QString& error) {
                           return station.Stack().LoadInstrument(index, path, error);
                       });
                   }));
    menu.addAction(Text("Save Instrument As..."), with([=, &station](int index) {
                       const QString name = QString::fromStdString(station.Stack().Instrument(index)->title);
                       SaveFile(context, window, kInstrumentFile, name, [&](const QString& path, QString& error) {
                           return station.Stack().SaveInstrument(index, path, error);
                       });
                   }));
    menu.addSection(Text("Pattern"));
    menu.addAction(Text("Load Pattern..."), with([=, &station](int index) {
                       LoadFile(context, window, kPatternFile, [&](const QString& path, QString& error) {
                           return station.Contents().LoadPattern(index, path, error);
                       });
                   }));
    menu.addAction(Text("Save Pattern As ..."), with([=, &station](int index) {
                       const QString name = QString::fromStdString(station.Stack().Instrument(index)->title);
                       SaveFile(context, window, kPatternFile, name, [&](const QString& path, QString& error) {
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
    menu.addAction(Text("Duplicate Instrument"),
                   with([&station](int index) { station.Stack().DuplicateInstrument(index); }));
    menu.addAction(Text("Move Up"), with([&station](int index) { station.Stack().MoveInstrument(index, index - 1); }));
    menu.addAction(Text("Move Down"),
                   with([&station](int index) { station.Stack().MoveInstrument(index, index + 1); }));
    menu.addAction(Text("Remove Instrument"), with([&station](int index) { station.Stack().RemoveInstrument(index); }));
}

QString ChannelText(int selector) {
    if (selector <= kChannelOff) return QStringLiteral("MIDI off");
    return selector == kChannelOmni ? QStringLiteral("MIDI omni") : QStringLiteral("MIDI %1").arg(selector - 1);
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
    addSwitch(midi.pitchBend, "Pitch bend");
    addSwitch(midi.modulationWheel, "Modulation wheel");
    addSwitch(midi.aftertouch, "Aftertouch");
    addSwitch(midi.programChange, "Program change");
    addSwitch(midi.priority, "Takes its channel alone");
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
}

}  // namespace quib
