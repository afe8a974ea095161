// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Another program, run beside this one. Any one thread; starting it needs no event loop and takes no lock of the
// windows.

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quib {

class CChildProcess {
public:
    CChildProcess() = default;
    ~CChildProcess();  // ends it
    CChildProcess(const CChildProcess&) = delete;
    CChildProcess& operator=(const CChildProcess&) = delete;

    // Ends what runs, then starts the program; its input and output are empty. False when that is not possible.
    bool Start(const std::filesystem::path& program, const std::vector<std::string>& arguments);
    // The code that it has ended with, -1 for a signal; nothing while it runs.
    std::optional<int> Ended() noexcept;
    // The same, waiting for at most that long.
    std::optional<int> Wait(double seconds);
    // What it has written to standard error so far.
    const std::string& Errors();
    void Kill() noexcept;

private:
    void ReadErrors() noexcept;

    int process = 0;  // 0: none
    int errorPipe = -1;
    std::optional<int> code;
    std::string errors;
};

}  // namespace quib
