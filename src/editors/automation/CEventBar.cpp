// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/automation/CEventBar.h"

#include <QMenu>

#include "controls/CLabelCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "controls/Colours.h"
#include "controls/SkinNumbers.h"
#include "editors/automation/CLaneArmCtrl.h"
#include "editors/automation/CWinControlParamEvent.h"
#include "editors/base/CFieldCtrl.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr std::array kToolGlyphs = {picture::kGlyphPoints, picture::kGlyphEdit, picture::kGlyphLine,
                                    picture::kGlyphRamp,   picture::kGlyphSine, picture::kGlyphRandom};

constexpr std::array kToolTexts = {521, 522, 523, 524, 525, 526};

}  // namespace

CEventBar::CEventBar(CWinControl& frame, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                     CWinControlParamEvent& paramEvent)
    : CControl(frame, number, left, top, newWidth, newHeight), window(paramEvent) {
    AddTools();
    AddHead();
    for (const auto& child : Children()) child->backgroundColour = Colour("panel");
}

void CEventBar::AddTools() {
    const auto addSide = [this](int left, const QString& text, CValue& shown, bool song) {
        auto& button = AddChild<CSwitchCtrl>(0U, left, 8, 64, 24, &shown, text);
        button.section = ESection::kPattern;
        button.infoString = 520;
        button.onChange = [this, song](CControl&) { window.SetSong(song); };
    };
    addSide(12, Text("PATTERN"), patternShown, false);
    addSide(76, Text("SONG"), songShown, true);
    for (std::size_t tool = 0; tool < toolShown.size(); ++tool) {
        auto& button = AddChild<CSwitchCtrl>(0U, 152 + 29 * static_cast<int>(tool), 8, 28, 24, &toolShown[tool],
                                             kToolGlyphs[tool]);
        button.section = ESection::kEqualiser;
        button.infoString = kToolTexts[tool];
        button.onChange = [this, tool](CControl&) { window.SetTool(static_cast<int>(tool)); };
    }
    auto& label = AddChild<CLabelCtrl>(0U, 336, 8, 34, 24, Text("Snap"));
    label.textColour = Colour("textMuted");
    snap = &AddChild<CLabelMenuCtrl>(0U, 370, 8, 72, 24, QString(), [this](QMenu& menu) { FillSnaps(menu); });
    snap->infoString = 405;
    mode = &AddChild<CLabelMenuCtrl>(0U, 454, 8, 92, 24, QString(), [this](QMenu& menu) { FillModes(menu); });
    mode->infoString = 701;
    auto& arm = AddChild<CLaneArmCtrl>(0U, 554, 8, 112, 24, &window.Project().Audio().recordAutomation,
                                       QStringLiteral("A  ") + Text("ARM"));
    arm.infoString = 527;
    arm.onChange = [this](CControl&) { Refresh(); };
}

void CEventBar::AddHead() {
    constexpr int top = kTools + 6;
    name = &AddChild<CLabelCtrl>(0U, 22, top, 300, 20);
    name->fontHeight = 14;
    name->strong = true;
    owner = &AddChild<CLabelCtrl>(0U, 176, top, 200, 20);
    owner->textColour = Colour("textMuted");
    const auto addField = [this, top](int wide, const QString& title) -> CLabelCtrl& {
        return AddChild<CFieldCtrl>(0U, 0, top, wide, 20, title);
    };
    timeLabel = &AddChild<CLabelCtrl>(0U, 0, top, 40, 20, Text("Time"));
    time = &addField(64, Text("Time"));
    time->infoString = 528;
    time->onTextEntry = [this](CControl&, const QString& text) { window.TypeTime(text); };
    valueLabel = &AddChild<CLabelCtrl>(0U, 0, top, 44, 20, Text("Value"));
    value = &addField(80, Text("Value"));
    value->infoString = 528;
    value->onTextEntry = [this](CControl&, const QString& text) { window.TypeValue(text); };
    for (CLabelCtrl* const label : {timeLabel, valueLabel}) {
        label->textColour = Colour("textMuted");
        label->alignment = Qt::AlignRight | Qt::AlignVCenter;
    }
    auto& button = AddChild<CSwitchCtrl>(0U, 0, top - 2, 26, 24, nullptr, picture::kGlyphBin);
    button.momentary = true;
    button.infoString = 529;
    button.onChange = [this](CControl&) { window.ClearLane(); };
    bin = &button;
}

void CEventBar::Resize(int newWidth, int newHeight) {
    SetSize(newWidth, newHeight);
    constexpr int top = kTools + 6;
    bin->SetPosition(newWidth - 34, top - 2);
    value->SetPosition(newWidth - 122, top);
    valueLabel->SetPosition(newWidth - 172, top);
    time->SetPosition(newWidth - 240, top);
    timeLabel->SetPosition(newWidth - 286, top);
}

void CEventBar::Draw() {
    Canvas().Fill(Rectangle(), Colour("panel"));
    const bool armed = window.Project().Audio().recordAutomation.IsOn();
    Canvas().Fill(QRectF(X(), Y() + kTools, Width(), 2), armed ? Colour("record") : Colour("wellDeep"));
    if (const auto accent = window.LaneSection()) {
        Canvas().Fill(QRectF(X() + 12, Y() + kTools + 8, 4, 16), Palette().Accent(*accent));
    }
}

void CEventBar::ShowState() {
    patternShown.Set(window.IsSong() ? 0.0F : 1.0F);
    songShown.Set(window.IsSong() ? 1.0F : 0.0F);
    for (std::size_t tool = 0; tool < toolShown.size(); ++tool) {
        toolShown[tool].Set(window.Tool() == static_cast<int>(tool) ? 1.0F : 0.0F);
    }
    snap->SetText(Text(SnapName(window.SnapNow()).c_str()));
    ShowMode();
    name->SetText(window.LaneName());
    const int nameEnd = 30 + static_cast<int>(CCanvas::TextWidth(window.LaneName(), name->fontHeight, true));
    owner->SetPosition(nameEnd, kTools + 6);
    owner->SetSize(std::max(0, Width() - 290 - nameEnd), 20);
    owner->Layout(X(), Y(), ShownRectangle());
    owner->SetText(window.OwnerName());
    time->SetText(window.TimeText());
    value->SetText(window.ValueText());
    time->enabled = value->enabled = window.HasSelection();
    Refresh();
}

void CEventBar::ShowMode() {
    mode->SetText(window.Project().AutomationRecording().Replaces() ? Text("Replace") : Text("Overdub"));
}

void CEventBar::FillModes(QMenu& menu) {
    CAutomationRecording& recording = window.Project().AutomationRecording();
    for (const bool replaces : {false, true}) {
        QAction* const action =
            menu.addAction(replaces ? Text("Replace") : Text("Overdub"), [this, &recording, replaces] {
                recording.SetReplaces(replaces);
                ShowMode();
            });
        action->setCheckable(true);
        action->setChecked(recording.Replaces() == replaces);
    }
}

void CEventBar::FillSnaps(QMenu& menu) {
    for (const Snap& choice : SnapChoices()) {
        QAction* const action =
            menu.addAction(Text(SnapName(choice).c_str()), [this, choice] { window.SetSnap(choice); });
        action->setCheckable(true);
        action->setChecked(choice == window.SnapNow());
    }
}

}  // namespace quib
