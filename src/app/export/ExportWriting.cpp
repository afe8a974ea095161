// SPDX-License-Identifier: GPL-3.0-or-later
// The export dialog while files are written.
#include "app/export/CExportDialog.h"
#include "app/export/ExportChoices.h"
#include "texts/Texts.h"

namespace quib {

namespace {

QString Signed(double decibels) {
    return (decibels < 0 ? QString() : QStringLiteral("+")) + QString::number(decibels, 'f', 1);
}

}  // namespace

void CExportDialog::Start() {
    if (IsWriting()) return;
    const ExportSettings settings = Settings();
    ExportSettings kept = settings;
    const int session = static_cast<int>(workstation.Audio().Format().sampleRate);
    kept.format.sampleRate = page.rate->currentData().toInt();
    if (kept.format.sampleRate == session) kept.format.sampleRate = 0;  // the session's, whichever it is then
    kept.format.dither = page.dither->isChecked();
    KeepExportChoices(workstation.Settings(), kept);
    written = PlanFiles(state, settings);
    length = SecondsOf(settings);
    job = std::make_unique<CExportJob>(workstation, settings);
    Lock(true);
    page.measured->clear();
    page.bar->SetSegments(static_cast<int>(written.size()));
    page.note->setText(Text("The song goes on playing while files are written.") + QLatin1Char('\n') +
                       Text("Settings are locked while writing. Cancel leaves no half file."));
    ShowProgress();
    timer.start();
}

void CExportDialog::Lock(bool writing) {
    page.settings->setEnabled(!writing);
    page.start->setEnabled(!writing);
    page.showFolder->hide();
    page.cancel->setText(writing ? Text("Cancel") : Text("Close"));
    if (writing) page.cancel->setFocus();
}

void CExportDialog::Tick() {
    if (!IsWriting()) return;
    const CExportJob::EState how = job->Tick();
    if (how != CExportJob::EState::kWorking) return Finish(how);
    ShowProgress();
}

void CExportDialog::ShowProgress() {
    const double share = job->Share();
    const int current = job->CurrentFile();
    const QString count = FileCount(written.size());
    page.status->setText(current < 0 || current >= static_cast<int>(written.size())
                             ? Text("Writing %1").arg(count)
                             : Text("Writing %1 of %2: %3")
                                   .arg(current + 1)
                                   .arg(written.size())
                                   .arg(QString::fromStdString(written[static_cast<std::size_t>(current)].name)));
    page.bar->SetShare(share);
    QString figures = QStringLiteral("%1 %").arg(static_cast<int>(share * 100));
    constexpr double kSureAfter = 0.5;  // seconds
    if (const double seconds = job->Seconds(); seconds > kSureAfter && share > 0) {
        figures = Text("%1 · %2 times as fast as playing · %3 s left")
                      .arg(figures)
                      .arg(share * length / seconds, 0, 'f', 0)
                      .arg(std::ceil(seconds / share - seconds));
    }
    page.figures->setText(figures);
}

void CExportDialog::Finish(CExportJob::EState how) {
    timer.stop();
    const std::unique_ptr<CExportJob> ended = std::move(job);
    Lock(false);
    Gather();
    page.figures->clear();
    page.bar->SetShare(how == CExportJob::EState::kDone ? 1 : 0);
    if (const auto& level = ended->Measured()) {
        page.measured->setText(Text("The mix measures %1 LUFS, peak %2 dB: gain %3 dB")
                                   .arg(level->loudness, 0, 'f', 1)
                                   .arg(level->truePeak, 0, 'f', 1)
                                   .arg(Signed(level->gain)));
    }
    QStringList notes;
    for (const std::string& warning : ended->Warnings()) notes.append(QString::fromStdString(warning));
    for (const std::string& name : ended->Clipped()) {
        notes.append(Text("%1 passes full scale and is clipped there.").arg(QString::fromStdString(name)));
    }
    constexpr qsizetype kShownNotes = 2;
    if (!notes.isEmpty()) page.note->setText(notes.mid(0, kShownNotes).join(QLatin1Char('\n')));
    if (how == CExportJob::EState::kDone) {
        page.status->setText(Text("%1 in %2 s").arg(FileCount(written.size())).arg(std::ceil(ended->Seconds())));
        page.showFolder->show();
        page.cancel->setFocus();
    } else if (how == CExportJob::EState::kCancelled) {
        page.status->setText(Text("Cancelled. Nothing was written."));
    } else {
        page.status->setText(Text("The export failed."));
        page.note->setText(QString::fromStdString(ended->Error()));
    }
}

}  // namespace quib
