// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The rhythm detector: listens to a file or to the master output, shows envelope and hits, finds tempo and
// downbeat, and hands them to the project. User-interface thread; reading and searching have threads of their own.

#include <array>
#include <future>

#include "document/CSoundWork.h"
#include "editors/base/CToolWindow.h"
#include "export/rhythm/RhythmHits.h"

namespace quib {

class CEnvelopeCtrl;
class CFieldCtrl;
class CKnobCtrl;
class CLabelCtrl;
class CSwitchCtrl;

class CWinControlRhythm : public CToolWindow {
    Q_OBJECT

public:
    CWinControlRhythm(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent);
    ~CWinControlRhythm() override;

    bool TakeFile(const QString& path) override;
    double Tempo() const noexcept { return tempo; }
    bool IsBusy() const { return work.IsBusy() || pending.valid(); }
    // What the buttons do.
    void SetTempoOfProject();
    void WriteHits();
    void CutLoops();
    void Multiply(double factor);

protected:
    void ShowSelection() override;
    void ShowChange(const Change& change) override;
    void ShowPlaying(const PlayPicture& picture) override;
    void Translate() override;
    void Arrange(const QSize& size) override;
    void DrawBackground() override;
    void hideEvent(QHideEvent* event) override;
    QString Title() const override;

private:
    void Build();
    void BuildHeader();
    void BuildKnobs();
    void BuildTempo();
    void BuildUses();
    CSwitchCtrl& Button(int left, int top, int width, const QString& text, int help, std::function<void()> run);
    CLabelCtrl& Label(int left, int top, int width, int height, const QString& text = {});
    DetectorSettings& Stored() const;
    float& Setting(std::size_t index) const;
    void SetSetting(std::size_t index, float before, float after);
    void Listen(bool on);
    void HearFile(std::shared_ptr<const HeardSound> next);
    void HearMaster();
    void FollowWork();
    void Compute();
    void ShowAll();
    void SetGrid(double nextTempo, double nextDownbeat);
    void Tap();
    QString SettingText(std::size_t index) const;

    CSoundWork work;
    std::shared_ptr<const HeardSound> heard;
    std::shared_ptr<const CRhythmEnvelope> envelope;
    std::future<std::shared_ptr<const CRhythmEnvelope>> pending;
    DetectorSettings computed;  // that `envelope` was made with, or is being
    std::unique_ptr<CRhythmEnvelope> live;
    std::vector<float> recent;  // of the master output, the last half minute
    std::vector<float> block;
    std::size_t searched = 0;  // hops of `live` when the tempo was looked for last
    bool listening = false;
    double tempo = 0;
    double downbeat = 0;
    double sureness = 0;
    double steadiness = 0;
    int key = 36;
    std::vector<std::uint64_t> taps;  // nanoseconds
    QString problem;
    float thresholdBefore = -1;  // while the line is dragged
    int shifted = 0;             // skin pixels that the lower part has been moved down
    std::vector<std::pair<CControl*, QPoint>> lower;

    std::array<CValue, 7> knobValues;
    CValue fileShown, masterShown, velocityShown{1.0F};
    CEnvelopeCtrl* picture = nullptr;
    CLabelCtrl* fileName = nullptr;
    CLabelCtrl* state = nullptr;
    CLabelCtrl* tempoText = nullptr;
    CLabelCtrl* sureText = nullptr;
    CLabelCtrl* steadyText = nullptr;
    CLabelCtrl* hitsText = nullptr;
    CFieldCtrl* keyField = nullptr;
    std::array<CLabelCtrl*, 7> knobTexts{};
    std::array<CLabelCtrl*, 3> factorTexts{};
    std::array<CSwitchCtrl*, 3> factors{};
    CSwitchCtrl* setTempo = nullptr;
    CSwitchCtrl* write = nullptr;
};

}  // namespace quib
