// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where a published thing or a single value of the project lives, with what keeps it alive: steps of undo
// hold places, so that what they change outlives its removal. Editing thread.

#include <memory>

#include "document/Change.h"
#include "model/CInstrument.h"

namespace quib {

template <class T>
struct Place {
    std::shared_ptr<CPublished<T>> target;  // shares the life of its owner
    Change change;                          // told after each publication
};

// A member of `owner` that shares its life; an empty owner for what lives as long as the engine.
template <class Owner, class T>
std::shared_ptr<T> Part(const std::shared_ptr<Owner>& owner, T& member) {
    return std::shared_ptr<T>(owner, &member);
}
template <class T>
std::shared_ptr<T> EnginePart(T& member) {
    return std::shared_ptr<T>(std::shared_ptr<void>(), &member);
}

inline Place<CPattern> PatternPlace(const std::shared_ptr<CInstrument>& instrument, int pattern) {
    return {Part(instrument, instrument->patterns[static_cast<std::size_t>(pattern)]),
            {EChange::kPattern, instrument->Id(), pattern}};
}

inline Place<Playlist> PlaylistPlace(const std::shared_ptr<CInstrument>& instrument) {
    return {Part(instrument, instrument->playlist), {EChange::kPlaylist, instrument->Id()}};
}

inline Place<BallSoundList> BallPlace(const std::shared_ptr<CInstrument>& instrument) {
    return {Part(instrument, instrument->ballSounds), {EChange::kBalls, instrument->Id()}};
}

}  // namespace quib
