// SPDX-License-Identifier: GPL-3.0-or-later
#include "loops/CLoopVoice.h"

#include <algorithm>
#include <cmath>

namespace quibplug {

namespace {

constexpr float kStrokeFadeSeconds = 0.002f;
constexpr float kSmoothFadeSeconds = 0.012f;
constexpr float kLookSeconds = 0.004f;
// How far the sound may lag behind its place, and run ahead of it: a stroke begins a little before it
// is heard, so what is ahead by less plays nothing twice. After a jump it lags.
constexpr double kLagSeconds = 0.020;
constexpr double kLeadSeconds = 0.002;
constexpr double kLandSeconds = 0.001;
constexpr double kTailSeconds = 0.06;  // of a stroke, to go to and fro in when the next one is late
constexpr double kSameFrames = 1.5;
constexpr int kLookStep = 4;
constexpr int kWindowStep = 3;
constexpr float kUndimmed = 0.99f;

}  // namespace

void CLoopVoice::Start(const Loop& loop, float gain, bool once, std::uint32_t order) noexcept {
    m_loop = &loop;
    m_place = 0.0;
    m_slice = 0;
    m_present = {};
    m_past = {};
    m_fade.Stop();
    m_untilLook = 0;
    m_gain = gain;
    m_release = 1.0f;
    m_once = once;
    m_ending = false;
    m_order = order;
}

void CLoopVoice::End(float seconds, float sampleRate) noexcept {
    m_ending = true;
    m_fall = 1.0f / std::max(1.0f, seconds * sampleRate);
}

void CLoopVoice::Reader::Move(double step, double length) noexcept {
    place += direction * step;
    if (highest <= 0.0 && place >= length) place -= length;
}

void CLoopVoice::Reader::TurnBack() noexcept {
    if (highest <= 0.0) return;
    if (place > highest) {
        place = 2.0 * highest - place;
        direction = -1.0;
    } else if (direction < 0.0 && place < lowest) {
        place = 2.0 * lowest - place;
        direction = 1.0;
    }
    place = std::clamp(place, 0.0, highest);
}

CLoopVoice::Frame2 CLoopVoice::Read(const Reader& reader) const noexcept {
    const auto whole = static_cast<int>(std::floor(reader.place));
    const auto at = Loop::IndexOf(whole);
    const auto between = static_cast<float>(reader.place - whole);
    if (between == 0.0f) return {reader.level * m_loop->left[at], reader.level * m_loop->right[at]};
    const SincTaps taps = m_sinc.Between(between);
    const std::size_t first = at + 1 - kSincTaps / 2;
    float left = 0.0f;
    float right = 0.0f;
    for (std::size_t i = 0; i < kSincTaps; ++i) {
        left += taps[i] * m_loop->left[first + i];
        right += taps[i] * m_loop->right[first + i];
    }
    return {reader.level * left, reader.level * right};
}

void CLoopVoice::Advance(const LoopMotion& motion, double step) noexcept {
    const double length = m_loop->frames;
    m_place += step;
    if (m_place >= length && m_once) {
        m_place = length;
        if (!m_ending) End(kStrokeFadeSeconds, motion.sampleRate);
    } else if (m_place >= length) {
        m_place -= length;
        m_slice = m_loop->slices.size();  // the first one is due
    }
    m_present.Move(motion.pitch, length);
    m_present.level *= 1.0f - motion.sliceFall;
    if (m_fade.Running()) {
        m_past.Move(motion.pitch, length);
        m_past.TurnBack();
        m_past.level *= 1.0f - motion.sliceFall;
    }
}

// The stroke at the present place.
std::size_t CLoopVoice::SliceDue() const noexcept {
    const std::size_t count = m_loop->slices.size();
    std::size_t due = m_slice < count ? m_slice : 0;
    while (due + 1 < count && m_place >= m_loop->slices[due + 1]) ++due;
    return due;
}

// To a place in a stroke, or no further than by rounding if the sound is there anyway.
void CLoopVoice::GoTo(Reader reader, const LoopMotion& motion, float fadeSeconds) noexcept {
    const double length = m_loop->frames;
    double apart = m_present.place - reader.place;
    apart -= length * std::round(apart / length);
    const bool there = std::fabs(apart) < kSameFrames * motion.pitch && m_present.direction > 0.0;
    if (there && m_present.level > kUndimmed) {
        reader.place += apart;
        m_present = reader;
        return;
    }
    m_past = m_present;
    m_present = reader;
    m_fade.Start(fadeSeconds, motion.sampleRate);
}

void CLoopVoice::FollowSlices(const LoopMotion& motion) noexcept {
    if (m_fade.Running()) return;
    const std::size_t due = SliceDue();
    const bool smoothBefore = m_present.highest <= 0.0;
    if (due == m_slice && !smoothBefore) return;
    m_slice = due;
    Reader stroke;
    stroke.place = smoothBefore && m_place > 0.0 ? m_place : m_loop->slices[due];
    stroke.highest = m_loop->SliceEnd(due);
    stroke.lowest =
        std::max(0.5 * (m_loop->slices[due] + stroke.highest), stroke.highest - kTailSeconds * m_loop->sampleRate);
    GoTo(stroke, motion, kStrokeFadeSeconds);
}

void CLoopVoice::FollowSmoothly(const LoopMotion& motion) noexcept {
    m_present.highest = 0.0;
    m_present.direction = 1.0;
    if (m_fade.Running()) return;
    Reader next;
    if (const std::size_t due = SliceDue(); due != m_slice) {  // strokes are always in time
        m_slice = due;
        if (due > 0 || m_loop->strikesFirst) {
            next.place = m_place;
            GoTo(next, motion, kStrokeFadeSeconds);
            return;
        }
    }
    if (--m_untilLook > 0) return;
    m_untilLook = static_cast<int>(kLookSeconds * motion.sampleRate);
    const double length = m_loop->frames;
    double drift = m_present.place - m_place;
    drift -= length * std::round(drift / length);
    const bool near = drift > -kLagSeconds * m_loop->sampleRate && drift < kLeadSeconds * m_loop->sampleRate;
    if (near && m_present.level > kUndimmed) return;
    next.place = MostAlike(m_present.place, m_place, motion);
    GoTo(next, motion, kSmoothFadeSeconds);
}

// Not far before `wanted`, the place from which the wave goes on most as it does from `natural`.
double CLoopVoice::MostAlike(double natural, double wanted, const LoopMotion& motion) const noexcept {
    const auto from = static_cast<int>(natural);
    const auto about = static_cast<int>(wanted);
    const auto earliest = about - static_cast<int>(kLagSeconds * m_loop->sampleRate);
    const auto latest = about - static_cast<int>(kLandSeconds * m_loop->sampleRate);
    const auto window = static_cast<int>(static_cast<double>(kSmoothFadeSeconds) * m_loop->sampleRate * motion.pitch);
    int best = latest;
    float closest = Likeness(latest, from, window);
    const auto look = [&](int place) {
        const float likeness = Likeness(place, from, window);
        if (likeness > closest) {
            closest = likeness;
            best = place;
        }
    };
    for (int place = earliest; place < latest; place += kLookStep) look(place);
    const int centre = best;
    for (int place = centre - kLookStep + 1; place < centre + kLookStep; ++place) look(place);
    const double length = m_loop->frames;
    const double place = best + (natural - from);
    return place - length * std::floor(place / length);
}

// Of the waves from two frames on: their correlation, where it is positive, against the first one's energy.
float CLoopVoice::Likeness(int first, int second, int window) const noexcept {
    const int length = m_loop->frames;
    const auto middle = [&](int frame) {
        const int inside = frame < 0 ? frame + length : (frame >= length ? frame - length : frame);
        const auto at = Loop::IndexOf(inside);
        return m_loop->left[at] + m_loop->right[at];
    };
    float product = 0.0f;
    float energy = 1e-9f;
    for (int i = 0; i < window; i += kWindowStep) {
        const float there = middle(first + i);
        product += there * middle(second + i);
        energy += there * there;
    }
    return product * std::fabs(product) / energy;
}

void CLoopVoice::Add(const LoopMotion& shared, float* left, float* right, int frames) noexcept {
    LoopMotion motion = shared;
    const double resampled = m_loop->sampleRate / static_cast<double>(shared.sampleRate);
    if (resampled != 1.0) motion.pitch *= resampled;
    const double plain = motion.beatsPerFrame > 0.0 ? motion.beatsPerFrame * m_loop->FramesPerBeat() : resampled;
    const double step = motion.speed * plain;
    for (int i = 0; i < frames && m_loop != nullptr; ++i) {
        if (motion.stretch == LoopStretch::kSlices) {
            FollowSlices(motion);
        } else {
            FollowSmoothly(motion);
        }
        m_present.TurnBack();
        Frame2 sound = Read(m_present);
        if (m_fade.Running()) {
            const Frame2 before = Read(m_past);
            const float share = m_fade.ShareAfter(1);
            sound.left = before.left + share * (sound.left - before.left);
            sound.right = before.right + share * (sound.right - before.right);
            m_fade.Advance(1);
        }
        const float gain = m_gain * m_release;
        left[i] += gain * sound.left;
        right[i] += gain * sound.right;
        Advance(motion, step);
        if (!m_ending) continue;
        m_release -= m_fall;
        if (m_release <= 0.0f) Kill();
    }
}

}  // namespace quibplug
