// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/XErrors.h"

#include <dlfcn.h>

#include <cstdio>

namespace quib {

namespace {

// As the X library publishes it.
struct XError {
    int type;
    void* display;
    unsigned long resource;
    unsigned long serial;
    unsigned char code;
    unsigned char request;
    unsigned char minor;
};
using XErrorHandler = int (*)(void* display, XError* error);

int LogError(void* /*display*/, XError* error) {
    std::fprintf(stderr, "quib: an error of the X server: code %d, request %d.%d, resource 0x%lx\n", error->code,
                 error->request, error->minor, error->resource);
    return 0;
}

}  // namespace

void KeepXErrorsHarmless() noexcept {
    void* const library = dlopen("libX11.so.6", RTLD_LAZY | RTLD_NOLOAD);
    if (library == nullptr) return;
    using SetHandler = XErrorHandler (*)(XErrorHandler);
    const auto set = reinterpret_cast<SetHandler>(dlsym(library, "XSetErrorHandler"));
    if (set != nullptr) set(&LogError);
    dlclose(library);
}

}  // namespace quib
