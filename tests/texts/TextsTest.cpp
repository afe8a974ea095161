// SPDX-License-Identifier: GPL-3.0-or-later
#include "texts/Texts.h"

#include <QRegularExpression>
#include <ranges>

#include "model/StripSettings.h"
#include "model/plugin/EPluginCall.h"
#include "texts/CSourceText.h"
#include "texts/InfoTextTable.h"
#include "texts/TextTable.h"

namespace quib {

namespace {

// Names that no language changes.
const std::set<std::string> kNoTexts = {
    "QUIB Sequencer", "QUIB drums",  "QUIB synth",           "u25CF REC",
    "QUIB Studio",    "QUIB STUDIO", "[*] - QUIB Sequencer", "<h2>QUIB Sequencer %1</h2><p>%2</p><p>%3</p><p>%4</p>",
    "Sans Serif"};

CSourceText SourcesOfTheWindows() {
    CSourceText sources;
    for (const char* const layer : {"controls", "document", "editors", "app"}) {
        sources.Read(std::filesystem::path(QUIB_SOURCE_DIR "/src") / layer);
    }
    return sources;
}

std::vector<std::string> Placeholders(const std::string& text) {
    std::vector<std::string> found;
    const QRegularExpression form("%L?[0-9]+|%[-+0]?[0-9]*(\\.[0-9]+)?[a-zA-Z]");
    for (const QRegularExpressionMatch& match : form.globalMatch(QString::fromStdString(text))) {
        found.push_back(match.captured().toStdString());
    }
    std::sort(found.begin(), found.end());
    return found;
}

void ExpectSamePlaceholders(const std::string& english, const std::string& french) {
    EXPECT_FALSE(french.empty()) << english;
    EXPECT_EQ(Placeholders(english), Placeholders(french)) << english;
}

}  // namespace

TEST(Texts, EveryTextOfTheWindowsHasOneRowAndEveryRowAUse) {
    const CSourceText sources = SourcesOfTheWindows();
    ASSERT_GT(sources.Texts().size(), 200U);
    std::set<std::string> rows;
    std::set<std::string> settings;
    for (const StripSetting& setting : kStripSettings) settings.insert(setting.name);
    settings.insert(kPluginCallNames.begin() + 1, kPluginCallNames.end());
    for (const KeyedText& row : std::views::join(kTextTables)) {
        EXPECT_TRUE(rows.insert(row.english).second) << "twice in the tables: " << row.english;
        EXPECT_TRUE(sources.Literals().count(row.english) + settings.count(row.english) > 0)
            << "no source uses: " << row.english;
        ExpectSamePlaceholders(row.english, row.french);
    }
    for (const auto& [file, text] : sources.Texts()) {
        EXPECT_EQ(rows.count(text), 1U) << file << ": in no table: " << text;
    }
    for (const std::string& name : settings) EXPECT_EQ(rows.count(name), 1U) << "of the model: " << name;
    for (const auto& [file, text] : sources.Sentences()) {
        EXPECT_EQ(kNoTexts.count(text), 1U) << file << ": not shown through Text(): " << text;
    }
}

TEST(Texts, EveryHelpTextHasBothLanguagesInLatinLettersAndAUse) {
    const CSourceText sources = SourcesOfTheWindows();
    std::set<int> numbers;
    for (const NumberedText& row : kInfoTexts) {
        EXPECT_TRUE(numbers.insert(row.number).second) << row.number << " twice";
        EXPECT_EQ(sources.Numbers().count(std::to_string(row.number)), 1U) << "nothing shows " << row.number;
        ExpectSamePlaceholders(row.english, row.french);
        for (const ELanguage language : {ELanguage::kEnglish, ELanguage::kFrench}) {
            const char* const text = language == ELanguage::kEnglish ? row.english : row.french;
            const QString whole = QString::fromUtf8(text).replace(QChar(0x2019), QLatin1Char('\''));
            EXPECT_EQ(InfoText(row.number, language), whole) << "not Latin-1: " << text;
        }
    }
    EXPECT_EQ(InfoText(99999, ELanguage::kEnglish), QString());
}

TEST(Texts, ATextIsShownInTheChosenLanguageAndWithoutARowInEnglish) {
    EXPECT_EQ(Text("Save"), QStringLiteral("Save"));
    SetLanguage(ELanguage::kFrench);
    EXPECT_EQ(Text("Save"), QStringLiteral("Enregistrer"));
    EXPECT_EQ(Text("Save", ELanguage::kEnglish), QStringLiteral("Save"));
    EXPECT_EQ(Text("of no table"), QStringLiteral("of no table"));
    SetLanguage(ELanguage::kEnglish);
}

}  // namespace quib
