// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <thread>
#include <utility>

extern char** environ;

namespace quib {

namespace {
constexpr auto kTurn = std::chrono::milliseconds(5);
constexpr std::size_t kMostErrors = 4096;  // bytes
}  // namespace

CChildProcess::~CChildProcess() { Kill(); }

bool CChildProcess::Start(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
    Kill();
    code.reset();
    errors.clear();
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return false;
    posix_spawn_file_actions_t files{};
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&files, ends[1], STDERR_FILENO);
    std::vector<std::string> words = arguments;
    words.insert(words.begin(), program.string());
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const bool started = posix_spawn(&process, program.c_str(), &files, nullptr, pointers.data(), environ) == 0;
    posix_spawn_file_actions_destroy(&files);
    ::close(ends[1]);
    errorPipe = ends[0];
    if (started) return true;
    process = 0;
    Kill();
    return false;
}

std::optional<int> CChildProcess::Ended() noexcept {
    int status = 0;
    if (process == 0) return code;
    const pid_t ended = ::waitpid(process, &status, WNOHANG);
    ReadErrors();
    if (ended == 0) return std::nullopt;
    process = 0;
    code = ended > 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return code;
}

std::optional<int> CChildProcess::Wait(double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!Ended() && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(kTurn);
    return Ended();
}

const std::string& CChildProcess::Errors() {
    ReadErrors();
    return errors;
}

void CChildProcess::ReadErrors() noexcept {
    std::array<char, 512> part{};
    while (errorPipe >= 0) {
        const ssize_t count = ::read(errorPipe, part.data(), part.size());
        if (count <= 0) return;
        const std::size_t room = kMostErrors - std::min(errors.size(), kMostErrors);
        errors.append(part.data(), std::min(static_cast<std::size_t>(count), room));
    }
}

void CChildProcess::Kill() noexcept {
    if (process > 0) {
        ::kill(process, SIGKILL);
        ::waitpid(process, nullptr, 0);
    }
    process = 0;
    if (errorPipe >= 0) ::close(std::exchange(errorPipe, -1));
}

}  // namespace quib
