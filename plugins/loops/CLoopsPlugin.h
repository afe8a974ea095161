// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// "QUIB Loops": plays the Wave files of the program's Loops folder in time with the host, one loop a
// key. See CPluginBase for its threads.

#include <array>
#include <memory>

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

private:
    static constexpr int kVoices = 24;

    void SampleRateChanged() noexcept override;
    void Reset() noexcept override;
    bool Sounding() const noexcept override { return m_sounding; }
    void Tick(bool changed) noexcept override;
    void ParametersSnapped() noexcept override;
    void Render(const float* const* inputs, float* const* outputs, int frames) noexcept override;
    void BeginBlock() noexcept override { m_time.Read(Effect()); }
    void NoteOn(int key, int velocity) noexcept override;
    void NoteOff(int key) noexcept override;
    void ControlChange(int controller, int value) noexcept override;

    template <typename Move>
    void UpdateControls(Move move) noexcept;
    LoopMotion Motion() const noexcept;
    bool EndKey(int key, float seconds) noexcept;
    CLoopVoice& FreeVoice() noexcept;
    void Filter(float* left, float* right, int frames) noexcept;

    CHostTime m_time;
    std::shared_ptr<const LoopSet> m_loops;
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
