// SPDX-License-Identifier: GPL-3.0-or-later
// The header of an instrument's strip and the keyboard below it.
#include <QMenu>
#include <cmath>

#include "app/console/CInstrumentStripCtrl.h"
#include "app/console/SlotMenu.h"
#include "controls/CFaderCtrl.h"
#include "controls/CImageCtrl.h"
#include "controls/CKeyboardExCtrl.h"
#include "controls/CLabelCtrl.h"
#include "controls/CPresetSelectorCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CVuCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kVelocity = 100;
}

void CInstrumentStripCtrl::AddHeader() {
    const std::uint32_t id = instrument->Id();
    number = &AddChild<CLabelCtrl>(0U, 18, 4, 20, 20);
    number->textColour = Palette().Colour(QStringLiteral("textDim"));
    number->strong = true;
    number->alignment = Qt::AlignCenter;
    icon = &AddChild<CImageCtrl>(0U, 38, 4, 20, 20, picture::kInstrumentIcon);
    icon->isGlyph = true;
    title = &AddChild<CLabelCtrl>(0U, 62, 4, 118, 20);
    title->fontHeight = 12;
    title->strong = true;
    title->infoString = 460;
    title->entryTitle = Text("Title");
    title->primaryButton = 0;
    title->onTextEntry = [this](CControl&, const QString& text) {
        context.station.Stack().RenameInstrument(Index(), text);
    };
    title->onAlternativeClick = onAlternativeClick;
    title->captureOnClick = false;
    CWinControl& window = Owner();
    plugin = &AddChild<CLabelMenuCtrl>(0U, 182, 4, 138, 20, QString(), [this, id, &window](QMenu& menu) {
        FillSlotMenu(menu, context, {SlotPlace::EKind::kInstrument, id, 0}, &window);
    });
    plugin->onAlternativeClick = [this, id](CControl&) {
        context.actions.browse({SlotPlace{SlotPlace::EKind::kInstrument, id, 0}});
    };
    plugin->infoString = 461;
    AddHeaderButtons();
}

void CInstrumentStripCtrl::AddHeaderButtons() {
    const std::uint32_t id = instrument->Id();
    CWinControl& window = Owner();
    const auto hasTool = [this](ETool tool) { return context.actions.hasTool && context.actions.hasTool(tool); };
    const auto button = [this](int place, int glyph, int info, bool usable, std::function<void()> action) {
        auto& made = AddChild<CSwitchCtrl>(0U, place, 4, 24, 20, nullptr, glyph);
        made.momentary = true;
        made.infoString = info;
        made.section = ESection::kKeyboard;
        made.enabled = usable;
        made.onChange = [action](CControl&) { action(); };
    };
    const auto open = [this](ETool tool) {
        context.station.Selection().SetCurrent(Index());
        if (context.actions.openTool) context.actions.openTool(tool);
    };
    button(323, picture::kGlyphEdit, 462, true, [this, id] {
        if (context.actions.openPlugin) context.actions.openPlugin({SlotPlace::EKind::kInstrument, id, 0});
    });
    button(350, picture::kGlyphPianoRoll, 442, hasTool(ETool::kPianoRoll), [open] { open(ETool::kPianoRoll); });
    button(377, picture::kGlyphAutomation, 443, hasTool(ETool::kAutomation), [open] { open(ETool::kAutomation); });
    button(404, picture::kGlyphBall, 445, hasTool(ETool::kBall), [open] { open(ETool::kBall); });
    arpeggiator = &AddChild<CSwitchCtrl>(0U, 431, 4, 24, 20, &instrument->arpeggiator.on, picture::kGlyphArpeggiator);
    arpeggiator->section = ESection::kKeyboard;
    BindValue(*arpeggiator, context, "Arpeggiator", 463);
    arpeggiator->onAlternativeClick = [open](CControl&) { open(ETool::kArpeggiator); };
    auto& keys = AddChild<CSwitchCtrl>(0U, 458, 4, 24, 20, &instrument->keyboardOn, picture::kGlyphKeyboard);
    keys.section = ESection::kKeyboard;
    const auto tell = [&station = context.station, id] { station.Changes().Tell({EChange::kInstrument, id}); };
    BindValue(keys, context, "Keyboard", 464, tell);
    keys.onChange = [tell](CControl&) { tell(); };
    channel = &AddChild<CLabelMenuCtrl>(0U, 488, 4, 76, 20, QString(),
                                        [this, id, &window](QMenu& menu) { FillMidiMenu(menu, context, id, &window); });
    channel->infoString = 465;
    lamp = &AddChild<CSwitchCtrl>(0U, 567, 8, 12, 12, &lampShown, QString());
    lamp->readOnly = true;
    lamp->section = ESection::kTransport;
    lamp->infoString = 466;
    const int presetCells = std::clamp((Width() - 590 - 34) / 22, 6, 16);
    presets = &AddChild<CPresetSelectorCtrl>(0U, 586, 4, presetCells * 22, 20, &presetShown);
    presets->section = ESection::kPattern;
    presets->infoString = 467;
    presets->learns = ControlTarget{EControlTarget::kPreset, id, 0};
    presets->presetCount = [this] { return static_cast<int>(instrument->presets.size()); };
    presets->onSelect = [this](int preset) { return context.station.Presets().RecallPreset(Index(), preset); };
    presets->onAdd = [this] { context.station.Presets().AddPreset(Index()); };
    presets->onPresetMenu = [this, id](int preset) {
        PopUpMenu(Owner(), [&](QMenu& menu) { FillPresetMenu(menu, context, id, preset); });
    };
    if (collapsed) {
        auto& level = AddChild<CFaderCtrl>(0U, Width() - 240, 5, 120, 18, &instrument->strip.level, false);
        BindSetting(level, context, instrument->strip, 470);
        ShowDecibels(level, [this](float shown) { return tables.ChannelGain(shown); });
        AddChild<CVuCtrl>(0U, Width() - 114, 10, 80, 8, &instrument->strip.peak, nullptr, false).infoString = 477;
    }
    solo = &AddChild<CSwitchCtrl>(0U, collapsed ? Width() - 266 : 38, collapsed ? 4 : 32, 24, 20, &soloShown,
                                  QStringLiteral("S"));
    solo->onColour = Palette().Colour(QStringLiteral("pattern"));
    solo->infoString = 472;
    solo->learns = ControlTarget{EControlTarget::kSolo, id, 0};
    solo->onChange = [this](CControl&) { context.station.Stack().ToggleSolo(Index()); };
    auto& mute = AddChild<CSwitchCtrl>(0U, collapsed ? Width() - 292 : 12, collapsed ? 4 : 32, 24, 20,
                                       &instrument->strip.mute, QStringLiteral("M"));
    mute.onColour = Palette().Colour(QStringLiteral("warning"));
    BindSetting(mute, context, instrument->strip, 471);
    auto& openClose = AddChild<CSwitchCtrl>(0U, Width() - 28, 4, 22, 20, nullptr,
                                            collapsed ? picture::kGlyphArrowRight : picture::kGlyphArrowDown);
    openClose.momentary = true;
    openClose.infoString = 468;
    openClose.afterClick = [this](CControl&) { ToggleCollapsed(); };
}

void CInstrumentStripCtrl::AddKeyboard() {
    keyboard = &AddChild<CKeyboardExCtrl>(0U, 10, Height() - kKeyboardHeight, Width() - 18, kKeyboardHeight - 6, true);
    keyboard->infoString = 469;
    keyboard->onNote = [this](CKeyboardExCtrl&, int note, bool off) {
        context.station.Transport().PlayKey(instrument->Id(), note, off ? 0 : kVelocity);
    };
    keyboard->isSounding = [this](int note) { return sounding[static_cast<std::size_t>(note)]; };
    keyboard->onScroll = [this](int offset) {
        instrument->keyboardPosition = static_cast<int>(std::lround(offset * 12.0 / CKeyboardExCtrl::kOctaveWidth));
    };
    keyboard->SetScrollOffset(instrument->keyboardPosition * CKeyboardExCtrl::kOctaveWidth / 12);
}

}  // namespace quib
