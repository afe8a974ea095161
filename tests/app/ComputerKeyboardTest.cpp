// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CComputerKeyboard.h"

#include <QCoreApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSpinBox>

#include "document/DocumentFixture.h"

namespace quib {
namespace {

constexpr unsigned kA = 38;
constexpr unsigned kW = 25;
constexpr unsigned kX = 53;

class ComputerKeyboardTest : public DocumentTest {
protected:
    ComputerKeyboardTest() {
        for (int index = 0; index < 2; ++index) At(AddSynth())->keyboardOn.Set(1.0F);
        workstation->Selection().SetCurrent(0);
    }
    static void Key(QWidget& focus, QEvent::Type type, unsigned place, Qt::KeyboardModifiers modifiers = {},
                    bool repeated = false) {
        QKeyEvent event(type, Qt::Key_A, modifiers, place, 0, 0, QStringLiteral("a"), repeated);
        QCoreApplication::sendEvent(&focus, &event);
    }
    // Keys that an instrument hears.
    std::vector<int> Held(std::size_t instrument = 0) {
        workstation->Audio().RenderBlock();
        const InstrumentPicture& shown = workstation->Audio().Picture().instruments[instrument];
        return {shown.heldKeys.begin(), shown.heldKeys.begin() + static_cast<std::ptrdiff_t>(shown.heldKeyCount)};
    }

    using Keys = std::vector<int>;
    CComputerKeyboard keyboard{*workstation, nullptr};
    QWidget window;
};

TEST_F(ComputerKeyboardTest, AReleaseEndsWhatItsPressBeganWhateverTheOctaveOrTheInstrumentNow) {
    Key(window, QEvent::KeyPress, kA);
    Key(window, QEvent::KeyRelease, kA, {}, true);
    Key(window, QEvent::KeyPress, kA, {}, true);
    EXPECT_EQ(Held(), Keys{48});
    Key(window, QEvent::KeyPress, kX);
    Key(window, QEvent::KeyRelease, kX);
    workstation->Selection().SetCurrent(1);
    Key(window, QEvent::KeyPress, kW, Qt::ShiftModifier);
    EXPECT_EQ(Held(0), Keys{48});
    EXPECT_EQ(Held(1), Keys{61});
    Key(window, QEvent::KeyRelease, kA, Qt::ControlModifier);
    EXPECT_EQ(Held(0), Keys());
    QEvent away(QEvent::WindowDeactivate);
    QCoreApplication::sendEvent(&window, &away);
    EXPECT_EQ(Held(1), Keys());
}

TEST_F(ComputerKeyboardTest, WhereTextIsWrittenOrAShortcutMeantNothingPlays) {
    QLineEdit line;
    QSpinBox number;
    QDialog dialog;
    for (QWidget* const focus : std::initializer_list<QWidget*>{&line, &number, &dialog}) {
        Key(*focus, QEvent::KeyPress, kA);
        EXPECT_EQ(Held(), Keys());
    }
    EXPECT_EQ(line.text(), QStringLiteral("a"));
    for (const auto modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier}) {
        Key(window, QEvent::KeyPress, kA, modifier);
        EXPECT_EQ(Held(), Keys());
    }
}

}  // namespace
}  // namespace quib
