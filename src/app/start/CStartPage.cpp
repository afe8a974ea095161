// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/start/CStartPage.h"

#include <QDateTime>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLocale>
#include <QMouseEvent>
#include <algorithm>

#include "app/CMainWindow.h"
#include "app/Commands.h"
#include "app/start/CDeviceBanner.h"
#include "controls/SkinNumbers.h"
#include "document/CSettings.h"
#include "document/FirstInstruments.h"
#include "document/ShippedFiles.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kMostRecent = 6;
constexpr const char* kShowAtStart = "ShowStartPage";

QString ChangedAt(const QFileInfo& file) {
    const QDateTime time = file.lastModified();
    const qint64 days = time.date().daysTo(QDate::currentDate());
    if (days == 0) return Text("today %1").arg(time.toString(QStringLiteral("HH:mm")));
    if (days == 1) return Text("yesterday");
    const QLocale locale(Language() == ELanguage::kFrench ? QLocale::French : QLocale::English);
    return locale.toString(time.date(), QStringLiteral("d MMMM"));
}

// In the order of the examples.
const char* const kAbout[] = {TextKey("Deep house in C minor"), TextKey("Disco house with loops that follow the tempo"),
                              TextKey("Techno with two acid lines on the crossfader"),
                              TextKey("Swung electric piano, strings, brushes"),
                              TextKey("Broken beats, two basses thrown bar by bar")};

}  // namespace

CStartPage::CStartPage(CSkin& sharedSkin, CMainWindow& mainWindow, std::function<void()> browseInstruments,
                       QWidget* parent)
    : CSkinnedPart(sharedSkin, parent), window(mainWindow), browse(std::move(browseInstruments)) {
    setObjectName(QStringLiteral("startPage"));
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    wanted = window.Workstation().Settings().ReadSettingInt(kSettingsSection, QLatin1String(kShowAtStart), 1) != 0;
    hide();
}

void CStartPage::Renew() {
    if (cards.empty()) {
        for (const QString& path : ExampleFiles()) {
            SongCard card = ReadSongCard(path);
            if (card.readable) cards.push_back(std::move(card));
        }
    }
    entries.clear();
    const QStringList examples = ExampleFiles();
    for (const SongCard& card : cards) {
        const qsizetype row = examples.indexOf(card.path);
        entries.push_back({EKind::kCard,
                           card.name,
                           card.name,
                           Text(kAbout[row]),
                           Measures(card),
                           0,
                           ESection::kTransport,
                           [this, path = card.path](bool play) { OpenProject(path, play); },
                           {}});
    }
    AddBeginning();
    firstRecent = static_cast<int>(entries.size());
    AddRecent();
    firstLearn = static_cast<int>(entries.size());
    AddLearning();
    focused = std::clamp(focused, 0, static_cast<int>(entries.size()) - 1);
    update();
}

void CStartPage::AddBeginning() {
    entries.push_back({EKind::kBig,
                       QStringLiteral("beat"),
                       Text("New beat"),
                       Text("Drums with a beat that plays at once"),
                       {},
                       picture::kInstrumentIcon + 1,
                       ESection::kMix,
                       [this](bool) { Begin(AddBeat, true); },
                       {}});
    entries.push_back({EKind::kBig,
                       QStringLiteral("synth"),
                       Text("New synth"),
                       Text("A synth, its keyboard open"),
                       {},
                       picture::kInstrumentIcon,
                       ESection::kKeyboard,
                       [this](bool play) { Begin(AddSynth, play); },
                       {}});
    entries.push_back({EKind::kRow,
                       QStringLiteral("add"),
                       Text("Add an instrument ..."),
                       {},
                       QStringLiteral("Ctrl+I"),
                       0,
                       ESection::kMix,
                       [this](bool) { browse(); },
                       {}});
    entries.push_back({EKind::kRow,
                       QStringLiteral("open"),
                       Text("Open a file ..."),
                       {},
                       QStringLiteral("Ctrl+O"),
                       0,
                       ESection::kMix,
                       [this](bool) { window.Run(command::kOpen); },
                       {}});
}

void CStartPage::AddRecent() {
    CRecentFiles recent(window.Workstation().Settings());
    for (const QString& path : recent.Rebuild()) {
        const QFileInfo file(path);
        if (IsExample(path) || !file.exists()) continue;
        if (static_cast<int>(entries.size()) - firstRecent >= kMostRecent) return;
        entries.push_back({EKind::kRow,
                           file.completeBaseName(),
                           file.completeBaseName(),
                           ShortFolder(path),
                           ChangedAt(file),
                           0,
                           ESection::kMix,
                           [this, path](bool play) { OpenProject(path, play); },
                           {}});
    }
}

void CStartPage::AddLearning() {
    entries.push_back({EKind::kBig,
                       QStringLiteral("tutorial"),
                       Text("Tutorial"),
                       Text("Six lessons, about five minutes"),
                       {},
                       picture::kGlyphHelp,
                       ESection::kTransport,
                       [this](bool) { window.Run(command::kQuickStart); },
                       {}});
    entries.push_back({EKind::kRow,
                       QStringLiteral("manual"),
                       Text("Manual"),
                       {},
                       {},
                       0,
                       ESection::kMix,
                       [this](bool) {
                           const bool french = Language() == ELanguage::kFrench;
                           window.Run(french ? command::kManualFrench : command::kManualEnglish);
                       },
                       {}});
    entries.push_back({EKind::kRow,
                       QStringLiteral("keys"),
                       Text("All keys"),
                       {},
                       QStringLiteral("F1"),
                       0,
                       ESection::kMix,
                       [this](bool) { window.Run(command::kShortcuts); },
                       {}});
    entries.push_back({EKind::kCheck,
                       QStringLiteral("atStart"),
                       Text("Show this page at every start"),
                       {},
                       {},
                       0,
                       ESection::kMix,
                       [this](bool) {
                           CSettings& settings = window.Workstation().Settings();
                           const QString name = QLatin1String(kShowAtStart);
                           const bool on = settings.ReadSettingInt(kSettingsSection, name, 1) != 0;
                           settings.WriteSettingInt(kSettingsSection, name, on ? 0 : 1);
                           update();
                       },
                       {}});
}

void CStartPage::OpenProject(const QString& path, bool play) {
    window.Open(path);
    CWorkstation& station = window.Workstation();
    const bool opened = station.Session().ProjectPath() == QFileInfo(path).absoluteFilePath();
    if (play && opened && CanPlay(station)) station.Transport().Play();
}

void CStartPage::Begin(bool (*add)(CWorkstation&, QString&), bool play) {
    QString error;
    CWorkstation& station = window.Workstation();
    if (!add(station, error)) return window.ShowMessage(QStringLiteral("QUIB"), error);
    if (play && CanPlay(station)) station.Transport().Play();
}

bool CStartPage::Press(const QString& name, bool play) {
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&name](const Entry& entry) { return entry.name == name; });
    if (found == entries.end()) return false;
    Run(static_cast<int>(found - entries.begin()), play);
    return true;
}

QRect CStartPage::AreaOf(const QString& name) const {
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&name](const Entry& entry) { return name.isEmpty() || entry.name == name; });
    if (found == entries.end()) return {};
    return QRectF(found->area.topLeft() * Scale(), found->area.size() * Scale()).toRect();
}

// From the event loop: opening a project hides this page and makes its entries anew.
void CStartPage::Run(int index, bool play) {
    if (index < 0 || index >= static_cast<int>(entries.size())) return;
    QMetaObject::invokeMethod(
        this, [run = entries[static_cast<std::size_t>(index)].run, play] { run(play); }, Qt::QueuedConnection);
}

// --- Keys and mouse

// Letters are notes and shortcuts here, as everywhere but in fields.
bool CStartPage::event(QEvent* event) {
    return event->type() == QEvent::ShortcutOverride ? QWidget::event(event) : CSkinnedPart::event(event);
}

void CStartPage::showEvent(QShowEvent* event) {
    CSkinnedPart::showEvent(event);
    Renew();
}

void CStartPage::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return Run(focused, (event->modifiers() & Qt::ControlModifier) != 0);
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
            return MoveFocus(event->key());
        default:
            return QWidget::keyPressEvent(event);
    }
}

bool CStartPage::focusNextPrevChild(bool next) {
    const int to = focused + (next ? 1 : -1);
    if (to < 0 || to >= static_cast<int>(entries.size())) return QWidget::focusNextPrevChild(next);
    focused = to;
    update();
    return true;
}

// To the nearest entry on that side.
void CStartPage::MoveFocus(int key) {
    if (entries.empty()) return;
    Arrange();
    const QPointF from = entries[static_cast<std::size_t>(focused)].area.center();
    int best = focused;
    qreal nearest = 1e9;
    for (std::size_t index = 0; index < entries.size(); ++index) {
        const QPointF way = entries[index].area.center() - from;
        const bool level = key == Qt::Key_Left || key == Qt::Key_Right;
        const qreal along = (level ? way.x() : way.y()) * (key == Qt::Key_Left || key == Qt::Key_Up ? -1 : 1);
        if (along < 4) continue;
        const qreal distance = along + 3 * std::abs(level ? way.y() : way.x());
        if (distance < nearest) {
            nearest = distance;
            best = static_cast<int>(index);
        }
    }
    focused = best;
    update();
}

int CStartPage::EntryAt(const QPointF& point) const {
    const QPointF place = QPointF(point) / Scale();
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&place](const Entry& entry) { return entry.area.contains(place); });
    return found == entries.end() ? -1 : static_cast<int>(found - entries.begin());
}

QRectF CStartPage::Disc(const Entry& entry) const { return {entry.area.right() - 48, entry.area.top() + 128, 34, 34}; }

bool CStartPage::IsOnDisc(const Entry& entry, const QPointF& point) const {
    return entry.kind == EKind::kCard && Disc(entry).contains(QPointF(point) / Scale());
}

void CStartPage::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    const int index = EntryAt(event->position());
    if (index < 0) return;
    focused = index;
    Run(index, IsOnDisc(entries[static_cast<std::size_t>(index)], event->position()));
}

void CStartPage::mouseMoveEvent(QMouseEvent* event) {
    const int index = EntryAt(event->position());
    const bool disc = index >= 0 && IsOnDisc(entries[static_cast<std::size_t>(index)], event->position());
    if (index == hovered && disc == overDisc) return;
    hovered = index;
    overDisc = disc;
    setCursor(index < 0 ? Qt::ArrowCursor : Qt::PointingHandCursor);
    update();
}

void CStartPage::leaveEvent(QEvent* /*event*/) {
    hovered = -1;
    update();
}

}  // namespace quib
