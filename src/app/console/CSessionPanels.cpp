// SPDX-License-Identifier: GPL-3.0-or-later
// Levels, crossfader, presets and recorder of the master band.
#include <QFileInfo>
#include <QMenu>

#include "app/FileDialogs.h"
#include "app/console/CMasterPanels.h"
#include "app/console/SlotMenu.h"
#include "controls/CFaderCtrl.h"
#include "controls/CImageCtrl.h"
#include "controls/CLabelCtrl.h"
#include "controls/CPresetSelectorCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CVuCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "document/CSettings.h"
#include "texts/Texts.h"

namespace quib {

CLevelsPanel::CLevelsPanel(CWinControl& window, std::uint32_t number, int left, int top, int newHeight,
                           const ConsoleContext& context)
    : CPanelCtrl(window, number, left, top, kWidth, newHeight) {
    CAudio& audio = context.station.Audio();
    const int tall = newHeight - 30;
    auto& level = AddChild<CFaderCtrl>(0U, 8, 8, 24, tall, &audio.settings.masterLevel, true);
    level.maximum = 127;
    level.defaultValue = 127.0F;
    BindValue(level, context, "Master level", 452);
    ShowDecibels(level, [this](float shown) { return tables.MasterGain(shown); });
    auto& meter = AddChild<CVuCtrl>(0U, 38, 8, 19, tall, &audio.masterPeak[0], &audio.masterPeak[1], true);
    meter.infoString = 453;
    auto& phones = AddChild<CFaderCtrl>(0U, 64, 8, 24, tall, &audio.settings.headphonesLevel, true);
    phones.maximum = 127;
    phones.defaultValue = 127.0F;
    BindValue(phones, context, "Headphones level", 454);
    ShowDecibels(phones, [this](float shown) { return tables.MasterGain(shown); });
    auto& masterLabel = AddChild<CLabelCtrl>(0U, 8, newHeight - 19, 50, 14, Text("MASTER"));
    masterLabel.fontHeight = 9;
    masterLabel.strong = true;
    masterLabel.textColour = Palette().Colour(QStringLiteral("textMuted"));
    auto& image = AddChild<CImageCtrl>(0U, 66, newHeight - 21, 20, 18, picture::kGlyphHeadphones);
    image.isGlyph = true;
    PaintChildren();
}

CSessionPanel::CSessionPanel(CWinControl& window, std::uint32_t number, int left, int top, int newHeight,
                             const ConsoleContext& consoleContext)
    : CPanelCtrl(window, number, left, top, kWidth, newHeight), CTicked(window), context(consoleContext) {
    AddCrossfader();
    AddPresets();
    AddRecorder();
    PaintChildren();
}

void CSessionPanel::AddCrossfader() {
    auto& sideA = AddChild<CLabelCtrl>(0U, 8, 9, 12, 16, QStringLiteral("A"));
    auto& sideB = AddChild<CLabelCtrl>(0U, kWidth - 18, 9, 12, 16, QStringLiteral("B"));
    sideA.strong = sideB.strong = true;
    auto& fader = AddChild<CFaderCtrl>(0U, 22, 8, kWidth - 44, 18, &context.station.Audio().settings.crossfader, false);
    fader.maximum = 127;
    fader.defaultValue = 64.0F;
    fader.fillFromCentre = true;
    BindValue(fader, context, "Crossfader", 455);
    fader.formatValue = [this](float shown) {
        return QStringLiteral("A %1   B %2")
            .arg(Decibels(tables.CrossfadeGainA(shown)), Decibels(tables.CrossfadeGainB(shown)));
    };
    ShowPercent(fader);
}

void CSessionPanel::AddPresets() {
    CWorkstation& station = context.station;
    auto& label = AddChild<CLabelCtrl>(0U, 8, 33, 60, 14, Text("PRESETS"));
    label.fontHeight = 9;
    label.strong = true;
    label.textColour = Palette().Colour(QStringLiteral("textMuted"));
    presetMidi = &AddChild<CLabelMenuCtrl>(0U, 66, 32, kWidth - 74, 17, QString(),
                                           [this](QMenu& menu) { FillPresetMidi(menu); });
    presetMidi->infoString = 457;
    auto& presets = AddChild<CPresetSelectorCtrl>(0U, 8, 52, kWidth - 14, 22, &station.Presets().SelectedPreset());
    presets.section = ESection::kPattern;
    presets.infoString = 456;
    presets.learns = ControlTarget{EControlTarget::kPresets, 0, 0};
    presets.presetCount = [&station] { return station.Presets().PresetCount(); };
    presets.onSelect = [&station](int preset) { return station.Presets().RecallPresets(preset); };
}

void CSessionPanel::FillPresetMidi(QMenu& menu) {
    CWorkstation& station = context.station;
    const PresetSelection& now = station.Audio().presetSelection;
    menu.addSection(Text("Presets by MIDI"));
    QMenu* const channels = menu.addMenu(Text("Channel"));
    for (int selector = kChannelOff; selector <= 17; ++selector) {
        QAction* const action = channels->addAction(ChannelText(selector), [&station, &now, selector] {
            station.Presets().SetPresetMidi(selector, now.baseNote.Get(), now.mode.Get());
        });
        action->setCheckable(true);
        action->setChecked(selector == now.channel.Get());
    }
    for (const int mode : {0, 1}) {
        QAction* const action = menu.addAction(
            mode == 0 ? Text("By note") : Text("By program change"),
            [&station, &now, mode] { station.Presets().SetPresetMidi(now.channel.Get(), now.baseNote.Get(), mode); });
        action->setCheckable(true);
        action->setChecked(mode == now.mode.Get());
    }
    QMenu* const notes = menu.addMenu(Text("First note"));
    for (int note = 0; note <= 120; note += 12) {
        QAction* const action = notes->addAction(QStringLiteral("C%1").arg(note / 12 - 2), [&station, &now, note] {
            station.Presets().SetPresetMidi(now.channel.Get(), note, now.mode.Get());
        });
        action->setCheckable(true);
        action->setChecked(note == now.baseNote.Get());
    }
}

void CSessionPanel::AddRecorder() {
    CWorkstation& station = context.station;
    record = &AddChild<CSwitchCtrl>(0U, 8, 84, 34, 50, &recordShown, QStringLiteral("REC"));
    record->onColour = Palette().Colour(QStringLiteral("record"));
    record->infoString = 458;
    record->onChange = [this](CControl&) { ToggleRecording(); };
    auto& file = AddChild<CLiveLabelCtrl>(0U, 48, 84, kWidth - 56, 16, [this] {
        return recordPath.isEmpty() ? Text("no file yet") : QFileInfo(recordPath).fileName();
    });
    file.textColour = Palette().Colour(QStringLiteral("textMuted"));
    auto& time = AddChild<CLiveLabelCtrl>(0U, 48, 100, kWidth - 56, 18,
                                          [&station] { return station.Recording().ProgressText(); });
    time.strong = true;
    time.fontHeight = 11;
    auto& size = AddChild<CLiveLabelCtrl>(0U, 48, 118, kWidth - 56, 14, [&station] {
        return QStringLiteral("%1 MB").arg(static_cast<double>(station.Recording().Bytes()) / 1e6, 0, 'f', 1);
    });
    size.textColour = Palette().Colour(QStringLiteral("textMuted"));
}

void CSessionPanel::ToggleRecording() {
    CWorkstation& station = context.station;
    if (station.Recording().IsRecording()) return station.Recording().Stop();
    const QString proposed = recordPath.isEmpty() ? QStringLiteral("recording.wav") : recordPath;
    const QString path = ChooseFileToSave(&Owner(), station.Settings(), EFileKind::kRecording, proposed);
    if (path.isEmpty()) return;
    recordPath = path;
    station.Recording().Start(path);
}

void CSessionPanel::Tick() {
    const float recording = context.station.Recording().IsRecording() ? 1.0F : 0.0F;
    if (recording != recordShown.Get()) record->SetValueAndUpdate(false, true, recording);
    const PresetSelection& now = context.station.Audio().presetSelection;
    presetMidi->SetText(ChannelText(now.channel.Get()));
}

}  // namespace quib
