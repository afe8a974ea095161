// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Zero-filled memory that ends at a page nobody may touch: code that writes past its end is stopped
// at the first byte. Pages cost memory only once touched. Not for render threads (they use it only).

#include <cstddef>
#include <utility>

namespace quib {

class CGuardedMemory {
public:
    CGuardedMemory() = default;
    // Throws std::bad_alloc when the system refuses. `bytes` 0 gives an empty object.
    explicit CGuardedMemory(std::size_t bytes);
    ~CGuardedMemory();
    CGuardedMemory(CGuardedMemory&& other) noexcept { Swap(other); }
    CGuardedMemory& operator=(CGuardedMemory&& other) noexcept {
        Swap(other);
        return *this;
    }

    // First of the usable bytes, aligned to 64; the last one is directly followed by the guard page
    // up to that alignment.
    std::byte* Data() const noexcept { return data; }
    std::size_t Size() const noexcept { return size; }

private:
    void Swap(CGuardedMemory& other) noexcept {
        std::swap(mapping, other.mapping);
        std::swap(mappingSize, other.mappingSize);
        std::swap(data, other.data);
        std::swap(size, other.size);
    }

    void* mapping = nullptr;
    std::size_t mappingSize = 0;
    std::byte* data = nullptr;
    std::size_t size = 0;
};

}  // namespace quib
