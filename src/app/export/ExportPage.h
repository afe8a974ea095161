// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The controls of the export dialog and their places; what they mean is the dialog's. User-interface thread.

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

#include "app/export/CExportBar.h"
#include "app/export/CSegments.h"

class QGridLayout;

namespace quib {

struct ExportPage {
    QWidget* settings;  // all that is locked while files are written

    CSegments* range;
    QSpinBox* from;  // bars, from 1
    QSpinBox* to;
    QLabel* length;
    QCheckBox* tail;
    QSpinBox* tailSeconds;

    CSegments* files;
    QWidget* stemBox;
    QGridLayout* stems;
    QCheckBox* effectStems;
    QLabel* effectCount;
    CSegments* point;
    QLabel* stemNote;
    QLabel* fileCount;

    CSegments* format;
    QComboBox* rate;
    QLabel* rateNote;
    QWidget* bitsRow;
    CSegments* bits;
    QCheckBox* dither;
    QWidget* modeRow;
    CSegments* mode;
    QWidget* qualityRow;
    QSpinBox* quality;  // 0..100
    QWidget* bitRateRow;
    QComboBox* bitRate;

    CSegments* loudness;
    QDoubleSpinBox* truePeak;
    QLabel* measured;

    QLineEdit* title;
    QLineEdit* artist;
    QDoubleSpinBox* tempo;

    QLineEdit* name;
    QComboBox* words;
    QPushButton* folder;
    QLabel* example;
    QLabel* existing;

    QLabel* status;
    QLabel* figures;
    CExportBar* bar;
    QLabel* note;
    QPushButton* showFolder;
    QPushButton* cancel;
    QPushButton* start;
};

// Puts the controls into a dialog. `scale`: percent.
ExportPage MakeExportPage(QWidget& dialog, int scale);

}  // namespace quib
