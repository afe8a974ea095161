// SPDX-License-Identifier: GPL-3.0-or-later
// What stands where in the window of the rhythm detector.
#include "controls/CEntryDialog.h"
#include "controls/CKnobCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/Colours.h"
#include "editors/base/CFieldCtrl.h"
#include "editors/base/GroupBox.h"
#include "editors/rhythm/CEnvelopeCtrl.h"
#include "editors/rhythm/CWinControlRhythm.h"
#include "editors/sound/ChooseSoundFile.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kFoot = 284;  // of the picture, at the first size
constexpr int kHigh = 604;

struct KnobRow {
    const char* label;
    ESection section;
};
constexpr std::array<KnobRow, 7> kKnobs = {{{TextKey("EQ frequency"), ESection::kEqualiser},
                                            {TextKey("Resonance"), ESection::kEqualiser},
                                            {TextKey("Attack"), ESection::kKeyboard},
                                            {TextKey("Release"), ESection::kKeyboard},
                                            {TextKey("Threshold"), ESection::kPattern},
                                            {TextKey("Level"), ESection::kMix},
                                            {TextKey("Gain"), ESection::kMix}}};

}  // namespace

CSwitchCtrl& CWinControlRhythm::Button(int left, int top, int width, const QString& text, int help,
                                       std::function<void()> run) {
    auto& made = Add<CSwitchCtrl>(0U, left, top, width, 28, nullptr, text);
    made.momentary = true;
    made.infoString = help;
    made.section = ESection::kKeyboard;
    made.onChange = [this, run = std::move(run)](CControl&) {
        run();
        ShowAll();
    };
    return made;
}

CLabelCtrl& CWinControlRhythm::Label(int left, int top, int width, int height, const QString& text) {
    auto& made = Add<CLabelCtrl>(0U, left, top, width, height, text);
    made.textColour = Colour("textMuted");
    made.fontHeight = 11;
    return made;
}

void CWinControlRhythm::Build() {
    RemoveAll();
    BuildHeader();
    picture = &Add<CEnvelopeCtrl>(16, 72);
    picture->infoString = 651;
    picture->onThreshold = [this](double decibels, bool done) {
        const auto next = static_cast<float>(std::clamp((decibels + 60.0) / 60.0, 0.001, 1.0));
        if (done) {
            SetSetting(4, thresholdBefore, next);
            thresholdBefore = -1;
        } else {
            if (thresholdBefore < 0) thresholdBefore = Setting(4);
            Setting(4) = next;
        }
        ShowAll();
    };
    picture->onDownbeat = [this](double seconds) {
        SetGrid(tempo, seconds);
        ShowAll();
    };
    BuildKnobs();
    BuildTempo();
    BuildUses();
    lower.clear();
    for (const auto& control : Controls()) {
        control->backgroundColour = Colour("panel");
        control->Layout(0, 0, QRect(0, 0, 4000, 4000));
        if (control->Y() > kFoot) lower.push_back({control.get(), QPoint(control->X(), control->Y())});
    }
    ShowAll();
}

void CWinControlRhythm::BuildHeader() {
    const auto source = [this](int left, const QString& text, CValue& value, std::function<void()> run) {
        auto& made = Add<CSwitchCtrl>(0U, left, 8, 96, 28, &value, text);
        made.section = ESection::kKeyboard;
        made.infoString = 650;
        made.onChange = [this, run = std::move(run)](CControl&) {
            run();
            ShowAll();
        };
    };
    source(16, Text("File"), fileShown, [this] { Listen(false); });
    source(116, Text("Master out"), masterShown, [this] { Listen(!listening); });
    fileName = &Add<CLabelCtrl>(0U, 220, 10, 300, 24);
    fileName->sunken = true;
    fileName->fontHeight = 12;
    if (heard) fileName->SetText(heard->path.section(QLatin1Char('/'), -1));
    Button(528, 8, 90, Text("Open ..."), 650, [this] {
        if (const QString path = ChooseSoundFile(this, Document().Settings()); !path.isEmpty()) TakeFile(path);
    });
    Button(624, 8, 90, Text("Cancel"), 650, [this] { work.Cancel(); });
    state = &Label(724, 12, 120, 20);
    hitsText = &Label(850, 12, 130, 20);
}

void CWinControlRhythm::BuildKnobs() {
    for (std::size_t index = 0; index < kKnobs.size(); ++index) {
        const int left = 24 + 78 * static_cast<int>(index);
        knobValues[index].Set(Setting(index));
        auto& knob = Add<CKnobCtrl>(0U, left, 360, 64, 76, &knobValues[index]);
        knob.label = Text(kKnobs[index].label);
        knob.section = kKnobs[index].section;
        knob.defaultValue = 0.0F;
        knob.name = Text("Rhythm detector");
        knob.infoString = 652;
        knob.onChange = [this, index](CControl& changed) {
            Setting(index) = changed.ValueNow();
            knobTexts[index]->SetText(SettingText(index));
        };
        knob.onGesture = [this, index](CControl& changed, float before) {
            SetSetting(index, before, changed.ValueNow());
        };
        knobTexts[index] = &Add<CLabelCtrl>(0U, left - 6, 440, 76, 18);
        knobTexts[index]->alignment = Qt::AlignCenter;
        knobTexts[index]->fontHeight = 12;
        knobTexts[index]->strong = true;
    }
    Button(24, 556, 110, Text("Defaults"), 652, [this] {
        const CChanges::CMacro step(Document().Changes(), Text("Rhythm detector"));
        for (std::size_t index = 0; index < kKnobs.size(); ++index) {
            if (Setting(index) != 0) SetSetting(index, Setting(index), 0);
        }
    });
    Label(144, 560, 200, 20, Text("Kept in the project."));
}

void CWinControlRhythm::BuildTempo() {
    tempoText = &Add<CLabelCtrl>(0U, 592, 352, 150, 48);
    tempoText->fontHeight = 38;
    tempoText->strong = true;
    Label(744, 372, 40, 20, QStringLiteral("BPM"));
    sureText = &Label(592, 404, 180, 18);
    steadyText = &Label(592, 424, 180, 18);
    const std::array<std::pair<QString, double>, 3> rows = {
        {{QStringLiteral("/ 2"), 0.5}, {QStringLiteral("x 2"), 2.0}, {QStringLiteral("x 3"), 3.0}}};
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const int left = 790 + 50 * static_cast<int>(index);
        factors[index] =
            &Button(left, 356, 46, rows[index].first, 653, [this, factor = rows[index].second] { Multiply(factor); });
        factorTexts[index] = &Label(left, 386, 46, 16);
        factorTexts[index]->alignment = Qt::AlignCenter;
    }
    Button(940, 356, 46, Text("Tap"), 653, [this] { Tap(); });
}

void CWinControlRhythm::BuildUses() {
    setTempo = &Button(592, 496, 196, Text("Set the tempo"), 654, [this] { SetTempoOfProject(); });
    setTempo->section = ESection::kTransport;
    Button(796, 496, 190, Text("Cut loops on this grid"), 655, [this] { CutLoops(); });
    write = &Button(796, 530, 190, Text("Hits into the pattern"), 656, [this] { WriteHits(); });
    keyField = &Add<CFieldCtrl>(0U, 592, 532, 90, 24, Text("Key"));
    keyField->infoString = 656;
    keyField->onTextEntry = [this](CControl&, const QString& text) {
        key = std::clamp(static_cast<int>(CEntryDialog::NumberOf(text)), 0, 127);
        ShowAll();
    };
    auto& velocity = Add<CSwitchCtrl>(0U, 690, 532, 98, 24, &velocityShown, Text("Velocity"));
    velocity.infoString = 656;
    velocity.section = ESection::kPattern;
}

// The picture takes width and height; what stands below keeps its size.
void CWinControlRhythm::Arrange(const QSize& size) {
    shifted = std::max(0, size.height() - kHigh);
    picture->Resize(std::max(300, size.width() - 34), kFoot - 52 + shifted);
    for (const auto& [control, place] : lower) control->SetPosition(place.x(), place.y() + shifted);
}

void CWinControlRhythm::DrawBackground() {
    const QSize size = SkinSize();
    Canvas().Fill(QRect(QPoint(0, 0), size), Colour("window"));
    Canvas().Fill(QRectF(0, 0, size.width(), 44), Colour("panel"));
    const auto box = [this](const QRectF& area, const QString& title, ESection section) {
        DrawGroupBox(Canvas(), area, title, section);
    };
    const int foot = 328 + shifted;
    box(QRectF(8, 50, size.width() - 16, foot - 58), Text("Envelope, threshold, hits"), ESection::kKeyboard);
    box(QRectF(8, foot, 560, kHigh - 336), Text("Settings, in the order the sound takes"), ESection::kKeyboard);
    box(QRectF(576, foot, size.width() - 584, 130), Text("Tempo"), ESection::kTransport);
    box(QRectF(576, foot + 138, size.width() - 584, kHigh - 336 - 138), Text("Use it"), ESection::kPattern);
}

}  // namespace quib
