// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One setting that several threads may read and write at any time: a fader, a switch, a count.
// Controls bind to a pointer to it, the render thread reads it once a block. Values that must agree
// with each other do not belong here (see CPublished).

#include <atomic>
#include <cmath>
#include <cstdint>
#include <type_traits>

namespace quib {

template <class T>
class CSharedSetting {
public:
    CSharedSetting() noexcept : value(T()) {}
    explicit CSharedSetting(T initial) noexcept : value(initial) {}
    CSharedSetting(const CSharedSetting&) = delete;
    CSharedSetting& operator=(const CSharedSetting&) = delete;

    T Get() const noexcept { return value.load(std::memory_order_relaxed); }
    void Set(T next) noexcept { value.store(next, std::memory_order_relaxed); }
    bool IsOn() const noexcept { return Get() != T(); }
    // Bits of a whole number, of which several threads set and clear their own at the same time.
    void SetBits(T bits) noexcept requires std::is_integral_v<T> { value.fetch_or(bits, std::memory_order_relaxed); }
    void ClearBits(T bits) noexcept requires std::is_integral_v<T> {
        value.fetch_and(static_cast<T>(~bits), std::memory_order_relaxed);
    }

private:
    std::atomic<T> value;
    static_assert(std::atomic<T>::is_always_lock_free);
};

// Levels, positions of knobs, and the switches that files keep as real numbers.
using CValue = CSharedSetting<float>;

// Counts, channels, keys, and the switches that files keep as integers.
using CIntegerValue = CSharedSetting<std::int32_t>;

// The integer part of `value`, limited to [low, high]; `low` for a value that is no number.
inline int TruncateWithin(float value, int low, int high) noexcept {
    if (!(value > static_cast<float>(low))) return low;
    return value >= static_cast<float>(high) ? high : static_cast<int>(value);
}

}  // namespace quib
