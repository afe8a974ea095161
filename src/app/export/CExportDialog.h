// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The export dialog: what, as which files, in which format, and how far it is. It is not modal, and the
// session goes on playing; what is written is the project as it was when Export was pressed. Esc cancels
// what is written, and closes the dialog otherwise. User-interface thread.

#include <QDialog>
#include <QTimer>
#include <memory>
#include <vector>

#include "app/export/ExportPage.h"
#include "document/CExportJob.h"
#include "document/CWorkstation.h"

namespace quib {

class CExportDialog : public QDialog {
    Q_OBJECT

public:
    // `scale`: percent.
    CExportDialog(QWidget* parent, CWorkstation& projectOwner, int scale);
    ~CExportDialog() override;

    bool IsWriting() const noexcept { return job != nullptr; }
    // What the controls ask for now.
    ExportSettings Settings() const;
    // Proposes a range, whole; not while it writes, nor one with nothing in it.
    void ChooseRange(EExportRange range);
    const ExportPage& Page() const noexcept { return page; }

public Q_SLOTS:
    void reject() override;

protected:
    bool event(QEvent* event) override;

private:
    static QString FileCount(std::size_t count);
    void Connect();
    void Show(const ExportSettings& kept);
    void ShowStems();
    // The project as it is now: its stems, its lengths.
    void Gather();
    void ShowRange();
    void ShowFormat();
    void ShowAll();
    void ShowNames();
    int StepsPerBar() const;
    double SecondsOf(const ExportSettings& settings) const;
    void InsertWord(int index);
    void ChooseFolder();
    void ShowInFolder();
    void Start();
    void Tick();
    void ShowProgress();
    void Finish(CExportJob::EState how);
    void Lock(bool writing);

    CWorkstation& workstation;
    ExportPage page;
    QString folder;
    ProjectState state;
    std::vector<QCheckBox*> stems;  // one for each instrument that sounds
    std::vector<int> stemPlaces;    // its place in the project
    std::vector<ExportFile> files;  // as planned
    std::unique_ptr<CExportJob> job;
    std::vector<ExportFile> written;  // what the job writes
    double length = 0;                // seconds of it
    QTimer timer;
};

// A number of seconds as minutes, seconds and, where wanted, thousandths: "2:03.871".
QString LengthText(double seconds);

}  // namespace quib
