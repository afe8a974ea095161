// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/PluginMarks.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <fstream>
#include <memory>
#include <mutex>

#include "platform/CMappedFile.h"
#include "platform/FatalEnd.h"

namespace quib {

namespace {

constexpr int kMostLibraries = 1000;
constexpr int kMostThreads = 64;
constexpr std::size_t kPathSize = 1024;
constexpr std::size_t kNameSize = 128;
constexpr std::array<char, 8> kMarksMagic = {'q', 'm', 'a', 'r', 'k', 's', '0', '1'};

// Library from 1 in the low bits, call, whether it renders, and a serial number of the thread.
constexpr int kCallShift = 16;
constexpr int kRenderShift = 23;
constexpr int kSerialShift = 24;

struct Library {
    std::array<char, kPathSize> path;
    std::array<char, kNameSize> name;
};

struct alignas(64) Thread {
    std::atomic<Mark> mark;  // 0: free
};

// The layout of the file.
struct Page {
    std::array<char, 8> magic;
    std::atomic<std::uint32_t> endedBadly;  // a fatal end was caught
    std::atomic<Mark> ended;                // what that thread was inside of
    std::atomic<Mark> hung;
    std::atomic<Mark> suspect;
    std::array<char, kPathSize> project;
    std::array<Thread, kMostThreads> threads;
    std::array<Library, kMostLibraries> libraries;
};
static_assert(std::atomic<Mark>::is_always_lock_free);

Page ownPage{};
Page* page = &ownPage;
CMappedFile pageFile;
std::filesystem::path pagePath;
std::mutex libraryMutex;
int libraryCount = 0;
std::atomic<int> codeAtEnd{-1};  // -1: as it would have ended

thread_local Mark present = 0;
thread_local int place = 0;  // where this thread stood last
thread_local bool placed = false;
thread_local std::uint32_t serial = 0;

int LibraryOf(Mark mark) noexcept { return static_cast<int>(mark & 0xffff); }
EPluginCall KindOf(Mark mark) noexcept { return static_cast<EPluginCall>(mark >> kCallShift & 0x7f); }
bool Renders(Mark mark) noexcept { return (mark >> kRenderShift & 1) != 0; }

template <std::size_t size>
void Copy(const std::string& text, std::array<char, size>& to) noexcept {
    const std::size_t length = std::min(text.size(), size - 1);
    std::memcpy(to.data(), text.data(), length);
    to[length] = 0;
}

template <std::size_t size>
std::string TextOf(const std::array<char, size>& text) {
    return {text.data(), std::find(text.begin(), text.end(), '\0')};
}

MarkedCall CallIn(const Page& where, Mark mark) {
    MarkedCall found{{}, {}, KindOf(mark), Renders(mark)};
    const int number = LibraryOf(mark);
    if (number < 1 || number > kMostLibraries) return found;
    const Library& library = where.libraries[static_cast<std::size_t>(number - 1)];
    found.library = TextOf(library.path);
    found.name = TextOf(library.name);
    if (found.name.empty()) found.name = std::filesystem::path(found.library).filename().string();
    return found;
}

// In a handler of signals: nothing may allocate.
void OnFatalEnd(int signal) noexcept {
    page->endedBadly = 1;
    page->ended = present;
    const int number = LibraryOf(present);
    if (number > 0) {
        const Library& library = page->libraries[static_cast<std::size_t>(number - 1)];
        const char* const name = library.name[0] != 0 ? library.name.data() : library.path.data();
        const std::array<const char*, 7> parts = {"\"", name,
                                                  signal == 0 ? "\" ended the program while " : "\" crashed while ",
                                                  Describe(KindOf(present)), nullptr};
        TellAtEnd(parts.data());
        // What else runs at exit() must not do so on a thread of any kind.
        if (codeAtEnd >= 0 || signal == 0) EndAtOnce(codeAtEnd >= 0 ? codeAtEnd.load() : 1);
    } else if (codeAtEnd >= 0 && signal != 0) {
        const std::array<const char*, 2> parts = {"crashed outside of any call of a plug-in", nullptr};
        TellAtEnd(parts.data());
        EndAtOnce(codeAtEnd);
    }
}

// Calls that are at fault when the process was ended without a word in the middle of one. In others it is far
// more often somebody outside who did so.
bool IsRisky(Mark mark) noexcept {
    const EPluginCall call = KindOf(mark);
    return !Renders(mark) && (call == EPluginCall::kLoad || call == EPluginCall::kState ||
                              call == EPluginCall::kOpenEditor || call == EPluginCall::kCloseEditor);
}

Mark CauseIn(const Page& left, bool& hung) noexcept {
    if (const Mark ended = left.ended; ended != 0) return ended;
    hung = left.hung != 0;
    if (hung) return left.hung;
    for (const Thread& thread : left.threads) {
        if (IsRisky(thread.mark)) return thread.mark;
    }
    return left.suspect;
}

}  // namespace

int MarkedLibrary(const std::filesystem::path& file) {
    const std::string path = file.string();
    const std::lock_guard lock(libraryMutex);
    for (int number = 1; number <= libraryCount; ++number) {
        if (TextOf(page->libraries[static_cast<std::size_t>(number - 1)].path) == path) return number;
    }
    if (libraryCount == kMostLibraries) return 0;
    Copy(path, page->libraries[static_cast<std::size_t>(libraryCount)].path);
    return ++libraryCount;
}

void NameMarkedLibrary(int library, const std::string& name) {
    const std::lock_guard lock(libraryMutex);
    if (library > 0) Copy(name, page->libraries[static_cast<std::size_t>(library - 1)].name);
}

// A thread takes a place for as long as it is inside of something, the one that it had last if that is free.
Mark EnterCall(int library, EPluginCall call, bool rendering) noexcept {
    const Mark before = present;
    // What is asked while a plug-in is loaded is part of that.
    if (KindOf(before) == EPluginCall::kLoad && LibraryOf(before) == library) call = EPluginCall::kLoad;
    present = library == 0
                  ? 0
                  : static_cast<Mark>(library) | static_cast<Mark>(call) << kCallShift |
                        static_cast<Mark>(rendering) << kRenderShift | static_cast<Mark>(++serial) << kSerialShift;
    if (placed) {
        page->threads[static_cast<std::size_t>(place)].mark.store(present, std::memory_order_release);
        return before;
    }
    for (int tries = 0; present != 0 && tries < kMostThreads; ++tries, place = (place + 1) % kMostThreads) {
        Mark none = 0;
        auto& mark = page->threads[static_cast<std::size_t>(place)].mark;
        placed = mark.compare_exchange_strong(none, present, std::memory_order_release, std::memory_order_relaxed);
        if (placed) break;
    }
    return before;
}

void LeaveCall(Mark before) noexcept {
    present = before;
    if (!placed) return;
    page->threads[static_cast<std::size_t>(place)].mark.store(before, std::memory_order_release);
    placed = before != 0;
}

void ForEachMark(const std::function<void(int thread, Mark mark)>& visit) {
    for (int thread = 0; thread < kMostThreads; ++thread) {
        visit(thread, page->threads[static_cast<std::size_t>(thread)].mark.load(std::memory_order_acquire));
    }
}

bool IsRenderingMark(Mark mark) noexcept { return Renders(mark); }

MarkedCall CallOf(Mark mark) {
    const std::lock_guard lock(libraryMutex);
    return CallIn(*page, mark);
}

bool KeepMarks(const std::filesystem::path& file) {
    CatchFatalEnd(OnFatalEnd);
    codeAtEnd = -1;
    if (!pageFile.Create(file, sizeof(Page))) return false;
    pagePath = file;
    page = reinterpret_cast<Page*>(pageFile.Data());
    page->magic = kMarksMagic;
    libraryCount = 0;
    return true;
}

void TellWhatEnds(int code) {
    codeAtEnd = code;
    CatchFatalEnd(OnFatalEnd);
}

int CodeAtEnd() noexcept { return codeAtEnd; }

void ForgetMarks() noexcept {
    std::error_code ignored;
    if (!pagePath.empty()) std::filesystem::remove(pagePath, ignored);
}

void MarkHung(Mark mark) noexcept { page->hung = mark; }

void MarkSuspect(int library, EPluginCall call) noexcept {
    page->suspect = static_cast<Mark>(library) | static_cast<Mark>(call) << kCallShift;
}

void MarkProject(const std::string& path) noexcept { Copy(path, page->project); }

std::optional<PluginBlame> TakeBlame(const std::filesystem::path& file) {
    const auto left = std::make_unique<Page>();
    std::ifstream stream(file, std::ios::binary);
    stream.read(reinterpret_cast<char*>(left.get()), sizeof(Page));
    if (stream.gcount() != sizeof(Page) || left->magic != kMarksMagic) return std::nullopt;
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    PluginBlame blame;
    blame.call = CallIn(*left, CauseIn(*left, blame.hung));
    blame.project = TextOf(left->project);
    if (blame.call.library.empty()) return std::nullopt;
    return blame;
}

}  // namespace quib
