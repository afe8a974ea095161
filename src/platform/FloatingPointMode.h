// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Floating-point mode of the calling thread. Render threads flush denormal numbers to zero;
// foreign code that changes the mode is wrapped so that it cannot.

namespace quib {

// The mode as a machine word, as read from the processor's control register.
unsigned ReadFloatingPointMode() noexcept;
void WriteFloatingPointMode(unsigned mode) noexcept;

// Makes results below the smallest normal number, and such operands, zero. Called first thing on
// every thread that renders.
void SetFlushToZero() noexcept;

// Puts the mode back as it was, whatever happens in its scope.
class CFloatingPointScope {
public:
    CFloatingPointScope() noexcept : saved(ReadFloatingPointMode()) {}
    ~CFloatingPointScope() { WriteFloatingPointMode(saved); }
    CFloatingPointScope(const CFloatingPointScope&) = delete;
    CFloatingPointScope& operator=(const CFloatingPointScope&) = delete;

private:
    unsigned saved;
};

}  // namespace quib
