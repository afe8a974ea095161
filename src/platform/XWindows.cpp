// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/XWindows.h"

#include <dlfcn.h>

namespace quib {

namespace {

using XWindow = unsigned long;
using QueryTree = int (*)(void* display, XWindow window, XWindow* root, XWindow* parent, XWindow** children,
                          unsigned* count);
using GetGeometry = int (*)(void* display, XWindow window, XWindow* root, int* x, int* y, unsigned* width,
                            unsigned* height, unsigned* border, unsigned* depth);
using Free = int (*)(void* data);

}  // namespace

std::optional<WindowSize> SizeOfContent(void* display, std::uintptr_t window) noexcept {
    void* const library = dlopen("libX11.so.6", RTLD_LAZY | RTLD_NOLOAD);
    if (library == nullptr || display == nullptr) return std::nullopt;
    const auto query = reinterpret_cast<QueryTree>(dlsym(library, "XQueryTree"));
    const auto geometry = reinterpret_cast<GetGeometry>(dlsym(library, "XGetGeometry"));
    const auto release = reinterpret_cast<Free>(dlsym(library, "XFree"));
    std::optional<WindowSize> largest;
    XWindow root = 0;
    XWindow parent = 0;
    XWindow* children = nullptr;
    unsigned count = 0;
    if (query(display, window, &root, &parent, &children, &count) != 0) {
        for (unsigned i = 0; i < count; ++i) {
            int x = 0;
            int y = 0;
            unsigned width = 0;
            unsigned height = 0;
            unsigned border = 0;
            unsigned depth = 0;
            if (geometry(display, children[i], &root, &x, &y, &width, &height, &border, &depth) == 0) continue;
            const WindowSize size{static_cast<int>(width), static_cast<int>(height)};
            if (!largest || size.width * size.height > largest->width * largest->height) largest = size;
        }
        if (children != nullptr) release(children);
    }
    dlclose(library);
    return largest;
}

}  // namespace quib
