// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The computer keyboard as a musical one: it plays the current instrument from every window of the program
// in which no text is written. Keys go by their place, so it fits every layout: the row of A has the white
// keys, the row above it the black ones, the first two keys of the lowest row move it by octaves.
// It filters the events of the application; user-interface thread.

#include <QObject>
#include <map>

class QKeyEvent;
class QWidget;

namespace quib {

class CWorkstation;

class CComputerKeyboard : public QObject {
    Q_OBJECT

public:
    static constexpr int kVelocity = 100;

    CComputerKeyboard(CWorkstation& workstation, QObject* parent);
    ~CComputerKeyboard() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // What the press of a key has begun.
    struct Sounding {
        std::uint32_t instrument;
        int key;
    };

    bool Press(QWidget& focus, const QKeyEvent& event);
    void Release(std::uint32_t place);
    void EndAll();

    CWorkstation& station;
    int lowest = 48;  // key of the place A
    std::map<std::uint32_t, Sounding> sounding;
};

}  // namespace quib
