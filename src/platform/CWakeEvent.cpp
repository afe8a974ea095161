// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CWakeEvent.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace quib {

CWakeEvent::CWakeEvent() : descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (descriptor < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
}

CWakeEvent::~CWakeEvent() { close(descriptor); }

void CWakeEvent::Signal() noexcept {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(descriptor, &one, sizeof one);
}

void CWakeEvent::Clear() noexcept {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto taken = read(descriptor, &count, sizeof count);
}

bool CWakeEvent::WaitFor(std::uint64_t nanoseconds) noexcept {
    pollfd entry{descriptor, POLLIN, 0};
    const timespec limit{static_cast<time_t>(nanoseconds / 1'000'000'000U),
                         static_cast<long>(nanoseconds % 1'000'000'000U)};
    return ppoll(&entry, 1, &limit, nullptr) > 0;
}

}  // namespace quib
