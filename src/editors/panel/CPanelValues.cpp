// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/CPanelValues.h"

#include <algorithm>
#include <cmath>

#include "controls/CControl.h"
#include "document/CWorkstation.h"

namespace quib {

CPanelValues::CPanelValues(CWorkstation& projectOwner, std::shared_ptr<CPlugin> shownPlugin)
    : document(projectOwner), plugin(std::move(shownPlugin)) {
    for (std::size_t parameter = 0; parameter < plugin->Parameters().size(); ++parameter)
        values.emplace_back(plugin->Parameter(static_cast<int>(parameter)));
}

float CPanelValues::Default(int parameter) const {
    return plugin->Parameters()[static_cast<std::size_t>(parameter)].defaultValue;
}

bool CPanelValues::IsSigned(int parameter) const { return std::abs(Default(parameter) - 0.5F) < 0.001F; }

QString CPanelValues::Name(int parameter) const {
    return QString::fromStdString(plugin->Parameters()[static_cast<std::size_t>(parameter)].name);
}

QString CPanelValues::Text(int parameter) const {
    const QString value = QString::fromStdString(plugin->ParameterText(parameter)).trimmed();
    const QString unit = QString::fromStdString(plugin->ParameterUnit(parameter)).trimmed();
    if (value == QLatin1String("-oo")) return QStringLiteral("−∞ ") + unit;
    return unit.isEmpty() ? value : value + QLatin1Char(' ') + unit;
}

void CPanelValues::Set(int parameter, float value) {
    plugin->SetParameter(parameter, std::clamp(value, 0.0F, 1.0F));
    Value(parameter).Set(plugin->Parameter(parameter));
}

void CPanelValues::Keep(int parameter, float before) {
    document.Places().ParameterEdited(plugin, parameter, before, Get(parameter));
    if (onTouch) onTouch(parameter);
}

bool CPanelValues::SetByText(int parameter, const QString& text) {
    const float before = Get(parameter);
    bool isNumber = false;
    const float number = text.toFloat(&isNumber);
    if (!plugin->SetParameterText(parameter, text.toStdString())) {
        if (!isNumber || number < 0 || number > 1) return false;
        plugin->SetParameter(parameter, number);
    }
    Value(parameter).Set(plugin->Parameter(parameter));
    Keep(parameter, before);
    return true;
}

void CPanelValues::Connect(CControl& control, int parameter) {
    control.Bind(&Value(parameter));
    control.name = Name(parameter);
    control.defaultValue = Default(parameter);
    control.formatValue = [this, parameter](float) { return Text(parameter); };
    control.onChange = [this, parameter](CControl& moved) { Set(parameter, moved.ValueNow()); };
    control.onGesture = [this, parameter](CControl&, float before) { Keep(parameter, before); };
    control.onAlternativeClick = [this, parameter](CControl&) {
        if (onMenu) onMenu(parameter);
    };
    control.learns = TargetOf(parameter);
}

std::optional<ControlTarget> CPanelValues::TargetOf(int parameter) const {
    SlotPlace place;
    if (!document.Places().FindPlugin(plugin.get(), place)) return std::nullopt;
    const EControlTarget kind = TargetKindOf(place);
    return ControlTarget{kind, IsOfInstrument(kind) ? place.instrument : 0, parameter};
}

void CPanelValues::Follow() {
    for (int parameter = 0; parameter < Count(); ++parameter) {
        const float now = plugin->Parameter(parameter);
        if (now != Get(parameter)) Value(parameter).Set(now);
    }
    FollowMeasured();
}

void CPanelValues::FollowMeasured() {
    constexpr float kQuiet = -60;  // dB
    const auto now = AskMeasured(*plugin);
    if (!now) return;
    const bool isQuiet = now->level < kQuiet && now->reduction < 0.1F;
    quietTicks = isQuiet ? std::min(quietTicks + 1, kMeasuredTicks) : 0;
    if (quietTicks == kMeasuredTicks && measured.empty()) return;
    ++measuredCount;
    if (quietTicks == kMeasuredTicks) return measured.clear();
    measured.push_back(*now);
    if (measured.size() > kMeasuredTicks) measured.pop_front();
}

}  // namespace quib
