// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A and B, two sounds of one plug-in to compare, and a sound by lot near the one that is heard: a row of buttons for
// its window. Each change is one step of undo. User-interface thread.

#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

class QToolButton;

namespace quib {

class CPlugin;
class CWorkstation;

class CSoundTools : public QWidget {
    Q_OBJECT

public:
    CSoundTools(CWorkstation& projectOwner, std::shared_ptr<CPlugin> shownPlugin);

    // Whether only A and B are shown.
    void SetNarrow(bool narrow);
    // Lets the other one be heard.
    void Swap();
    bool IsSecondHeard() const noexcept { return secondHeard; }
    // Makes the other one the one that is heard.
    void CopyToOther();
    // The parameters in which the two differ.
    std::vector<int> Differing() const;
    // Those that a sound by lot leaves alone besides; unset: none.
    std::function<bool(int parameter)> isKept;
    // Moves each parameter by at most `percent` of its range, but levels, pitch and what is kept from it.
    void Randomise(int percent);

private:
    std::vector<float> Values() const;
    void Apply(const QString& name, const std::vector<float>& values);
    void ShowState();

    CWorkstation& workstation;
    std::shared_ptr<CPlugin> plugin;
    std::vector<float> other;
    bool secondHeard = false;
    QToolButton* first = nullptr;
    QToolButton* second = nullptr;
    QToolButton* copy = nullptr;
    QToolButton* random = nullptr;
    int percentChosen = 10;
};

}  // namespace quib
