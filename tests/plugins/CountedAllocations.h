// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quibtest {

// How often this thread has called operator new so far, the plug-ins' own calls included. Stands
// still in builds with sanitizers, which bring an allocator of their own.
long AllocationsOfThisThread();

}  // namespace quibtest
