// SPDX-License-Identifier: GPL-3.0-or-later
// What stands where in the window of the loop creator.
#include <QFileDialog>
#include <QRegularExpression>

#include "controls/CEntryDialog.h"
#include "controls/CKnobCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/Colours.h"
#include "editors/base/CFieldCtrl.h"
#include "editors/base/GroupBox.h"
#include "editors/loopcreator/CSeamCtrl.h"
#include "editors/loopcreator/CWaveCtrl.h"
#include "editors/loopcreator/CWinControlLoopCreator.h"
#include "editors/sound/ChooseSoundFile.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kHigh = 648;
constexpr int kWaveTop = 136;
constexpr int kWaveHigh = 204;

}  // namespace

CSwitchCtrl& CWinControlLoopCreator::Button(int left, int top, int width, const QString& text, int help,
                                            std::function<void()> run) {
    auto& made = Add<CSwitchCtrl>(0U, left, top, width, 28, nullptr, text);
    made.momentary = true;
    made.infoString = help;
    made.section = ESection::kPattern;
    made.onChange = [run = std::move(run)](CControl&) { run(); };
    return made;
}

CSwitchCtrl& CWinControlLoopCreator::Toggle(int left, int top, int width, const QString& text, int help, CValue& value,
                                            std::function<void()> run) {
    auto& made = Add<CSwitchCtrl>(0U, left, top, width, 28, &value, text);
    made.infoString = help;
    made.section = ESection::kPattern;
    made.onChange = [this, run = std::move(run)](CControl&) {
        run();
        ShowAll();
    };
    return made;
}

CLabelCtrl& CWinControlLoopCreator::Label(int left, int top, int width, const QString& text) {
    auto& made = Add<CLabelCtrl>(0U, left, top, width, 20, text);
    made.textColour = Colour("textMuted");
    made.fontHeight = 11;
    return made;
}

void CWinControlLoopCreator::Build() {
    RemoveAll();
    BuildHeader();
    BuildWaveform();
    BuildSeam();
    BuildList();
    BuildWrite();
    lower.clear();
    for (const auto& control : Controls()) {
        control->backgroundColour = Colour("panel");
        control->Layout(0, 0, QRect(0, 0, 4000, 4000));
        if (control->Y() > kWaveTop + 20) lower.push_back({control.get(), QPoint(control->X(), control->Y())});
    }
    ShowAll();
}

void CWinControlLoopCreator::BuildHeader() {
    fileName = &Add<CLabelCtrl>(0U, 16, 10, 262, 24);
    fileName->sunken = true;
    fileName->fontHeight = 12;
    Button(284, 8, 114, Text("From the song"), 800, [this] { TakeSong(); });
    Button(404, 8, 90, Text("Open ..."), 660, [this] {
        if (const QString path = ChooseSoundFile(this, Document().Settings()); !path.isEmpty()) TakeFile(path);
        ShowAll();
    });
    Button(500, 8, 80, Text("Cancel"), 660, [this] {
        work.Cancel();
        render.reset();
        ShowAll();
    });
    Label(612, 12, 50, Text("Tempo")).alignment = Qt::AlignRight | Qt::AlignVCenter;
    tempoField = &Add<CFieldCtrl>(0U, 668, 10, 80, 24, Text("Tempo"));
    tempoField->infoString = 661;
    tempoField->onTextEntry = [this](CControl&, const QString& text) {
        SetTempo(static_cast<double>(CEntryDialog::NumberOf(text)));
    };
    Button(754, 8, 44, QStringLiteral("/ 2"), 661, [this] { SetTempo(cut.tempo / 2); });
    Button(804, 8, 44, QStringLiteral("x 2"), 661, [this] { SetTempo(cut.tempo * 2); });
    Button(854, 8, 50, Text("Tap"), 661, [this] { Tap(); });
    Button(910, 8, 140, Text("Rhythm detector"), 661, [this] {
        CToolWindow* const detector = OpenOther(ETool::kRhythm);
        if (detector != nullptr && heard) detector->TakeFile(heard->path);
    });
}

void CWinControlLoopCreator::BuildWaveform() {
    overview = &Add<CWaveCtrl>(8, 52, 1104, 48, true);
    overview->infoString = 662;
    overview->onView = [this](double first) {
        wave->SetView(first, wave->Frames());
        ShowAll();
    };
    wave = &Add<CWaveCtrl>(16, kWaveTop, 1088, kWaveHigh, false);
    wave->infoString = 662;
    wave->onMove = [this](double start, bool doSnap) { MoveTo(start, doSnap); };
    wave->onDraw = [this](double start, double end, bool doSnap) { DrawSpan(start, end, doSnap); };
    wave->onScrolled = [this] { ShowAll(); };
    constexpr int kRow = 348;
    Label(20, kRow + 4, 40, Text("Bars"));
    for (int index = 0; index < 4; ++index) {
        Toggle(62 + 42 * index, kRow, 40, QString::number(1 << index), 663, barsShown[static_cast<std::size_t>(index)],
               [this, index] { SetBars(1 << index); });
    }
    Label(244, kRow + 4, 40, Text("Snap"));
    const QString snaps[] = {Text("Beat"), Text("Stroke"), Text("Zero"), Text("Off")};
    for (int index = 0; index < 4; ++index) {
        Toggle(286 + 62 * index, kRow, 60, snaps[index], 663, snapShown[static_cast<std::size_t>(index)],
               [this, index] { snap = static_cast<ESnap>(index); });
    }
    Label(546, kRow + 4, 50, Text("Nudge"));
    Button(598, kRow, 40, QStringLiteral("<"), 663, [this] { Nudge(-1, true); });
    Button(642, kRow, 40, QStringLiteral(">"), 663, [this] { Nudge(1, true); });
    auto& play = Toggle(700, kRow, 110, Text("Play loop"), 664, playShown, [this] { Play(playShown.IsOn()); });
    play.section = ESection::kTransport;
    Toggle(818, kRow, 160, Text("In time with the song"), 664, timeShown, [this] {
        if (playing) Play(true);
    });
}

void CWinControlLoopCreator::BuildSeam() {
    seam = &Add<CSeamCtrl>(17, 420);
    seam->infoString = 665;
    auto& knob = Add<CKnobCtrl>(0U, 20, 560, 60, 68, &fadeValue);
    knob.minimum = 0;
    knob.maximum = 40;
    knob.defaultValue = 12.0F;
    knob.label = Text("Fade");
    knob.section = ESection::kEqualiser;
    knob.infoString = 665;
    knob.formatValue = [](float value) { return QStringLiteral("%1 ms").arg(static_cast<double>(value), 0, 'f', 1); };
    knob.onChange = [this](CControl&) { CutChanged(); };
    seamText = &Label(92, 564, 308);
    Button(306, 590, 94, Text("Best place"), 665, [this] {
        if (heard) MoveTo(static_cast<double>(BestStart(heard->clip, cut)), false);
    });
}

void CWinControlLoopCreator::BuildList() {
    list = &Add<CLoopListCtrl>(424, 420);
    list->infoString = 666;
    list->onChoose = [this](int index) { Choose(index); };
    list->onWanted = [this](int index) {
        ListedLoop& entry = loops[static_cast<std::size_t>(index)];
        entry.wanted = !entry.wanted;
        ShowAll();
    };
    Button(424, 604, 130, Text("Add to the list"), 666, [this] { AddToList(); });
    Button(560, 604, 160, Text("All of the file"), 666, [this] { AddEvery(); });
    Button(726, 604, 122, Text("Remove"), 666, [this] { RemoveFromList(); });
}

void CWinControlLoopCreator::BuildWrite() {
    Label(876, 422, 44, Text("Name"));
    nameField = &Add<CFieldCtrl>(0U, 920, 420, 184, 24, Text("Name"));
    nameField->infoString = 667;
    nameField->onTextEntry = [this](CControl&, const QString& text) {
        namePattern = text.trimmed();
        ShowAll();
    };
    Label(876, 454, 44, Text("Format"));
    Toggle(920, 450, 90, QStringLiteral("Wave"), 667, waveShown, [this] { mp3 = false; }).section =
        ESection::kTransport;
    Toggle(1014, 450, 90, QStringLiteral("MP3"), 667, mp3Shown, [this] { mp3 = true; }).section = ESection::kTransport;
    Label(920, 480, 190, Text("Wave is exact; MP3 gets longer")).fontHeight = 10;
    Button(876, 504, 60, Text("Into"), 667, [this] {
        const QString next = QFileDialog::getExistingDirectory(this, Text("Folder of the loops"), folder);
        if (next.isEmpty()) return;
        folder = next;
        Document().Settings().WriteSettingString(kSettingsSection, QStringLiteral("LoopDir"), folder);
        ShowAll();
    });
    folderText = &Label(942, 508, 164);
    Toggle(876, 538, 228, Text("Strokes and tempo in the file"), 667, marksShown, [] {});
    Toggle(876, 570, 228, Text("Load into the loop players"), 667, followShown, [] {});
    write = &Button(876, 604, 228, Text("Write the loop"), 667, [this] { WriteLoops(); });
    write->section = ESection::kTransport;
}

// The waveform takes width and height, what stands below keeps its size.
void CWinControlLoopCreator::Arrange(const QSize& size) {
    shifted = std::max(0, size.height() - kHigh);
    overview->Resize(std::max(300, size.width() - 16), 48);
    wave->Resize(std::max(300, size.width() - 32), kWaveHigh + shifted);
    for (const auto& [control, place] : lower) control->SetPosition(place.x(), place.y() + shifted);
}

void CWinControlLoopCreator::DrawBackground() {
    const QSize size = SkinSize();
    Canvas().Fill(QRect(QPoint(0, 0), size), Colour("window"));
    Canvas().Fill(QRectF(0, 0, size.width(), 44), Colour("panel"));
    const auto box = [this](const QRectF& area, const QString& title, ESection section) {
        DrawGroupBox(Canvas(), area, title, section);
    };
    const int foot = 392 + shifted;
    box(QRectF(8, 108, size.width() - 16, foot - 116), Text("Waveform"), ESection::kPattern);
    box(QRectF(8, foot, 400, 248), Text("Seam: end meets start"), ESection::kPattern);
    box(QRectF(416, foot, 440, 248), Text("Loops to write"), ESection::kPattern);
    box(QRectF(864, foot, std::max(248, size.width() - 872), 248), Text("Write"), ESection::kTransport);
}

}  // namespace quib
