// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The programs that the user has saved of a kind of plug-in: files of one program each in a folder of its own below
// that of the program, named as the user names them. User-interface thread.

#include <QString>
#include <QStringList>

namespace quib {

class CPlugin;
class CWorkstation;

class CUserPrograms {
public:
    CUserPrograms(CWorkstation& projectOwner, const CPlugin& ofPlugin);

    // Looks into the folder again.
    void Refresh();
    // In alphabetical order.
    const QStringList& Names() const noexcept { return names; }
    // Whether it can be the name of one.
    static bool IsName(const QString& name);
    // Saves what is heard, in place of one of that name. False, with the reason, when that is not possible.
    bool Save(const QString& name, QString& error);
    // Lets one be heard, as one step of undo. The plug-in has to stand in a place.
    bool Load(const QString& name, QString& error);

private:
    QString PathOf(const QString& name) const;

    CWorkstation& workstation;
    const CPlugin& plugin;
    QString folder;
    QStringList names;
};

}  // namespace quib
