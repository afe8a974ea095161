// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CSettings.h"

#include <QGuiApplication>
#include <QIODevice>
#include <QScreen>
#include <QStandardPaths>
#include <QTextStream>
#include <algorithm>

namespace quib {

namespace {

constexpr int kSmallest = 100;
constexpr int kVisible = 40;

QString Escaped(QString text) {
    return text.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('"'), QLatin1String("\\\""))
        .replace(QLatin1Char('\n'), QLatin1String("\\n"))
        .replace(QLatin1Char('\r'), QLatin1String("\\r"));
}

QString Unescaped(QStringView text) {
    QString plain;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != QLatin1Char('\\') || i + 1 == text.size()) {
            plain += text[i];
            continue;
        }
        const QChar next = text[++i];
        plain += next == QLatin1Char('n') ? QLatin1Char('\n') : next == QLatin1Char('r') ? QLatin1Char('\r') : next;
    }
    return plain;
}

// Texts stand in quotation marks, integers do not: that keeps the two kinds apart.
bool ReadStore(QIODevice& device, QSettings::SettingsMap& map) {
    QTextStream stream(&device);
    QString section;
    for (QString line; stream.readLineInto(&line);) {
        const QString trimmed = line.trimmed();
        if (trimmed.startsWith(QLatin1Char('[')) && trimmed.endsWith(QLatin1Char(']'))) {
            section = trimmed.mid(1, trimmed.size() - 2);
            continue;
        }
        const qsizetype equals = trimmed.indexOf(QLatin1Char('='));
        if (equals <= 0 || section.isEmpty()) continue;
        const QString key = section + QLatin1Char('/') + trimmed.left(equals);
        const QStringView value = QStringView(trimmed).mid(equals + 1);
        if (value.size() >= 2 && value.front() == QLatin1Char('"') && value.back() == QLatin1Char('"')) {
            map.insert(key, Unescaped(value.mid(1, value.size() - 2)));
            continue;
        }
        bool isNumber = false;
        const int number = value.toInt(&isNumber);
        if (isNumber) map.insert(key, number);
    }
    return true;
}

bool WriteStore(QIODevice& device, const QSettings::SettingsMap& map) {
    QTextStream stream(&device);
    QString open;
    for (auto value = map.constBegin(); value != map.constEnd(); ++value) {
        const qsizetype slash = value.key().indexOf(QLatin1Char('/'));
        const QString section = value.key().left(slash);
        if (section != open) stream << '[' << section << "]\n";
        open = section;
        stream << value.key().mid(slash + 1) << '=';
        if (value->typeId() == QMetaType::QString) {
            stream << '"' << Escaped(value->toString()) << "\"\n";
        } else {
            stream << value->toInt() << '\n';
        }
    }
    stream.flush();
    return stream.status() == QTextStream::Ok;
}

QSettings::Format StoreFormat() {
    static const QSettings::Format format = QSettings::registerFormat(QStringLiteral("ini"), ReadStore, WriteStore);
    return format;
}

QString Key(const QString& section, const QString& name) { return section + QLatin1Char('/') + name; }

}  // namespace

CSettings::CSettings(const QString& file) : store(file, StoreFormat()) {}

QString CSettings::DefaultFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/QUIBSequencer/settings.ini");
}

QString CSettings::ReadSettingString(const QString& section, const QString& name) const {
    const QVariant value = store.value(Key(section, name));
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

void CSettings::WriteSettingString(const QString& section, const QString& name, const QString& text) {
    store.setValue(Key(section, name), text);
}

int CSettings::ReadSettingInt(const QString& section, const QString& name, int missing) const {
    const QVariant value = store.value(Key(section, name));
    return value.typeId() == QMetaType::Int ? value.toInt() : missing;
}

void CSettings::WriteSettingInt(const QString& section, const QString& name, int value) {
    store.setValue(Key(section, name), value);
}

void CSettings::DeleteSettingSection(const QString& section) { store.remove(section); }

QRect CSettings::ClampPlacement(const QRect& wanted, const QSize& screen) {
    const int width = std::min(std::max(wanted.width(), kSmallest), screen.width());
    const int left = std::min(std::max(wanted.left(), kVisible - width), screen.width() - kVisible);
    const int height = std::min(std::max(wanted.height(), kSmallest), screen.height());
    const int top = std::min(std::max(wanted.top(), kVisible - height), screen.height() - kVisible);
    return {left, top, width, height};
}

QRect CSettings::Centred(const QSize& size, const QSize& screen) {
    return {(screen.width() - size.width()) / 2, (screen.height() - size.height()) / 2, size.width(), size.height()};
}

QSize CSettings::ScreenSize() {
    const QScreen* const screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->size() : QSize(1366, 768);
}

QRect CSettings::ReadWindowPlacement(const QString& name, const QRect& missing) const {
    const QRect stored(ReadSettingInt(kWindowsSection, name + QStringLiteral("Left"), missing.left()),
                       ReadSettingInt(kWindowsSection, name + QStringLiteral("Top"), missing.top()),
                       ReadSettingInt(kWindowsSection, name + QStringLiteral("Width"), missing.width()),
                       ReadSettingInt(kWindowsSection, name + QStringLiteral("Height"), missing.height()));
    return ClampPlacement(stored, ScreenSize());
}

void CSettings::WriteWindowPlacement(const QString& name, const QRect& placement) {
    WriteSettingInt(kWindowsSection, name + QStringLiteral("Left"), placement.left());
    WriteSettingInt(kWindowsSection, name + QStringLiteral("Top"), placement.top());
    WriteSettingInt(kWindowsSection, name + QStringLiteral("Width"), placement.width());
    WriteSettingInt(kWindowsSection, name + QStringLiteral("Height"), placement.height());
}

}  // namespace quib
