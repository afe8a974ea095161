// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CStripPieces.h"

#include <algorithm>

#include "engine/Silence.h"

namespace quib {

namespace {

// Output pair of the drum machine for a send, behind its main pair.
constexpr int SendOutput(int send) noexcept { return 2 * send + 2; }

// An equaliser keeps itself awake with less than can be heard: what is begun anew is then the same at any time.
void ForgetSilence(EqMemory& memory) noexcept {
    constexpr float kUnheard = 1e-9F;
    const auto [least, most] = std::minmax({memory.x1, memory.x2, memory.y1, memory.y2});
    if (-kUnheard < least && most < kUnheard) memory = {};
}

// What was not heard begins where it belongs, not with a fade.
void Settle(StripState& state, const StripTargets& targets) noexcept {
    state.gainLeft = targets.gainLeft;
    state.gainRight = targets.gainRight;
    state.eqAmount = targets.eqAmount;
    for (EqBandState& band : state.eqBands) {
        ForgetSilence(band.left);
        ForgetSilence(band.right);
    }
    for (std::size_t send = 0; send < kSendCount; ++send) {
        state.sendGain[send] = std::max(targets.send[send], targets.holdSend[send] ? kHeldSendGain : 0.0F);
    }
}

StripJob From(const StripJob& job, int frame) noexcept {
    StripJob piece = job;
    piece.inLeft += frame;
    piece.inRight += frame;
    piece.planes.left += frame;
    piece.planes.right += frame;
    piece.planes.gainLeft += frame;
    piece.planes.gainRight += frame;
    for (std::size_t send = 0; send < kSendCount; ++send) {
        piece.planes.sendGain[send] += frame;
        if (piece.extraLeft[send] == nullptr) continue;
        piece.extraLeft[send] += frame;
        piece.extraRight[send] += frame;
    }
    piece.inputsStay = false;
    return piece;
}

// Constant gains of a piece as courses, since those of another piece differ.
void SpreadGains(const StripJob& piece, int frames) noexcept {
    for (std::size_t send = 0; send < kSendCount; ++send) {
        if (piece.sendMask[send] == 0) std::fill_n(piece.planes.sendGain[send], frames, piece.state->sendGain[send]);
    }
    if (piece.extraLeft[0] == nullptr || (piece.addsAnyExtra && piece.gainMask != 0)) return;
    std::fill_n(piece.planes.gainLeft, frames, piece.addsAnyExtra ? piece.state->gainLeft : 0.0F);
    std::fill_n(piece.planes.gainRight, frames, piece.addsAnyExtra ? piece.state->gainRight : 0.0F);
}

}  // namespace

bool CStripPieces::CrossfadeActs(const BlockInstrument& entry) const noexcept {
    const ChannelStrip& strip = entry.instrument->strip;
    return crossfade.size() > 1 && (strip.crossfadeA.IsOn() || strip.crossfadeB.IsOn());
}

bool CStripPieces::CrossfadeActsAt(const BlockInstrument& entry, int frame) const noexcept {
    return CrossfadeActs(entry) &&
           std::any_of(crossfade.begin(), crossfade.end(), [&](const auto& gains) { return gains.frame == frame; });
}

void CStripPieces::TakeEqualizer(CInstrument& instrument) noexcept {
    EqBandUpdate update;
    while (instrument.eqPending.TryPop(update)) ApplyEqUpdate(instrument.play.strip, update);
}

void CStripPieces::RenderTo(const BlockInstrument& entry, int end) noexcept {
    if (job == nullptr || end <= begin) return;
    const bool hadExtra[kSendCount] = {job->addsExtra[0], job->addsExtra[1], job->addsExtra[2], job->addsExtra[3]};
    const bool first = begin == 0;
    Fill(entry, end);
    StripJob piece = From(*job, begin);
    kernels.processStrips(&piece, 1, end - begin);
    SpreadGains(piece, end - begin);
    job->mixLeft = job->planes.left;
    job->mixRight = job->planes.right;
    job->mixGainLeft = job->mixGainRight = 1;
    job->gainMask = ~std::size_t{0};
    std::fill_n(job->sendMask, kSendCount, ~std::size_t{0});
    std::copy_n(job->planes.sendGain, kSendCount, job->sendCourse);
    job->addsAnyExtra = piece.addsAnyExtra || (!first && job->addsAnyExtra);
    for (std::size_t send = 0; send < kSendCount; ++send)
        job->addsExtra[send] = piece.addsExtra[send] || (!first && hadExtra[send]);
    job->isRendered = true;
    begin = end;
}

void CStripPieces::Finish(const BlockInstrument& entry) noexcept {
    if (begin > 0) return RenderTo(entry, block.frames);
    if (job != nullptr) Fill(entry, block.frames);
}

void CStripPieces::Fill(const BlockInstrument& entry, int end) noexcept {
    CInstrument& instrument = *entry.instrument;
    const ChannelStrip& strip = instrument.strip;
    StripInput values{ValuesOf(strip), strip.soloMuted.Get()};
    values.hasSendOutputs = entry.plugin->FeedsSends() && entry.plugin->OutputCount() >= SendOutput(kSendCount);
    for (int send = 0; values.hasSendOutputs && send < kSendCount; ++send) {
        job->extraLeft[send] = entry.Output(SendOutput(send));
        job->extraRight[send] = entry.Output(SendOutput(send) + 1);
    }
    auto gains = crossfade.end() - 1;
    while (gains->frame > begin) --gains;
    for (std::size_t send = 0; send < kSendCount; ++send) job->sendUnheard[send] = block.sharedEffects[send] == nullptr;
    job->inLeft = entry.left;
    job->inRight = entry.right;
    job->state = &instrument.play.strip;
    job->targets = MakeStripTargets(values, tables, gains->a, gains->b);
    job->planes = MakeStripPlanes(*instrument.play.planes);
    job->inputsStay = true;  // nothing is rendered again before the strips are mixed
    InstrumentPlayState& play = instrument.play;
    const bool unheard = begin == 0 && BeginsPlaying(block) && play.stripSilence == kSettlingFrames;
    if (unheard || play.stripSilence < 0) Settle(*job->state, job->targets);
    play.stripSilence = SilenceAfter(play.stripSilence, entry.left + begin, entry.right + begin, end - begin);
}

}  // namespace quib
