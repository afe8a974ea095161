// SPDX-License-Identifier: GPL-3.0-or-later
// What a layout puts into its boxes: controls of parameters, and pictures of several.
#include <algorithm>

#include "controls/CFaderCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "editors/panel/CAmountCtrl.h"
#include "editors/panel/CChoiceCtrl.h"
#include "editors/panel/CPadsCtrl.h"
#include "editors/panel/CPanelBuilder.h"
#include "editors/panel/CPanelKnobCtrl.h"
#include "editors/panel/CPickCtrl.h"
#include "editors/panel/CPictureCtrl.h"
#include "editors/panel/PanelLook.h"
#include "editors/panel/PanelMeasures.h"
#include "editors/panel/PanelParameters.h"
#include "editors/panel/pictures/CPanelPicture.h"
#include "texts/Texts.h"

namespace quib {

using namespace panelMeasures;

void CPanelBuilder::PutControl(const PanelStatement& statement, const QRect& place, int parameter) {
    const std::string& word = statement.word;
    CControl* control = nullptr;
    const float zero = statement.Word("zero").empty() ? 0 : QString::fromStdString(statement.Word("zero")).toFloat();
    const QString caption = Caption(statement, parameter);
    const QRect field(place.x(), place.y() + (place.height() - std::min(place.height(), kFieldHeight)) / 2,
                      place.width(), std::min(place.height(), kFieldHeight));
    if (word == "knob") {
        const int wantedRadius = statement.Option("r", kRadius);
        auto& knob = panel.Add<CPanelKnobCtrl>(place, wantedRadius, values, parameter);
        knob.zero = zero;
        knob.caption = caption;
        control = &knob;
    } else if (word == "fader") {
        auto& fader =
            panel.Add<CFaderCtrl>(0U, place.x() + (place.width() - 20) / 2, place.y(), 20,
                                  std::min(place.height(), statement.Option("h", place.height())), nullptr, true);
        values.Connect(fader, parameter);
        control = &fader;
    } else if (word == "slider") {
        auto& slider = panel.Add<CAmountCtrl>(place, values, parameter);
        slider.zero = zero;
        control = &slider;
    } else if (word == "switch") {
        auto& onOff = panel.Add<CSwitchCtrl>(0U, field.x(), field.y(), field.width(), field.height(), nullptr, caption);
        values.Connect(onOff, parameter);
        control = &onOff;
    } else if (statement.Is({"pick", "waves", "cycle", "menu"}) && StepNames(statement, parameter).size() > 1) {
        const QStringList names = StepNames(statement, parameter);
        auto& pick = panel.Add<CPickCtrl>(statement.Word("columns").empty() && word != "waves" ? field : place, values,
                                          parameter, names);
        pick.columns = statement.Option("columns", 0);
        pick.waves = word == "waves";
        pick.cycles = word == "cycle";
        if (statement.Word("names").empty()) {
            for (const PanelText& text : statement.texts) pick.shown += InLanguage(text);
        }
        control = &pick;
    } else if (statement.Is({"choice", "step", "menu", "pick", "waves", "cycle"})) {
        auto& choice = panel.Add<CChoiceCtrl>(place, values, parameter);
        choice.caption = caption;
        choice.steps = parameters.StepsOf(parameter);
        control = &choice;
    }
    if (control == nullptr) return;
    control->section = SectionNamed(statement.Word("accent")).value_or(section);
    const std::string& enabling = statement.Word("on");
    if (!enabling.empty()) control->enabled = MeetsCondition(enabling);
    control->infoText = values.Name(parameter);
}

void CPanelBuilder::PutPicture(const PanelStatement& statement, const QRect& place) {
    const std::string kind = statement.arguments.empty() ? std::string() : statement.arguments.front();
    auto picture = MakePicture(kind, std::max(1, statement.Option("periods", 2)));
    if (!picture) return;
    std::map<std::string, int> roles;
    for (const auto& [role, text] : statement.options) {
        if (!IsPanelRole(role)) continue;
        // Of two parameters the first counts while the delay keeps to notes.
        const std::size_t comma = text.find(',');
        std::string chosen = text;
        if (comma != std::string::npos) {
            const int sync = Parameter(statement.Word("sync"));
            const bool notes = sync >= 0 && values.Get(sync) >= 0.5F;
            chosen = notes ? text.substr(0, comma) : text.substr(comma + 1);
            if (sync >= 0) panel.conditions.push_back({sync, 1, 1, 2});
        }
        const int parameter = Parameter(chosen);
        if (parameter >= 0) roles[role] = parameter;
    }
    auto& control = panel.Add<CPictureCtrl>(place, CPictureRoles(values, std::move(roles)), std::move(picture));
    control.section = SectionNamed(statement.Word("accent")).value_or(section);
}

void CPanelBuilder::PutMatrix(const PanelStatement& statement, const QRect& place) {
    constexpr int kHead = 66;  // the names of the sources
    constexpr int kRow = 20;
    constexpr int kCellWidth = 48;
    const int columns = static_cast<int>(statement.texts.size());
    if (columns == 0) return;
    const int way = (place.width() - kHead) / columns;
    for (int column = 0; column < columns; ++column)
        panel.labels.push_back({QRect(place.x() + kHead + column * way, place.y(), way, 16),
                                InLanguage(statement.texts[static_cast<std::size_t>(column)]), Qt::AlignCenter});
    int y = place.y() + 18;
    for (const PanelStatement& row : statement.inside) {
        if (row.word != "from" || row.texts.empty() || row.arguments.empty()) continue;
        panel.labels.push_back({QRect(place.x(), y, kHead - 4, kRow), InLanguage(row.texts.front())});
        for (std::size_t column = 0; column < statement.texts.size() && column + 1 < row.arguments.size(); ++column) {
            const QRect cell(place.x() + kHead + static_cast<int>(column) * way + (way - kCellWidth) / 2, y, kCellWidth,
                             kRow);
            const int parameter = Parameter(row.arguments[column + 1]);
            if (parameter < 0) {
                panel.labels.push_back({cell, QStringLiteral("–"), Qt::AlignCenter});
                continue;
            }
            auto& amount = panel.Add<CAmountCtrl>(cell, values, parameter);
            amount.isCell = true;
            // A modulation that goes both ways is nothing in the middle, which its text tells.
            amount.zero = values.IsSigned(parameter) ? 0.5F : 0;
            amount.defaultValue = amount.zero;
            amount.section = SectionNamed(row.arguments.front()).value_or(section);
            amount.infoText = values.Name(parameter);
        }
        y += kRow;
    }
}

void CPanelBuilder::PutPads(const PanelStatement& statement, const QRect& place) {
    std::vector<CPadsCtrl::Pad> pads;
    for (const PanelStatement& line : statement.inside) {
        if (line.word != "pad" || line.texts.empty()) continue;
        CPadsCtrl::Pad pad;
        pad.page = line.Number(0, 0);
        pad.name = InLanguage(line.texts.front());
        for (std::size_t key = 1; key < line.arguments.size(); ++key)
            pad.keys.push_back(std::clamp(line.Number(key, 0), 0, 127));
        pad.chokes = !line.Word("choke").empty();
        offset = parameters.stride * pad.page;
        pad.level = Parameter(statement.Word("level"));
        pad.pan = Parameter(statement.Word("pan"));
        pad.send = Parameter(statement.Word("send"));
        pads.push_back(std::move(pad));
    }
    offset = 0;
    auto& control = panel.Add<CPadsCtrl>(place, values, std::move(pads), statement.Option("columns", 4));
    control.section = section;
    control.page = page;
    control.infoText =
        Text("A click plays the pad: soft at its foot, loud at its top. The right button chooses it silently.");
    control.onChoose = [this_ = &panel](int chosen) { this_->ChoosePage(chosen); };
    control.onPlay = [this_ = &panel](int key, int velocity) { this_->Play(key, velocity); };
}

// Its contents once for each page, side by side, with the names of the pages above.
void CPanelBuilder::PutPages(const PanelStatement& statement, const QRect& place) {
    constexpr int kNames = 18;
    constexpr int kHead = 44;  // the names of the lines
    const int count = std::clamp(statement.Number(0, 1), 1, 64);
    const int way = (place.width() - kHead) / count;
    for (int index = 0; index < count; ++index) {
        const int x = place.x() + kHead + index * way;
        const auto name = parameters.pageNames.find(index);
        if (name != parameters.pageNames.end())
            panel.labels.push_back({QRect(x, place.y(), way, kNames), InLanguage(name->second), Qt::AlignCenter});
        offset = parameters.stride * index;
        int y = place.y() + kNames + kInnerGap;
        for (const PanelStatement& line : statement.inside) {
            const int height = line.Option("h", line.word == "cycle" ? 20 : 14);
            if (index == 0 && !line.texts.empty())
                panel.labels.push_back({QRect(place.x(), y, kHead, height), InLanguage(line.texts.front())});
            Put(line, {x + 4, y, way - 8, height});
            y += height + kGap;
        }
    }
    offset = 0;
}

// What the layout does not name: a group of its own below, so that nothing is out of reach.
void CPanelBuilder::PutRest(const QRect& place) {
    std::vector<int> rest;
    for (int parameter = 0; parameter < values.Count(); ++parameter) {
        if (!panel.placed[static_cast<std::size_t>(parameter)]) rest.push_back(parameter);
    }
    panel.restHeight = 0;
    if (rest.empty()) return;
    const int across = std::max(1, (place.width() - 2 * kMargin) / kCellWidth);
    const int rows = (static_cast<int>(rest.size()) + across - 1) / across;
    const QRect group(place.x(), place.y(), place.width(), kTitled + rows * kCellHeight + kMargin);
    panel.frames.push_back({group, Text("More"), ESection::kPattern});
    for (std::size_t index = 0; index < rest.size(); ++index) {
        const int at = static_cast<int>(index);
        const QRect cell(group.x() + kMargin + at % across * kCellWidth,
                         group.y() + kTitled + at / across * kCellHeight, kCellWidth, kCellHeight);
        auto& knob = panel.Add<CPanelKnobCtrl>(cell, kRadius, values, rest[index]);
        knob.caption = values.Name(rest[index]);
        knob.section = ESection::kPattern;
    }
    panel.restHeight = group.height() + kMargin;
}

}  // namespace quib
