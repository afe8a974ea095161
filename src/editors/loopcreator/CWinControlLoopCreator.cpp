// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/loopcreator/CWinControlLoopCreator.h"

#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <algorithm>
#include <cmath>

#include "controls/CSwitchCtrl.h"
#include "document/LoopFolders.h"
#include "editors/base/CFieldCtrl.h"
#include "editors/loopcreator/CSeamCtrl.h"
#include "editors/loopcreator/CWaveCtrl.h"
#include "export/BeatsOfBar.h"
#include "export/rhythm/RhythmHits.h"
#include "platform/Clock.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr double kLongestAudition = 120;              // seconds
constexpr std::uint64_t kLongestTap = 3'000'000'000;  // nanoseconds
constexpr double kSlowest = 20;
constexpr double kFastest = 400;
constexpr std::size_t kMostLoops = 500;
constexpr double kEndsWithin = 0.001;  // seconds

// The loop again and again, at the rate of the engine and the tempo of the song.
std::vector<float> AuditionOf(const SoundClip& loop, double framesOfLoop) {
    std::vector<float> samples;
    const auto frames = static_cast<double>(loop.Frames());
    const auto count = static_cast<std::size_t>(std::max(1.0, std::round(framesOfLoop)));
    for (std::size_t i = 0; i < count; ++i) {
        const double place = static_cast<double>(i) * frames / static_cast<double>(count);
        const auto before = static_cast<std::size_t>(place);
        const std::size_t after = (before + 1) % loop.left.size();
        const auto share = static_cast<float>(place - std::floor(place));
        const auto middle = [&loop](std::size_t at) { return 0.5F * (loop.left[at] + loop.right[at]); };
        samples.push_back(middle(before) * (1 - share) + middle(after) * share);
    }
    return samples;
}

}  // namespace

CWinControlLoopCreator::CWinControlLoopCreator(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent)
    : CToolWindow(toolContext, toolRow, parent) {
    const QString kept = Document().Settings().ReadSettingString(kSettingsSection, QStringLiteral("LoopDir"));
    folder = kept.isEmpty() ? Document().ProgramFolders().loops : kept;
    Build();
}

CWinControlLoopCreator::~CWinControlLoopCreator() {
    work.Cancel();
    RemoveAll();
}

QString CWinControlLoopCreator::Title() const { return Text(Row().title); }

void CWinControlLoopCreator::Translate() {
    Build();
    LayoutAndRefresh();
}

void CWinControlLoopCreator::hideEvent(QHideEvent* event) {
    Play(false);
    render.reset();
    CToolWindow::hideEvent(event);
}

// --- The sound --------------------------------------------------------------------------------------------

bool CWinControlLoopCreator::TakeFile(const QString& path) {
    if (!IsSoundFile(path.toStdString())) return false;
    Play(false);
    problem.clear();
    wantedGrid.reset();
    render.reset();
    songBeats = 0;
    fileName->SetText(QFileInfo(path).fileName());
    work.Read(path);
    return true;
}

void CWinControlLoopCreator::TakeGrid(const QString& path, double nextTempo, double nextDownbeat) {
    if (nextTempo <= 0) return;
    if (heard && heard->path == path && !work.IsReading()) {
        downbeat = nextDownbeat;
        wantedGrid = {nextTempo, nextDownbeat};
        SetTempo(nextTempo);
        return MoveTo(static_cast<double>(cut.start), true);
    }
    if (TakeFile(path)) wantedGrid = {nextTempo, nextDownbeat};
}

void CWinControlLoopCreator::TakeSong() {
    CSong& song = Document().Song();
    const StepRange range = song.Loop();
    Play(false);
    work.Cancel();
    render.reset();
    problem.clear();
    auto next = std::make_unique<QTemporaryDir>();
    const EngineSettings& engine = Document().Audio().settings;
    ExportSettings wanted;
    wanted.range = EExportRange::kLoop;
    wanted.firstStep = range.first;
    wanted.endStep = range.end;
    wanted.stepsPerBeat = engine.stepsPerBeat.Get();
    wanted.format.sampleRate = static_cast<int>(Document().Audio().Format().sampleRate);
    wanted.format.bits = 32;
    wanted.folder = next->path().toStdString();
    wanted.namePattern = Document().Session().ProjectName().replace(QLatin1Char('/'), QLatin1Char('_')).toStdString();
    if (range.end <= range.first || !next->isValid()) {
        problem = Text("The song has no loop: draw one in the playlist");
        return ShowAll();
    }
    songBeats = static_cast<double>(range.end - range.first) / wanted.stepsPerBeat;
    render = std::make_unique<CExportJob>(Document(), std::move(wanted));
    renderFolder = std::move(next);
    ShowAll();
}

void CWinControlLoopCreator::FollowRender() {
    const CExportJob::EState state = render->Tick();
    if (state == CExportJob::EState::kWorking) return;
    const auto ended = std::move(render);
    problem = QString::fromStdString(ended->Error());
    const QStringList files = QDir(renderFolder->path()).entryList(QDir::Files);
    if (state != CExportJob::EState::kDone || files.isEmpty()) return;
    // At a steady tempo it is exact; the engine ends within some frames of it. Else the mean of the tempo counts.
    const double rate = Document().Audio().Format().sampleRate;
    const double steady = 60.0 * rate * songBeats / static_cast<double>(Document().Audio().settings.tempo.Get());
    const auto played = static_cast<double>(ended->PlayedFrames());
    const double frames = std::abs(steady - played) < kEndsWithin * rate ? steady : played;
    wantedGrid = {60.0 * rate * songBeats / frames, 0.0};
    work.ReadLoop(renderFolder->filePath(files.front()), std::llround(frames));
}

// It is shown at once; its rhythm comes later.
void CWinControlLoopCreator::Hear(std::shared_ptr<const HeardSound> next) {
    if (!next->error.empty()) {
        problem = QString::fromStdString(next->error);
        return;
    }
    if (next->path.isEmpty()) return HearRhythm(*next);
    heard = std::move(next);
    work.Find(heard, !wantedGrid);
    peaks = std::make_shared<const CWavePeaks>(heard->clip);
    loops.clear();
    chosen = -1;
    cut = {};
    cut.tempo = static_cast<double>(Document().Audio().settings.tempo.Get());
    downbeat = 0;
    if (wantedGrid) std::tie(cut.tempo, downbeat) = *wantedGrid;
    if (songBeats > 0) cut.beats = std::max(1, static_cast<int>(songBeats));
    strokes.clear();
    ShowGrid();
}

// What the user has set meanwhile stays.
void CWinControlLoopCreator::HearRhythm(const HeardSound& found) {
    for (const RhythmHit& hit : found.hits) {
        strokes.push_back(static_cast<std::int64_t>(hit.time * heard->clip.sampleRate));
    }
    const bool isUntouched = !wantedGrid && loops.empty() && !isTouched;
    if (!isUntouched || found.rhythm.tempo <= 0) return ShowAll();
    cut.tempo = found.rhythm.tempo;
    downbeat = found.rhythm.downbeat;
    ShowGrid();
}

void CWinControlLoopCreator::ShowGrid() {
    isTouched = false;
    cut.start = std::llround(std::max(0.0, downbeat) * heard->clip.sampleRate);
    ShowAll();
    wave->SetView(0, FramesOfBeat() * kBeatsOfBar * 4);
    CutChanged();
    isTouched = false;
}

double CWinControlLoopCreator::FramesOfBeat() const {
    return 60.0 / cut.tempo * (heard ? heard->clip.sampleRate : 44100);
}

double CWinControlLoopCreator::BarOf(std::int64_t frame) const {
    const double rate = heard ? heard->clip.sampleRate : 44100;
    return std::floor((static_cast<double>(frame) - downbeat * rate) / FramesOfBeat() / kBeatsOfBar + 0.001) + 1;
}

QString CWinControlLoopCreator::BaseName() const {
    return heard ? QFileInfo(heard->path).completeBaseName() : QString();
}

// --- The marked loop --------------------------------------------------------------------------------------

double CWinControlLoopCreator::Snapped(double frame) const {
    const double rate = heard->clip.sampleRate;
    switch (snap) {
        case kBeat: {
            const double origin = downbeat * rate;
            return origin + std::round((frame - origin) / FramesOfBeat()) * FramesOfBeat();
        }
        case kStroke: {
            const auto nearest = std::ranges::min_element(
                strokes, {}, [frame](std::int64_t stroke) { return std::abs(static_cast<double>(stroke) - frame); });
            return nearest == strokes.end() ? frame : static_cast<double>(*nearest);
        }
        case kZero:
            return static_cast<double>(
                NearestZero(heard->clip, std::llround(frame), static_cast<std::int64_t>(0.01 * rate)));
        default:
            return frame;
    }
}

void CWinControlLoopCreator::MoveTo(double start, bool doSnap) {
    if (!heard) return;
    const double last = static_cast<double>(heard->clip.Frames() - 1);
    double wanted = doSnap ? Snapped(start) : start;
    // Not before the sound, but at a beat.
    while (wanted < -0.5 && doSnap && snap == kBeat) wanted += FramesOfBeat();
    cut.start = std::llround(std::clamp(wanted, 0.0, last));
    CutChanged();
}

// Its length stays one of whole beats.
void CWinControlLoopCreator::DrawSpan(double start, double end, bool doSnap) {
    if (!heard) return;
    cut.beats = std::clamp(static_cast<int>(std::lround((end - start) / FramesOfBeat())), 1, 256);
    MoveTo(start, doSnap);
}

void CWinControlLoopCreator::SetBars(int bars) {
    cut.beats = bars * kBeatsOfBar;
    CutChanged();
}

void CWinControlLoopCreator::Nudge(int direction, bool fine) {
    if (!heard) return;
    const double step = fine ? 0.0001 * heard->clip.sampleRate : FramesOfBeat();
    const bool isStroke = !fine && snap == kStroke;
    double wanted = static_cast<double>(cut.start) + direction * step;
    if (isStroke) {
        const auto next = std::upper_bound(strokes.begin(), strokes.end(), cut.start);
        const auto before = std::lower_bound(strokes.begin(), strokes.end(), cut.start);
        if (direction > 0 && next != strokes.end()) wanted = static_cast<double>(*next);
        if (direction < 0 && before != strokes.begin()) wanted = static_cast<double>(*std::prev(before));
    }
    MoveTo(wanted, !fine && !isStroke);
}

void CWinControlLoopCreator::SetTempo(double next) {
    if (!(next >= kSlowest && next <= kFastest)) return;
    cut.tempo = next;
    CutChanged();
}

void CWinControlLoopCreator::Tap() {
    const std::uint64_t now = Nanoseconds();
    if (!taps.empty() && now - taps.back() > kLongestTap) taps.clear();
    taps.push_back(now);
    if (taps.size() < 4) return;
    SetTempo(std::round(600e9 * static_cast<double>(taps.size() - 1) / static_cast<double>(now - taps.front())) / 10);
}

void CWinControlLoopCreator::CutChanged() {
    isTouched = true;
    cut.fade = static_cast<double>(fadeValue.Get()) / 1000.0;
    if (heard) {
        loop = std::make_shared<const SoundClip>(CutLoop(heard->clip, cut));
        steps = StepsAtSeam(*loop);
    }
    if (chosen >= 0) {
        ListedLoop& entry = loops[static_cast<std::size_t>(chosen)];
        if (entry.cut.start != cut.start || entry.cut.beats != cut.beats || entry.cut.tempo != cut.tempo) chosen = -1;
    }
    if (playing) Play(true);
    ShowAll();
}

// Through the engine, at the place of the song: it begins with the bar that plays.
void CWinControlLoopCreator::Play(bool on) {
    playing = on && loop != nullptr;
    playShown.Set(playing ? 1.0F : 0.0F);
    CAudio& audio = Document().Audio();
    auto next = std::make_shared<Audition>();
    if (playing) {
        const double rate = audio.Format().sampleRate;
        const double tempo = timeShown.IsOn() ? static_cast<double>(audio.settings.tempo.Get()) : cut.tempo;
        const double frames = cut.beats * 60.0 / tempo * rate;
        const std::vector<float> once = AuditionOf(*loop, frames);
        const auto times = static_cast<std::size_t>(std::max(1.0, kLongestAudition * rate / frames));
        for (std::size_t i = 0; i < times; ++i) next->samples.insert(next->samples.end(), once.begin(), once.end());
        const double perStep =
            60.0 * rate / static_cast<double>(audio.settings.tempo.Get()) / audio.settings.stepsPerBeat.Get();
        const double place = std::max(0.0, static_cast<double>(audio.Picture().globalStep)) * perStep;
        next->offset = -static_cast<int>(std::floor(place / frames) * frames);
    }
    audio.audition.Publish(std::move(next), audio.graveyard);
    if (playing && !Document().Transport().IsPlaying()) Document().Transport().Play();
}

// --- The list ---------------------------------------------------------------------------------------------

void CWinControlLoopCreator::AddToList() {
    if (!heard || loops.size() >= kMostLoops) return;
    const double bar = BarOf(cut.start);
    loops.push_back({QStringLiteral("%1 %2").arg(BaseName()).arg(bar, 0, 'f', 0), cut, bar, true, Text("new")});
    chosen = static_cast<int>(loops.size()) - 1;
    ShowAll();
}

// As many bars as are marked, one behind the other, from the downbeat on.
void CWinControlLoopCreator::AddEvery() {
    if (!heard) return;
    const double rate = heard->clip.sampleRate;
    LoopCut next = cut;
    const std::int64_t frames = FramesOf(cut, heard->clip.sampleRate);
    for (int index = 0; loops.size() < kMostLoops; ++index) {
        next.start = std::llround(std::max(0.0, downbeat) * rate + index * cut.beats * FramesOfBeat());
        if (next.start + frames > heard->clip.Frames()) break;
        const double bar = BarOf(next.start);
        loops.push_back({QStringLiteral("%1 %2").arg(BaseName()).arg(bar, 0, 'f', 0), next, bar, true, Text("new")});
    }
    chosen = static_cast<int>(loops.size()) - 1;
    ShowAll();
}

void CWinControlLoopCreator::RemoveFromList() {
    if (chosen < 0) return;
    loops.erase(loops.begin() + chosen);
    chosen = std::min(chosen, static_cast<int>(loops.size()) - 1);
    ShowAll();
}

void CWinControlLoopCreator::Choose(int index) {
    chosen = -1;
    cut = loops[static_cast<std::size_t>(index)].cut;
    fadeValue.Set(static_cast<float>(cut.fade * 1000));
    CutChanged();
    chosen = index;
    const auto frames = static_cast<double>(FramesOf(cut, heard->clip.sampleRate));
    wave->SetView(static_cast<double>(cut.start) - frames / 4, 1.5 * frames);
    ShowAll();
}

int CWinControlLoopCreator::WriteLoops() {
    if (!heard) return 0;
    if (loops.empty()) AddToList();
    int written = 0;
    QString failed;
    for (ListedLoop& entry : loops) {
        if (!entry.wanted) continue;
        const std::string name = LoopName(namePattern.toStdString(), entry.name.toStdString(), entry.cut.tempo);
        const std::string path = folder.toStdString() + "/" + name + (mp3 ? ".mp3" : ".wav");
        std::string error;
        const bool done = WriteLoopFile(path, CutLoop(heard->clip, entry.cut), entry.cut, marksShown.IsOn(), error);
        entry.state = done ? Text("written") : Text("failed");
        entry.wanted = !done;
        written += done ? 1 : 0;
        if (!done && failed.isEmpty()) failed = QString::fromStdString(error);
    }
    problem = failed;
    if (written > 0 && followShown.IsOn()) FollowLoopFolders(Document());
    ShowAll();
    return written;
}

void CWinControlLoopCreator::Edit(EEdit command) {
    if (command == EEdit::kDelete) RemoveFromList();
}

void CWinControlLoopCreator::keyPressEvent(QKeyEvent* event) {
    const bool fine = (event->modifiers() & Qt::ShiftModifier) != 0;
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return AddToList();
        case Qt::Key_Left:
            return Nudge(-1, fine);
        case Qt::Key_Right:
            return Nudge(1, fine);
        default:
            return CToolWindow::keyPressEvent(event);
    }
}

// --- What is shown ----------------------------------------------------------------------------------------

void CWinControlLoopCreator::ShowSelection() { ShowAll(); }

void CWinControlLoopCreator::ShowPlaying(const PlayPicture& /*picture*/) {
    if (render) {
        FollowRender();
        ShowAll();
    }
    if (auto next = work.Take()) {
        Hear(std::move(next));
        ShowAll();
    }
    if (work.IsBusy()) ShowAll();
}

void CWinControlLoopCreator::ShowAll() {
    CWaveCtrl::Shown shown;
    if (heard) {
        shown.peaks = peaks;
        shown.frames = heard->clip.Frames();
        shown.sampleRate = heard->clip.sampleRate;
        shown.tempo = cut.tempo;
        shown.downbeat = downbeat;
        shown.start = cut.start;
        shown.length = FramesOf(cut, heard->clip.sampleRate);
        shown.strokes = &strokes;
        for (const ListedLoop& entry : loops) {
            shown.others.emplace_back(entry.cut.start, FramesOf(entry.cut, heard->clip.sampleRate));
        }
        QString told = QStringLiteral("%1   %2 s, %3 kHz")
                           .arg(QFileInfo(heard->path).fileName())
                           .arg(heard->clip.Seconds(), 0, 'f', 1)
                           .arg(heard->clip.sampleRate / 1000.0);
        if (work.IsBusy() && !wantedGrid) told += QStringLiteral("   ") + Text("Looking for the tempo");
        fileName->SetText(told);
    }
    if (render) {
        shown.message = Text("Rendering: %1 %").arg(static_cast<int>(render->Share() * 100));
    } else if (work.IsReading()) {
        shown.message = Text("Reading: %1 %").arg(static_cast<int>(work.Share() * 100));
    } else if (!heard || !problem.isEmpty()) {
        shown.message = problem.isEmpty() ? Text("Drop a sound file here, or open one") : problem;
    }
    wave->Show(shown);
    shown.viewFirst = static_cast<std::int64_t>(wave->First());
    shown.viewFrames = static_cast<std::int64_t>(wave->Frames());
    shown.message.clear();
    overview->Show(shown);
    wave->Refresh();
    overview->Refresh();
    seam->Show(loop, cut.fade);
    for (int index = 0; index < 4; ++index) {
        const auto place = static_cast<std::size_t>(index);
        barsShown[place].Set(cut.beats == kBeatsOfBar << index ? 1.0F : 0.0F);
        snapShown[place].Set(snap == index ? 1.0F : 0.0F);
    }
    waveShown.Set(mp3 ? 0.0F : 1.0F);
    mp3Shown.Set(mp3 ? 1.0F : 0.0F);
    seamText->SetText(loop ? Text("Step at the seam %1 %, in the loop %2 %")
                                 .arg(static_cast<double>(steps.seam) * 100, 0, 'f', 1)
                                 .arg(static_cast<double>(steps.usual) * 100, 0, 'f', 1)
                           : QString());
    seamText->textColour = Palette().Accent(steps.IsSmooth() ? ESection::kTransport : ESection::kPattern);
    seamText->Refresh();
    tempoField->SetText(QString::number(cut.tempo, 'f', 2));
    nameField->SetText(namePattern);
    const QString home = QDir::homePath();
    folderText->SetText(folder.startsWith(home + QLatin1Char('/')) ? QLatin1Char('~') + folder.mid(home.size())
                                                                   : folder);
    list->Show(loops, chosen);
    const auto count = std::ranges::count_if(loops, [](const ListedLoop& entry) { return entry.wanted; });
    const QString wanted = loops.empty() || count == 1 ? Text("Write the loop") : Text("Write %1 loops").arg(count);
    if (write->label == wanted) return;
    write->label = wanted;
    write->Refresh();
}

}  // namespace quib
