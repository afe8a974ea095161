// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/LaunchMenu.h"

#include <QMenu>

#include "document/CWorkstation.h"
#include "texts/Texts.h"

namespace quib {

QString LaunchText(ELaunch launch) {
    constexpr std::array kTexts = {TextKey("At the end of the pattern"), TextKey("At the next beat"),
                                   TextKey("At the next bar")};
    return Text(kTexts[static_cast<std::size_t>(launch)]);
}

QString LaunchWord(ELaunch launch) {
    constexpr std::array kWords = {TextKey("end"), TextKey("Beat"), TextKey("Bar")};
    return Text(kWords[static_cast<std::size_t>(launch)]).toLower();
}

void FillLaunchMenu(QMenu& menu, CWorkstation& station) {
    CTransportControl& transport = station.Transport();
    menu.addSection(Text("Patterns chosen while playing begin"));
    for (const ELaunch launch : kLaunches) {
        QAction* const action =
            menu.addAction(LaunchText(launch), [&transport, launch] { transport.SetLaunch(launch); });
        action->setCheckable(true);
        action->setChecked(transport.Launch() == launch);
    }
}

}  // namespace quib
