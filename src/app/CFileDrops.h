// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Files dropped on any window of the program: one place that says which are welcome. User-interface thread.

#include <QObject>
#include <functional>

namespace quib {

class CFileDrops : public QObject {
    Q_OBJECT

public:
    // `take` does what a dropped file is for.
    CFileDrops(std::function<void(const QString& path)> takeFile, QObject* parent);

    // From now on the window accepts files.
    void Serve(QWidget* window);
    static bool IsWelcome(const QString& path);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void(const QString& path)> take;
};

}  // namespace quib
