// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The parameters of one plug-in as values that controls bind to. What a control sets goes to the plug-in, and
// each gesture is a step of undo; what others move is taken over by Follow. User-interface thread.

#include <QString>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

#include "model/CValue.h"
#include "model/control/ControlBinding.h"
#include "model/plugin/Measured.h"

namespace quib {

class CControl;
class CPlugin;
class CWorkstation;

class CPanelValues {
public:
    CPanelValues(CWorkstation& projectOwner, std::shared_ptr<CPlugin> shownPlugin);

    CPlugin& Plugin() const noexcept { return *plugin; }
    const std::shared_ptr<CPlugin>& Shared() const noexcept { return plugin; }
    CWorkstation& Document() const noexcept { return document; }
    int Count() const noexcept { return static_cast<int>(values.size()); }
    // Of parameter 0 .. Count() - 1.
    CValue& Value(int parameter) { return values[static_cast<std::size_t>(parameter)]; }
    float Get(int parameter) const { return values[static_cast<std::size_t>(parameter)].Get(); }
    float Default(int parameter) const;
    // Whether it goes both ways from the middle of its range.
    bool IsSigned(int parameter) const;
    // In the plug-in's words, with its unit.
    QString Text(int parameter) const;
    QString Name(int parameter) const;

    // 0..1, heard at once. A gesture ends with Keep.
    void Set(int parameter, float value);
    void Keep(int parameter, float before);
    // By the plug-in's own words, or a number 0..1. False, and nothing changes, where it is neither.
    bool SetByText(int parameter, const QString& text);

    // Lets a control show and move a parameter.
    void Connect(CControl& control, int parameter);

    // Takes over what others have moved; from the 40 ms timer.
    void Follow();

    // What the plug-in has measured at the last kMeasuredTicks ticks, the newest last; empty for one that measures
    // nothing, and while nothing has sounded for as long.
    const std::deque<MeasuredLevel>& Measured() const noexcept { return measured; }
    static constexpr std::size_t kMeasuredTicks = 100;  // 4 s
    // Counts what came into it.
    unsigned MeasuredCount() const noexcept { return measuredCount; }

    // What MIDI would move; nothing while the plug-in stands in no place.
    std::optional<ControlTarget> TargetOf(int parameter) const;
    std::function<void(int parameter)> onMenu;   // the other button was pressed on a control of it
    std::function<void(int parameter)> onTouch;  // the user has moved it

private:
    void FollowMeasured();

    CWorkstation& document;
    std::shared_ptr<CPlugin> plugin;
    std::deque<CValue> values;
    std::deque<MeasuredLevel> measured;
    unsigned measuredCount = 0;
    std::size_t quietTicks = kMeasuredTicks;
};

}  // namespace quib
