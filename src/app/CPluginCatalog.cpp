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
#include <algorithm>
#include <utility>

#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kPatience = 10;         // seconds for one library
constexpr int kProcessMargin = 5000;  // milliseconds, for the process itself

bool IsCurrent(const PluginEntry& entry, const QFileInfo& file) {
    if (entry.isBroken != (entry.failure != EPluginFailure::kNone)) return false;  // kept by an older version
    return entry.size == file.size() && entry.changed == file.lastModified().toMSecsSinceEpoch();
}

QJsonObject ToJson(const PluginEntry& entry) {
    return {{QStringLiteral("path"), entry.path},
            {QStringLiteral("name"), entry.name},
            {QStringLiteral("vendor"), entry.vendor},
            {QStringLiteral("instrument"), entry.isInstrument},
            {QStringLiteral("broken"), entry.isBroken},
            {QStringLiteral("error"), entry.error},
            {QStringLiteral("changed"), entry.changed},
            {QStringLiteral("size"), entry.size},
            {QStringLiteral("identity"), entry.identity},
            {QStringLiteral("category"), entry.category},
            {QStringLiteral("failure"), static_cast<int>(entry.failure)}};
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
    entry.category = object[QStringLiteral("category")].toInt();
    // Whatever a later version may write is read as a refusal.
    entry.failure = static_cast<EPluginFailure>(
        std::clamp(object[QStringLiteral("failure")].toInt(), 0, static_cast<int>(EPluginFailure::kNotTried)));
    entry.changed = object[QStringLiteral("changed")].toInteger();
    entry.size = object[QStringLiteral("size")].toInteger();
    return entry;
}

// Codes that quib-scan ends with.
constexpr int kScanHung = 3;
constexpr int kScanEnded = 4;

EPluginFailure FailureOf(const QProcess& asked, const QString& error) {
    if (asked.error() == QProcess::FailedToStart) return EPluginFailure::kNotTried;
    if (asked.state() != QProcess::NotRunning || asked.exitCode() == kScanHung) return EPluginFailure::kHung;
    if (asked.exitStatus() == QProcess::CrashExit || asked.exitCode() == kScanEnded) return EPluginFailure::kEnded;
    // Words of the system's loader and of the plug-in host, which are never translated.
    if (error.contains(QLatin1String("ELF"))) return EPluginFailure::kWrongMachine;
    if (error.contains(QLatin1String("entry point"))) return EPluginFailure::kNoEntry;
    return EPluginFailure::kRefused;
}

QStringList Arguments(const QString& library) {
    return {QStringLiteral("--timeout"), QString::number(kPatience), library};
}

}  // namespace

QString FailureText(const PluginEntry& entry) {
    switch (entry.failure) {
        case EPluginFailure::kNone:
            return {};
        case EPluginFailure::kHung:
            return Text("did not answer within 10 seconds");
        case EPluginFailure::kEnded:
            return Text("ended while it was read");
        case EPluginFailure::kWrongMachine:
            return Text("not for this machine");
        case EPluginFailure::kNoEntry:
            return Text("has no entry point");
        case EPluginFailure::kRefused:
            return Text("refused to load");
        case EPluginFailure::kEndedProgram:
            return Text("ended the program last time");
        case EPluginFailure::kNotTried:
            return Text("cannot be tried first: quib-scan does not start");
    }
    return {};
}

CPluginCatalog::CPluginCatalog(const QString& scannerProgram, const QString& cacheFile)
    : scanner(scannerProgram), cachePath(cacheFile) {
    ReadCache();
}

CPluginCatalog::~CPluginCatalog() {
    if (!process) return;
    process->disconnect(this);
    process->kill();
    process->waitForFinished(kProcessMargin);
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

QList<PluginEntry> CPluginCatalog::Failed() const {
    QList<PluginEntry> failed;
    for (const PluginEntry& entry : entries) {
        if (entry.isBroken && entry.failure != EPluginFailure::kNoEntry) failed.append(entry);
    }
    return failed;
}

QString CPluginCatalog::Current() const {
    return scanning && next < libraries.size() ? QFileInfo(libraries[next]).fileName() : QString();
}

// What is learnt can be used at once.
void CPluginCatalog::Learn(const PluginEntry& entry) {
    known.insert(entry.path, entry);
    const auto old = std::find_if(entries.begin(), entries.end(),
                                  [&entry](const PluginEntry& listed) { return listed.path == entry.path; });
    if (old == entries.end()) {
        entries.append(entry);
    } else {
        *old = entry;
    }
}

void CPluginCatalog::AskAgain(const QString& path) {
    known.remove(path);
    if (scanning) return libraries.append(path);
    Scan();
}

bool CPluginCatalog::AskNow(const QString& path, QString& error) {
    known.remove(QFileInfo(path).canonicalFilePath());
    PluginEntry entry;
    const bool sound = Ask(path, entry, error);
    WriteCache();
    return sound;
}

QString CPluginCatalog::Block(const QString& library) {
    PluginEntry entry;
    for (const PluginEntry& listed : entries) {
        if (listed.path == library || QFileInfo(listed.path).fileName() == library) entry = listed;
    }
    const QFileInfo file(entry.path.isEmpty() ? library : entry.path);
    entry.path = file.canonicalFilePath();
    if (entry.path.isEmpty()) return library;
    if (entry.name.isEmpty()) entry.name = file.completeBaseName();
    entry.changed = file.lastModified().toMSecsSinceEpoch();
    entry.size = file.size();
    entry.isBroken = true;
    entry.failure = EPluginFailure::kEndedProgram;
    Learn(entry);
    WriteCache();
    return entry.name;
}

void CPluginCatalog::SetPaused(bool hold) {
    paused = hold;
    if (scanning && !paused && !process) AskNext();
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
    if (scanning) return SetPaused(false);
    paused = false;
    libraries = FindLibraries();
    gathered.clear();
    next = 0;
    scanning = true;
    learnt = false;
    AskNext();
}

void CPluginCatalog::AskNext() {
    if (paused) return;
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
    const PluginEntry entry = Describe(libraries[next], *ended);
    learnt = true;
    Learn(entry);
    if (entry.failure == EPluginFailure::kNotTried) known.remove(entry.path);
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
        process->waitForFinished(kProcessMargin);
        process.reset();
    }
    for (; next < libraries.size(); ++next) {
        const auto old = known.constFind(libraries[next]);
        if (old != known.constEnd()) gathered.append(*old);
    }
    End();
}

PluginEntry CPluginCatalog::Describe(const QString& path, QProcess& asked) {
    const bool succeeded = asked.error() != QProcess::FailedToStart && asked.state() == QProcess::NotRunning &&
                           asked.exitStatus() == QProcess::NormalExit && asked.exitCode() == 0;
    const QFileInfo file(path);
    PluginEntry entry;
    entry.path = path;
    entry.name = file.completeBaseName();
    entry.changed = file.lastModified().toMSecsSinceEpoch();
    entry.size = file.size();
    const QJsonObject object = QJsonDocument::fromJson(asked.readAllStandardOutput()).object();
    entry.isBroken = !succeeded || object.isEmpty();
    if (entry.isBroken) {
        entry.error = QString::fromUtf8(asked.readAllStandardError()).trimmed();
        entry.failure = FailureOf(asked, entry.error);
        return entry;
    }
    const QString name = object[QStringLiteral("name")].toString();
    if (!name.isEmpty()) entry.name = name;
    entry.vendor = object[QStringLiteral("vendor")].toString();
    entry.identity = object[QStringLiteral("identity")].toString();
    entry.category = object[QStringLiteral("category")].toInt();
    entry.isInstrument = object[QStringLiteral("instrument")].toBool();
    return entry;
}

bool CPluginCatalog::Knows(const QString& path, PluginEntry& entry) const {
    const QString real = QFileInfo(path).canonicalFilePath();
    const auto old = known.constFind(real);
    if (old == known.constEnd() || !IsCurrent(*old, QFileInfo(real))) return false;
    entry = *old;
    return true;
}

bool CPluginCatalog::Ask(const QString& path, PluginEntry& entry, QString& error) {
    const QString real = QFileInfo(path).canonicalFilePath();
    if (!Knows(path, entry)) {
        QProcess once;
        once.start(scanner, Arguments(real.isEmpty() ? path : real));
        const bool answered = once.waitForFinished(kPatience * 1000 + kProcessMargin);
        entry = Describe(real, once);
        if (!answered) once.kill();
        if (!answered) once.waitForFinished(kProcessMargin);
        if (answered && !real.isEmpty() && entry.failure != EPluginFailure::kNotTried) Learn(entry);
    }
    error = entry.isBroken ? path + QStringLiteral(": ") + FailureText(entry) : QString();
    return !entry.isBroken;
}

}  // namespace quib
