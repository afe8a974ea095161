// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CDynamicLibrary.h"

#include <dlfcn.h>

#include "platform/FloatingPointMode.h"

namespace quib {

bool CDynamicLibrary::Open(const std::filesystem::path& name, std::string& error) {
    const CFloatingPointScope keepMode;
    Close();
    handle = dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* reason = dlerror();  // NOLINT(concurrency-mt-unsafe): thread-local in the libraries supported
        error = reason != nullptr ? reason : "unknown error";
    }
    return handle != nullptr;
}

void CDynamicLibrary::Close() noexcept {
    if (handle == nullptr) return;
    void* const closed = std::exchange(handle, nullptr);
    if (std::exchange(pinned, false)) return;
    const CFloatingPointScope keepMode;
    dlclose(closed);
}

void* CDynamicLibrary::Symbol(const char* name) const noexcept {
    return handle != nullptr ? dlsym(handle, name) : nullptr;
}

}  // namespace quib
