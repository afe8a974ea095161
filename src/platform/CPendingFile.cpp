// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CPendingFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "platform/CAtomicFile.h"

namespace quib {

namespace fs = std::filesystem;

namespace {

std::string ReasonOf(int number) { return std::generic_category().message(number); }

}  // namespace

CPendingFile::~CPendingFile() {
    std::error_code ignored;
    if (!working.empty()) fs::remove(working, ignored);
}

bool CPendingFile::Create(std::string& error) {
    std::error_code failure;
    fs::create_directories(path.parent_path(), failure);
    if (failure) return Fail(failure.message(), error);
    const auto status = fs::status(path, failure);
    if (fs::is_directory(status)) return Fail(ReasonOf(EISDIR), error);
    if (fs::exists(status) && ::access(path.c_str(), W_OK) != 0) return Fail(ReasonOf(errno), error);
    const fs::path name = CAtomicFile::TemporaryFor(path);
    const int file = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFile);
    if (file < 0) return Fail(ReasonOf(errno), error);
    ::close(file);
    working = name;
    return true;
}

bool CPendingFile::Keep(std::string& error) {
    const int file = ::open(working.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return Fail(ReasonOf(errno), error);
    const int failed = ::fsync(file) == 0 ? 0 : errno;
    ::close(file);
    if (failed != 0) return Fail(ReasonOf(failed), error);
    if (::rename(working.c_str(), path.c_str()) != 0) return Fail(ReasonOf(errno), error);
    working.clear();
    return true;
}

bool CPendingFile::Fail(const std::string& reason, std::string& error) const {
    error = "Cannot write \"" + path.string() + "\": " + reason;
    return false;
}

}  // namespace quib
