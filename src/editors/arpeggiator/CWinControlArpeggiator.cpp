// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/arpeggiator/CWinControlArpeggiator.h"

#include <algorithm>

#include "controls/CArpeggiatorCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "editors/arpeggiator/ArpeggiatorPreview.h"
#include "editors/arpeggiator/CArpeggiatorStripCtrl.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kPanelHeight = 88;
constexpr std::uint32_t kSeed = 1;
}  // namespace

CWinControlArpeggiator::CWinControlArpeggiator(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent)
    : CToolWindow(toolContext, toolRow, parent) {
    Build();
}

void CWinControlArpeggiator::Build() {
    RemoveAll();
    panel = &Add<CArpeggiatorCtrl>(0U, 0, 0, ArpeggiatorValues());
    panel->SetSize(panel->Width(), kPanelHeight);
    panel->SetGesture([this](CControl& changed, float before) {
        Document().Changes().ValueEdited(Part(shown, *changed.Value()), before, changed.ValueNow(), changed.name);
    });
    strip = &Add<CArpeggiatorStripCtrl>(0U, 7, 90);
    strip->infoString = 550;
    latch = &Add<CSwitchCtrl>(0U, 129, 124, 66, 20, nullptr, Text("LATCH"));
    latch->name = Text("Arpeggiator latch");
    latch->infoString = 570;
    latch->onGesture = [this](CControl& changed, float before) {
        Document().Changes().ValueEdited(Part(shown, *changed.Value()), before, changed.ValueNow(), changed.name);
    };
    auto& write = Add<CSwitchCtrl>(0U, 7, 124, 118, 20, nullptr, Text("WRITE TO PATTERN"));
    write.momentary = true;
    write.onChange = [this](CControl&) { WriteToPattern(); };
    write.infoString = 551;
    auto& keyboard = Add<CSwitchCtrl>(0U, 199, 124, 64, 20, &keyboardShown, Text("KEYS"));
    keyboard.onChange = [this](CControl&) { ShowKeyboard(keyboardShown.IsOn()); };
    keyboard.infoString = 552;
    for (CSwitchCtrl* const button : {&write, &keyboard, latch}) {
        button->section = ESection::kKeyboard;
        button->backgroundColour = Palette().Colour(QStringLiteral("panel"));
    }
}

void CWinControlArpeggiator::DrawBackground() {
    Canvas().Fill(QRect(QPoint(0, 0), SkinSize()), Palette().Colour(QStringLiteral("panel")));
}

void CWinControlArpeggiator::Translate() {
    Build();
    ShowSelection();
    LayoutAndRefresh();
}

void CWinControlArpeggiator::ShowSelection() {
    const auto next = Instrument();
    ArpeggiatorValues values;
    if (next) {
        ArpeggiatorSettings& own = next->arpeggiator;
        values = {&own.on,       &own.mode,     &own.hole,     &own.ext,  &own.extMode,
                  &own.velocity, &own.interval, &own.gateTime, &own.tempo};
    }
    panel->BindTo(values);
    latch->Bind(next ? &next->arpeggiator.latch : nullptr);
    latch->enabled = next != nullptr;
    latch->learns = next ? Document().Controllers().TargetOf(next, latch->Value()) : std::nullopt;
    for (const auto& control : panel->Children())
        control->learns = next ? Document().Controllers().TargetOf(next, control->Value()) : std::nullopt;
    if (shown != next) keys.clear();
    shown = next;
}

// What was held last stays in the strip until other keys are.
void CWinControlArpeggiator::ShowPlaying(const PlayPicture& picture) {
    if (!shown) return strip->Show({});
    keyboardShown.Set(shown->keyboardOn.Get());
    const InstrumentPicture* const entry = picture.Find(shown->Id());
    if (entry != nullptr && entry->heldKeyCount > 0)
        keys.assign(entry->heldKeys.begin(), entry->heldKeys.begin() + entry->heldKeyCount);
    // The keys that it plays come in by way of the keyboard, which has to be there for that.
    const bool silent = shown->arpeggiator.on.IsOn() && !shown->keyboardOn.IsOn();
    strip->Show(keys.empty() ? std::vector<Note>()
                             : PreviewArpeggiator(shown->arpeggiator, keys, CArpeggiatorStripCtrl::kSteps, kSeed),
                silent);
}

void CWinControlArpeggiator::ShowKeyboard(bool on) {
    if (!shown) return;
    const float before = shown->keyboardOn.Get();
    shown->keyboardOn.Set(on ? 1.0F : 0.0F);
    CChanges& changes = Document().Changes();
    const auto tell = [&changes, id = shown->Id()] { changes.Tell({EChange::kInstrument, id}); };
    changes.ValueEdited(Part(shown, shown->keyboardOn), before, shown->keyboardOn.Get(), Text("Keyboard"), tell);
    tell();
}

void CWinControlArpeggiator::WriteToPattern() {
    if (!shown || keys.empty()) return;
    const auto old = shown->patterns[static_cast<std::size_t>(Pattern())].ForEdit();
    auto notes = PreviewArpeggiator(shown->arpeggiator, keys, old->StepCount(), kSeed);
    Document().Contents().SetPattern(
        shown->Id(), Pattern(), std::make_shared<const CPattern>(old->StepCount(), std::move(notes), old->LoopStart()),
        Text("Write the arpeggio"));
}

}  // namespace quib
