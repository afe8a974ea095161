// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/CGrowingFile.h"

#include <cerrno>
#include <system_error>

namespace quib {

bool CGrowingFile::Open() {
    file.pubsetbuf(nullptr, 0);
    errno = 0;
    const auto mode = std::ios::out | std::ios::binary | std::ios::trunc;
    return file.open(filePath, mode) != nullptr || FailWithSystemReason();
}

bool CGrowingFile::Append(std::span<const std::uint8_t> bytes) {
    errno = 0;
    const std::size_t written = Put(bytes);
    size += written;
    return written == bytes.size() || FailWithSystemReason();
}

bool CGrowingFile::Overwrite(std::uint64_t offset, std::span<const std::uint8_t> bytes) {
    errno = 0;
    const bool done = file.pubseekpos(static_cast<std::streamoff>(offset)) != std::streampos(-1) &&
                      Put(bytes) == bytes.size() &&
                      file.pubseekpos(static_cast<std::streamoff>(size)) != std::streampos(-1);
    return done || FailWithSystemReason();
}

bool CGrowingFile::Close() {
    errno = 0;
    if (file.is_open() && file.close() == nullptr) return FailWithSystemReason();
    return error.empty();
}

bool CGrowingFile::Fail(const std::string& reason) {
    if (error.empty()) error = "Cannot write \"" + filePath.string() + "\": " + reason;
    return false;
}

std::size_t CGrowingFile::Put(std::span<const std::uint8_t> bytes) {
    const auto length = static_cast<std::streamsize>(bytes.size());
    return static_cast<std::size_t>(file.sputn(reinterpret_cast<const char*>(bytes.data()), length));
}

bool CGrowingFile::FailWithSystemReason() {
    const int reason = errno;
    return Fail(reason != 0 ? std::generic_category().message(reason) : "unknown reason");
}

}  // namespace quib
