// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The loop creator: cuts loops of whole bars out of a sound file, plays them in time with the song and writes them
// into the folder of loops. User-interface thread; reading has a thread of its own.

#include <QTemporaryDir>

#include "document/CExportJob.h"
#include "document/CSoundWork.h"
#include "editors/base/CToolWindow.h"
#include "editors/loopcreator/CLoopListCtrl.h"
#include "editors/loopcreator/CWavePeaks.h"
#include "export/loops/LoopCut.h"

namespace quib {

class CFieldCtrl;
class CKnobCtrl;
class CLabelCtrl;
class CSeamCtrl;
class CSwitchCtrl;
class CWaveCtrl;

class CWinControlLoopCreator : public CToolWindow {
    Q_OBJECT

public:
    CWinControlLoopCreator(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent);
    ~CWinControlLoopCreator() override;

    bool TakeFile(const QString& path) override;
    void TakeGrid(const QString& path, double nextTempo, double nextDownbeat) override;
    // The loop of the song as it sounds now, with what rings on after it laid over its beginning.
    void TakeSong();
    bool IsBusy() const { return work.IsBusy() || render != nullptr; }
    const std::vector<ListedLoop>& Loops() const noexcept { return loops; }
    const LoopCut& Cut() const noexcept { return cut; }
    // What the buttons do.
    void SetBars(int bars);
    void AddToList();
    void AddEvery();
    void RemoveFromList();
    // Gives how many were written.
    int WriteLoops();
    bool CanEdit(EEdit command) const override { return command == EEdit::kDelete && chosen >= 0; }
    void Edit(EEdit command) override;

protected:
    void ShowSelection() override;
    void ShowPlaying(const PlayPicture& playing) override;
    void Translate() override;
    void Arrange(const QSize& size) override;
    void DrawBackground() override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    QString Title() const override;

private:
    enum ESnap { kBeat, kStroke, kZero, kOff };
    void Build();
    void BuildHeader();
    void BuildWaveform();
    void BuildSeam();
    void BuildList();
    void BuildWrite();
    CSwitchCtrl& Button(int left, int top, int width, const QString& text, int help, std::function<void()> run);
    CSwitchCtrl& Toggle(int left, int top, int width, const QString& text, int help, CValue& value,
                        std::function<void()> run);
    CLabelCtrl& Label(int left, int top, int width, const QString& text = {});
    void FollowRender();
    void Hear(std::shared_ptr<const HeardSound> next);
    void HearRhythm(const HeardSound& found);
    void ShowGrid();
    double Snapped(double frame) const;
    void MoveTo(double start, bool snap);
    void DrawSpan(double start, double end, bool snap);
    void Nudge(int direction, bool fine);
    void SetTempo(double next);
    void Tap();
    void CutChanged();
    void Play(bool on);
    void Choose(int index);
    void ShowAll();
    double FramesOfBeat() const;
    double BarOf(std::int64_t frame) const;
    QString BaseName() const;

    CSoundWork work;
    std::shared_ptr<const HeardSound> heard;
    std::unique_ptr<CExportJob> render;           // of the loop of the song
    std::unique_ptr<QTemporaryDir> renderFolder;  // with the sound of the last one
    double songBeats = 0;                         // of the loop that is rendered or read; 0: it is a file
    std::shared_ptr<const CWavePeaks> peaks;
    std::shared_ptr<const SoundClip> loop;  // as it would be written
    std::vector<std::int64_t> strokes;      // of the sound
    SeamSteps steps;
    LoopCut cut;
    double downbeat = 0;                                  // seconds
    std::optional<std::pair<double, double>> wantedGrid;  // of a file that is being read
    std::vector<ListedLoop> loops;
    int chosen = -1;
    ESnap snap = kBeat;
    bool mp3 = false;
    bool playing = false;
    bool isTouched = false;  // the cut, by the user, since the grid was set
    QString namePattern = QStringLiteral("{name} {bpm}bpm");
    QString folder;
    QString problem;
    std::vector<std::uint64_t> taps;  // nanoseconds
    int shifted = 0;
    std::vector<std::pair<CControl*, QPoint>> lower;

    std::array<CValue, 4> barsShown, snapShown;
    CValue playShown, timeShown{1.0F}, waveShown{1.0F}, mp3Shown, marksShown{1.0F}, followShown{1.0F}, fadeValue{12.0F};
    CWaveCtrl* overview = nullptr;
    CWaveCtrl* wave = nullptr;
    CSeamCtrl* seam = nullptr;
    CLoopListCtrl* list = nullptr;
    CLabelCtrl* fileName = nullptr;
    CLabelCtrl* seamText = nullptr;
    CLabelCtrl* folderText = nullptr;
    CFieldCtrl* tempoField = nullptr;
    CFieldCtrl* nameField = nullptr;
    CSwitchCtrl* write = nullptr;
};

}  // namespace quib
