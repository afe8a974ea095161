// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A library opened at run time. Its symbols stay private to it. Loading keeps the calling thread's
// floating-point mode, whatever the library's start-up code does. Not for render threads.

#include <filesystem>
#include <string>
#include <utility>

namespace quib {

class CDynamicLibrary {
public:
    CDynamicLibrary() = default;
    ~CDynamicLibrary() { Close(); }
    CDynamicLibrary(CDynamicLibrary&& other) noexcept
        : handle(std::exchange(other.handle, nullptr)), pinned(std::exchange(other.pinned, false)) {}
    CDynamicLibrary& operator=(CDynamicLibrary&& other) noexcept {
        std::swap(handle, other.handle);
        std::swap(pinned, other.pinned);
        return *this;
    }

    // Opens `name`, a path or a name that the system's loader finds. Closes what was open before.
    // On failure returns false, leaves the object empty and says why in `error`.
    bool Open(const std::filesystem::path& name, std::string& error);
    void Close() noexcept;
    bool IsOpen() const noexcept { return handle != nullptr; }
    // Lets the library stay in memory until the process ends, even when this object goes.
    void Pin() noexcept { pinned = true; }

    // The exported function or object of that name, or null.
    void* Symbol(const char* name) const noexcept;

    template <class Function>
    Function Get(const char* name) const noexcept {
        return reinterpret_cast<Function>(Symbol(name));
    }

private:
    void* handle = nullptr;
    bool pinned = false;
};

}  // namespace quib
