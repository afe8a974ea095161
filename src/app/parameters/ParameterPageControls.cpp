// SPDX-License-Identifier: GPL-3.0-or-later
// Where the groups of the page stand, and the controls in them.
#include <QLineEdit>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "app/parameters/CParameterMarks.h"
#include "app/parameters/CParameterPage.h"
#include "app/parameters/CParameterRail.h"
#include "app/parameters/ParameterMenu.h"
#include "controls/CLabelCtrl.h"
#include "controls/CScrollCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/SkinNumbers.h"
#include "document/CWorkstation.h"
#include "editors/base/GroupBox.h"
#include "editors/panel/CAmountCtrl.h"
#include "editors/panel/CChoiceCtrl.h"
#include "editors/panel/CMenuCtrl.h"
#include "editors/panel/CPanelKnobCtrl.h"
#include "editors/panel/CPickCtrl.h"
#include "editors/panel/PanelLook.h"
#include "editors/panel/PanelMeasures.h"
#include "model/plugin/CPlugin.h"
#include "texts/Texts.h"

namespace quib {

namespace {

using namespace panelMeasures;

constexpr int kRailWidth = 148;
constexpr int kGroupWidth = 300;
constexpr int kGroupWay = kGroupWidth + 8;
constexpr int kAcross = 4;
constexpr int kTouchedHeight = 172;
constexpr int kCompareHeight = 32;
constexpr int kBelow = kTouchedHeight + kCompareHeight + 2 * kMargin;  // of the last column
constexpr int kScrollWidth = 8;                                        // the margin
constexpr int kMostTexts = 24;                                         // of a menu
constexpr int kFixedRows = 6;                                          // of the rail, the heading with them

int GroupHeight(std::size_t members) {
    return kTitled + (static_cast<int>(members) + kAcross - 1) / kAcross * kCellHeight + 6;
}

bool IsNumber(const QString& text) {
    bool isNumber = false;
    (void)text.section(QLatin1Char(' '), 0, 0).toDouble(&isNumber);
    return isNumber;
}

}  // namespace

// --- Where it stands ------------------------------------------------------------------------------------------------

int CParameterPage::Columns() const { return std::max(1, (SkinSize().width() - kRailWidth - 2 * kMargin) / kGroupWay); }

QRect CParameterPage::TouchedPlace() const {
    const int x = kRailWidth + 2 * kMargin + (Columns() - 1) * kGroupWay;
    return {x, SkinSize().height() - kBelow + kMargin, kGroupWidth, kTouchedHeight};
}

// Column by column as long as a group fits; then the shortest column takes the next one.
void CParameterPage::PlaceGroups() {
    const int columns = Columns();
    const int room = SkinSize().height() - 2 * kMargin;
    std::vector<int> used(static_cast<std::size_t>(columns), 0);
    used.back() = kBelow - kMargin;
    std::vector<int> top(used.size(), 0);
    std::size_t column = 0;
    for (Box& box : boxes) {
        const int high = GroupHeight(box.members.size());
        while (column < used.size() && used[column] > 0 && used[column] + high > room) ++column;
        const std::size_t at =
            column < used.size() ? column
                                 : static_cast<std::size_t>(std::min_element(used.begin(), used.end()) - used.begin());
        box.column = static_cast<int>(at);
        box.place = QRect(kRailWidth + 2 * kMargin + box.column * kGroupWay, kMargin + top[at], kGroupWidth, high);
        top[at] += high + kMargin;
        used[at] += high + kMargin;
    }
    contentHeight = *std::max_element(used.begin(), used.end()) + kMargin;
}

void CParameterPage::ScrollTo(int next) {
    offset.Set(static_cast<float>(std::clamp(next, 0, std::max(0, contentHeight - SkinSize().height()))));
}

void CParameterPage::Build() {
    labels.clear();
    rail = nullptr;
    RemoveAll();
    Choose();
    PlaceGroups();
    ScrollTo(static_cast<int>(offset.Get()));
    BuildTouched(TouchedPlace());
    inLastColumn.clear();
    BuildRail();
    const int above = static_cast<int>(offset.Get());
    for (const Box& box : boxes) {
        const QRect seen = box.place.translated(0, -above);
        if (seen.bottom() < 0 || seen.top() >= SkinSize().height()) continue;
        const std::size_t before = Controls().size();
        BuildGroup(box);
        if (box.column < Columns() - 1) continue;
        for (std::size_t index = before; index < Controls().size(); ++index)
            inLastColumn.insert(Controls()[index].get());
    }
    for (const auto& control : Controls()) control->backgroundColour = Colour("panel");
    if (contentHeight > SkinSize().height()) {
        auto& bar = Add<CScrollCtrl>(0U, SkinSize().width() - kScrollWidth, 0, kScrollWidth, SkinSize().height(),
                                     &offset, true);
        bar.SetRange(static_cast<float>(contentHeight), static_cast<float>(SkinSize().height()));
        bar.wheelUnits = kCellHeight;
    }
    isBuilt = true;
    LayoutAndRefresh();
}

void CParameterPage::BuildRail() {
    constexpr int kTop = 52;
    constexpr int kHints = 84;
    auto& list = Add<CParameterRail>(
        QRect(kMargin + 4, kTop, kRailWidth - 8, std::max(CParameterRail::kRow, SkinSize().height() - kTop - kHints)));
    list.section = ESection::kMix;
    list.onChoose = [this](int row) { ChooseRow(row); };
    rail = &list;
    int y = SkinSize().height() - kHints + 8;
    for (const char* const hint : {TextKey("Value to its default:"), TextKey("double click"), TextKey("Type a value:"),
                                   TextKey("digits over a control")}) {
        const bool action = (labels.size() % 2) != 0;
        labels.push_back({QRect(kMargin + 14, y, kRailWidth - 20, 14), Text(hint), action});
        y += action ? 21 : 15;
    }
    ShowRail();
}

void CParameterPage::ShowRail() {
    int changed = 0;
    int favourites = 0;
    for (int parameter = 0; parameter < values.Count(); ++parameter) {
        changed += IsChanged(parameter) ? 1 : 0;
        favourites += marks.Has(CParameterMarks::EMark::kFavourite, parameter) ? 1 : 0;
    }
    std::vector<CParameterRail::Row> rows = {
        {Text("All"), values.Count()},
        {Text("Changed"), changed, picture::kGlyphEdit, ESection::kMix},
        {Text("Automated"), static_cast<int>(automated.size()), picture::kGlyphAutomation, ESection::kPattern},
        {Text("Learned"), static_cast<int>(learned.size()), picture::kGlyphMidi, ESection::kKeyboard},
        {Text("Favourites"), favourites, picture::kGlyphStar, ESection::kPattern},
        {Text("GROUPS"), -1}};
    int others = 0;
    for (const ParameterGroup& group : grouped.groups) {
        const QString title = !group.title.isEmpty() ? group.title
                              : others++ == 0        ? Text("Others")
                                                     : Text("Others") + QStringLiteral(" %1").arg(others);
        rows.push_back({title, static_cast<int>(group.members.size())});
    }
    const int chosen = chosenGroup >= 0 ? kFixedRows + chosenGroup : std::min(static_cast<int>(shelf), 5);
    rail->Show(std::move(rows), shelf == EShelf::kDiffering && chosenGroup < 0 ? -1 : chosen);
}

void CParameterPage::ChooseRow(int row) {
    chosenGroup = row >= kFixedRows ? row - kFixedRows : -1;
    shelf = chosenGroup >= 0 ? EShelf::kAll : static_cast<EShelf>(row);
    offset.Set(0);
}

// --- Its controls ------------------------------------------------------------------------------------------------

void CParameterPage::BuildGroup(const Box& box) {
    const QRect place = box.place.translated(0, -static_cast<int>(offset.Get()));
    const bool changed =
        std::any_of(box.members.begin(), box.members.end(), [this](int one) { return IsChanged(one); });
    if (changed) {
        AddButton(QRect(place.right() - 28, place.y() + 4, 22, 22), picture::kGlyphUndo, {}, false,
                  [this, group = box.group] { ResetGroup(*group); });
        Controls().back()->infoText = Text("Back to the values of the program");
    }
    for (std::size_t index = 0; index < box.members.size(); ++index) {
        const int at = static_cast<int>(index);
        BuildCell(box.members[index], QRect(place.x() + kMargin + at % kAcross * kCellWidth,
                                            place.y() + kTitled + at / kAcross * kCellHeight, kCellWidth, kCellHeight));
    }
}

void CParameterPage::BuildCell(int parameter, const QRect& cell) {
    const ParameterNature& nature = natures[static_cast<std::size_t>(parameter)];
    const QRect field(cell.x() + 3, cell.y() + 8, kCellWidth - 6, 22);
    const QString& label = grouped.labels[parameter];
    CControl* control = nullptr;
    const QString now = values.Text(parameter);
    if (nature.values == 2 && ReadsAsSwitch(now)) {
        auto& onOff =
            Add<CPickCtrl>(field.adjusted(11, 0, -11, 0), values, parameter, QStringList{Text("Off"), Text("On")});
        onOff.cycles = true;
        control = &onOff;
    } else if (nature.values >= 2 && nature.values <= kMostTexts && (!nature.isWhole || !IsNumber(now))) {
        control = &Add<CMenuCtrl>(field, values, parameter, nature.values);
    } else if (nature.values >= 2) {
        auto& count = Add<CChoiceCtrl>(field, values, parameter);
        count.counts = nature.isWhole;
        count.steps = nature.values;
        control = &count;
    } else {
        auto& knob = Add<CPanelKnobCtrl>(cell.adjusted(2, 0, -2, -4), 14, values, parameter);
        knob.caption = label;
        knob.zero = values.IsSigned(parameter) ? 0.5F : 0;
        knob.automated = automated.contains(parameter);
        knob.learned = learned.contains(parameter);
        control = &knob;
    }
    if (nature.values >= 2)
        labels.push_back({QRect(cell.x(), cell.y() + 35, kCellWidth, 14), label, false, Qt::AlignCenter});
    control->section = ESection::kMix;
    control->infoText = values.Name(parameter);
}

void CParameterPage::AddButton(const QRect& place, int glyph, const QString& label, bool lit,
                               std::function<void()> run) {
    auto& button = AddPanelButton(*this, place, glyph, label, std::move(run));
    if (lit) button.Bind(&isLit);
    button.section = ESection::kKeyboard;
}

void CParameterPage::BuildTouched(const QRect& place) {
    if (values.Count() == 0) return;
    const int parameter = std::clamp(touched, 0, values.Count() - 1);
    const int half = (place.width() - 3 * kMargin) / 2;
    auto& amount = Add<CAmountCtrl>(QRect(place.x() + 92, place.y() + 36, place.width() - 100, 24), values, parameter);
    amount.section = ESection::kKeyboard;
    amount.zero = values.IsSigned(parameter) ? 0.5F : 0;
    auto& reading = Add<CLiveLabelCtrl>(0U, place.x() + 12, place.y() + 36, 80, 24,
                                        [this, parameter] { return values.Text(parameter); });
    reading.fontHeight = FittingHeight(values.Text(parameter), reading.Width(), true, 18);
    reading.strong = true;
    const int x = place.x() + kMargin;
    const int y = place.y() + 72;
    const bool learning = built.learning;
    AddButton(QRect(x, y, place.width() - 2 * kMargin, 28), picture::kGlyphMidi,
              learning ? Text("Move a MIDI knob to connect it") : Text("Learn MIDI"), learning,
              [this] { LearnTouched(); });
    const auto has = [&](CParameterMarks::EMark mark) { return marks.Has(mark, parameter); };
    const auto flip = [this, parameter](CParameterMarks::EMark mark) {
        marks.Set(mark, parameter, !marks.Has(mark, parameter));
        isBuilt = false;
    };
    AddButton(QRect(x, y + 34, half, 26), picture::kGlyphAutomation, Text("Show its lane"), false, [this, parameter] {
        if (onShowLane) onShowLane(parameter);
    });
    AddButton(QRect(x + half + kMargin, y + 34, half, 26), picture::kGlyphUndo, Text("Default"), false,
              [this, parameter] { ResetParameter(values, parameter); });
    AddButton(QRect(x, y + 66, half, 26),
              has(CParameterMarks::EMark::kFavourite) ? picture::kGlyphStar : picture::kGlyphStarEmpty,
              Text("Favourite"), has(CParameterMarks::EMark::kFavourite),
              [flip] { flip(CParameterMarks::EMark::kFavourite); });
    AddButton(QRect(x + half + kMargin, y + 66, half, 26), -1, Text("Keep from random"),
              has(CParameterMarks::EMark::kKept), [flip] { flip(CParameterMarks::EMark::kKept); });
    BuildCompare(QRect(place.x(), place.bottom() + 1 + kMargin, place.width(), kCompareHeight));
}

void CParameterPage::BuildCompare(const QRect& place) {
    if (differences.empty() && shelf != EShelf::kDiffering) return;
    const bool all = shelf == EShelf::kDiffering;
    AddButton(place.adjusted(place.width() - 78, 4, -8, -4), -1, all ? Text("Show all") : Text("Show"), all,
              [this, all] { shelf = all ? EShelf::kAll : EShelf::kDiffering; });
}

// --- Drawing and the wheel ------------------------------------------------------------------------------------------

void CParameterPage::Arrange(const QSize& /*size*/) {
    search->setGeometry(ToWidget(QRect(2 * kMargin, 2 * kMargin, kRailWidth - 2 * kMargin, 24)));
}

// The last column ends above the box of what was moved last.
QRect CParameterPage::ClipOf(const CControl& control) const {
    QRect all(QPoint(0, 0), SkinSize());
    if (inLastColumn.contains(&control)) all.setBottom(TouchedPlace().top() - kMargin);
    return all;
}

void CParameterPage::DrawBackground() {
    DrawGroupBox(Canvas(), QRectF(kMargin, kMargin, kRailWidth, SkinSize().height() - 2 * kMargin), {}, ESection::kMix);
    const int above = static_cast<int>(offset.Get());
    for (const Box& box : boxes)
        DrawGroupBox(Canvas(), QRectF(box.place.translated(0, -above)),
                     box.group->title.isEmpty() ? Text("Others") : box.group->title, ESection::kMix);
    for (const Label& label : labels)
        Canvas().Text(QRectF(label.place), label.text, Colour(label.strong ? "text" : "textMuted"),
                      FittingHeight(label.text, label.place.width(), label.strong, label.strong ? 11 : 10),
                      label.alignment);
    const QRect place = TouchedPlace();
    Canvas().Fill(QRectF(place.adjusted(-4, -kMargin, 4, kCompareHeight + 2 * kMargin)), Colour("window"));
    if (values.Count() == 0) return;
    const int parameter = std::clamp(touched, 0, values.Count() - 1);
    DrawGroupBox(Canvas(), QRectF(place), values.Name(parameter), ESection::kKeyboard);
    Canvas().Text(QRectF(place.x() + 140, place.y() + 7, place.width() - 150, 16),
                  Text("parameter %1 of %2").arg(parameter + 1).arg(values.Count()), Colour("textMuted"), 10,
                  Qt::AlignRight | Qt::AlignVCenter);
    const QRect compare(place.x(), place.bottom() + 1 + kMargin, place.width(), kCompareHeight);
    DrawGroupBox(Canvas(), QRectF(compare), {}, ESection::kMix);
    Canvas().Text(QRectF(compare.adjusted(12, 0, -86, 0)),
                  differences.empty() ? Text("A and B are the same")
                                      : Text("A and B differ in %1 values").arg(differences.size()),
                  Colour("text"), 11, Qt::AlignLeft | Qt::AlignVCenter);
}

void CParameterPage::wheelEvent(QWheelEvent* event) {
    const QPoint point = ToSkin(event->position());
    const bool taken = std::any_of(Controls().begin(), Controls().end(), [&point](const auto& control) {
        const CControl* const hit = control->HitTest(point.x(), point.y());
        return hit != nullptr && hit->TakesWheel();
    });
    if (taken) return CWinControl::wheelEvent(event);
    ScrollTo(static_cast<int>(offset.Get()) - event->angleDelta().y() * kCellHeight / 120);
    event->accept();
    Follow();
}

}  // namespace quib
