// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// How far an export is: a bar with a segment for each file. User-interface thread.

#include <QWidget>

namespace quib {

class CExportBar : public QWidget {
public:
    CExportBar();

    void SetSegments(int count);
    // 0..1.
    void SetShare(double part);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int segments = 1;
    double share = 0;
};

}  // namespace quib
