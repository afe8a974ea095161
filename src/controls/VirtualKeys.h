// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The key codes and flag words that controls are told, and how Qt's events become them.

#include <cstdint>

class QKeyEvent;
class QWheelEvent;

namespace quib {

namespace virtualKey {
constexpr int kBackspace = 8;
constexpr int kTab = 9;
constexpr int kReturn = 13;
constexpr int kShift = 16;
constexpr int kControl = 17;
constexpr int kAlt = 18;
constexpr int kEscape = 27;
constexpr int kSpace = 32;
constexpr int kEnd = 35;
constexpr int kHome = 36;
constexpr int kLeft = 37;
constexpr int kUp = 38;
constexpr int kRight = 39;
constexpr int kDown = 40;
constexpr int kDelete = 46;
constexpr int kKeypad0 = 96;  // up to 105
constexpr int kA = 65;
constexpr int kPlus = 107;
constexpr int kMinus = 109;
}  // namespace virtualKey

// Letters and digits are their upper-case ASCII codes; 0 for a key that controls are not told.
int VirtualKeyOf(const QKeyEvent& event);

// The word of a wheel message: the turn in the upper half, 120 a notch, positive away from the user; the
// buttons and modifiers in the lower half.
constexpr std::uint32_t kWheelShift = 4;
constexpr std::uint32_t kWheelControl = 8;
std::uint32_t WheelWordOf(const QWheelEvent& event);
// Notches of a wheel word, positive away from the user.
inline float NotchesOf(std::uint32_t word) noexcept {
    return static_cast<float>(static_cast<std::int16_t>(word >> 16U)) / 120.0F;
}

}  // namespace quib
