// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CPluginCatalog.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QSet>
#include <utility>

namespace quib {

namespace {

constexpr int kPatience = 15;  // seconds for one library
constexpr int kMargin = 5000;  // milliseconds, for the process itself

bool IsCurrent(const PluginEntry& entry, const QFileInfo& file) {
    if (!entry.isBroken && entry.identity.isEmpty()) return false;  // kept by a version that did not ask for it
    return entry.size == file.size() && entry.changed == file.lastModified().toMSecsSinceEpoch();
}

QJsonObject ToJson(const PluginEntry& entry) {
    return {{QStringLiteral("path"), entry.path},        {QStringLiteral("name"), entry.name},
            {QStringLiteral("vendor"), entry.vendor},    {QStringLiteral("instrument"), entry.isInstrument},
            {QStringLiteral("broken"), entry.isBroken},  {QStringLiteral("error"), entry.error},
            {QStringLiteral("changed"), entry.changed},  {QStringLiteral("size"), entry.size},
            {QStringLiteral("identity"), entry.identity}};
}

PluginEntry FromJson(const QJsonObject& object) {
    PluginEntry entry;
    entry.path = object[QStringLiteral("path")].toString();
    entry.name = object[QStringLiteral("name")].toString();
    entry.vendor = object[QStringLiteral("vendor")].toString();
    entry.identity = object[QStringLiteral("identity")].toString();
    entry.isInstrument = object[QStringLiteral("instrument")].toBool();
    entry.isBroken = object[QStringLiteral("broken")].toBool();
    entry.error = object[QStringLiteral("error")].toString();
    entry.changed = object[QStringLiteral("changed")].toInteger();
    entry.size = object[QStringLiteral("size")].toInteger();
    return entry;
}

QStringList Arguments(const QString& library) {
    return {QStringLiteral("--timeout"), QString::number(kPatience), library};
}

}  // namespace

CPluginCatalog::CPluginCatalog(const QString& scannerProgram, const QString& cacheFile)
    : scanner(scannerProgram), cachePath(cacheFile) {
    ReadCache();
}

CPluginCatalog::~CPluginCatalog() {
    if (!process) return;
    process->disconnect(this);
    process->kill();
    process->waitForFinished(kMargin);
}

void CPluginCatalog::ReadCache() {
    QFile file(cachePath);
    if (!file.open(QIODevice::ReadOnly)) return;
    const QJsonArray list = QJsonDocument::fromJson(file.readAll()).array();
    for (const QJsonValue& value : list) {
        const PluginEntry entry = FromJson(value.toObject());
        if (!entry.path.isEmpty() && QFileInfo::exists(entry.path)) {
            known.insert(entry.path, entry);
            entries.append(entry);
        }
    }
}

void CPluginCatalog::WriteCache() const {
    QJsonArray list;
    for (const PluginEntry& entry : entries) list.append(ToJson(entry));
    QSaveFile file(cachePath);
    if (!file.open(QIODevice::WriteOnly)) return;
    file.write(QJsonDocument(list).toJson());
    file.commit();
}

QList<PluginEntry> CPluginCatalog::Select(bool instruments) const {
    QList<PluginEntry> chosen;
    for (const PluginEntry& entry : entries) {
        if (!entry.isBroken && entry.isInstrument == instruments) chosen.append(entry);
    }
    return chosen;
}

QStringList CPluginCatalog::FindLibraries() const {
    QStringList found;
    QSet<QString> seen;
    for (const QString& folder : folders) {
        for (const std::filesystem::path& file : PluginFilesIn(folder.toStdString(), true)) {
            const QString real = QFileInfo(QString::fromStdString(file.string())).canonicalFilePath();
            if (real.isEmpty() || seen.contains(real)) continue;
            seen.insert(real);
            found.append(real);
        }
    }
    return found;
}

CPluginFinder::Identities CPluginCatalog::Identities() const {
    CPluginFinder::Identities identities;
    for (const PluginEntry& entry : entries) {
        if (!entry.isBroken) identities.emplace(entry.path.toStdString(), entry.identity.toStdString());
    }
    return identities;
}

void CPluginCatalog::Scan() {
    if (scanning) return;
    libraries = FindLibraries();
    gathered.clear();
    next = 0;
    scanning = true;
    learnt = false;
    AskNext();
}

void CPluginCatalog::AskNext() {
    while (next < libraries.size()) {
        const QString& path = libraries[next];
        const auto old = known.constFind(path);
        if (old == known.constEnd() || !IsCurrent(*old, QFileInfo(path))) break;
        gathered.append(*old);
        ++next;
    }
    if (next >= libraries.size()) return End();
    Q_EMIT Progressed(static_cast<int>(next), static_cast<int>(libraries.size()),
                      QFileInfo(libraries[next]).completeBaseName());
    process = std::make_unique<QProcess>();
    connect(process.get(), &QProcess::finished, this, &CPluginCatalog::TakeAnswer, Qt::QueuedConnection);
    connect(process.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            QMetaObject::invokeMethod(this, &CPluginCatalog::TakeAnswer, Qt::QueuedConnection);
        }
    });
    process->start(scanner, Arguments(libraries[next]));
}

void CPluginCatalog::TakeAnswer() {
    if (!scanning || !process) return;
    const std::unique_ptr<QProcess> ended = std::move(process);
    const bool succeeded = ended->error() != QProcess::FailedToStart && ended->exitStatus() == QProcess::NormalExit &&
                           ended->exitCode() == 0;
    const PluginEntry entry =
        Describe(libraries[next], succeeded, ended->readAllStandardOutput(), ended->readAllStandardError());
    learnt = true;
    if (ended->error() != QProcess::FailedToStart) known.insert(entry.path, entry);
    gathered.append(entry);
    ++next;
    AskNext();
}

void CPluginCatalog::End() {
    scanning = false;
    entries = std::exchange(gathered, {});
    if (learnt) WriteCache();
    Q_EMIT Finished();
}

// The rest is listed as far as it is known from before.
void CPluginCatalog::Cancel() {
    if (!scanning) return;
    if (process) {
        process->disconnect(this);
        process->kill();
        process->waitForFinished(kMargin);
        process.reset();
    }
    for (; next < libraries.size(); ++next) {
        const auto old = known.constFind(libraries[next]);
        if (old != known.constEnd()) gathered.append(*old);
    }
    End();
}

PluginEntry CPluginCatalog::Describe(const QString& path, bool succeeded, const QByteArray& answer,
                                     const QByteArray& error) {
    const QFileInfo file(path);
    PluginEntry entry;
    entry.path = path;
    entry.name = file.completeBaseName();
    entry.changed = file.lastModified().toMSecsSinceEpoch();
    entry.size = file.size();
    const QJsonObject object = QJsonDocument::fromJson(answer).object();
    entry.isBroken = !succeeded || object.isEmpty();
    if (entry.isBroken) {
        entry.error = QString::fromUtf8(error).trimmed();
        return entry;
    }
    const QString name = object[QStringLiteral("name")].toString();
    if (!name.isEmpty()) entry.name = name;
    entry.vendor = object[QStringLiteral("vendor")].toString();
    entry.identity = object[QStringLiteral("identity")].toString();
    entry.isInstrument = object[QStringLiteral("instrument")].toBool();
    return entry;
}

bool CPluginCatalog::Ask(const QString& path, PluginEntry& entry, QString& error) {
    const QString real = QFileInfo(path).canonicalFilePath();
    const auto old = known.constFind(real);
    if (old != known.constEnd() && IsCurrent(*old, QFileInfo(real))) {
        entry = *old;
    } else {
        QProcess once;
        once.start(scanner, Arguments(real.isEmpty() ? path : real));
        const bool answered = once.waitForFinished(kPatience * 1000 + kMargin);
        if (!answered) once.kill();
        const bool succeeded = answered && once.exitStatus() == QProcess::NormalExit && once.exitCode() == 0;
        entry = Describe(real, succeeded, once.readAllStandardOutput(), once.readAllStandardError());
        if (answered) known.insert(real, entry);
    }
    error = entry.isBroken ? path + QStringLiteral(": ") + entry.error : QString();
    return !entry.isBroken;
}

}  // namespace quib
