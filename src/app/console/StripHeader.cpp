// SPDX-License-Identifier: GPL-3.0-or-later
// Name and mixer of an instrument's strip, the buttons that it shares with a closed one, and the keyboard below it.
#include <QMenu>
#include <cmath>

#include "app/console/CInstrumentStripCtrl.h"
#include "app/console/FreezeMenu.h"
#include "app/console/SlotMenu.h"
#include "controls/CFaderCtrl.h"
#include "controls/CImageCtrl.h"
#include "controls/CKeyboardExCtrl.h"
#include "controls/CKnobCtrl.h"
#include "controls/CLabelCtrl.h"
#include "controls/CPresetSelectorCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CVuCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kKeyboardVelocity = 100;
constexpr int kTitleLeft = 72;
constexpr int kFrozenRoom = 32;  // of the sign behind a title
}  // namespace

void CInstrumentStripCtrl::AddName(int nameWidth) {
    const int top = collapsed ? 8 : 6;
    auto& openClose = AddChild<CSwitchCtrl>(0U, 11, top + 2, 18, 20, nullptr,
                                            collapsed ? picture::kGlyphArrowRight : picture::kGlyphArrowDown);
    openClose.momentary = true;
    openClose.flat = true;
    openClose.infoString = 468;
    openClose.afterClick = [this](CControl&) { ToggleCollapsed(); };
    number = &AddChild<CLabelCtrl>(0U, 28, top, 20, 24);
    number->textColour = Palette().Colour(QStringLiteral("textDim"));
    number->fontHeight = 12;
    number->alignment = Qt::AlignCenter;
    icon = &AddChild<CImageCtrl>(0U, 49, top, 20, 24, picture::kInstrumentIcon);
    icon->isGlyph = true;
    title = &AddChild<CLabelCtrl>(0U, kTitleLeft, top, nameWidth, 24);
    title->fontHeight = 17;
    title->strong = true;
    title->infoString = 460;
    title->entryTitle = Text("Title");
    title->primaryButton = 0;
    title->onTextEntry = [this](CControl&, const QString& text) {
        context.station.Stack().RenameInstrument(Index(), text);
    };
    title->onAlternativeClick = onAlternativeClick;
    title->captureOnClick = false;
    titleRoom = nameWidth;
    AddFrozenSign(kTitleLeft + nameWidth - kFrozenRoom + 2, top);
}

void CInstrumentStripCtrl::AddFrozenSign(int left, int top) {
    frozen = &AddChild<CSwitchCtrl>(0U, left, top, kFrozenRoom - 4, 24, &frozenShown, picture::kGlyphFreeze);
    frozen->section = ESection::kMix;
    frozen->fontHeight = 10;
    frozen->name = Text("Freeze");
    frozen->onChange = [this](CControl&) { context.station.Freezing().Toggle(Index()); };
    frozen->onAlternativeClick = [this](CControl&) {
        PopUpMenu(Owner(), [this](QMenu& menu) { AddFreezeItems(menu, context.station, instrument->Id()); });
    };
}

// Where it is frozen it shows the sign, and the share of what is rendered; in the colour of a warning what is not up
// to date.
void CInstrumentStripCtrl::ShowFrozen() {
    const CFreezing::State state = context.station.Freezing().StateOf(*instrument);
    const bool isShown = state.state != CFreezing::EState::kLive;
    const bool isRendering = state.state == CFreezing::EState::kRendering;
    const bool isPlayed = state.state == CFreezing::EState::kFrozen && state.reason.isEmpty();
    frozen->onColour = isPlayed ? 0 : Palette().Colour(QStringLiteral("pattern"));
    frozen->glyph = isRendering ? -1 : picture::kGlyphFreeze;
    frozen->label = isRendering ? QStringLiteral("%1%").arg(state.percent) : QString();
    frozen->infoText = FrozenHelp(state);
    frozenShown.Set(isShown && !isRendering ? 1.0F : 0.0F);
    frozen->SetVisible(isShown);
    title->SetSize(isShown ? titleRoom - kFrozenRoom : titleRoom, title->Height());
    title->Refresh();
    frozen->Refresh();
}

CSwitchCtrl& CInstrumentStripCtrl::AddStripSwitch(const QRect& area, CValue& bound, const QString& text, int info) {
    auto& made = AddChild<CSwitchCtrl>(0U, area.left(), area.top(), area.width(), area.height(), &bound, text);
    BindSetting(made, context, instrument->strip, info);
    return made;
}

void CInstrumentStripCtrl::AddMuteAndSolo(const QRect& muteArea, const QRect& soloArea) {
    solo = &AddChild<CSwitchCtrl>(0U, soloArea.left(), soloArea.top(), soloArea.width(), soloArea.height(), &soloShown,
                                  QStringLiteral("S"));
    solo->onColour = Palette().Colour(QStringLiteral("pattern"));
    solo->infoString = 472;
    solo->learns = ControlTarget{EControlTarget::kSolo, instrument->Id(), 0};
    solo->onChange = [this](CControl&) { context.station.Stack().ToggleSolo(Index()); };
    mute = &AddStripSwitch(muteArea, instrument->strip.mute, QStringLiteral("M"), 471);
    mute->onColour = Palette().Colour(QStringLiteral("warning"));
}

// The fader, and the decibels that are always written.
void CInstrumentStripCtrl::AddLevel(const QRect& area, const QRect& figures) {
    ChannelStrip& strip = instrument->strip;
    auto& level = AddChild<CFaderCtrl>(0U, area.left(), area.top(), area.width(), area.height(), &strip.level, false);
    BindSetting(level, context, strip, 470);
    const auto gain = [this](float shown) { return context.tables.ChannelGain(shown); };
    ShowDecibels(level, gain);
    auto& label = AddChild<CLabelCtrl>(0U, figures.left(), figures.top(), figures.width(), figures.height());
    label.Bind(&strip.level);
    label.maximum = level.maximum;
    label.formatValue = level.formatValue;
    label.fontHeight = 12;
    label.digits = true;
    label.alignment = Qt::AlignRight | Qt::AlignVCenter;
    label.infoString = 470;
}

void CInstrumentStripCtrl::AddMeter(const QRect& area) {
    meter = &AddChild<CVuCtrl>(0U, area.left(), area.top(), area.width(), area.height(), &instrument->strip.peak,
                               nullptr, false);
    meter->infoString = 477;
}

void CInstrumentStripCtrl::AddMixer(bool folded) {
    ChannelStrip& strip = instrument->strip;
    const int side = folded ? 24 : 28;
    const int second = 12 + side + (folded ? 2 : 4);
    const int sideA = folded ? 66 : 84;
    const int sideB = sideA + (folded ? 24 : 26);
    AddMuteAndSolo({12, 34, side, 24}, {second, 34, side, 24});
    AddStripSwitch({sideA, 34, folded ? 22 : 24, 24}, strip.crossfadeA, QStringLiteral("A"), 474);
    AddStripSwitch({sideB, 34, folded ? 22 : 24, 24}, strip.crossfadeB, QStringLiteral("B"), 475);
    auto& synchro = AddStripSwitch({folded ? 116 : 146, 34, folded ? 24 : 28, 24}, strip.synchro, {}, 476);
    synchro.glyph = picture::kGlyphSynchro;
    synchro.section = ESection::kTransport;
    const int figures = folded ? 170 : 176;
    AddLevel({12, 61, 220, 20}, {figures, 34, 232 - figures, 24});
    AddMeter({12, 86, 220, 12});
}

// With its value below, or as a small knob beside synchro.
void CInstrumentStripCtrl::AddPan(bool folded, int left) {
    const QRect area = folded ? QRect(144, 33, 26, 26) : QRect(left, 36, 40, 60);
    auto& pan = AddChild<CKnobCtrl>(0U, area.left(), area.top(), area.width(), area.height(), &instrument->strip.pan);
    BindSetting(pan, context, instrument->strip, 473);
    pan.fillFromCentre = true;
    ShowPan(pan);
    if (folded) return;
    pan.valueBelow = true;
    auto& label = AddChild<CLabelCtrl>(0U, left - 4, 8, 48, 24, pan.name);
    label.textColour = Palette().Colour(QStringLiteral("textDim"));
    label.fontHeight = 11;
    label.alignment = Qt::AlignCenter;
}

void CInstrumentStripCtrl::AddPlugin(int left, int room) {
    const std::uint32_t id = instrument->Id();
    CWinControl& window = Owner();
    plugin = &AddChild<CLabelMenuCtrl>(0U, left, 6, room, 24, QString(), [this, id, &window](QMenu& menu) {
        FillSlotMenu(menu, context, {SlotPlace::EKind::kInstrument, id, 0}, &window);
    });
    plugin->onAlternativeClick = [this, id](CControl&) {
        context.actions.browse({SlotPlace{SlotPlace::EKind::kInstrument, id, 0}});
    };
    plugin->infoString = 461;
    plugin->fontHeight = 12;
}

CSwitchCtrl& CInstrumentStripCtrl::AddButton(const QRect& area, int glyph, int info, bool usable,
                                             std::function<void()> action) {
    auto& made = AddChild<CSwitchCtrl>(0U, area.left(), area.top(), area.width(), area.height(), nullptr, glyph);
    made.momentary = true;
    made.flat = true;
    made.infoString = info;
    made.section = ESection::kKeyboard;
    made.enabled = usable;
    made.onChange = [action = std::move(action)](CControl&) { action(); };
    return made;
}

void CInstrumentStripCtrl::AddArpeggiatorAndKeyboard(int left) {
    arpeggiator = &AddChild<CSwitchCtrl>(0U, left, 6, 24, 24, &instrument->arpeggiator.on, picture::kGlyphArpeggiator);
    BindValue(*arpeggiator, context, "Arpeggiator", 463);
    arpeggiator->onAlternativeClick = [this](CControl&) { OpenTool(ETool::kArpeggiator); };
    auto& keys = AddChild<CSwitchCtrl>(0U, left + 26, 6, 24, 24, &instrument->keyboardOn, picture::kGlyphKeyboard);
    const auto tell = [&station = context.station, id = instrument->Id()] {
        station.Changes().Tell({EChange::kInstrument, id});
    };
    BindValue(keys, context, "Keyboard", 464, tell);
    keys.onChange = [tell](CControl&) { tell(); };
    for (CSwitchCtrl* const button : {arpeggiator, &keys}) {
        button->section = ESection::kKeyboard;
        button->flat = true;
    }
}

void CInstrumentStripCtrl::AddChannel(int left, int room) {
    const std::uint32_t id = instrument->Id();
    CWinControl& window = Owner();
    channel = &AddChild<CLabelMenuCtrl>(0U, left, 6, room, 24, QString(),
                                        [this, id, &window](QMenu& menu) { FillMidiMenu(menu, context, id, &window); });
    channel->infoString = 465;
    channel->fontHeight = 12;
}

void CInstrumentStripCtrl::AddLamp(int left, int top) {
    lamp = &AddChild<CSwitchCtrl>(0U, left, top, 12, 12, &lampShown, QString());
    lamp->readOnly = true;
    lamp->lamp = true;
    lamp->section = ESection::kTransport;
    lamp->infoString = 466;
}

void CInstrumentStripCtrl::AddPresets(int left, int top, int room) {
    presets = &AddChild<CPresetSelectorCtrl>(0U, left, top, room, 24, &presetShown);
    presets->section = ESection::kPattern;
    presets->infoString = 467;
    presets->learns = ControlTarget{EControlTarget::kPreset, instrument->Id(), 0};
    presets->presetCount = [this] { return static_cast<int>(instrument->presets.size()); };
    presets->onSelect = [this](int preset) { return context.station.Presets().RecallPreset(Index(), preset); };
    presets->onAdd = [this] { context.station.Presets().AddPreset(Index()); };
    presets->onPresetMenu = [this, id = instrument->Id()](int preset) {
        PopUpMenu(Owner(), [&](QMenu& menu) { FillPresetMenu(menu, context, id, preset); });
    };
}

void CInstrumentStripCtrl::AddKeyboard() {
    keyboard = &AddChild<CKeyboardExCtrl>(0U, 12, Height() - kKeyboardHeight, Width() - 18, kKeyboardHeight - 6, true);
    keyboard->infoString = 469;
    keyboard->onNote = [this](CKeyboardExCtrl&, int note, bool off) {
        context.station.Transport().PlayKey(instrument->Id(), note, off ? 0 : kKeyboardVelocity);
    };
    keyboard->isSounding = [this](int note) { return sounding[static_cast<std::size_t>(note)]; };
    keyboard->onScroll = [this](int offset) {
        instrument->keyboardPosition = static_cast<int>(std::lround(offset * 12.0 / CKeyboardExCtrl::kOctaveWidth));
    };
    keyboard->SetScrollOffset(instrument->keyboardPosition * CKeyboardExCtrl::kOctaveWidth / 12);
}

}  // namespace quib
