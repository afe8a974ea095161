// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/FreezeMenu.h"

#include <QMenu>

#include "document/CWorkstation.h"
#include "texts/Texts.h"

namespace quib {

void AddFreezeItems(QMenu& menu, CWorkstation& station, std::uint32_t instrument) {
    const auto owner = station.Stack().InstrumentById(instrument);
    if (!owner) return;
    const auto add = [&](const QString& text, void (CFreezing::*run)(int)) {
        return menu.addAction(
            text, [&station, instrument, run] { (station.Freezing().*run)(station.Stack().IndexOf(instrument)); });
    };
    const CFreezing::State state = station.Freezing().StateOf(*owner);
    const QString refusal = FreezeRefusal(station.Audio(), *owner);
    if (state.state == CFreezing::EState::kLive || state.state == CFreezing::EState::kStale) {
        const QString text =
            state.state == CFreezing::EState::kLive ? Text("Freeze Instrument") : Text("Freeze Instrument again");
        QAction* const action =
            add(refusal.isEmpty() ? text : QStringLiteral("%1  (%2)").arg(text, refusal), &CFreezing::Freeze);
        action->setEnabled(refusal.isEmpty());
    }
    if (state.state == CFreezing::EState::kRendering) add(Text("Cancel freezing"), &CFreezing::Thaw);
    if (state.state == CFreezing::EState::kStale || state.state == CFreezing::EState::kFrozen)
        add(Text("Unfreeze Instrument"), &CFreezing::Thaw);
}

QString FrozenHelp(const CFreezing::State& state) {
    switch (state.state) {
        case CFreezing::EState::kRendering:
            return Text("FREEZING - %1 % rendered; it sounds live until then. A click cancels.").arg(state.percent);
        case CFreezing::EState::kFrozen:
            return state.reason.isEmpty()
                       ? Text(
                             "FROZEN - Its sound is rendered, and its plug-in rests. A click lets it sound live again.")
                       : Text("FROZEN - It sounds live: %1. A click unfreezes it.").arg(state.reason);
        case CFreezing::EState::kStale:
            return Text("FROZEN, NOT UP TO DATE - It sounds live: %1. A click renders it again; right button: menu.")
                .arg(state.reason);
        case CFreezing::EState::kLive:
            break;
    }
    return {};
}

}  // namespace quib
