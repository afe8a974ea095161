// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/CInstrumentStripCtrl.h"

#include <QMenu>
#include <algorithm>

#include "app/console/SlotMenu.h"
#include "controls/CFilterCtrl.h"
#include "controls/CImageCtrl.h"
#include "controls/CKeyboardExCtrl.h"
#include "controls/CLabelCtrl.h"
#include "controls/CStepLedCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CSwitchFaderCtrl.h"
#include "controls/CSwitchSelectorCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kDragDistance = 4;  // pixels before a press becomes a drag
}

CInstrumentStripCtrl::CInstrumentStripCtrl(CWinControl& window, std::shared_ptr<CInstrument> shown,
                                           const ConsoleContext& consoleContext, int newWidth)
    : CControl(window, 0, 0, 0, newWidth, 0),
      context(consoleContext),
      instrument(std::move(shown)),
      stepGestures(context.station, instrument) {
    context.owner = instrument;
    onAlternativeClick = [this](CControl&) {
        PopUpMenu(Owner(), [&](QMenu& menu) { FillInstrumentMenu(menu, context, instrument->Id(), &Owner()); });
    };
    Rebuild(newWidth);
}

void CInstrumentStripCtrl::EndKeys() {
    if (keyboard != nullptr) keyboard->EndAll();
}

void CInstrumentStripCtrl::ReleaseKeys(bool all) {
    if (keyboard != nullptr && (all || !instrument->arpeggiator.on.IsOn())) keyboard->ReleaseAll();
}

// With the arpeggiator on and its keyboard hidden no key is heard.
void CInstrumentStripCtrl::ShowSilentKeys() {
    const bool silent = instrument->arpeggiator.on.IsOn() && !instrument->keyboardOn.IsOn();
    const QRgb colour = silent ? Palette().Colour(QStringLiteral("warning")) : 0;
    if (arpeggiator->onColour == colour) return;
    arpeggiator->onColour = colour;
    arpeggiator->infoString = silent ? 478 : 463;
    arpeggiator->Refresh();
}

void CInstrumentStripCtrl::Rebuild(int newWidth) {
    EndKeys();
    ClearChildren();
    cells = nullptr;
    leds = nullptr;
    modes = nullptr;
    steps = nullptr;
    filter = nullptr;
    keyboard = nullptr;
    inserts.fill(nullptr);
    sends.fill(nullptr);
    shownPattern = nullptr;
    collapsed = context.station.Stack().IsCollapsed(Index());
    openShown.Set(collapsed ? 0.0F : 1.0F);
    withKeyboard = instrument->keyboardOn.IsOn();
    SetSize(newWidth, kHeaderHeight + (collapsed ? 4 : kBodyHeight) + (withKeyboard ? kKeyboardHeight : 0));
    AddHeader();
    if (!collapsed) {
        const int extra = std::max(0, newWidth - kNarrowest);
        const int cellWidth = 20 + std::min(extra / 3, 320) / 16;
        const int patternEnd = 210 + 16 * cellWidth;
        const int rest = newWidth - patternEnd;
        const int filterRoom = rest * 2 / 5;
        AddMixer();
        AddPatterns(210, cellWidth);
        AddEqualizer(patternEnd + 8, filterRoom);
        AddEffects(patternEnd + 8 + filterRoom, rest - filterRoom - 12);
    }
    if (withKeyboard) AddKeyboard();
    for (const auto& child : Children()) child->backgroundColour = Ground();
    ShowContent();
}

bool CInstrumentStripCtrl::IsHeightRight() const {
    return withKeyboard == instrument->keyboardOn.IsOn() && collapsed == context.station.Stack().IsCollapsed(Index());
}

QRgb CInstrumentStripCtrl::Ground() const { return Palette().Colour(QStringLiteral("panel")); }

QRgb CInstrumentStripCtrl::StripColour() const {
    const QColor own = context.station.Stack().StripColour(Index());
    return own.isValid() ? own.rgb() : Palette().Colour(QStringLiteral("track%1").arg(Index() % 8 + 1));
}

void CInstrumentStripCtrl::ShowContent() {
    const int index = Index();
    number->SetText(QString::number(index + 1));
    icon->SetPicture(picture::kInstrumentIcon + std::clamp(instrument->icon, 0, picture::kInstrumentIconCount - 1));
    name = QString::fromStdString(instrument->title);
    title->SetText(name);
    title->entryText = name;
    plugin->SetText(SlotText(instrument->plugin.ForEdit().get(), Text("choose a plug-in")));
    channel->SetText(ChannelText(instrument->midi.channel.Get()));
    soloShown.Set(context.station.Stack().IsSolo(index) ? 1.0F : 0.0F);
    presetShown.Set(static_cast<float>(context.station.Presets().Recalled(instrument->Id())));
    if (collapsed) return;
    modeShown.Set(static_cast<float>(static_cast<int>(SelectedStepNumberMode(*instrument))));
    for (int place = 0; place < kInsertCount; ++place) {
        const auto slot = instrument->inserts[static_cast<std::size_t>(place)].ForEdit();
        CSwitchFaderCtrl& insert = *inserts[static_cast<std::size_t>(place)];
        insert.enabled = slot->plugin != nullptr;
        insert.SetText(SlotText(slot.get(), Text("insert %1").arg(place + 1)));
    }
    for (int place = 0; place < kSendCount; ++place) {
        const auto slot = context.station.Places().Slot({SlotPlace::EKind::kEffect, 0, place});
        CSwitchFaderCtrl& send = *sends[static_cast<std::size_t>(place)];
        send.enabled = slot && slot->plugin;
        send.SetText(SlotText(slot.get(), Text("send %1").arg(place + 1)));
    }
}

void CInstrumentStripCtrl::PatternsChanged() {
    if (cells != nullptr && cells->IsShown()) cells->Refresh();
}

void CInstrumentStripCtrl::Follow(const InstrumentPicture* picture) {
    playingPattern = picture != nullptr && picture->step >= 0 ? picture->pattern : -1;
    nextPattern = picture != nullptr ? picture->nextPattern : -1;
    playingStep = picture != nullptr ? picture->step : -1;
    sounding.fill(false);
    const std::uint32_t keys =
        picture != nullptr ? std::min<std::uint32_t>(picture->heldKeyCount, InstrumentPicture::kShownKeys) : 0;
    for (std::uint32_t key = 0; key < keys; ++key) sounding[picture->heldKeys[key] & 127U] = true;
    const float lit = keys > 0 ? 1.0F : 0.0F;
    ShowSilentKeys();
    if (lit != lampShown.Get()) lamp->SetValueAndUpdate(false, true, lit);
    const float soloNow = context.station.Stack().IsSolo(Index()) ? 1.0F : 0.0F;
    if (soloNow != soloShown.Get()) solo->SetValueAndUpdate(false, true, soloNow);
    if (leds == nullptr) return;
    const auto pattern = instrument->patterns[static_cast<std::size_t>(ShownPattern())].ForEdit();
    if (pattern != shownPattern) {
        shownPattern = pattern;
        leds->SetStepCount(pattern->LoopLength());
        leds->NotesChanged();
        steps->SetText(Text("%1 steps").arg(pattern->LoopLength()));
    }
    const auto mode = static_cast<float>(static_cast<int>(SelectedStepNumberMode(*instrument)));
    if (mode != modeShown.Get()) modes->SetValueAndUpdate(false, true, mode);
    filter->RedrawIfChanged();
}

void CInstrumentStripCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    const QRectF area = QRectF(Rectangle()).adjusted(0.5, 0.5, -0.5, -2.5);
    const bool isCurrent = Index() == context.station.Selection().CurrentIndex();
    Canvas().FillRound(area, 4, Ground());
    Canvas().Frame(area, 4,
                   isCurrent ? Palette().Colour(QStringLiteral("textDim")) : Palette().Colour(QStringLiteral("line")));
    Canvas().FillRound(QRectF(X() + 1.5, Y() + 2, 4, area.height() - 3), 2, StripColour());
    Canvas().Glyph(Skin(), picture::kGlyphGrip, {X() + 12.0, Y() + 14.0},
                   Palette().Colour(hovered ? QStringLiteral("textMuted") : QStringLiteral("edge")));
}

// --- Dragging to another place ----------------------------------------------------------------------------

void CInstrumentStripCtrl::OnLButtonDown(int px, int py, int button) {
    if (button != 0) return;
    // The grip and the free ground of the header.
    dragging = py - Y() < kHeaderHeight && px - X() < 60;
    dragStart = py;
}

void CInstrumentStripCtrl::OnMouseMove(int px, int py) {
    const bool onGrip = py - Y() < kHeaderHeight && px - X() < 60;
    if (onGrip || dragging) {
        Owner().setCursor(dragging ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
    } else {
        Owner().unsetCursor();
    }
    if (dragging && pressed && std::abs(py - dragStart) > kDragDistance && onDrag) onDrag(*this, py, false);
}

void CInstrumentStripCtrl::OnLButtonUp(int /*px*/, int py, int /*button*/) {
    Owner().unsetCursor();
    if (std::exchange(dragging, false) && std::abs(py - dragStart) > kDragDistance && onDrag) onDrag(*this, py, true);
}

void CInstrumentStripCtrl::OnMouseLeave() { Owner().unsetCursor(); }

int CInstrumentStripCtrl::ShownPattern() const {
    const int shown = playingPattern >= 0 ? playingPattern : instrument->patternSelected.Get();
    return std::clamp(shown, 0, kPatternCount - 1);
}

void CInstrumentStripCtrl::ListSlots(std::vector<SlotField>& fields) const {
    const std::uint32_t id = instrument->Id();
    fields.push_back({{SlotPlace::EKind::kInstrument, id, 0}, plugin});
    if (collapsed) return;
    for (int index = 0; index < kInsertCount; ++index) {
        fields.push_back({{SlotPlace::EKind::kInsert, id, index}, inserts[static_cast<std::size_t>(index)]});
    }
    for (int index = 0; index < kSendCount; ++index) {
        fields.push_back({{SlotPlace::EKind::kEffect, id, index}, sends[static_cast<std::size_t>(index)]});
    }
}

// --- Patterns -------------------------------------------------------------------------------------------------

std::uint32_t CInstrumentStripCtrl::FilledPatterns() const {
    std::uint32_t filled = 0;
    for (std::size_t pattern = 0; pattern < instrument->patterns.size(); ++pattern) {
        if (!instrument->patterns[pattern].ForEdit()->Notes().empty()) filled |= 1U << pattern;
    }
    return filled;
}

CPatternOwner::Look CInstrumentStripCtrl::PatternLook() const {
    Look look;
    look.selected = instrument->patternSelected.Get();
    look.playing = playingPattern;
    look.next = nextPattern;
    look.filled = FilledPatterns();
    for (std::size_t pattern = 0; pattern < instrument->patternUsed.size(); ++pattern) {
        if (instrument->patternUsed[pattern].IsOn()) look.flagged |= 1U << pattern;
    }
    return look;
}

void CInstrumentStripCtrl::SelectPattern(int pattern) { context.station.Contents().SelectPattern(Index(), pattern); }

void CInstrumentStripCtrl::CopyPattern(int from, int to) { context.station.Contents().CopyPattern(Index(), from, to); }

void CInstrumentStripCtrl::TogglePatternFlag(int pattern) {
    CIntegerValue& flag = instrument->patternUsed[static_cast<std::size_t>(pattern)];
    const int before = flag.Get();
    flag.Set(before != 0 ? 0 : 1);
    context.station.Changes().ValueEdited(Part(instrument, flag), before, flag.Get(), Text("Mark pattern"));
}

void CInstrumentStripCtrl::SendPatternMask(std::uint32_t mask) {
    const auto slot = instrument->plugin.ForEdit();
    if (slot->plugin) slot->plugin->SendInternalCode(CPlugin::kPatternMaskCode, static_cast<float>(mask));
}

void CInstrumentStripCtrl::SetSteps(int count) {
    const int pattern = std::clamp(instrument->patternSelected.Get(), 0, kPatternCount - 1);
    context.station.Contents().SetSteps(Index(), pattern, count);
}

void CInstrumentStripCtrl::ToggleCollapsed() { context.station.Stack().SetCollapsed(Index(), !collapsed); }

}  // namespace quib
