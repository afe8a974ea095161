// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// "QUIB Loops": plays the Wave files of the program's Loops folder in time with the host, one loop a
// key. See CPluginBase for its threads.

#include <array>
#include <atomic>
#include <memory>
#include <vector>

#include "dsp/CHostTime.h"
#include "dsp/CPluginBase.h"
#include "dsp/CStateVariableFilter.h"
#include "dsp/Ramp.h"
#include "loops/CLoopVoice.h"
#include "loops/LoopFolder.h"

namespace quibplug {

class CLoopsPlugin final : public CPluginBase {
public:
    explicit CLoopsPlugin(vst2::HostCallback host);
    ~CLoopsPlugin() override;

    // Lets every instance of the process play what the folders hold now, from its next block on. The host's threads.
    static void FollowFolders();

private:
    static constexpr int kVoices = 24;

    void SampleRateChanged() noexcept override;
    void Reset() noexcept override;
    bool Sounding() const noexcept override { return m_sounding; }
    void Tick(bool changed) noexcept override;
    void ParametersSnapped() noexcept override;
    void Render(const float* const* inputs, float* const* outputs, int frames) noexcept override;
    void BeginBlock() noexcept override;
    void NoteOn(int key, int velocity) noexcept override;
    void NoteOff(int key) noexcept override;
    void ControlChange(int controller, int value) noexcept override;

    template <typename Move>
    void UpdateControls(Move move) noexcept;
    LoopMotion Motion() const noexcept;
    void FollowFolder();
    void Take(const LoopSet& loops) noexcept;
    bool EndKey(int key, float seconds) noexcept;
    CLoopVoice& FreeVoice() noexcept;
    void Filter(float* left, float* right, int frames) noexcept;

    CHostTime m_time;
    std::shared_ptr<const LoopSet> m_loops;                // the latest; host's threads
    std::vector<std::shared_ptr<const LoopSet>> m_former;  // that voices may still play
    std::atomic<const LoopSet*> m_offered{nullptr};        // to the render thread
    std::atomic<const LoopSet*> m_taken{nullptr};          // by the render thread
    std::atomic<bool> m_quiet{true};                       // no voice sounded as the last block began
    std::array<const Loop*, 128> m_keys{};
    std::array<CLoopVoice, kVoices> m_voices;
    Ramp m_left;
    Ramp m_right;
    std::array<CStateVariableFilter, 2> m_lowCuts;
    std::array<CStateVariableFilter, 2> m_highCuts;
    Ramp m_filtered;  // 0 while both cuts are out of the way: loops come out as they are
    FilterCoefficients m_lowCut{};
    FilterCoefficients m_highCut{};
    std::uint32_t m_started = 0;
    int m_silentFrames = 0;
    bool m_sounding = false;
};

}  // namespace quibplug
