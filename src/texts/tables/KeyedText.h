// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quib {

// The English names the text in the code, too.
struct KeyedText {
    const char* english;
    const char* french;
};

}  // namespace quib
