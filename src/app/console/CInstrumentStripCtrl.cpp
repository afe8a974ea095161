// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/CInstrumentStripCtrl.h"

#include <QMenu>
#include <algorithm>

#include "app/console/SlotMenu.h"
#include "app/console/StripColumns.h"
#include "controls/CFilterCtrl.h"
#include "controls/CImageCtrl.h"
#include "controls/CKeyboardExCtrl.h"
#include "controls/CLabelCtrl.h"
#include "controls/CStepLedCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CSwitchFaderCtrl.h"
#include "controls/CSwitchSelectorCtrl.h"
#include "controls/CVuCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kDragDistance = 4;  // pixels before a press becomes a drag
constexpr int kGripHeight = 32;
constexpr int kGripReach = 10;  // pixels to either side
}  // namespace

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
    if (arpeggiator == nullptr) return;
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
    plugin = nullptr;
    channel = nullptr;
    arpeggiator = nullptr;
    leds = nullptr;
    modes = nullptr;
    steps = nullptr;
    filter = nullptr;
    keyboard = nullptr;
    inserts.fill(nullptr);
    insertEdits.fill(nullptr);
    sends.fill(nullptr);
    shownPattern = nullptr;
    silence = ESilence::kNone;
    cannotSound = false;
    collapsed = context.station.Stack().IsCollapsed(Index());
    withKeyboard = instrument->keyboardOn.IsOn();
    SetSize(newWidth, (collapsed ? kClosedHeight : kHeight) + (withKeyboard ? kKeyboardHeight : 0));
    collapsed ? BuildClosed(newWidth) : BuildOpen(newWidth);
    if (withKeyboard) AddKeyboard();
    const QRgb ground = Ground();
    for (const auto& child : Children()) child->backgroundColour = ground;
    ShowContent();
}

void CInstrumentStripCtrl::BuildOpen(int newWidth) {
    const StripColumns columns = StripColumns::For(newWidth);
    gripLeft = 220;
    AddName(144);
    AddMixer(columns.folded);
    AddPan(columns.folded, columns.pan);
    AddPatterns(columns.cells, columns.cellPitch);
    AddStepControls(columns.length);
    AddEqualizer(columns.equaliser, columns.equaliserWidth);
    AddInserts(columns.inserts, columns.insertsWidth);
    AddSends(columns.sends, columns.sendsWidth);
}

bool CInstrumentStripCtrl::IsHeightRight() const {
    return withKeyboard == instrument->keyboardOn.IsOn() && collapsed == context.station.Stack().IsCollapsed(Index());
}

QRgb CInstrumentStripCtrl::Ground() const { return Palette().Colour(QStringLiteral("panel")); }

QRgb CInstrumentStripCtrl::StripColour() const {
    const QColor own = context.station.Stack().StripColour(Index());
    return own.isValid() ? own.rgb() : Palette().Track(Index());
}

void CInstrumentStripCtrl::ShowContent() {
    const int index = Index();
    number->SetText(QString::number(index + 1));
    icon->SetPicture(picture::kInstrumentIcon + std::clamp(instrument->icon, 0, picture::kInstrumentIconCount - 1));
    icon->colour = StripColour();
    name = QString::fromStdString(instrument->title);
    title->SetText(name);
    title->entryText = name;
    soloShown.Set(context.station.Stack().IsSolo(index) ? 1.0F : 0.0F);
    presetShown.Set(static_cast<float>(context.station.Presets().Recalled(instrument->Id())));
    ShowFrozen();
    if (collapsed) return;
    plugin->SetText(SlotText(instrument->plugin.ForEdit().get(), Text("choose a plug-in")));
    channel->SetText(ChannelText(instrument->midi.channel.Get()));
    const bool listens = instrument->midi.channel.Get() > kChannelOff;
    channel->textColour = Palette().Colour(listens ? QStringLiteral("text") : QStringLiteral("textDim"));
    modeShown.Set(static_cast<float>(static_cast<int>(SelectedStepNumberMode(*instrument))));
    for (int place = 0; place < kInsertCount; ++place) {
        const auto slot = instrument->inserts[static_cast<std::size_t>(place)].ForEdit();
        CSwitchFaderCtrl& insert = *inserts[static_cast<std::size_t>(place)];
        insert.enabled = slot->plugin != nullptr;
        insert.SetText(SlotText(slot.get(), Text("+ insert %1").arg(place + 1)));
        const bool holds = slot->plugin != nullptr || slot->missing;
        insert.SetSize(holds ? insertsRoom - kInsertEdit : insertsRoom, insert.Height());
        insertEdits[static_cast<std::size_t>(place)]->SetVisible(holds);
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
        FindHeldSteps();
        leds->SetStepCount(pattern->LoopLength());
        leds->NotesChanged();
        steps->SetText(Text("%1 steps").arg(pattern->LoopLength()));
    }
    const auto mode = static_cast<float>(static_cast<int>(SelectedStepNumberMode(*instrument)));
    if (mode != modeShown.Get()) modes->SetValueAndUpdate(false, true, mode);
    filter->RedrawIfChanged();
}

// --- What cannot be heard -------------------------------------------------------------------------------------

void CInstrumentStripCtrl::FollowSilence(std::uint32_t soloed) {
    const ChannelStrip& strip = instrument->strip;
    const float crossfader = context.station.Audio().settings.crossfader.Get();
    ESilence now = ESilence::kNone;
    if (strip.mute.IsOn()) {
        now = ESilence::kMuted;
    } else if (soloed != 0 && soloShown.Get() == 0.0F) {
        now = ESilence::kSolo;
    } else if (strip.crossfadeA.IsOn()) {
        if (context.tables.CrossfadeGainA(crossfader) < kFadedOut) now = ESilence::kFadedA;
    } else if (strip.crossfadeB.IsOn() && context.tables.CrossfadeGainB(crossfader) < kFadedOut) {
        now = ESilence::kFadedB;
    }
    if (now == silence && (now != ESilence::kSolo || soloed == silencedBy)) return;
    silencedBy = soloed;
    silence = now;
    meter->SetReason(SilenceText());
    DrawDim(now != ESilence::kNone);
}

QString CInstrumentStripCtrl::SilenceText() const {
    switch (silence) {
        case ESilence::kMuted:
            return Text("silent: muted");
        case ESilence::kSolo: {
            const auto other = context.station.Stack().InstrumentById(silencedBy);
            return Text("silent: solo on %1").arg(other ? QString::fromStdString(other->title) : QString());
        }
        case ESilence::kFadedA:
            return Text("silent: crossfader at %1").arg(QLatin1Char('B'));
        case ESilence::kFadedB:
            return Text("silent: crossfader at %1").arg(QLatin1Char('A'));
        case ESilence::kNone:
            break;
    }
    return {};
}

// The switch that is the cause keeps its colour.
void CInstrumentStripCtrl::DrawDim(bool dim) {
    cannotSound = dim;
    for (const auto& child : Children()) {
        child->cannotSound = dim && child.get() != keyboard && (child.get() != mute || !instrument->strip.mute.IsOn());
        for (const auto& inner : child->Children()) inner->cannotSound = child->cannotSound;
    }
    Refresh();
}

void CInstrumentStripCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    const QRectF area(Rectangle());
    const bool isCurrent = Index() == context.station.Selection().CurrentIndex();
    const CPalette& palette = Palette();
    Canvas().Box(area, 4, Ground(), palette.Colour(isCurrent ? QStringLiteral("textMuted") : QStringLiteral("line")),
                 isCurrent ? 2 : 1);
    Canvas().Fill(QRectF(X() + 2, Y() + 2, 6, area.height() - 4), StripColour());
    Canvas().Glyph(Skin(), picture::kGlyphGrip, {X() + gripLeft + 4.0, Y() + (collapsed ? 20.0 : 18.0)},
                   palette.Colour(hovered ? QStringLiteral("textMuted") : QStringLiteral("textDim")));
}

// --- Dragging to another place ----------------------------------------------------------------------------

// The grip, and the free ground beside it.
bool CInstrumentStripCtrl::IsOnGrip(int px, int py) const {
    return py - Y() < kGripHeight && std::abs(px - X() - gripLeft - 4) <= kGripReach;
}

void CInstrumentStripCtrl::OnLButtonDown(int px, int py, int button) {
    if (button != 0) return;
    dragging = IsOnGrip(px, py);
    dragStart = py;
}

void CInstrumentStripCtrl::OnMouseMove(int px, int py) {
    if (IsOnGrip(px, py) || dragging) {
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

void CInstrumentStripCtrl::TellChanged() { context.station.Changes().Tell({EChange::kInstrument, instrument->Id()}); }

void CInstrumentStripCtrl::OpenTool(ETool tool) {
    context.station.Selection().SetCurrent(Index());
    if (context.actions.openTool) context.actions.openTool(tool);
}

int CInstrumentStripCtrl::ShownPattern() const {
    const int shown = playingPattern >= 0 ? playingPattern : instrument->patternSelected.Get();
    return std::clamp(shown, 0, kPatternCount - 1);
}

void CInstrumentStripCtrl::ListSlots(std::vector<SlotField>& fields) const {
    const std::uint32_t id = instrument->Id();
    if (collapsed) return fields.push_back({{SlotPlace::EKind::kInstrument, id, 0}, title});
    fields.push_back({{SlotPlace::EKind::kInstrument, id, 0}, plugin});
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

// With Shift all strips become as this one does, which is one step of undo.
void CInstrumentStripCtrl::ToggleCollapsed() {
    CInstrumentStack& stack = context.station.Stack();
    const bool next = !collapsed;
    const bool isShiftHeld = Owner().IsFine() && !Owner().IsControlHeld();
    if (!isShiftHeld) return stack.SetCollapsed(Index(), next);
    const CChanges::CMacro step(context.station.Changes(),
                                Text(next ? TextKey("Collapse all strips") : TextKey("Expand all strips")));
    const auto count = static_cast<int>(stack.Instruments().size());
    for (int index = 0; index < count; ++index) stack.SetCollapsed(index, next);
}

}  // namespace quib
