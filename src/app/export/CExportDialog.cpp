// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/export/CExportDialog.h"

#include <QAbstractButton>
#include <QDate>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QKeyEvent>
#include <QUrl>
#include <algorithm>
#include <cmath>

#include "app/export/ExportChoices.h"
#include "document/CSettings.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kTickMilliseconds = 40;
constexpr int kStemColumns = 2;
constexpr int kRates[] = {32000, 44100, 48000, 88200, 96000, 192000};
constexpr double kLoudness[] = {0, -14, -16, -23};  // LUFS, in the order of the segments; the first: none
constexpr double kBytesPerMegabyte = 1e6;

QString RateText(int rate) { return QStringLiteral("%1 kHz").arg(rate / 1000.0); }

bool HasBits(ESoundFormat format) { return format == ESoundFormat::kWave || format == ESoundFormat::kFlac; }

// Of sound, about.
double BytesPerSecond(const SoundFormat& format) {
    const double wave = 2.0 * format.sampleRate * format.bits / 8.0;
    switch (format.kind) {
        case ESoundFormat::kWave:
            return wave;
        case ESoundFormat::kFlac:
            return wave * 0.6;
        case ESoundFormat::kOgg:
            return (64 + 320 * format.quality) * 125.0;
        case ESoundFormat::kOpus:
            return (32 + 400 * format.quality) * 125.0;
        case ESoundFormat::kMp3:
            return (format.variable ? 65 + 180 * format.quality : format.bitRate) * 125.0;
    }
    return wave;
}

std::string Trimmed(const QLineEdit& field) { return field.text().trimmed().toStdString(); }

}  // namespace

QString LengthText(double seconds) {
    const qint64 thousandths = std::llround(seconds * 1000.0);
    return QStringLiteral("%1:%2.%3")
        .arg(thousandths / 60000)
        .arg(thousandths / 1000 % 60, 2, 10, QLatin1Char('0'))
        .arg(thousandths % 1000, 3, 10, QLatin1Char('0'));
}

CExportDialog::CExportDialog(QWidget* parent, CWorkstation& projectOwner, int scale)
    : QDialog(parent), workstation(projectOwner), page(MakeExportPage(*this, scale)) {
    setWindowTitle(Text("Export audio"));
    setAttribute(Qt::WA_DeleteOnClose);
    state = workstation.Session().GatherState();
    Show(ReadExportChoices(workstation.Settings()));
    Connect();
    ShowAll();
    page.name->setFocus();
    page.name->selectAll();
    timer.setInterval(kTickMilliseconds);
}

CExportDialog::~CExportDialog() = default;

QString CExportDialog::FileCount(std::size_t count) {
    return count == 1 ? Text("1 file") : Text("%1 files").arg(count);
}

void CExportDialog::Connect() {
    const auto all = [this] { ShowAll(); };
    connect(page.range, &CSegments::Changed, this, [this] {
        ShowRange();
        ShowAll();
    });
    for (CSegments* const segments : {page.files, page.point, page.format, page.bits, page.mode, page.loudness}) {
        connect(segments, &CSegments::Changed, this, all);
    }
    for (QCheckBox* const box : {page.tail, page.effectStems, page.dither}) {
        connect(box, &QCheckBox::toggled, this, all);
    }
    for (QSpinBox* const number : {page.from, page.to, page.tailSeconds, page.quality}) {
        connect(number, &QSpinBox::valueChanged, this, all);
    }
    for (QComboBox* const list : {page.rate, page.bitRate}) connect(list, &QComboBox::activated, this, all);
    for (QLineEdit* const field : {page.title, page.artist, page.name}) {
        connect(field, &QLineEdit::textChanged, this, all);
    }
    for (QDoubleSpinBox* const number : {page.truePeak, page.tempo}) {
        connect(number, &QDoubleSpinBox::valueChanged, this, all);
    }
    connect(page.words, &QComboBox::activated, this, &CExportDialog::InsertWord);
    connect(page.folder, &QPushButton::clicked, this, &CExportDialog::ChooseFolder);
    connect(page.showFolder, &QPushButton::clicked, this, &CExportDialog::ShowInFolder);
    connect(page.cancel, &QPushButton::clicked, this, &CExportDialog::reject);
    connect(page.start, &QPushButton::clicked, this, &CExportDialog::Start);
    connect(&timer, &QTimer::timeout, this, &CExportDialog::Tick);
    connect(&workstation.Changes(), &CChanges::Changed, this, &CExportDialog::Gather);
}

void CExportDialog::Show(const ExportSettings& kept) {
    page.tail->setChecked(kept.tailSeconds > 0);
    page.tailSeconds->setValue(kept.tailSeconds > 0 ? static_cast<int>(kept.tailSeconds) : 10);
    page.files->Choose(kept.stems ? 1 : 0);
    page.effectStems->setChecked(kept.effectStems);
    page.point->Choose(kept.stemPoint == EStemPoint::kAfterMaster ? 1 : 0);
    page.format->Choose(static_cast<int>(kept.format.kind));
    const int session = static_cast<int>(workstation.Audio().Format().sampleRate);
    for (const int rate : kRates) page.rate->addItem(RateText(rate), rate);
    if (page.rate->findData(session) < 0) page.rate->addItem(RateText(session), session);
    page.rate->setCurrentIndex(
        std::max(page.rate->findData(kept.format.sampleRate > 0 ? kept.format.sampleRate : session), 0));
    page.bits->Choose(kept.format.bits == 16 ? 0 : kept.format.bits == 24 ? 1 : 2);
    page.dither->setChecked(kept.format.dither);
    page.mode->Choose(kept.format.variable ? 1 : 0);
    page.quality->setValue(static_cast<int>(std::lround(kept.format.quality * 100)));
    page.bitRate->setCurrentIndex(std::max(page.bitRate->findData(kept.format.bitRate), 0));
    for (int index = 1; kept.loudness && index < 4; ++index) {
        if (kLoudness[index] == kept.loudness->loudness) page.loudness->Choose(index);
    }
    page.truePeak->setValue(kept.loudness ? kept.loudness->truePeak : -1.0);
    page.title->setText(workstation.Session().ProjectName());
    page.artist->setText(QString::fromStdString(kept.tags.artist));
    page.tempo->setValue(static_cast<double>(state.master.tempo));
    page.name->setText(QString::fromStdString(kept.namePattern));
    folder = QString::fromStdString(kept.folder.string());
    page.range->Choose(state.master.songMode > 0 ? 0 : 2);
    ShowStems();
    ShowRange();
}

void CExportDialog::Gather() {
    if (IsWriting()) return;
    state = workstation.Session().GatherState();
    ShowStems();
    ShowRange();
    ShowAll();
}

// Those that were left out stay so.
void CExportDialog::ShowStems() {
    const std::vector<int> leftOut = Settings().leftOut;
    for (const QCheckBox* const box : stems) delete box;
    stems.clear();
    stemPlaces.clear();
    for (std::size_t index = 0; index < state.instruments.size(); ++index) {
        if (!Sounds(*state.instruments[index])) continue;
        const int place = static_cast<int>(index);
        QString title = QString::fromStdString(state.instruments[index]->title);
        auto* const box = new QCheckBox(title.replace(QLatin1Char('&'), QLatin1String("&&")));
        box->setChecked(std::find(leftOut.begin(), leftOut.end(), place) == leftOut.end());
        connect(box, &QCheckBox::toggled, this, [this] { ShowAll(); });
        const int number = static_cast<int>(stems.size());
        page.stems->addWidget(box, number / kStemColumns, number % kStemColumns);
        stems.push_back(box);
        stemPlaces.push_back(place);
    }
}

int CExportDialog::StepsPerBar() const {
    const EngineSettings& engine = workstation.Audio().settings;
    return std::max(1, engine.stepsPerBeat.Get() * engine.beatsPerBar.Get());
}

void CExportDialog::ChooseRange(EExportRange range) {
    const int index = static_cast<int>(range);
    if (IsWriting() || page.range->IsOff(index)) return;
    page.range->Choose(index);
    ShowRange();
    ShowAll();
}

// A range is proposed whole, in bars.
void CExportDialog::ShowRange() {
    const auto empty = [this](EExportRange range) { return StepsOf(range, state).end == 0; };
    page.range->SetOff(0, empty(EExportRange::kSong) ? Text("The song has no entries.") : QString());
    page.range->SetOff(1, empty(EExportRange::kLoop) ? Text("There is no loop region.") : QString());
    page.range->SetOff(2, empty(EExportRange::kPatterns) ? Text("There is no instrument.") : QString());
    page.range->SetOff(3, empty(EExportRange::kMarkers) ? Text("The song has no markers.") : QString());
    if (page.range->IsOff(page.range->Chosen())) page.range->Choose(page.range->IsOff(0) ? 2 : 0);
    const auto range = static_cast<EExportRange>(page.range->Chosen());
    const ExportSteps steps = StepsOf(range, state);
    const int bar = StepsPerBar();
    const QSignalBlocker quietFrom(page.from);
    const QSignalBlocker quietTo(page.to);
    page.from->setValue(steps.first / bar + 1);
    page.to->setValue((steps.end + bar - 1) / bar + 1);
    page.from->setEnabled(range == EExportRange::kSong);
    page.to->setEnabled(range == EExportRange::kSong || range == EExportRange::kPatterns);
}

ExportSettings CExportDialog::Settings() const {
    ExportSettings settings;
    settings.range = static_cast<EExportRange>(page.range->Chosen());
    const ExportSteps whole = StepsOf(*settings.range, state);
    const int bar = StepsPerBar();
    const int endBar = (whole.end + bar - 1) / bar + 1;
    const bool isFixed = settings.range == EExportRange::kLoop || settings.range == EExportRange::kMarkers;
    settings.firstStep = isFixed ? whole.first : (page.from->value() - 1) * bar;
    settings.endStep = isFixed || page.to->value() == endBar ? whole.end : (page.to->value() - 1) * bar;
    settings.tailSeconds = page.tail->isChecked() ? page.tailSeconds->value() : 0;

    SoundFormat& format = settings.format;
    format.kind = static_cast<ESoundFormat>(page.format->Chosen());
    format.sampleRate = format.kind == ESoundFormat::kOpus ? kOpusRate : page.rate->currentData().toInt();
    constexpr int kBits[] = {16, 24, 32};
    format.bits = kBits[page.bits->Chosen()];
    if (format.kind == ESoundFormat::kFlac) format.bits = std::min(format.bits, 24);
    format.dither = page.dither->isChecked() && HasBits(format.kind) && format.bits == 16;
    format.quality = page.quality->value() / 100.0;
    format.variable = page.mode->Chosen() == 1;
    format.bitRate = page.bitRate->currentData().toInt();

    const int loudness = page.loudness->Chosen();
    if (loudness > 0) settings.loudness = LoudnessTarget{kLoudness[loudness], page.truePeak->value()};
    settings.tags = {Trimmed(*page.title), Trimmed(*page.artist), page.tempo->value(),
                     workstation.Audio().settings.beatsPerBar.Get()};
    settings.stems = page.files->Chosen() == 1;
    settings.stemPoint = page.point->Chosen() == 1 ? EStemPoint::kAfterMaster : EStemPoint::kBeforeMaster;
    settings.effectStems = page.effectStems->isChecked();
    for (std::size_t index = 0; index < stems.size(); ++index) {
        if (!stems[index]->isChecked()) settings.leftOut.push_back(stemPlaces[index]);
    }
    settings.folder = folder.toStdString();
    settings.namePattern = Trimmed(*page.name);
    settings.date = QDate::currentDate().toString(Qt::ISODate).toStdString();
    settings.stepsPerBeat = workstation.Audio().settings.stepsPerBeat.Get();
    return settings;
}

double CExportDialog::SecondsOf(const ExportSettings& settings) const {
    const double stepsPerMinute = static_cast<double>(state.master.tempo) * std::max(1, settings.stepsPerBeat);
    return std::max(0, settings.endStep - settings.firstStep) * 60.0 / stepsPerMinute;
}

void CExportDialog::ShowFormat() {
    const auto kind = static_cast<ESoundFormat>(page.format->Chosen());
    const bool isMp3 = kind == ESoundFormat::kMp3;
    const bool isVariable = page.mode->Chosen() == 1;
    page.bits->SetOff(2, kind == ESoundFormat::kFlac ? Text("A FLAC file takes 16 or 24 bits.") : QString());
    if (page.bits->IsOff(page.bits->Chosen())) page.bits->Choose(1);
    page.bitsRow->setVisible(HasBits(kind));
    page.dither->setVisible(HasBits(kind));
    page.dither->setEnabled(page.bits->Chosen() == 0);
    page.modeRow->setVisible(isMp3);
    page.bitRateRow->setVisible(isMp3 && !isVariable);
    page.qualityRow->setVisible(kind == ESoundFormat::kOgg || kind == ESoundFormat::kOpus || (isMp3 && isVariable));
    const bool isOpus = kind == ESoundFormat::kOpus;
    page.rate->setEnabled(!isOpus);
    const int rate = isOpus ? kOpusRate : page.rate->currentData().toInt();
    const bool isSession = rate == static_cast<int>(workstation.Audio().Format().sampleRate);
    page.rateNote->setText(isOpus ? Text("Opus has 48 kHz only") : isSession ? Text("as the session") : QString());
}

void CExportDialog::ShowAll() {
    ShowFormat();
    const ExportSettings settings = Settings();
    const bool isBefore = settings.stemPoint == EStemPoint::kBeforeMaster;
    page.length->setText(LengthText(SecondsOf(settings)));
    page.tailSeconds->setEnabled(page.tail->isChecked());
    for (QWidget* const widget : {page.stemBox, static_cast<QWidget*>(page.point)}) {
        widget->setEnabled(settings.stems);
    }
    page.effectStems->setEnabled(settings.stems && isBefore);
    page.truePeak->setEnabled(settings.loudness.has_value());
    page.stemNote->setText(!settings.stems               ? QString()
                           : !isBefore                   ? Text("Each alone, with its effects.")
                           : StemsAddUp(state, settings) ? Text("All of them added up give the mix.")
                                                         : QString());
    ShowNames();
}

void CExportDialog::ShowNames() {
    const ExportSettings settings = Settings();
    files = PlanFiles(state, settings);
    const auto isEffect = [](const ExportFile& file) { return file.source == ExportFile::ESource::kEffect; };
    const auto effects = std::count_if(files.begin(), files.end(), isEffect);
    page.effectCount->setText(effects > 0 ? QStringLiteral("+ %1").arg(effects) : QString());
    const double bytes = static_cast<double>(files.size()) * SecondsOf(settings) * BytesPerSecond(settings.format);
    page.fileCount->setText(
        Text("%1, about %2 MB").arg(FileCount(files.size())).arg(std::ceil(bytes / kBytesPerMegabyte)));
    page.example->setText(files.empty() ? QString() : QString::fromStdString(files.front().path.filename().string()));
    std::error_code ignored;
    const auto existing = std::count_if(files.begin(), files.end(), [&](const ExportFile& file) {
        return std::filesystem::exists(file.path, ignored);
    });
    page.existing->setText(existing == 0       ? QString()
                           : files.size() == 1 ? Text("It exists and will be replaced")
                                               : Text("%1 of these exist and will be replaced").arg(existing));
    const QString shown = QString(folder).replace(QDir::homePath(), QStringLiteral("~"));
    page.folder->setText(page.folder->fontMetrics().elidedText(shown, Qt::ElideMiddle, width() / 4));
    page.folder->setToolTip(folder);
    const bool isEmpty = settings.endStep <= settings.firstStep;
    if (IsWriting()) return;
    page.start->setEnabled(!isEmpty && !files.empty());
    page.bar->SetSegments(static_cast<int>(files.size()));
    page.note->setText(isEmpty ? Text("There is nothing to play.") : Text("The song may play on meanwhile."));
    page.showFolder->hide();
}

void CExportDialog::InsertWord(int index) {
    if (index > 0) page.name->insert(page.words->itemText(index));
    page.words->setCurrentIndex(0);
    page.name->setFocus();
}

void CExportDialog::ChooseFolder() {
    QDir first(folder);
    while (!first.exists() && first.cdUp()) {}
    const QString chosen = QFileDialog::getExistingDirectory(this, Text("Folder for exports"), first.path());
    if (chosen.isEmpty()) return;
    folder = chosen;
    ShowAll();
}

void CExportDialog::ShowInFolder() { QDesktopServices::openUrl(QUrl::fromLocalFile(folder)); }

void CExportDialog::reject() {
    if (IsWriting()) return job->Cancel();
    QDialog::reject();
}

// Space presses the button that has the focus, as in every dialog, and does not play.
bool CExportDialog::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && qobject_cast<QAbstractButton*>(focusWidget()) != nullptr &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space) {
        event->accept();
        return true;
    }
    return QDialog::event(event);
}

}  // namespace quib
