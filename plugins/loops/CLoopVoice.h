// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One loop that sounds. Its place in beats runs with the tempo; the sound is read at its own speed
// and put back to that place stroke by stroke (slices), or by short cross-fades to where the wave
// looks alike (smooth: after W. Verhelst, M. Roelands, "An overlap-add technique based on waveform
// similarity", ICASSP 1993). At the loop's own tempo either gives the loop as it is. Belongs to one
// render thread; never allocates.

#include <cstdint>

#include "dsp/CCrossFade.h"
#include "loops/Loop.h"
#include "loops/LoopParameters.h"
#include "loops/Sinc.h"

namespace quibplug {

// What all voices share in a run of frames.
struct LoopMotion {
    double beatsPerFrame;  // 0: at the loop's own tempo
    double speed;          // of the loop's place: 0.5, 1 or 2
    double pitch;          // frames of the loop per frame
    LoopStretch stretch;
    float sliceFall;  // share by which a stroke weakens per frame
    float sampleRate;
};

class CLoopVoice {
public:
    void Start(const Loop& loop, float gain, bool once, std::uint32_t order) noexcept;
    // Falls silent by the fade.
    void End(float seconds, float sampleRate) noexcept;
    void Kill() noexcept { m_loop = nullptr; }

    bool Active() const noexcept { return m_loop != nullptr; }
    bool Ending() const noexcept { return m_ending; }
    const Loop* Playing() const noexcept { return m_loop; }
    std::uint32_t Order() const noexcept { return m_order; }
    int Frame() const noexcept { return static_cast<int>(m_place); }

    // Adds to both outputs.
    void Add(const LoopMotion& motion, float* left, float* right, int frames) noexcept;

private:
    // Reads on from a place, turning back at the end of its stroke rather than into the next one.
    struct Reader {
        double place = 0.0;
        double direction = 1.0;
        double lowest = 0.0;
        double highest = 0.0;  // 0: no bounds, goes round
        float level = 1.0f;

        void Move(double step, double length) noexcept;
        void TurnBack() noexcept;
    };
    struct Frame2 {
        float left;
        float right;
    };

    Frame2 Read(const Reader& reader) const noexcept;
    void Advance(const LoopMotion& motion, double step) noexcept;
    std::size_t SliceDue() const noexcept;
    void GoTo(Reader reader, const LoopMotion& motion, float fadeSeconds) noexcept;
    void FollowSlices(const LoopMotion& motion) noexcept;
    void FollowSmoothly(const LoopMotion& motion) noexcept;
    double MostAlike(double natural, double wanted, const LoopMotion& motion) const noexcept;
    float Likeness(int first, int second, int window) const noexcept;

    const SincTable& m_sinc = SincTable::Shared();
    const Loop* m_loop = nullptr;
    double m_place = 0.0;  // where the loop is by the tempo, in its frames
    std::size_t m_slice = 0;
    Reader m_present;
    Reader m_past;
    CCrossFade m_fade;
    int m_untilLook = 0;  // frames to the next comparison of place and sound
    float m_gain = 0.0f;
    float m_fall = 0.0f;  // of the gain, per frame, once it ends
    float m_release = 1.0f;
    bool m_once = false;
    bool m_ending = false;
    std::uint32_t m_order = 0;
};

}  // namespace quibplug
