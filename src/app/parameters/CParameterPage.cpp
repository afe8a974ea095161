// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/parameters/CParameterPage.h"

#include <QLineEdit>
#include <algorithm>
#include <cmath>

#include "app/parameters/CParameterMarks.h"
#include "app/parameters/CParameterRail.h"
#include "document/CWorkstation.h"
#include "model/plugin/CPlugin.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kMarkTicks = 8;  // between looks for lanes and controllers

}  // namespace

CParameterPage::CParameterPage(const CControlSettings& controlSettings, CWorkstation& document,
                               std::shared_ptr<CPlugin> plugin, CParameterMarks& userMarks, QWidget* parent)
    : CWinControl(controlSettings, "window", parent),
      values(document, std::move(plugin)),
      marks(userMarks),
      search(new QLineEdit(this)) {
    search->setObjectName(QStringLiteral("filter"));
    search->setClearButtonEnabled(true);
    search->setPlaceholderText(Text("Search %1").arg(values.Count()));
    connect(search, &QLineEdit::textChanged, this, &CParameterPage::SetSearch);
    values.onTouch = [this](int parameter) { touched = parameter; };
    Describe();
}

CParameterPage::~CParameterPage() { RemoveAll(); }

QSize CParameterPage::sizeHint() const { return (QSizeF(kSize) * UiScale()).toSize(); }

void CParameterPage::Describe() {
    QStringList names;
    QStringList categories;
    for (int parameter = 0; parameter < values.Count(); ++parameter) {
        ParameterNature nature = values.Plugin().AskParameterNature(parameter);
        if (nature.values == 0 && ReadsAsSwitch(values.Text(parameter))) nature.values = 2;
        names.append(values.Name(parameter));
        categories.append(QString::fromStdString(nature.group));
        natures.push_back(std::move(nature));
    }
    grouped = GroupParameters(names, categories);
}

// --- What is shown ------------------------------------------------------------------------------------------------

void CParameterPage::SetSearch(const QString& next) {
    text = next;
    offset.Set(0);
    Follow();
}

void CParameterPage::SetShelf(EShelf next) {
    shelf = next;
    chosenGroup = -1;
    offset.Set(0);
    Follow();
}

bool CParameterPage::IsChanged(int parameter) const {
    return std::abs(values.Get(parameter) - programValues[static_cast<std::size_t>(parameter)]) > 1e-4F;
}

bool CParameterPage::IsOnShelf(int parameter) const {
    switch (shelf) {
        case EShelf::kAll:
            return true;
        case EShelf::kChanged:
            return IsChanged(parameter);
        case EShelf::kAutomated:
            return automated.contains(parameter);
        case EShelf::kLearned:
            return learned.contains(parameter);
        case EShelf::kFavourites:
            return marks.Has(CParameterMarks::EMark::kFavourite, parameter);
        case EShelf::kDiffering:
            return differences.contains(parameter);
    }
    return true;
}

// What lanes play and what MIDI moves.
void CParameterPage::FollowMarks() {
    automated.clear();
    learned.clear();
    const auto lanes = values.Plugin().lanes.ForEdit();
    for (int slot = 0; lanes && slot < CEventLanes::kSlotCount; ++slot) {
        for (const auto& lane : lanes->Lanes(slot)) automated.insert(lane.index);
    }
    const auto own = values.TargetOf(0);
    for (const auto& entry : values.Document().Controllers().Map().Entries()) {
        const ControlTarget& target = entry.binding.target;
        if (own && target.kind == own->kind && target.instrument == own->instrument) learned.insert(target.index);
    }
    differences.clear();
    if (differing) {
        for (const int parameter : differing()) differences.insert(parameter);
    }
}

CParameterPage::State CParameterPage::StateNow() const {
    State now{shelf, chosenGroup, text, static_cast<int>(offset.Get()), touched, program};
    const auto target = values.TargetOf(touched);
    now.learning = target && values.Document().Controllers().Learning() == target;
    now.differing = differences.size();
    for (const ParameterGroup& group : grouped.groups)
        now.changed.push_back(std::any_of(group.members.begin(), group.members.end(),
                                          [this](int parameter) { return IsChanged(parameter); }));
    now.automated = automated;
    now.learned = learned;
    now.marked = marks.Favourites();
    now.palette = &Palette();
    return now;
}

// While a button is down the controls stay: one of them is being used.
void CParameterPage::Follow() {
    values.Follow();
    if (const int now = values.Plugin().CurrentProgram(); std::exchange(program, now) != now || programValues.empty()) {
        programValues.clear();
        for (int parameter = 0; parameter < values.Count(); ++parameter) programValues.push_back(values.Get(parameter));
    }
    if (ticks++ % kMarkTicks == 0 || !isBuilt) FollowMarks();
    if (Mouse().Captured() == nullptr) {
        if (State now = StateNow(); !isBuilt || now != built) {
            built = std::move(now);
            Build();
        }
    }
    if (rail != nullptr) ShowRail();
    Tick();
}

void CParameterPage::Choose() {
    shown.clear();
    boxes.clear();
    for (std::size_t number = 0; number < grouped.groups.size(); ++number) {
        if (chosenGroup >= 0 && chosenGroup != static_cast<int>(number)) continue;
        Box box{&grouped.groups[number], {}, {}};
        for (const int parameter : box.group->members) {
            const bool found = text.isEmpty() || values.Name(parameter).contains(text, Qt::CaseInsensitive) ||
                               box.group->title.contains(text, Qt::CaseInsensitive);
            if (found && IsOnShelf(parameter)) box.members.push_back(parameter);
        }
        if (box.members.empty()) continue;
        shown.insert(shown.end(), box.members.begin(), box.members.end());
        boxes.push_back(std::move(box));
    }
}

// --- What they do ------------------------------------------------------------------------------------------------

void CParameterPage::ResetGroup(const ParameterGroup& group) {
    std::vector<float> next;
    for (int parameter = 0; parameter < values.Count(); ++parameter) next.push_back(values.Get(parameter));
    for (const int parameter : group.members)
        next[static_cast<std::size_t>(parameter)] = programValues[static_cast<std::size_t>(parameter)];
    values.Document().Places().SetParameters(values.Shared(), Text("Values of the program"), next);
}

void CParameterPage::LearnTouched() {
    const auto target = values.TargetOf(touched);
    if (!target) return;
    CControllers& controllers = values.Document().Controllers();
    controllers.Learning() == target ? controllers.CancelLearning() : controllers.Learn(*target);
}

void CParameterPage::resizeEvent(QResizeEvent* event) {
    isBuilt = false;
    CWinControl::resizeEvent(event);
}

}  // namespace quib
