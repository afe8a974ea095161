// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Which plug-in each thread of the process is inside of, for whoever has to say which one has ended the program or
// does not return: a watch in the process, and the next start. The marks stand in memory that may be a file; setting
// one takes neither a lock nor a call of the system. Any thread.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "model/plugin/EPluginCall.h"

namespace quib {

// A library has a number from when it is first loaded on; 0: there are too many.
int MarkedLibrary(const std::filesystem::path& file);
// The name by which users know it, once it is known.
void NameMarkedLibrary(int library, const std::string& name);

struct MarkedCall {
    std::string name;     // of the plug-in, else of its library's file
    std::string library;  // path
    EPluginCall call = EPluginCall::kNone;
    bool rendering = false;  // on a thread that renders
};

// The calling thread is inside the library from now on (0: inside none); gives what it was inside of before, to be
// set again by LeaveCall.
using Mark = std::uint64_t;
Mark EnterCall(int library, EPluginCall call, bool rendering) noexcept;
void LeaveCall(Mark before) noexcept;

// Every call that is under way. Two looks that find the same mark have found the same call.
void ForEachMark(const std::function<void(int thread, Mark mark)>& visit);
bool IsRenderingMark(Mark mark) noexcept;
MarkedCall CallOf(Mark mark);

// --- For the next start ---------------------------------------------------------------------------

// Keeps the marks in a file, and catches what ends the process. Before any plug-in is loaded; once. False, and all
// else works, when the file cannot be made.
bool KeepMarks(const std::filesystem::path& file);
// Without a file: says on standard error which plug-in ended the process, which then ends with `code`.
void TellWhatEnds(int code);
int CodeAtEnd() noexcept;
// The process ends as it should.
void ForgetMarks() noexcept;
// The call is taken for the cause when the process ends while it does not return; 0: none any more.
void MarkHung(Mark mark) noexcept;
// The library was loaded or its editor opened a moment ago, so it is suspect; 0: not any more.
void MarkSuspect(int library, EPluginCall call) noexcept;
// The project that was loaded, until there is a copy of it as it is now; empty: there is.
void MarkProject(const std::string& path) noexcept;

struct PluginBlame {
    MarkedCall call;
    bool hung = false;
    std::string project;  // that was loaded without a copy; empty: none
};
// Which plug-in has ended the process that has left this file; nothing when none did. Removes the file.
std::optional<PluginBlame> TakeBlame(const std::filesystem::path& file);

}  // namespace quib
