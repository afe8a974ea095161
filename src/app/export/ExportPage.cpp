// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/export/ExportPage.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QScrollArea>
#include <QVBoxLayout>

#include "controls/CPalette.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kWidth = 760;       // skin pixels
constexpr int kStemsHeight = 92;  // likewise
constexpr int kGap = 8;

constexpr const char* kLook = R"(
QDialog { background: {window}; }
QFrame#panel { background: {panel}; border: 1px solid {line}; border-radius: 4px; }
QLabel { background: transparent; color: {textMuted}; }
QLabel#title { color: {text}; font-weight: bold; border-left: 3px solid {accent}; padding-left: 6px; }
QLabel#strong { color: {text}; font-weight: bold; }
QLabel#plain { color: {text}; }
QLabel#warning { color: {pattern}; }
QCheckBox { background: transparent; spacing: 7px; color: {text}; }
QCheckBox:disabled { color: {textOff}; }
QWidget#segments, QWidget#well { background: {well}; border-radius: 3px; }
QWidget#segments QPushButton { border: none; border-radius: 2px; padding: 4px 3px; background: transparent;
    color: {textMuted}; }
QWidget#segments QPushButton:hover { background: {panelRaised}; }
QWidget#segments QPushButton:checked { background: {accent}; color: {wellDeep}; font-weight: bold; }
QWidget#segments QPushButton:disabled { color: {textOff}; }
QWidget#segments QPushButton:checked:disabled { background: {textOff}; color: {wellDeep}; }
QWidget#segments QPushButton:focus { border: 1px solid {text}; }
QLineEdit, QSpinBox, QDoubleSpinBox, QComboBox { background: {wellDeep}; color: {text}; border: 1px solid {edge};
    border-radius: 3px; padding: 2px 5px; selection-background-color: {accent}; selection-color: {wellDeep}; }
QLineEdit:focus, QSpinBox:focus, QDoubleSpinBox:focus, QComboBox:focus { border-color: {text}; }
QLineEdit:disabled, QSpinBox:disabled, QDoubleSpinBox:disabled, QComboBox:disabled { color: {textOff}; }
QComboBox QAbstractItemView { background: {panelRaised}; color: {text}; selection-background-color: {accent};
    selection-color: {wellDeep}; }
QPushButton { background: {panelRaised}; color: {text}; border: 1px solid {edge}; border-radius: 3px; padding: 3px 10px; }
QPushButton:hover { background: {knobHover}; }
QPushButton:disabled { color: {textOff}; }
QPushButton:focus { border-color: {text}; }
QPushButton#start { background: {accent}; color: {wellDeep}; font-weight: bold; padding: 6px 22px; }
QPushButton#start:disabled { background: {panelRaised}; color: {textOff}; }
QPushButton#cancel, QPushButton#showFolder { padding: 6px 18px; }
QScrollArea, QScrollArea > QWidget > QWidget { background: {well}; border: none; }
QScrollBar:vertical { background: {well}; width: 8px; margin: 0; }
QScrollBar::handle:vertical { background: {edge}; border-radius: 4px; min-height: 24px; }
QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }
QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: transparent; }
QToolTip { background: {panelRaised}; color: {text}; border: 1px solid {edge}; }
)";

QLabel* Label(const QString& text, const char* role = "") {
    auto* const label = new QLabel(text);
    label->setObjectName(QLatin1String(role));
    return label;
}

QHBoxLayout* Row(std::initializer_list<QWidget*> widgets) {
    auto* const row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kGap);
    for (QWidget* const widget : widgets) {
        if (widget != nullptr) {
            row->addWidget(widget);
        } else {
            row->addStretch(1);
        }
    }
    return row;
}

// A row that can be hidden as a whole. A null pointer is room that stretches.
QWidget* RowWidget(std::initializer_list<QWidget*> widgets) {
    auto* const row = new QWidget;
    row->setLayout(Row(widgets));
    return row;
}

QVBoxLayout* Panel(QLayout& parent, const QString& title) {
    auto* const frame = new QFrame;
    frame->setObjectName(QStringLiteral("panel"));
    parent.addWidget(frame);
    auto* const box = new QVBoxLayout(frame);
    box->setContentsMargins(kGap, kGap, kGap, kGap);
    box->setSpacing(kGap);
    if (!title.isEmpty()) box->addWidget(Label(title, "title"));
    return box;
}

QSpinBox* Number(int low, int high, const QString& suffix = {}) {
    auto* const box = new QSpinBox;
    box->setRange(low, high);
    box->setSuffix(suffix);
    box->setButtonSymbols(QAbstractSpinBox::NoButtons);
    return box;
}

QDoubleSpinBox* Decimal(double low, double high, int decimals, const QString& suffix = {}) {
    auto* const box = new QDoubleSpinBox;
    box->setRange(low, high);
    box->setDecimals(decimals);
    box->setSuffix(suffix);
    box->setButtonSymbols(QAbstractSpinBox::NoButtons);
    return box;
}

QPushButton* Button(const QString& text, const char* role) {
    auto* const button = new QPushButton(text);
    button->setObjectName(QLatin1String(role));
    button->setAutoDefault(false);
    return button;
}

void BuildWhat(ExportPage& page, QLayout& parent) {
    QVBoxLayout* const box = Panel(parent, Text("What"));
    page.range = new CSegments({Text("Song"), Text("Loop"), Text("Patterns"), Text("Markers")});
    page.from = Number(1, 99999);
    page.to = Number(2, 99999);
    page.length = Label({}, "strong");
    page.tail = new QCheckBox(Text("Tail until silence, at most"));
    page.tailSeconds = Number(1, 600, QStringLiteral(" s"));
    box->addWidget(page.range);
    box->addLayout(Row({Label(Text("From bar")), page.from, Label(Text("to")), page.to, nullptr, page.length}));
    box->addLayout(Row({page.tail, page.tailSeconds, nullptr}));
    box->addStretch(1);
}

void BuildFiles(ExportPage& page, QLayout& parent, int scale) {
    QVBoxLayout* const box = Panel(parent, Text("Files"));
    page.files = new CSegments({Text("One mix"), Text("A stem for each instrument")});
    auto* const area = new QScrollArea;
    auto* const list = new QWidget;
    page.stems = new QGridLayout(list);
    page.stems->setContentsMargins(kGap, kGap, kGap, kGap);
    area->setWidget(list);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFixedHeight(kStemsHeight * scale / 100);
    page.stemBox = area;
    page.effectStems = new QCheckBox(Text("Shared effects as stems of their own"));
    page.effectCount = Label({});
    page.point = new CSegments({Text("before the master"), Text("after it")});
    page.stemNote = Label({});
    page.fileCount = Label({}, "strong");
    box->addWidget(page.files);
    box->addWidget(area);
    box->addLayout(Row({page.effectStems, nullptr, page.effectCount}));
    auto* const taken = Row({Label(Text("Taken"))});
    taken->addWidget(page.point, 1);
    box->addLayout(taken);
    box->addLayout(Row({page.stemNote, nullptr, page.fileCount}));
}

void BuildFormat(ExportPage& page, QLayout& parent) {
    QVBoxLayout* const box = Panel(parent, Text("Format"));
    page.format = new CSegments({QStringLiteral("Wave"), QStringLiteral("FLAC"), QStringLiteral("Ogg"),
                                 QStringLiteral("Opus"), QStringLiteral("MP3")});
    page.rate = new QComboBox;
    page.rateNote = Label({});
    page.bits = new CSegments({QStringLiteral("16"), QStringLiteral("24"), Text("32 float")});
    page.dither = new QCheckBox(Text("Dither (16 bits only)"));
    page.mode = new CSegments({Text("Constant rate"), Text("Variable rate")});
    page.quality = Number(0, 100, QStringLiteral(" %"));
    page.bitRate = new QComboBox;
    for (const int rate : {96, 128, 160, 192, 224, 256, 320}) {
        page.bitRate->addItem(QStringLiteral("%1 kbit/s").arg(rate), rate);
    }
    page.bitsRow = RowWidget({Label(Text("Bits")), page.bits});
    page.modeRow = RowWidget({page.mode});
    page.qualityRow = RowWidget({Label(Text("Quality")), page.quality, nullptr});
    page.bitRateRow = RowWidget({Label(Text("Bit rate")), page.bitRate, nullptr});
    box->addWidget(page.format);
    box->addLayout(Row({Label(Text("Rate")), page.rate, page.rateNote, nullptr}));
    for (QWidget* const row :
         {page.bitsRow, static_cast<QWidget*>(page.dither), page.modeRow, page.qualityRow, page.bitRateRow}) {
        box->addWidget(row);
    }
    box->addStretch(1);
}

void BuildLoudness(ExportPage& page, QLayout& parent) {
    QVBoxLayout* const box = Panel(parent, Text("Loudness"));
    page.loudness =
        new CSegments({Text("As it is"), QStringLiteral("-14"), QStringLiteral("-16"), QStringLiteral("-23 LUFS")});
    page.truePeak = Decimal(-20, 0, 1, QStringLiteral(" dB"));
    page.measured = Label({}, "plain");
    box->addWidget(page.loudness);
    box->addLayout(
        Row({Label(Text("True peak at most")), page.truePeak, nullptr, Label(Text("one gain for all files"))}));
    box->addWidget(page.measured);
}

void BuildTags(ExportPage& page, QLayout& parent) {
    QVBoxLayout* const box = Panel(parent, Text("Tags"));
    page.title = new QLineEdit;
    page.artist = new QLineEdit;
    page.tempo = Decimal(1, 1000, 2);
    auto* const grid = new QGridLayout;
    grid->setSpacing(4);
    grid->addWidget(Label(Text("Title")), 0, 0);
    grid->addWidget(Label(Text("Artist")), 0, 1);
    grid->addWidget(Label(QStringLiteral("BPM")), 0, 2);
    grid->addWidget(page.title, 1, 0);
    grid->addWidget(page.artist, 1, 1);
    grid->addWidget(page.tempo, 1, 2);
    grid->setColumnStretch(0, 3);
    grid->setColumnStretch(1, 2);
    grid->setColumnStretch(2, 1);
    box->addLayout(grid);
    box->addStretch(1);
}

void BuildName(ExportPage& page, QLayout& parent) {
    QVBoxLayout* const box = Panel(parent, {});
    page.name = new QLineEdit;
    page.words = new QComboBox;
    page.words->addItem(Text("Insert a word"));
    for (const char* const word : {"{title}", "{artist}", "{bpm}", "{stem}", "{number}", "{date}"}) {
        page.words->addItem(QLatin1String(word));
    }
    page.folder = Button({}, "folder");
    page.example = Label({}, "plain");
    page.existing = Label({}, "warning");
    QHBoxLayout* const row = Row({Label(Text("Name"), "title"), page.name, page.words, page.folder});
    row->setStretch(1, 1);
    box->addLayout(row);
    box->addLayout(Row({page.example, nullptr, page.existing}));
}

void BuildWrite(ExportPage& page, QLayout& parent) {
    QVBoxLayout* const box = Panel(parent, {});
    page.status = Label({}, "strong");
    page.figures = Label({});
    page.bar = new CExportBar;
    page.note = Label({});
    page.showFolder = Button(Text("Show folder"), "showFolder");
    page.cancel = Button(Text("Cancel"), "cancel");
    page.start = Button(Text("Export"), "start");
    page.start->setDefault(true);
    box->addLayout(Row({page.status, nullptr, page.figures}));
    box->addWidget(page.bar);
    box->addLayout(Row({page.note, nullptr, page.showFolder, page.cancel, page.start}));
}

}  // namespace

ExportPage MakeExportPage(QWidget& dialog, int scale) {
    ExportPage page{};
    dialog.setStyleSheet(Palette().Fill(QString::fromLatin1(kLook), ESection::kTransport));
    dialog.setFixedWidth(kWidth * scale / 100);
    auto* const all = new QVBoxLayout(&dialog);
    all->setContentsMargins(kGap, kGap, kGap, kGap);
    all->setSpacing(kGap);
    page.settings = new QWidget;
    all->addWidget(page.settings);
    auto* const settings = new QVBoxLayout(page.settings);
    settings->setContentsMargins(0, 0, 0, 0);
    settings->setSpacing(kGap);
    auto* const columns = new QHBoxLayout;
    settings->addLayout(columns);
    auto* const left = new QVBoxLayout;
    auto* const right = new QVBoxLayout;
    columns->addLayout(left, 1);
    columns->addLayout(right, 1);
    columns->setSpacing(kGap);
    for (QVBoxLayout* const column : {left, right}) column->setSpacing(kGap);
    BuildWhat(page, *left);
    BuildFiles(page, *left, scale);
    BuildFormat(page, *right);
    BuildLoudness(page, *right);
    BuildTags(page, *right);
    BuildName(page, *settings);
    BuildWrite(page, *all);
    return page;
}

}  // namespace quib
