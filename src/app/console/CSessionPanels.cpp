// SPDX-License-Identifier: GPL-3.0-or-later
// Levels, crossfader and presets of the bars.
#include <QMenu>
#include <cmath>

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

namespace {
constexpr int kMeterTop = 6;
constexpr int kMeterHeight = 94;
constexpr int kMeterLeft = 43;
constexpr int kMeterWidth = 32;
constexpr int kFaderHeight = 98;
}  // namespace

CLevelsPanel::CLevelsPanel(CWinControl& window, std::uint32_t number, const ConsoleContext& consoleContext)
    : CPanelCtrl(window, number, 0, consoleLayout::kBar1Top, 0, 0), CTicked(window), context(consoleContext) {}

void CLevelsPanel::Build() {
    ClearChildren();
    shownPeak = 0;
    CAudio& audio = context.station.Audio();
    const auto addFader = [this](int left, CValue& bound, const char* title, int info) {
        auto& fader = AddChild<CFaderCtrl>(0U, left, 4, 24, kFaderHeight, &bound, true);
        fader.maximum = 127;
        fader.defaultValue = 127.0F;
        BindValue(fader, context, title, info);
        ShowDecibels(fader, [this](float shown) { return context.tables.MasterGain(shown); });
    };
    addFader(10, audio.settings.masterLevel, TextKey("Master level"), 452);
    meter = &AddChild<CVuCtrl>(0U, kMeterLeft, kMeterTop, kMeterWidth, kMeterHeight, &audio.masterPeak[0],
                               &audio.masterPeak[1], true);
    meter->infoString = 453;
    addFader(Width() - 34, audio.settings.headphonesLevel, TextKey("Headphones level"), 454);
    auto& label = AddDimLabel(8, Height() - 23, 50, 18, Text("MASTER"));
    label.fontHeight = 10;
    label.strong = true;
    peak = &AddChild<CLabelCtrl>(0U, 58, Height() - 24, 48, 20);
    peak->fontHeight = 15;
    peak->strong = true;
    peak->digits = true;
    peak->alignment = Qt::AlignRight | Qt::AlignVCenter;
    auto& image = AddChild<CImageCtrl>(0U, Width() - 32, Height() - 23, 20, 18, picture::kGlyphHeadphones);
    image.isGlyph = true;
    PaintChildren();
}

void CLevelsPanel::Draw() {
    CPanelCtrl::Draw();
    const QRgb colour = Palette().Colour(QStringLiteral("textDim"));
    for (const int decibels : {0, -12, -24, -48}) {
        const qreal share = static_cast<qreal>(MeterShare(std::pow(10.0F, static_cast<float>(decibels) / 20)));
        const qreal place = Y() + kMeterTop + kMeterHeight - (kMeterHeight - 5) * share;
        Canvas().Text(QRectF(X() + kMeterLeft + kMeterWidth + 6, place - 6, 30, 12), QString::number(decibels), colour,
                      10, Qt::AlignLeft | Qt::AlignVCenter);
    }
}

void CLevelsPanel::Tick() {
    if (meter == nullptr) return;
    const float highest = std::round(meter->HeldPeak() * 10) / 10;
    if (highest == shownPeak) return;
    shownPeak = highest;
    peak->SetText(highest <= -59.5F ? QStringLiteral("-inf") : QString::number(static_cast<double>(highest), 'f', 1));
}

CSessionPanel::CSessionPanel(CWinControl& window, std::uint32_t number, const ConsoleContext& consoleContext)
    : CPanelCtrl(window, number, 0, consoleLayout::kBar2Top, 0, consoleLayout::kBar2Height),
      CTicked(window),
      context(consoleContext) {}

void CSessionPanel::Build() {
    ClearChildren();
    shownChannel = -1;
    AddCrossfader();
    AddPresets();
    PaintChildren();
}

// Beside the fader a word says which side is not heard.
void CSessionPanel::AddCrossfader() {
    const int word = 66;
    auto& sideA = AddChild<CLabelCtrl>(0U, 10, 10, 12, 20, QStringLiteral("A"));
    auto& sideB = AddChild<CLabelCtrl>(0U, Width() - word - 20, 10, 12, 20, QStringLiteral("B"));
    for (CLabelCtrl* const side : {&sideA, &sideB}) {
        side->strong = true;
        side->fontHeight = 12;
    }
    auto& fader =
        AddChild<CFaderCtrl>(0U, 24, 11, Width() - word - 50, 18, &context.station.Audio().settings.crossfader, false);
    fader.maximum = 127;
    fader.defaultValue = 64.0F;
    fader.fillFromCentre = true;
    BindValue(fader, context, "Crossfader", 455);
    fader.formatValue = [this](float shown) {
        return QStringLiteral("A %1   B %2")
            .arg(Decibels(context.tables.CrossfadeGainA(shown)), Decibels(context.tables.CrossfadeGainB(shown)));
    };
    ShowPercent(fader);
    hidden = &AddDimLabel(Width() - word - 4, 10, word, 20, HiddenSide());
    hidden->infoString = 455;
}

QString CSessionPanel::HiddenSide() const {
    const float now = context.station.Audio().settings.crossfader.Get();
    if (context.tables.CrossfadeGainA(now) < kFadedOut) return Text("A silent");
    return context.tables.CrossfadeGainB(now) < kFadedOut ? Text("B silent") : Text("A and B");
}

void CSessionPanel::AddPresets() {
    CWorkstation& station = context.station;
    const int title = static_cast<int>(std::ceil(CCanvas::TextWidth(Text("Presets"), 11))) + 6;
    AddDimLabel(10, 40, title, 24, Text("Presets"));
    constexpr int kMenuWidth = 84;
    presetMidi = &AddChild<CLabelMenuCtrl>(0U, 10 + title, 40, kMenuWidth, 24, QString(),
                                           [this](QMenu& menu) { FillPresetMidi(menu); });
    presetMidi->infoString = 457;
    presetMidi->fontHeight = 11;
    const int left = 10 + title + kMenuWidth + 6;
    auto& presets =
        AddChild<CPresetSelectorCtrl>(0U, left, 40, Width() - left - 6, 24, &station.Presets().SelectedPreset());
    presets.section = ESection::kPattern;
    presets.enabled = station.Settings().IsOn(QStringLiteral("PresetOn"));
    presets.infoString = 456;
    presets.learns = ControlTarget{EControlTarget::kPresets, 0, 0};
    presets.disabledInfo = 674;
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

void CSessionPanel::Tick() {
    if (presetMidi == nullptr) return;
    const int channel = context.station.Audio().presetSelection.channel.Get();
    const float crossfader = context.station.Audio().settings.crossfader.Get();
    if (channel == shownChannel && crossfader == shownCrossfader) return;
    shownChannel = channel;
    shownCrossfader = crossfader;
    presetMidi->SetText(ChannelText(channel));
    hidden->SetText(HiddenSide());
}

}  // namespace quib
