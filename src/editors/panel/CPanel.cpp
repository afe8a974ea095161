// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/CPanel.h"

#include <QDesktopServices>
#include <QDir>
#include <QLineEdit>
#include <QUrl>
#include <algorithm>
#include <cmath>
#include <utility>

#include "document/CWorkstation.h"
#include "document/LoopFolders.h"
#include "editors/base/GroupBox.h"
#include "editors/panel/CPanelBuilder.h"
#include "editors/panel/CProgramListCtrl.h"
#include "editors/panel/PanelLook.h"
#include "texts/Texts.h"

namespace quib {

bool CPanel::Condition::Holds(const CPanelValues& values) const {
    int step = 0;
    if (steps > 1) {
        step = static_cast<int>(std::lround(values.Get(parameter) * static_cast<float>(steps - 1)));
    } else {
        step = values.Text(parameter).section(QLatin1Char(' '), 0, 0).toInt();
    }
    return step >= low && step <= high;
}

CPanel::CPanel(const CControlSettings& controlSettings, CWorkstation& document, std::shared_ptr<CPlugin> plugin,
               PanelLayout panelLayout, QWidget* parent)
    : CWinControl(controlSettings, "window", parent),
      values(document, std::move(plugin)),
      layout(std::move(panelLayout)),
      search(new QLineEdit(this)) {
    search->setPlaceholderText(Text("Search programs"));
    search->setClearButtonEnabled(true);
    search->setObjectName(QStringLiteral("search"));
    connect(search, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (programs != nullptr) programs->SetFilter(text);
    });
    Build();
}

CPanel::~CPanel() { RemoveAll(); }

QSize CPanel::sizeHint() const {
    return QSizeF(layout.width * UiScale(), (PanelBodyHeight(layout) + restHeight) * UiScale()).toSize();
}

void CPanel::ChoosePage(int next) { page = next; }

void CPanel::ChooseProgram(int program) { values.Document().Places().SelectProgram(values.Shared(), program); }

void CPanel::SetUserPrograms(QStringList names) {
    if (names == userPrograms) return;
    userPrograms = std::move(names);
    Build();
}

void CPanel::CopyPage(int firstParameter, int count) {
    copiedPage.clear();
    for (int parameter = firstParameter; parameter < std::min(firstParameter + count, values.Count()); ++parameter)
        copiedPage.push_back(values.Get(parameter));
    builtPage = -1;
}

void CPanel::PastePage(int firstParameter) { SetFrom(firstParameter, copiedPage, Text("Paste sound")); }

void CPanel::ResetPage(int firstParameter, int count) {
    std::vector<float> next;
    for (int parameter = firstParameter; parameter < std::min(firstParameter + count, values.Count()); ++parameter)
        next.push_back(values.Default(parameter));
    SetFrom(firstParameter, next, Text("Default sound"));
}

void CPanel::SetFrom(int firstParameter, const std::vector<float>& next, const QString& name) {
    std::vector<float> all;
    for (int parameter = 0; parameter < values.Count(); ++parameter) {
        const auto within = static_cast<std::size_t>(parameter - firstParameter);
        all.push_back(parameter >= firstParameter && within < next.size() ? next[within] : values.Get(parameter));
    }
    values.Document().Places().SetParameters(values.Shared(), name, all);
}

void CPanel::ScanLoops() {
    FollowLoopFolders(values.Document());
    builtLoop = -1;
}

void CPanel::OpenLoopFolder() {
    const QString folder = values.Document().ProgramFolders().loops;
    QDir().mkpath(folder);
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}

void CPanel::Play(int key, int velocity) {
    SlotPlace place;
    if (!values.Document().Places().FindPlugin(&values.Plugin(), place)) return;
    values.Document().Audio().Post(
        {EngineCommand::EKind::kAudition, place.instrument, key, static_cast<float>(velocity)});
}

void CPanel::Build() {
    frames.clear();
    labels.clear();
    conditions.clear();
    programs = nullptr;
    searchPlace = {};
    placed.assign(static_cast<std::size_t>(values.Count()), false);
    RemoveAll();
    CPanelBuilder(*this, layout, values, page).Build();
    if (programs != nullptr) programs->SetFilter(search->text());
    search->setVisible(!searchPlace.isEmpty());
    for (const auto& control : Controls()) control->backgroundColour = Colour("panel");
    builtPage = page;
    builtKind = kind;
    builtLoop = chosenLoop;
    builtPalette = &Palette();
    builtConditions = ConditionsNow();
    LayoutAndRefresh();
}

std::vector<bool> CPanel::ConditionsNow() const {
    std::vector<bool> now;
    for (const Condition& condition : conditions) now.push_back(condition.Holds(values));
    return now;
}

// While a button is down the controls stay: one of them is being used.
void CPanel::Follow() {
    if (!isVisible()) return;
    values.Follow();
    const bool another = builtPage != page || builtKind != kind || builtLoop != chosenLoop ||
                         builtPalette != &Palette() || ConditionsNow() != builtConditions;
    if (another && Mouse().Captured() == nullptr) Build();
    if (programs != nullptr) programs->Select(values.Plugin().CurrentProgram());
    Tick();
}

void CPanel::Arrange(const QSize&) { search->setGeometry(ToWidget(searchPlace)); }

void CPanel::DrawBackground() {
    for (const Frame& frame : frames) DrawGroupBox(Canvas(), QRectF(frame.place), frame.title, frame.section);
    for (const Label& label : labels)
        Canvas().Text(QRectF(label.place), label.text, Colour("textMuted"),
                      FittingHeight(label.text, label.place.width(), false, 11), label.alignment);
}

}  // namespace quib
