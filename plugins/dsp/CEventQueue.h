// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The MIDI messages of the coming block, in the order of their frames. Filled and emptied on the
// render thread; never allocates. When it runs full, note-ons are refused first, so that no note is
// left hanging.

#include <array>
#include <cstddef>
#include <cstdint>

namespace quibplug {

struct MidiMessage {
    std::int32_t frame;  // after the start of the block
    std::uint8_t status;
    std::uint8_t first;
    std::uint8_t second;
};

class CEventQueue {
public:
    static constexpr std::size_t kCapacity = 2048;

    void Clear() noexcept { m_count = m_next = 0; }

    // Keeps equal frames in the order of their arrival; negative frames count as 0.
    void Push(MidiMessage message) noexcept {
        const bool noteOn = (message.status & 0xf0) == 0x90 && message.second != 0;
        if (m_count >= (noteOn ? kCapacity * 3 / 4 : kCapacity)) return;
        if (message.frame < 0) message.frame = 0;
        std::size_t place = m_count++;
        for (; place > m_next && m_messages[place - 1].frame > message.frame; --place) {
            m_messages[place] = m_messages[place - 1];
        }
        m_messages[place] = message;
    }

    // The next message at or before `frame`, or null.
    const MidiMessage* TakeUntil(std::int32_t frame) noexcept {
        if (m_next == m_count || m_messages[m_next].frame > frame) return nullptr;
        return &m_messages[m_next++];
    }
    // The frame of the next message, or `end` if that comes first.
    std::int32_t NextFrame(std::int32_t end) const noexcept {
        return m_next < m_count && m_messages[m_next].frame < end ? m_messages[m_next].frame : end;
    }

    // The block is over: what lies beyond it moves into the following one.
    void EndBlock(std::int32_t frames) noexcept {
        std::size_t kept = 0;
        for (std::size_t i = m_next; i < m_count; ++i) {
            m_messages[kept] = m_messages[i];
            m_messages[kept++].frame -= frames;
        }
        m_count = kept;
        m_next = 0;
    }

private:
    std::array<MidiMessage, kCapacity> m_messages;
    std::size_t m_count = 0;
    std::size_t m_next = 0;
};

}  // namespace quibplug
