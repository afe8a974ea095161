// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/export/ExportChoices.h"

#include <QDir>
#include <QStandardPaths>
#include <algorithm>
#include <cmath>

#include "document/CSettings.h"

namespace quib {

namespace {

constexpr const char* kSection = "Export";

int Percent(double share) { return static_cast<int>(std::lround(share * 100.0)); }

// Tenths of a decibel, 0 for none; a loudness is always below 0.
int Tenths(double decibels) { return static_cast<int>(std::lround(decibels * 10.0)); }

class CReader {
public:
    explicit CReader(const CSettings& store) : settings(store) {}

    int Integer(const char* name, int missing, int low, int high) const {
        return std::clamp(settings.ReadSettingInt(kSection, QLatin1String(name), missing), low, high);
    }
    bool IsOn(const char* name, bool missing) const { return Integer(name, missing ? 1 : 0, 0, 1) == 1; }
    QString String(const char* name, const QString& missing) const {
        const QString text = settings.ReadSettingString(kSection, QLatin1String(name));
        return text.isEmpty() ? missing : text;
    }

private:
    const CSettings& settings;
};

QString FirstFolder() {
    return QDir(QStandardPaths::writableLocation(QStandardPaths::MusicLocation)).filePath(QStringLiteral("Exports"));
}

}  // namespace

ExportSettings ReadExportChoices(const CSettings& settings) {
    const CReader read(settings);
    ExportSettings choices;
    choices.format.kind = static_cast<ESoundFormat>(read.Integer("Format", 0, 0, 4));
    choices.format.sampleRate = read.Integer("SampleRate", 0, 0, 192000);
    choices.format.bits = read.Integer("Bits", 16, 16, 32);
    choices.format.dither = read.IsOn("Dither", true);
    choices.format.quality = read.Integer("Quality", 60, 0, 100) / 100.0;
    choices.format.variable = read.IsOn("Variable", false);
    choices.format.bitRate = read.Integer("BitRate", 192, 32, 320);
    if (const int loudness = read.Integer("Loudness", 0, -400, 0); loudness < 0) {
        choices.loudness = LoudnessTarget{loudness / 10.0, read.Integer("TruePeak", -10, -200, 0) / 10.0};
    }
    choices.tailSeconds = read.Integer("Tail", 10, 0, 600);
    choices.stems = read.IsOn("Stems", false);
    choices.stemPoint = read.IsOn("AfterMaster", false) ? EStemPoint::kAfterMaster : EStemPoint::kBeforeMaster;
    choices.effectStems = read.IsOn("EffectStems", true);
    choices.tags.artist = read.String("Artist", {}).toStdString();
    choices.namePattern = read.String("Name", QStringLiteral("{title}")).toStdString();
    choices.folder = read.String("Folder", FirstFolder()).toStdString();
    return choices;
}

void KeepExportChoices(CSettings& settings, const ExportSettings& choices) {
    const auto keep = [&](const char* name, int value) {
        settings.WriteSettingInt(kSection, QLatin1String(name), value);
    };
    const auto keepText = [&](const char* name, const std::string& text) {
        settings.WriteSettingString(kSection, QLatin1String(name), QString::fromStdString(text));
    };
    const SoundFormat& format = choices.format;
    keep("Format", static_cast<int>(format.kind));
    keep("SampleRate", format.sampleRate);
    keep("Bits", format.bits);
    keep("Dither", format.dither ? 1 : 0);
    keep("Quality", Percent(format.quality));
    keep("Variable", format.variable ? 1 : 0);
    keep("BitRate", format.bitRate);
    keep("Loudness", choices.loudness ? Tenths(choices.loudness->loudness) : 0);
    if (choices.loudness) keep("TruePeak", Tenths(choices.loudness->truePeak));
    keep("Tail", static_cast<int>(choices.tailSeconds));
    keep("Stems", choices.stems ? 1 : 0);
    keep("AfterMaster", choices.stemPoint == EStemPoint::kAfterMaster ? 1 : 0);
    keep("EffectStems", choices.effectStems ? 1 : 0);
    keepText("Artist", choices.tags.artist);
    keepText("Name", choices.namePattern);
    keepText("Folder", choices.folder.string());
}

}  // namespace quib
