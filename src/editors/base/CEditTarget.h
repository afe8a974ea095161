// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A window on which the edit commands act while it has the focus. User-interface thread.

namespace quib {

enum class EEdit { kCut, kCopy, kPaste, kDelete, kSelectAll };

class CEditTarget {
public:
    virtual ~CEditTarget() = default;
    // Whether the command would do anything now.
    virtual bool CanEdit(EEdit command) const = 0;
    virtual void Edit(EEdit command) = 0;
};

}  // namespace quib
