// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CComputerKeyboard.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <algorithm>
#include <array>

#include "document/CWorkstation.h"

namespace quib {

namespace {

constexpr int kOctave = 12;
constexpr int kHighestA = 108;

// Codes of the places on the keyboard: those of the X server.
constexpr std::uint32_t kOctaveDown = 52;  // where Z lies in the United States
constexpr std::uint32_t kOctaveUp = 53;
struct PianoKey {
    std::uint32_t place;
    int semitones;  // above the place A
};
constexpr std::array kPianoKeys = {PianoKey{38, 0},  PianoKey{39, 2},  PianoKey{40, 4},  PianoKey{41, 5},
                                   PianoKey{42, 7},  PianoKey{43, 9},  PianoKey{44, 11}, PianoKey{45, 12},
                                   PianoKey{46, 14}, PianoKey{47, 16}, PianoKey{48, 17}, PianoKey{25, 1},
                                   PianoKey{26, 3},  PianoKey{28, 6},  PianoKey{29, 8},  PianoKey{30, 10},
                                   PianoKey{32, 13}, PianoKey{33, 15}, PianoKey{35, 18}};

const PianoKey* Find(std::uint32_t place) {
    const auto* const found = std::ranges::find(kPianoKeys, place, &PianoKey::place);
    return found == kPianoKeys.end() ? nullptr : found;
}

// Menus, dialogs and lists use letters; whatever else writes text claims a key before shortcuts get it.
bool IsForText(QWidget& focus, const QKeyEvent& event) {
    if (QApplication::activePopupWidget() != nullptr || QApplication::activeModalWidget() != nullptr) return true;
    if (qobject_cast<QDialog*>(focus.window()) != nullptr || qobject_cast<QComboBox*>(&focus) != nullptr ||
        qobject_cast<QAbstractItemView*>(&focus) != nullptr) {
        return true;
    }
    QKeyEvent claim(QEvent::ShortcutOverride, event.key(), event.modifiers(), event.text());
    claim.ignore();
    QCoreApplication::sendEvent(&focus, &claim);
    return claim.isAccepted();
}

}  // namespace

CComputerKeyboard::CComputerKeyboard(CWorkstation& workstation, QObject* parent)
    : QObject(parent), station(workstation) {
    qApp->installEventFilter(this);
}

CComputerKeyboard::~CComputerKeyboard() { EndAll(); }

bool CComputerKeyboard::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress:
            return watched->isWidgetType() &&
                   Press(*static_cast<QWidget*>(watched), *static_cast<const QKeyEvent*>(event));
        case QEvent::KeyRelease: {
            const auto& key = *static_cast<const QKeyEvent*>(event);
            if (!key.isAutoRepeat()) Release(key.nativeScanCode());
            return false;
        }
        case QEvent::WindowDeactivate:
        case QEvent::ApplicationDeactivate:
            EndAll();
            return false;
        default:
            return false;
    }
}

bool CComputerKeyboard::Press(QWidget& focus, const QKeyEvent& event) {
    const std::uint32_t place = event.nativeScanCode();
    const bool movesOctave = place == kOctaveDown || place == kOctaveUp;
    const PianoKey* const pressed = Find(place);
    if (!movesOctave && pressed == nullptr) return false;
    if ((event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0) return false;
    if (IsForText(focus, event)) return false;
    if (event.isAutoRepeat()) return true;
    if (movesOctave) {
        lowest = std::clamp(lowest + (place == kOctaveUp ? kOctave : -kOctave), 0, kHighestA);
        return true;
    }
    const auto instrument = station.Selection().CurrentInstrument();
    if (!instrument || sounding.contains(place)) return true;
    const Sounding note{instrument->Id(), lowest + pressed->semitones};
    sounding.emplace(place, note);
    station.Transport().PlayKey(note.instrument, note.key, kVelocity);
    return true;
}

void CComputerKeyboard::Release(std::uint32_t place) {
    const auto found = sounding.find(place);
    if (found == sounding.end()) return;
    station.Transport().PlayKey(found->second.instrument, found->second.key, 0);
    sounding.erase(found);
}

void CComputerKeyboard::EndAll() {
    for (const auto& [place, note] : sounding) station.Transport().PlayKey(note.instrument, note.key, 0);
    sounding.clear();
}

}  // namespace quib
