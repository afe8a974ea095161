// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The names of the keys as pictures, so that thousands of notes can wear them. User-interface thread.

#include <QImage>
#include <array>

#include "model/edits/NoteState.h"

namespace quib {

class CNoteNames {
public:
    static constexpr int kHeight = 9;  // of the letters, skin pixels

    struct Name {
        QImage mask;
        double width = 0;  // skin pixels
    };
    // Made at its first use; all are made anew for another scale.
    const Name& Of(int key, qreal scale);

private:
    std::array<Name, kHighestKey + 1> names;
    qreal madeFor = 0;
};

}  // namespace quib
