// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CSoundTools.h"

#include <QActionGroup>
#include <QHBoxLayout>
#include <QMenu>
#include <QRandomGenerator>
#include <QToolButton>
#include <algorithm>
#include <cmath>

#include "document/CWorkstation.h"
#include "model/plugin/CPlugin.h"
#include "texts/Texts.h"

namespace quib {

namespace {

// What a sound by lot leaves alone: how loud it is, where it stands and its pitch.
bool IsLoudnessOrPitch(const QString& name) {
    for (const char* const word : {"level", "volume", "gain", "output", "mix", "pan", "width", "tune", "octave",
                                   "semitone", "fine", "transpose", "pitch", "bend", "ceiling", "send", "bypass"}) {
        if (name.contains(QLatin1String(word), Qt::CaseInsensitive)) return true;
    }
    return false;
}

}  // namespace

CSoundTools::CSoundTools(CWorkstation& projectOwner, std::shared_ptr<CPlugin> shownPlugin)
    : workstation(projectOwner), plugin(std::move(shownPlugin)), other(Values()) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    const auto add = [row](const QString& text, bool checkable) {
        auto* const button = new QToolButton;
        button->setText(text);
        button->setCheckable(checkable);
        row->addWidget(button);
        return button;
    };
    first = add(QStringLiteral("A"), true);
    second = add(QStringLiteral("B"), true);
    connect(first, &QToolButton::clicked, this, [this] { secondHeard ? Swap() : ShowState(); });
    connect(second, &QToolButton::clicked, this, [this] { secondHeard ? ShowState() : Swap(); });
    copy = add({}, false);
    connect(copy, &QToolButton::clicked, this, &CSoundTools::CopyToOther);
    random = add(Text("Random"), false);
    random->setToolTip(Text("Moves the parameters by lot, but levels and pitch"));
    connect(random, &QToolButton::clicked, this, [this] { Randomise(percentChosen); });
    auto* const menu = new QMenu(random);
    auto* const group = new QActionGroup(menu);
    for (const int percent : {5, 10, 25, 50, 100}) {
        QAction* const action =
            menu->addAction(QStringLiteral("%1 %").arg(percent), this, [this, percent] { percentChosen = percent; });
        action->setCheckable(true);
        action->setChecked(percent == percentChosen);
        group->addAction(action);
    }
    random->setMenu(menu);
    random->setPopupMode(QToolButton::MenuButtonPopup);
    ShowState();
}

std::vector<float> CSoundTools::Values() const {
    std::vector<float> values;
    for (std::size_t parameter = 0; parameter < plugin->Parameters().size(); ++parameter)
        values.push_back(plugin->Parameter(static_cast<int>(parameter)));
    return values;
}

void CSoundTools::Apply(const QString& name, const std::vector<float>& values) {
    workstation.Places().SetParameters(plugin, name, values);
}

void CSoundTools::ShowState() {
    first->setChecked(!secondHeard);
    second->setChecked(secondHeard);
    copy->setText(Text(secondHeard ? TextKey("Copy to A") : TextKey("Copy to B")));
}

void CSoundTools::Swap() {
    const std::vector<float> heard = Values();
    Apply(Text("Compare sounds"), other);
    other = heard;
    secondHeard = !secondHeard;
    ShowState();
}

void CSoundTools::SetNarrow(bool narrow) {
    copy->setVisible(!narrow);
    random->setVisible(!narrow);
}

void CSoundTools::CopyToOther() { other = Values(); }

std::vector<int> CSoundTools::Differing() const {
    std::vector<int> found;
    const std::vector<float> heard = Values();
    for (std::size_t parameter = 0; parameter < heard.size(); ++parameter) {
        if (std::abs(heard[parameter] - other[parameter]) > 1e-4F) found.push_back(static_cast<int>(parameter));
    }
    return found;
}

void CSoundTools::Randomise(int percent) {
    std::vector<float> values = Values();
    const float reach = static_cast<float>(percent) / 100;
    for (std::size_t parameter = 0; parameter < values.size(); ++parameter) {
        if (IsLoudnessOrPitch(QString::fromStdString(plugin->Parameters()[parameter].name))) continue;
        if (isKept && isKept(static_cast<int>(parameter))) continue;
        const auto lot = static_cast<float>(QRandomGenerator::global()->bounded(2.0) - 1);
        values[parameter] = std::clamp(values[parameter] + reach * lot, 0.0F, 1.0F);
    }
    Apply(Text("Random sound"), values);
}

}  // namespace quib
