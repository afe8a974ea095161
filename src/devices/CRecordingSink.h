// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where a recording goes: a file of some format that takes interleaved 16-bit stereo. CLame
// drives it from the thread that flushes, never from a render thread.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace quib {

class CRecordingSink {
public:
    CRecordingSink() = default;
    CRecordingSink(const CRecordingSink&) = delete;
    CRecordingSink& operator=(const CRecordingSink&) = delete;
    virtual ~CRecordingSink() = default;

    // Creates the file and prepares for sound. Once, before all else; false on an error.
    virtual bool Open() = 0;

    // Whether the format has room for that many more values.
    virtual bool HasRoomFor(std::size_t /*values*/) const noexcept { return true; }

    // Adds whole frames, left then right. False on an error: then only Close() makes sense.
    virtual bool Write(std::span<const std::int16_t> values) = 0;

    // Makes what is on disk playable as it stands, in case the program does not live to close it.
    virtual bool Settle() = 0;

    // Ends the file; after an error it leaves what reached the disk playable.
    virtual bool Close() = 0;

    // Bytes of sound, or of encoded stream, in the file.
    virtual std::uint64_t BytesWritten() const noexcept = 0;

    // The first error, with the path and the reason; empty when there is none.
    virtual const std::string& Error() const noexcept = 0;
};

}  // namespace quib
