// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Files dropped on any window of the program: one place that says which are welcome. User-interface thread.

#include <QObject>
#include <functional>

namespace quib {

class CFileDrops : public QObject {
    Q_OBJECT

public:
    // Points are those of the screen.
    using TakeFile = std::function<void(const QString& path, const QPoint& point)>;
    using HoverFiles = std::function<void(const QStringList& paths, const QPoint& point)>;

    // `takeFile` does what a dropped file is for; `hoverFiles` is told where files are held, and of none when
    // they are gone.
    CFileDrops(TakeFile takeFile, HoverFiles hoverFiles, QObject* parent);

    // From now on the window accepts files.
    void Serve(QWidget* window);
    static bool IsWelcome(const QString& path);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    TakeFile take;
    HoverFiles hover;
};

}  // namespace quib
