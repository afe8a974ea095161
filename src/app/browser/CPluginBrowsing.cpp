// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/browser/CPluginBrowsing.h"

#include <QApplication>

#include "app/CMainWindow.h"
#include "app/CPluginCatalog.h"
#include "app/CPluginWindows.h"
#include "app/FileDialogs.h"
#include "app/console/CWinControlMain.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kAddInstrumentText = 448;  // the info text of the button that adds an instrument

ESlotKind KindOf(const BrowseWish& wish) {
    return !wish.place || wish.place->kind == SlotPlace::EKind::kInstrument ? ESlotKind::kInstrument
                                                                            : ESlotKind::kEffect;
}

}  // namespace

CPluginBrowsing::CPluginBrowsing(CMainWindow& mainWindow, CWinControlMain& mainConsole)
    : QObject(&mainConsole),
      window(mainWindow),
      console(mainConsole),
      use(window.Workstation().Settings()),
      browser(
          window.Catalog(), use,
          [this](ESlotKind kind) {
              return PluginChoices(window.Workstation().ProgramFolders(), window.Catalog(), kind);
          },
          &mainConsole),
      mark(&mainConsole) {
    connect(&browser, &CPluginBrowser::Chosen, this, &CPluginBrowsing::Choose);
    connect(&browser, &CPluginBrowser::Dragged, this, &CPluginBrowsing::Drag);
    connect(&browser, &CPluginBrowser::FileWanted, this, &CPluginBrowsing::LoadFile);
    connect(&browser, &CPluginBrowser::FoldersWanted, &window, &CMainWindow::ChoosePluginFolders);
    connect(&browser, &CPluginBrowser::Closed, this, [this] {
        mark.Show({}, 0);
        console.setFocus();
    });
    connect(&window, &CMainWindow::InstrumentWanted, this, [this] { Browse({}); });
    connect(&window, &CMainWindow::EffectWanted, this, &CPluginBrowsing::BrowseEffect);
    connect(&window, &CMainWindow::FilesHover, this, &CPluginBrowsing::HoverFiles);
    window.PluginWindows().sightOf = [this](const SlotPlace& place) { return SightOf(console, place); };
    window.dropPlaceAt = [this](ESlotKind kind, const QPoint& point) -> std::optional<DropPlace> {
        // Not under another window that lies over the console.
        const QWidget* const under = QApplication::widgetAt(point);
        if (under != nullptr && under->window() != &window) return std::nullopt;
        return DropPlaceAt(console, window.Workstation().Places(), kind, point);
    };
}

void CPluginBrowsing::Browse(const BrowseWish& wish) {
    wanted = wish;
    const QRect area = WishArea();
    const QRect beside = area.isEmpty() ? QRect() : QRect(console.mapFromGlobal(area.topLeft()), area.size());
    browser.Open(KindOf(wish), Title(), beside, window.Scale() / 100.0);
    Mark(area, KindOf(wish));
}

void CPluginBrowsing::BrowseEffect() {
    CWorkstation& station = window.Workstation();
    const auto instrument = station.Selection().CurrentInstrument();
    const std::uint32_t id = instrument ? instrument->Id() : 0;
    auto place = FreeEffectPlace(station.Places(), id);
    if (!place) place = FreeEffectPlace(station.Places(), 0);
    if (!place) place = SlotPlace{SlotPlace::EKind::kInsert, id, 0};
    if (place->kind == SlotPlace::EKind::kEffect) place->instrument = id;
    if (instrument) console.ScrollTo(station.Selection().CurrentIndex());
    Browse({place});
}

QRect CPluginBrowsing::WishArea() const {
    if (wanted.place) return AreaOf(console, *wanted.place);
    for (const auto& control : console.Controls()) {
        if (control->infoString != kAddInstrumentText) continue;
        const QRect area = console.ToWidget(control->ShownRectangle());
        return area.isEmpty() ? QRect() : QRect(console.mapToGlobal(area.topLeft()), area.size());
    }
    return {};
}

QString CPluginBrowsing::Title() const {
    if (!wanted.place) return Text("New instrument");
    const SlotPlace& place = *wanted.place;
    CInstrumentStack& stack = window.Workstation().Stack();
    const int strip = stack.IndexOf(place.instrument);
    const QString title = strip < 0 ? QString() : QString::fromStdString(stack.Instrument(strip)->title);
    switch (place.kind) {
        case SlotPlace::EKind::kInstrument:
            return Text("Plug-in of %1 %2").arg(strip + 1).arg(title);
        case SlotPlace::EKind::kInsert:
            return Text("Insert %1 of %2 %3").arg(place.index + 1).arg(strip + 1).arg(title);
        case SlotPlace::EKind::kMasterInsert:
            return Text("Master insert %1").arg(place.index + 1);
        case SlotPlace::EKind::kEffect:
            return Text("Send effect %1").arg(place.index + 1);
    }
    return {};
}

void CPluginBrowsing::Mark(const QRect& area, ESlotKind kind) {
    const ESection section = kind == ESlotKind::kInstrument ? ESection::kPattern : ESection::kEffects;
    const QRect inside = area.isEmpty() ? QRect() : QRect(console.mapFromGlobal(area.topLeft()), area.size());
    mark.Show(inside, Palette().Accent(section));
    if (browser.isVisible()) browser.raise();
}

bool CPluginBrowsing::Load(const PluginEntry& entry, const std::optional<SlotPlace>& place) {
    CWorkstation& station = window.Workstation();
    QString error;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool loaded = place ? station.Places().LoadPlugin(*place, entry.path, error)
                              : station.Stack().AddInstrument(entry.path, error) >= 0;
    QApplication::restoreOverrideCursor();
    if (!loaded) {
        if (!error.isEmpty()) window.ShowMessage(QStringLiteral("QUIB"), error);
        return false;
    }
    use.Loaded(entry);
    // The strip of a new instrument is made from the event loop.
    const int strip = place ? -1 : station.Selection().CurrentIndex();
    QMetaObject::invokeMethod(
        &console, [this, strip] { console.ScrollTo(strip); }, Qt::QueuedConnection);
    return true;
}

void CPluginBrowsing::Choose(const PluginEntry& entry, bool staysOpen) {
    const bool loaded = Load(entry, wanted.place);
    if (loaded && !staysOpen) browser.hide();
}

void CPluginBrowsing::LoadFile() {
    browser.hide();
    const bool isInstrument = KindOf(wanted) == ESlotKind::kInstrument;
    const EFileKind kind = !wanted.place  ? EFileKind::kInstrumentOrPlugin
                           : isInstrument ? EFileKind::kInstrumentPlugin
                                          : EFileKind::kEffectPlugin;
    const QString path = ChooseFileToOpen(&window, window.Workstation().Settings(), kind);
    if (!path.isEmpty()) window.LoadFileInto(path, wanted.place);
}

void CPluginBrowsing::Drag(const PluginEntry& entry, const QPoint& point, bool dropped) {
    const QRect panel(browser.mapToGlobal(QPoint(0, 0)), browser.size());
    const bool inPanel = panel.contains(point);
    if (!inPanel && !dropped) browser.StepAside(true);
    const ESlotKind kind = entry.isInstrument ? ESlotKind::kInstrument : ESlotKind::kEffect;
    const auto target = inPanel ? std::nullopt : DropPlaceAt(console, window.Workstation().Places(), kind, point);
    if (!dropped) return Mark(target ? target->area : QRect(), kind);
    if (!target) return Mark(WishArea(), kind);
    browser.hide();
    Load(entry, target->place);
}

// A file that nobody has asked yet may be either.
void CPluginBrowsing::HoverFiles(const QStringList& paths, const QPoint& point) {
    PluginEntry entry;
    ESlotKind kind = ESlotKind::kEffect;
    if (!paths.isEmpty() && window.Catalog().Knows(paths.front(), entry) && entry.isInstrument) {
        kind = ESlotKind::kInstrument;
    }
    const auto target = paths.isEmpty() ? std::nullopt : window.dropPlaceAt(kind, point);
    Mark(target ? target->area : QRect(), kind);
}

}  // namespace quib
