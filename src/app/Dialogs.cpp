// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Dialogs.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "app/CPluginCatalog.h"
#include "app/StartUp.h"
#include "document/CSettings.h"
#include "document/CWorkstation.h"
#include "document/Folders.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kMostCharacters = 512;
constexpr int kBeatUnits[] = {1, 2, 4, 8, 16};

QDialogButtonBox* AddButtons(QDialog& dialog) {
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    return buttons;
}

int Signature(const CSettings& settings, const char* name, int missing) {
    return settings.ReadSettingInt(kTimeSignatureSection, QLatin1String(name), missing);
}

QSpinBox* MakeNumber(int low, int high, int value) {
    auto* const box = new QSpinBox;
    box->setRange(low, high);
    box->setValue(value);
    return box;
}

}  // namespace

void RunBackupDialog(QWidget* parent, CSettings& settings, CBackupCountdown& countdown) {
    QDialog dialog(parent);
    dialog.setWindowTitle(Text("Backup Time"));
    auto* const field = new QLineEdit(QString::number(BackupMinutes(settings)));
    field->setObjectName(QStringLiteral("minutes"));
    field->setMaxLength(kMostCharacters);
    auto* const form = new QFormLayout(&dialog);
    form->addRow(Text("Backup Time(mn) (0 = OFF)"), field);
    form->addRow(AddButtons(dialog));
    if (dialog.exec() != QDialog::Accepted) return;
    const int minutes = ToInteger(field->text());
    settings.WriteSettingInt(kSettingsSection, QStringLiteral("BackupTime"), minutes);
    settings.Flush();
    countdown.Start(minutes);
}

void ApplyTimeSignature(const CSettings& settings, CWorkstation& workstation) {
    EngineSettings& engine = workstation.Audio().settings;
    engine.beatsPerBar.Set(std::clamp(Signature(settings, "BeatsPerBar", 4), 1, 32));
    engine.beatUnit.Set(std::clamp(Signature(settings, "BeatUnit", 4), 1, 16));
    engine.stepsPerBeat.Set(std::clamp(Signature(settings, "StepsPerBeat", 4), 1, 16));
    engine.timebase.Set(Signature(settings, "Timebase", 96));
}

bool RunTimeSignatureDialog(QWidget* parent, CWorkstation& workstation) {
    CSettings& settings = workstation.Settings();
    QDialog dialog(parent);
    dialog.setWindowTitle(Text("Time Signature"));
    auto* const beats = MakeNumber(1, 32, workstation.Audio().settings.beatsPerBar.Get());
    auto* const unit = new QComboBox;
    for (const int value : kBeatUnits) unit->addItem(QString::number(value));
    unit->setCurrentText(QString::number(workstation.Audio().settings.beatUnit.Get()));
    auto* const steps = MakeNumber(1, 16, Signature(settings, "StepsPerBeat", 4));
    auto* const form = new QFormLayout(&dialog);
    form->addRow(Text("Beats in a bar"), beats);
    form->addRow(Text("Note of a beat (1/n)"), unit);
    form->addRow(Text("Steps in a quarter note"), steps);
    form->addRow(AddButtons(dialog));
    if (dialog.exec() != QDialog::Accepted) return false;
    settings.WriteSettingInt(kTimeSignatureSection, QStringLiteral("BeatsPerBar"), beats->value());
    settings.WriteSettingInt(kTimeSignatureSection, QStringLiteral("BeatUnit"), unit->currentText().toInt());
    settings.WriteSettingInt(kTimeSignatureSection, QStringLiteral("StepsPerBeat"), steps->value());
    settings.Flush();
    ApplyTimeSignature(settings, workstation);
    workstation.Changes().Touch();
    return true;
}

void TellError(QWidget* parent, const QString& text, const QString& caption) {
    if (text.isEmpty()) return;
    auto* const box = new QMessageBox(QMessageBox::Warning, caption, text, QMessageBox::Ok, parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void ShowAboutBox(QWidget* parent) {
    const QString libraries = Text(
        "Qt %1 (LGPL 3), ALSA library (LGPL 2.1), fmt (MIT), CLI11 (BSD 3-clause), Inter (SIL Open Font "
        "License 1.1); LAME (LGPL 2) and JACK (LGPL 2.1) are opened where they are installed.");
    const QString text =
        QStringLiteral("<h2>QUIB Sequencer %1</h2><p>%2</p><p>%3</p><p>%4</p>")
            .arg(QStringLiteral(QUIB_VERSION), Text("Pattern sequencer and host of VST 2 instruments and effects."),
                 Text("Free software under the GNU General Public License, version 3 or later. It comes with no "
                      "warranty."),
                 libraries.arg(QLatin1String(qVersion())));
    QMessageBox box(QMessageBox::NoIcon, Text("About QUIB Sequencer"), text, QMessageBox::Ok, parent);
    box.setTextFormat(Qt::RichText);
    box.exec();
}

void RunScanDialog(QWidget* parent, CPluginCatalog& catalog) {
    QProgressDialog progress(Text("Looking for plug-ins"), Text("Cancel"), 0, 0, parent);
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(0);
    QObject::connect(&catalog, &CPluginCatalog::Progressed, &progress,
                     [&progress](int done, int total, const QString& name) {
                         progress.setMaximum(total);
                         progress.setValue(done);
                         progress.setLabelText(name);
                     });
    QObject::connect(&catalog, &CPluginCatalog::Finished, &progress, &QProgressDialog::reset);
    QObject::connect(&catalog, &CPluginCatalog::Finished, &progress, &QDialog::accept);
    QObject::connect(&progress, &QProgressDialog::canceled, &catalog, &CPluginCatalog::Cancel);
    catalog.Scan();
    if (catalog.IsScanning()) progress.exec();
}

bool RunPluginFoldersDialog(QWidget* parent, CSettings& settings) {
    QDialog dialog(parent);
    dialog.setWindowTitle(Text("Plug-in folders"));
    auto* const list = new QListWidget;
    list->addItems(AddedPluginFolders(settings));
    auto* const add = new QPushButton(Text("Add ..."));
    auto* const remove = new QPushButton(Text("Remove"));
    auto* const layout = new QVBoxLayout(&dialog);
    auto* const row = new QHBoxLayout;
    layout->addWidget(new QLabel(Text("Folders that are searched beside those of the program and the system:")));
    layout->addWidget(list);
    row->addWidget(add);
    row->addWidget(remove);
    for (const int by : {-1, 1}) {
        auto* const move = new QPushButton(by < 0 ? Text("Move Up") : Text("Move Down"));
        row->addWidget(move);
        QObject::connect(move, &QPushButton::clicked, &dialog, [list, by] {
            const int from = list->currentRow();
            if (from < 0 || from + by < 0 || from + by >= list->count()) return;
            list->insertItem(from + by, list->takeItem(from));
            list->setCurrentRow(from + by);
        });
    }
    row->addStretch();
    layout->addLayout(row);
    layout->addWidget(AddButtons(dialog));
    QObject::connect(add, &QPushButton::clicked, &dialog, [&] {
        const QString folder = QFileDialog::getExistingDirectory(&dialog, Text("Plug-in folders"));
        if (!folder.isEmpty() && list->findItems(folder, Qt::MatchExactly).isEmpty()) list->addItem(folder);
    });
    QObject::connect(remove, &QPushButton::clicked, &dialog, [list] { delete list->currentItem(); });
    if (dialog.exec() != QDialog::Accepted) return false;
    QStringList added;
    for (int i = 0; i < list->count(); ++i) added.append(list->item(i)->text());
    KeepPluginFolders(settings, added);
    return true;
}

}  // namespace quib
