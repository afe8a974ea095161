// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CFileDrops.h"

#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <algorithm>
#include <array>

namespace quib {

namespace {

QStringList WelcomeFiles(const QDropEvent& event) {
    QStringList paths;
    for (const QUrl& url : event.mimeData()->urls()) {
        if (url.isLocalFile() && CFileDrops::IsWelcome(url.toLocalFile())) paths += url.toLocalFile();
    }
    return paths;
}

}  // namespace

CFileDrops::CFileDrops(std::function<void(const QString& path)> takeFile, QObject* parent)
    : QObject(parent), take(std::move(takeFile)) {}

void CFileDrops::Serve(QWidget* window) {
    window->setAcceptDrops(true);
    window->installEventFilter(this);
}

bool CFileDrops::IsWelcome(const QString& path) {
    static constexpr std::array kExtensions = {"prg", "ist", "ptn", "fxb", "fxp", "so"};
    const QString extension = QFileInfo(path).suffix().toLower();
    return std::any_of(kExtensions.begin(), kExtensions.end(),
                       [&](const char* known) { return extension == QLatin1String(known); });
}

bool CFileDrops::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::DragEnter && event->type() != QEvent::Drop) {
        return QObject::eventFilter(watched, event);
    }
    auto* const drop = static_cast<QDropEvent*>(event);
    const QStringList paths = WelcomeFiles(*drop);
    if (paths.isEmpty()) return QObject::eventFilter(watched, event);
    drop->acceptProposedAction();
    if (event->type() == QEvent::Drop) {
        for (const QString& path : paths) take(path);
    }
    return true;
}

}  // namespace quib
