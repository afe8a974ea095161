// SPDX-License-Identifier: GPL-3.0-or-later
#include "realtime/ForbiddenCalls.h"

#include <dlfcn.h>
#include <pthread.h>
#include <semaphore.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>

namespace quib {

namespace {

std::atomic<bool> watching{false};
std::atomic<bool> watchNewThreads{false};
std::array<std::atomic<long>, 3> counts{};
// The calling thread renders; in a thread of the pool from its first to its last moment.
thread_local bool watched = false;

struct ThreadStart {
    void* (*run)(void*);
    void* argument;
};

void* RunWatched(void* memory) {
    auto* const given = static_cast<ThreadStart*>(memory);
    const ThreadStart start = *given;
    delete given;
    ReportSystemCallsOfThisThread();
    watched = true;
    return start.run(start.argument);
}

}  // namespace

bool IsWatched() noexcept { return watched && watching.load(std::memory_order_relaxed); }

void NoteForbidden(Forbidden kind) noexcept {
    if (IsWatched()) counts[static_cast<std::size_t>(kind)].fetch_add(1, std::memory_order_relaxed);
}

bool PrepareWatch() {
    for (auto& count : counts) count = 0;
    ForbiddenCalls none;
    TakeSystemCalls(none);
    watchNewThreads = true;
    return ReportSystemCallsOfThisThread();
}

void BeginWatch() {
    watched = true;
    watching = true;
    ReportSystemCalls(true);
}

ForbiddenCalls EndWatch() {
    ReportSystemCalls(false);
    watching = false;
    watched = false;
    watchNewThreads = false;
    ForbiddenCalls calls{counts[0].exchange(0), counts[1].exchange(0), counts[2].exchange(0), 0, 0, -1};
    TakeSystemCalls(calls);
    return calls;
}

}  // namespace quib

using quib::Forbidden;
using quib::NoteForbidden;

// The functions below carry the C library's names as symbols only: their declarations differ in what
// they promise about exceptions, and the compiler thinks it knows what functions of these names do.
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

void* CountedMalloc(std::size_t size) __asm__("malloc");
void* CountedMalloc(std::size_t size) {
    NoteForbidden(Forbidden::Allocation);
    return __libc_malloc(size);
}
void* CountedCalloc(std::size_t count, std::size_t size) __asm__("calloc");
void* CountedCalloc(std::size_t count, std::size_t size) {
    NoteForbidden(Forbidden::Allocation);
    return __libc_calloc(count, size);
}
void* CountedRealloc(void* memory, std::size_t size) __asm__("realloc");
void* CountedRealloc(void* memory, std::size_t size) {
    NoteForbidden(Forbidden::Allocation);
    return __libc_realloc(memory, size);
}
void* CountedMemalign(std::size_t alignment, std::size_t size) __asm__("memalign");
void* CountedMemalign(std::size_t alignment, std::size_t size) {
    NoteForbidden(Forbidden::Allocation);
    return __libc_memalign(alignment, size);
}
void* CountedAlignedAlloc(std::size_t alignment, std::size_t size) __asm__("aligned_alloc");
void* CountedAlignedAlloc(std::size_t alignment, std::size_t size) { return CountedMemalign(alignment, size); }
int CountedPosixMemalign(void** memory, std::size_t alignment, std::size_t size) __asm__("posix_memalign");
int CountedPosixMemalign(void** memory, std::size_t alignment, std::size_t size) {
    *memory = CountedMemalign(alignment, size);
    return *memory != nullptr ? 0 : ENOMEM;
}
void CountedFree(void* memory) __asm__("free");
void CountedFree(void* memory) {
    if (memory != nullptr) NoteForbidden(Forbidden::Free);
    __libc_free(memory);
}

}  // extern "C"

namespace {

// The function of the C library itself. Conditions have an older version under the same name.
template <class Function>
Function* Next(std::atomic<Function*>& known, const char* name) {
    Function* next = known.load(std::memory_order_relaxed);
    if (next == nullptr) {
        void* found = dlvsym(RTLD_NEXT, name, "GLIBC_2.3.2");
        if (found == nullptr) found = dlsym(RTLD_NEXT, name);
        next = reinterpret_cast<Function*>(found);
        known.store(next, std::memory_order_relaxed);
    }
    return next;
}

}  // namespace

// A function that locks or wakes: counted, then done by the C library.
#define QUIB_COUNTED_LOCK(name, parameters, ...)                       \
    extern "C" int Counted_##name parameters __asm__(#name);           \
    extern "C" int Counted_##name parameters {                         \
        static constinit std::atomic<int(*) parameters> next{nullptr}; \
        NoteForbidden(Forbidden::Lock);                                \
        return Next(next, #name)(__VA_ARGS__);                         \
    }

QUIB_COUNTED_LOCK(pthread_mutex_lock, (pthread_mutex_t * mutex), mutex)
QUIB_COUNTED_LOCK(pthread_mutex_trylock, (pthread_mutex_t * mutex), mutex)
QUIB_COUNTED_LOCK(pthread_mutex_timedlock, (pthread_mutex_t * mutex, const timespec* until), mutex, until)
QUIB_COUNTED_LOCK(pthread_rwlock_rdlock, (pthread_rwlock_t * lock), lock)
QUIB_COUNTED_LOCK(pthread_rwlock_wrlock, (pthread_rwlock_t * lock), lock)
QUIB_COUNTED_LOCK(pthread_rwlock_tryrdlock, (pthread_rwlock_t * lock), lock)
QUIB_COUNTED_LOCK(pthread_rwlock_trywrlock, (pthread_rwlock_t * lock), lock)
QUIB_COUNTED_LOCK(pthread_spin_lock, (pthread_spinlock_t * lock), lock)
QUIB_COUNTED_LOCK(pthread_cond_wait, (pthread_cond_t * condition, pthread_mutex_t* mutex), condition, mutex)
QUIB_COUNTED_LOCK(pthread_cond_timedwait, (pthread_cond_t * condition, pthread_mutex_t* mutex, const timespec* until),
                  condition, mutex, until)
QUIB_COUNTED_LOCK(pthread_cond_signal, (pthread_cond_t * condition), condition)
QUIB_COUNTED_LOCK(pthread_cond_broadcast, (pthread_cond_t * condition), condition)
QUIB_COUNTED_LOCK(sem_wait, (sem_t * semaphore), semaphore)
QUIB_COUNTED_LOCK(sem_trywait, (sem_t * semaphore), semaphore)
QUIB_COUNTED_LOCK(sem_post, (sem_t * semaphore), semaphore)
// Taken by the first use of an object that is static inside a function.
QUIB_COUNTED_LOCK(__cxa_guard_acquire, (void* guard), guard)

using StartFunction = void* (*)(void*);
using CreateFunction = int(pthread_t*, const pthread_attr_t*, StartFunction, void*);

extern "C" int WatchedCreate(pthread_t* thread, const pthread_attr_t* attributes, StartFunction run,
                             void* argument) __asm__("pthread_create");
extern "C" int WatchedCreate(pthread_t* thread, const pthread_attr_t* attributes, StartFunction run, void* argument) {
    static constinit std::atomic<CreateFunction*> next{nullptr};
    CreateFunction* const create = Next(next, "pthread_create");
    if (!quib::watchNewThreads.load()) return create(thread, attributes, run, argument);
    return create(thread, attributes, quib::RunWatched, new quib::ThreadStart{run, argument});
}
