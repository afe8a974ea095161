// SPDX-License-Identifier: GPL-3.0-or-later
// Has the kernel report the system calls of watched threads: each becomes a SIGSYS, whose handler counts
// the call, does it from code that the kernel lets through, and returns its result.
#include <atomic>
#include <cstdint>

#include "realtime/ForbiddenCalls.h"

#if defined(__linux__) && defined(__x86_64__)

#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>
#include <csignal>

// The code that may enter the kernel: a system call with its number and six arguments in the order of a
// function's, and the return from a signal handler.
__asm__(R"(
    .pushsection .text
    .balign 16
QuibAllowedBegin:
QuibSystemCall:
    mov %rdi, %rax
    mov %rsi, %rdi
    mov %rdx, %rsi
    mov %rcx, %rdx
    mov %r8, %r10
    mov %r9, %r8
    mov 8(%rsp), %r9
    syscall
    ret
QuibSignalReturn:
    mov $15, %eax
    syscall
    nop
QuibAllowedEnd:
    .popsection
)");

extern "C" {
extern const char QuibAllowedBegin[];
extern const char QuibAllowedEnd[];
void QuibSignalReturn();
long QuibSystemCall(long number, long a, long b, long c, long d, long e, long f);
}

namespace quib {

namespace {

constexpr int kSetDispatch = 59;  // PR_SET_SYSCALL_USER_DISPATCH
constexpr unsigned long kDispatchOn = 1;
constexpr char kAllow = 0;
constexpr char kReport = 1;

// Read by the kernel at every system call of every watched thread.
volatile char selector = kAllow;
std::atomic<long> wakeUps{0};
std::atomic<long> others{0};
std::atomic<long> lastOther{-1};

void OnSystemCall(int /*signal*/, siginfo_t* information, void* memory) {
    auto& registers = static_cast<ucontext_t*>(memory)->uc_mcontext.gregs;
    const long number = information->si_syscall;
    if (IsWatched()) {
        if (number == SYS_futex) {
            wakeUps.fetch_add(1, std::memory_order_relaxed);
        } else {
            others.fetch_add(1, std::memory_order_relaxed);
            lastOther.store(number, std::memory_order_relaxed);
        }
    }
    registers[REG_RAX] = QuibSystemCall(number, registers[REG_RDI], registers[REG_RSI], registers[REG_RDX],
                                        registers[REG_R10], registers[REG_R8], registers[REG_R9]);
}

// As the kernel takes it: the C library's own function would bring its own way back from the handler.
struct KernelAction {
    void (*handler)(int, siginfo_t*, void*);
    unsigned long flags;
    void (*restorer)();
    std::uint64_t mask;
};

bool InstallHandler() noexcept {
    constexpr unsigned long kRestorer = 0x04000000;
    const KernelAction action{&OnSystemCall, SA_SIGINFO | kRestorer, &QuibSignalReturn, 0};
    return syscall(SYS_rt_sigaction, SIGSYS, &action, nullptr, sizeof action.mask) == 0;
}

}  // namespace

bool ReportSystemCallsOfThisThread() noexcept {
    static const bool installed = InstallHandler();
    return installed && prctl(kSetDispatch, kDispatchOn, reinterpret_cast<unsigned long>(QuibAllowedBegin),
                              static_cast<unsigned long>(QuibAllowedEnd - QuibAllowedBegin), &selector) == 0;
}

void ReportSystemCalls(bool on) noexcept { selector = on ? kReport : kAllow; }

void TakeSystemCalls(ForbiddenCalls& into) noexcept {
    into.wakeUps = wakeUps.exchange(0);
    into.systemCalls = others.exchange(0);
    into.lastSystemCall = lastOther.exchange(-1);
}

}  // namespace quib

#else

namespace quib {

bool ReportSystemCallsOfThisThread() noexcept { return false; }
void ReportSystemCalls(bool) noexcept {}
void TakeSystemCalls(ForbiddenCalls&) noexcept {}

}  // namespace quib

#endif
