// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/rhythm/CWinControlRhythm.h"

#include <QFileInfo>
#include <algorithm>
#include <cmath>
#include <utility>

#include "controls/CEntryDialog.h"
#include "controls/CSwitchCtrl.h"
#include "editors/base/CFieldCtrl.h"
#include "editors/rhythm/CEnvelopeCtrl.h"
#include "export/BeatsOfBar.h"
#include "platform/Clock.h"
#include "platform/ThreadPriority.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr double kLongestLive = 30;     // seconds that the tempo of the master output is found in
constexpr double kBetweenSearches = 3;  // seconds
constexpr double kNotSure = 0.3;
constexpr double kHardlySure = 0.6;
constexpr std::uint64_t kLongestTap = 3'000'000'000;  // nanoseconds
constexpr float kSlowest = 20;
constexpr float kFastest = 300;

}  // namespace

CWinControlRhythm::CWinControlRhythm(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent)
    : CToolWindow(toolContext, toolRow, parent) {
    Build();
}

CWinControlRhythm::~CWinControlRhythm() {
    work.Cancel();
    RemoveAll();
}

QString CWinControlRhythm::Title() const { return Text(Row().title); }

void CWinControlRhythm::Translate() {
    Build();
    LayoutAndRefresh();
}

void CWinControlRhythm::hideEvent(QHideEvent* event) {
    Listen(false);
    CToolWindow::hideEvent(event);
}

DetectorSettings& CWinControlRhythm::Stored() const { return Document().Session().Detector(); }

float& CWinControlRhythm::Setting(std::size_t index) const {
    static constexpr std::array kFields = {&DetectorSettings::eqFrequency, &DetectorSettings::eqResonance,
                                           &DetectorSettings::attack,      &DetectorSettings::release,
                                           &DetectorSettings::threshold,   &DetectorSettings::level,
                                           &DetectorSettings::gain};
    return Stored().*kFields[index];
}

void CWinControlRhythm::SetSetting(std::size_t index, float before, float after) {
    Setting(index) = after;
    CChanges& changes = Document().Changes();
    changes.PushValue(Text("Rhythm detector"), &Stored(), static_cast<int>(index), before, after,
                      [&changes, &field = Setting(index)](float next) {
                          field = next;
                          changes.Tell({EChange::kValue});
                      });
}

// --- What is heard ----------------------------------------------------------------------------------------

bool CWinControlRhythm::TakeFile(const QString& path) {
    if (!IsSoundFile(path.toStdString())) return false;
    Listen(false);
    problem.clear();
    work.Read(path);
    fileName->SetText(QFileInfo(path).fileName());
    return true;
}

void CWinControlRhythm::Listen(bool on) {
    if (listening == on) return;
    listening = on;
    work.Cancel();
    Document().Audio().Listener().Listen(on);
    live.reset();
    recent.clear();
    searched = 0;
    if (on) {
        heard = nullptr;
        envelope = nullptr;
        tempo = 0;
    }
}

void CWinControlRhythm::HearFile(std::shared_ptr<const HeardSound> next) {
    if (!next->error.empty()) {
        problem = QString::fromStdString(next->error);
        fileName->SetText({});
        return;
    }
    if (!next->path.isEmpty()) {
        heard = next;
        envelope = nullptr;
        tempo = 0;
        picture->ShowAll(heard->clip.Seconds());
        work.Find(heard);
    }
    if (next->rhythm.tempo <= 0) return;
    sureness = next->rhythm.sureness;
    steadiness = next->rhythm.steadiness;
    double first = next->rhythm.downbeat;
    // What was searched of the master output began later than its picture.
    if (listening && live) {
        first += static_cast<double>(searched) * CRhythmEnvelope::kHop -
                 std::min(kLongestLive, static_cast<double>(searched) * CRhythmEnvelope::kHop);
    }
    SetGrid(next->rhythm.tempo, first);
}

// Envelope and hits grow with the sound; the tempo is looked for again every few seconds.
void CWinControlRhythm::HearMaster() {
    block.clear();
    Document().Audio().Listener().Fetch(block);
    const auto rate = static_cast<int>(Document().Audio().Format().sampleRate);
    if (!live || computed != Stored()) {
        computed = Stored();
        live = std::make_unique<CRhythmEnvelope>(RhythmSettingsOf(computed), rate);
        searched = 0;
        recent.clear();
    }
    live->Add(block);
    recent.insert(recent.end(), block.begin(), block.end());
    const auto most = static_cast<std::size_t>(kLongestLive * rate);
    if (recent.size() > most) recent.erase(recent.begin(), recent.end() - static_cast<std::ptrdiff_t>(most));
    const double seconds = static_cast<double>(live->Levels().size()) * CRhythmEnvelope::kHop;
    picture->ShowFrom(std::max(0.0, seconds - picture->Seconds()));
    const auto between = static_cast<std::size_t>(kBetweenSearches / CRhythmEnvelope::kHop);
    if (work.IsBusy() || live->Levels().size() < searched + between) return;
    searched = live->Levels().size();
    work.Find(recent, rate);
}

void CWinControlRhythm::FollowWork() {
    if (auto next = work.Take()) HearFile(std::move(next));
    if (pending.valid() && pending.wait_for(std::chrono::seconds(0)) == std::future_status::ready)
        envelope = pending.get();
    if (!pending.valid() && heard && !listening && (!envelope || computed != Stored())) Compute();
}

void CWinControlRhythm::Compute() {
    computed = Stored();
    pending = std::async(std::launch::async, [sound = heard, settings = RhythmSettingsOf(computed)] {
        SetBackgroundPriority();
        auto next = std::make_shared<CRhythmEnvelope>(settings, sound->clip.sampleRate);
        next->Add(sound->mono);
        return std::shared_ptr<const CRhythmEnvelope>(std::move(next));
    });
}

void CWinControlRhythm::SetGrid(double nextTempo, double nextDownbeat) {
    tempo = nextTempo;
    downbeat = nextDownbeat;
}

// --- What it is used for ----------------------------------------------------------------------------------

void CWinControlRhythm::Multiply(double factor) {
    if (tempo * factor < static_cast<double>(kSlowest) || tempo * factor > static_cast<double>(kFastest)) return;
    tempo *= factor;
}

// Four taps choose which multiple of the tempo is meant.
void CWinControlRhythm::Tap() {
    const std::uint64_t now = Nanoseconds();
    if (!taps.empty() && now - taps.back() > kLongestTap) taps.clear();
    taps.push_back(now);
    if (taps.size() < 4) return;
    const double tapped = 60e9 * static_cast<double>(taps.size() - 1) / static_cast<double>(now - taps.front());
    if (tempo <= 0) return SetGrid(std::round(tapped * 10) / 10, downbeat);
    double best = 1;
    for (const double factor : {0.25, 1.0 / 3.0, 0.5, 2.0 / 3.0, 1.5, 2.0, 3.0, 4.0}) {
        if (std::abs(std::log(tempo * factor / tapped)) < std::abs(std::log(tempo * best / tapped))) best = factor;
    }
    Multiply(best);
}

void CWinControlRhythm::SetTempoOfProject() {
    if (tempo <= 0) return;
    CValue& value = Document().Audio().settings.tempo;
    const float before = value.Get();
    const float after = std::clamp(static_cast<float>(std::round(tempo * 1000) / 1000), kSlowest, kFastest);
    value.Set(after);
    Document().Changes().ValueEdited(EnginePart(value), before, after, Text("Tempo"));
}

// From the bar that begins the picture on, as many steps as the pattern has.
void CWinControlRhythm::WriteHits() {
    const auto instrument = Instrument();
    if (!instrument || !envelope || tempo <= 0) return;
    const auto old = instrument->patterns[static_cast<std::size_t>(Pattern())].ForEdit();
    const double perSecond = tempo / 60.0 * Document().Audio().settings.stepsPerBeat.Get();
    const double bar = kBeatsOfBar * 60.0 / tempo;
    const double first = downbeat + std::max(0.0, std::round((picture->First() - downbeat) / bar)) * bar;
    std::vector<Note> notes;
    for (const RhythmHit& hit : envelope->Hits()) {
        const double step = (hit.time - first) * perSecond;
        if (step < -0.25 || step >= old->StepCount()) continue;
        notes.push_back({static_cast<float>(std::max(0.0, step)), 1, key, velocityShown.IsOn() ? hit.velocity : 100});
    }
    for (const Note& note : old->Notes()) {
        if (note.key != key) notes.push_back(note);
    }
    Document().Contents().SetPattern(
        instrument->Id(), Pattern(),
        std::make_shared<const CPattern>(old->StepCount(), std::move(notes), old->LoopStart()), Text("Hits to notes"));
}

// --- What is shown ----------------------------------------------------------------------------------------

void CWinControlRhythm::ShowSelection() { ShowAll(); }
void CWinControlRhythm::ShowChange(const Change& /*change*/) { ShowAll(); }

void CWinControlRhythm::ShowPlaying(const PlayPicture& /*playing*/) {
    FollowWork();
    if (listening) HearMaster();
    ShowAll();
}

QString CWinControlRhythm::SettingText(std::size_t index) const {
    const RhythmSettings now = RhythmSettingsOf(Stored());
    switch (index) {
        case 0:
            return now.hertz <= 0 ? Text("all") : QStringLiteral("%1 Hz").arg(now.hertz, 0, 'f', 0);
        case 1:
            return QStringLiteral("Q %1").arg(now.quality, 0, 'f', 2);
        case 2:
            return QStringLiteral("%1 ms").arg(now.attack * 1000, 0, 'f', 1);
        case 3:
            return QStringLiteral("%1 ms").arg(now.release * 1000, 0, 'f', 0);
        case 4:
            return QStringLiteral("%1 dB").arg(now.threshold, 0, 'f', 1);
        case 5:
            return QStringLiteral("%1 dB").arg(now.level, 0, 'f', 1);
        default:
            return QStringLiteral("+%1 dB").arg(now.gain, 0, 'f', 1);
    }
}

void CWinControlRhythm::ShowAll() {
    const CRhythmEnvelope* const seen = listening ? live.get() : envelope.get();
    CEnvelopeCtrl::Shown shown;
    if (seen != nullptr) shown = {&seen->Levels(), &seen->Hits(), 0, tempo, downbeat, -1, {}};
    shown.threshold = RhythmSettingsOf(Stored()).threshold;
    if (!listening && (work.IsReading() || (seen == nullptr && heard))) {
        shown.message = Text("Reading: %1 %").arg(static_cast<int>(work.Share() * 100));
    } else if (seen == nullptr) {
        shown.message = problem.isEmpty() ? Text("Drop a file here, or listen to the master") : problem;
    }
    picture->Show(shown);
    picture->Refresh();
    fileShown.Set(listening ? 0.0F : 1.0F);
    masterShown.Set(listening ? 1.0F : 0.0F);
    for (std::size_t index = 0; index < knobValues.size(); ++index) {
        if (knobValues[index].Get() != Setting(index)) knobValues[index].Set(Setting(index));
        knobTexts[index]->SetText(SettingText(index));
    }
    state->SetText(heard && !listening ? Text("read in %1 s").arg(heard->seconds, 0, 'f', 1) : QString());
    tempoText->SetText(tempo > 0 ? QString::number(tempo, 'f', 2) : QStringLiteral("-"));
    const QRgb sureColour = Palette().Accent(sureness < kHardlySure ? ESection::kPattern : ESection::kTransport);
    if (std::exchange(tempoText->textColour, sureColour) != sureColour) tempoText->Refresh();
    sureText->SetText(tempo <= 0            ? (work.IsBusy() && !listening ? Text("Looking for the tempo") : QString())
                      : sureness < kNotSure ? Text("not sure")
                                            : Text("sure to %1 %").arg(std::lround(sureness * 100)));
    steadyText->SetText(tempo > 0 ? Text("beats within %1 ms").arg(steadiness * 1000, 0, 'f', 1) : QString());
    constexpr std::array kFactors = {0.5, 2.0, 3.0};
    for (std::size_t index = 0; index < kFactors.size(); ++index) {
        const double result = tempo * kFactors[index];
        factors[index]->enabled = result >= static_cast<double>(kSlowest) && result <= static_cast<double>(kFastest);
        factorTexts[index]->SetText(tempo > 0 ? QString::number(result, 'f', 0) : QString());
    }
    const QString wanted = tempo > 0 ? Text("Set the tempo to %1").arg(tempo, 0, 'f', 2) : Text("Set the tempo");
    if (setTempo->label != wanted) {
        setTempo->label = wanted;
        setTempo->Refresh();
    }
    hitsText->SetText(seen != nullptr ? Text("%1 hits").arg(seen->Hits().size()) : QString());
    keyField->SetText(Text("Key %1").arg(key));
}

void CWinControlRhythm::CutLoops() {
    CToolWindow* const creator = OpenOther(ETool::kLoopCreator);
    if (creator == nullptr || !heard) return;
    if (tempo > 0) return creator->TakeGrid(heard->path, tempo, downbeat);
    creator->TakeFile(heard->path);
}

}  // namespace quib
