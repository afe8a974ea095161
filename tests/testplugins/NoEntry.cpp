// SPDX-License-Identifier: GPL-3.0-or-later
// A library in a plug-in folder that is no plug-in.
extern "C" __attribute__((visibility("default"))) int SomethingElse() { return 1; }
