// SPDX-License-Identifier: GPL-3.0-or-later
// What the sanitizers cannot know of the libraries under the windows, which are not built with them. Linked
// into every test program that opens windows.

// Libraries of the desktop keep a little until the end.
extern "C" const char* __lsan_default_suppressions();                                                  // NOLINT
extern "C" const char* __lsan_default_suppressions() { return "leak:libdbus\nleak:libfontconfig\n"; }  // NOLINT

// Their threads meet without calls that ThreadSanitizer sees. What our own code does stays watched.
extern "C" const char* __tsan_default_suppressions();   // NOLINT
extern "C" const char* __tsan_default_suppressions() {  // NOLINT
    return "called_from_lib:libQt6Core.so.6\ncalled_from_lib:libQt6Gui.so.6\ncalled_from_lib:libglib-2.0.so.0\n";
}
