// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Gives the buttons that message boxes and dialogs make for themselves the words of the chosen language. Installed
// once; User-interface thread.

#include <QTranslator>

namespace quib {

class CStandardTexts : public QTranslator {
public:
    // Empty, which means the words as they are, for all but those buttons.
    QString translate(const char* context, const char* source, const char* remark, int count) const override;
    bool isEmpty() const override { return false; }
};

}  // namespace quib
