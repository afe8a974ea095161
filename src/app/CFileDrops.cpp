// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CFileDrops.h"

#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <algorithm>
#include <array>

#include "model/plugin/PluginFormats.h"

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

CFileDrops::CFileDrops(TakeFile takeFile, HoverFiles hoverFiles, QObject* parent)
    : QObject(parent), take(std::move(takeFile)), hover(std::move(hoverFiles)) {}

void CFileDrops::Serve(QWidget* window) {
    window->setAcceptDrops(true);
    window->installEventFilter(this);
}

bool CFileDrops::IsWelcome(const QString& path) {
    static constexpr std::array kExtensions = {"prg", "ist", "ptn",  "fxb", "fxp",  "mid", "midi",
                                               "wav", "mp3", "flac", "ogg", "opus", "aif", "aiff"};
    const QString extension = QFileInfo(path).suffix().toLower();
    return HasPluginExtension(path.toStdString()) ||
           std::any_of(kExtensions.begin(), kExtensions.end(),
                       [&](const char* known) { return extension == QLatin1String(known); });
}

bool CFileDrops::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::DragLeave) hover({}, {});
    if (event->type() != QEvent::DragEnter && event->type() != QEvent::DragMove && event->type() != QEvent::Drop) {
        return QObject::eventFilter(watched, event);
    }
    auto* const drop = static_cast<QDropEvent*>(event);
    const QStringList paths = WelcomeFiles(*drop);
    if (paths.isEmpty()) return QObject::eventFilter(watched, event);
    drop->acceptProposedAction();
    const QPoint point = static_cast<QWidget*>(watched)->mapToGlobal(drop->position().toPoint());
    const bool dropped = event->type() == QEvent::Drop;
    hover(dropped ? QStringList() : paths, point);
    if (dropped) {
        for (const QString& path : paths) take(path, point);
    }
    return true;
}

}  // namespace quib
