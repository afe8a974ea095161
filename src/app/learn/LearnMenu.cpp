// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/learn/LearnMenu.h"

#include <QMenu>
#include <array>

#include "texts/Texts.h"

namespace quib {

namespace {

constexpr std::array kModes = {TextKey("Soft take-over"),       TextKey("At once"),
                               TextKey("Encoder, 1 and 127"),   TextKey("Encoder, 65 and 63"),
                               TextKey("Encoder, 1 and 65"),    TextKey("A press switches"),
                               TextKey("While it is held down")};

// The binding may have gone while the menu was open.
void ChangeBinding(CControllers& controllers, const ControlTarget& target,
                   const std::function<void(ControlBinding&)>& change) {
    const CControlMap::Entry* const entry = controllers.Find(target);
    if (entry == nullptr) return;
    ControlBinding next = entry->binding;
    change(next);
    controllers.Change(static_cast<std::size_t>(entry - controllers.Map().Entries().data()), next);
}

}  // namespace

QString ModeText(EControlMode mode) { return Text(kModes[static_cast<std::size_t>(mode)]); }

void AddLearnItems(QMenu& menu, CControllers& controllers, const ControlTarget& target, const QString& what) {
    const QString learn = what.isEmpty() ? Text("Learn MIDI") : Text("Learn MIDI: %1").arg(what);
    const CControlMap::Entry* const entry = controllers.Find(target);
    if (entry == nullptr) {
        menu.addAction(learn, [&controllers, target] { controllers.Learn(target); });
        return;
    }
    const ControlBinding& binding = entry->binding;
    QMenu* const more = menu.addMenu(QStringLiteral("%1 (%2)").arg(learn, CControllers::SourceText(binding.source)));
    more->addAction(Text("Learn MIDI"), [&controllers, target] { controllers.Learn(target); });
    more->addAction(Text("Forget MIDI"), [&controllers, target] { controllers.Forget(target); });
    more->addSeparator();
    const auto add = [&](const QString& text, bool chosen, std::function<void(ControlBinding&)> change) {
        QAction* const action = more->addAction(
            text, [&controllers, target, change = std::move(change)] { ChangeBinding(controllers, target, change); });
        action->setCheckable(true);
        action->setChecked(chosen);
    };
    add(Text("Every channel"), binding.source.channelSelector == 1,
        [](ControlBinding& next) { next.source.channelSelector = 1; });
    if (IsAction(target.kind)) return;
    add(Text("Inverted"), binding.high < binding.low, [](ControlBinding& next) { std::swap(next.low, next.high); });
    more->addSeparator();
    for (int mode = 0; mode < kControlModeCount; ++mode) {
        const auto wanted = static_cast<EControlMode>(mode);
        add(ModeText(wanted), binding.mode == wanted, [wanted](ControlBinding& next) { next.mode = wanted; });
    }
}

}  // namespace quib
