// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The panel that explains the control under the mouse, in the language chosen at that moment: a page, or a line
// where it is low. User-interface thread.

#include <QStringList>
#include <vector>

#include "controls/CControl.h"

namespace quib {

class CInfoCtrl : public CControl {
public:
    CInfoCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
              int textHeight = 11);

    void Draw() override;
    void Resize(int newWidth, int newHeight) override;
    ERole Role() const override { return ERole::kText; }
    QString SpokenValue() const override { return Paragraphs().join(QLatin1Char('\n')); }

    // Empties the panel.
    void Clear();
    // Shows a text of the string table, or a literal one, in place of what was there.
    void Show(int stringId);
    void Show(const QString& text);
    // One paragraph more.
    void Append(int stringId);

    // What is shown, one entry a paragraph.
    QStringList Paragraphs() const;

private:
    void DrawLine();
    static QString FirstLine(const QString& text, qreal room, int letters);

    std::vector<int> stringIds;
    QString literal;
    int fontHeight;
};

}  // namespace quib
