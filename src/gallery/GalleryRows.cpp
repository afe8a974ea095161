// SPDX-License-Identifier: GPL-3.0-or-later
// The panels of the gallery with patterns, texts, pictures and keys.

#include <QMenu>

#include "controls/CImageCtrl.h"
#include "controls/CInfoCtrl.h"
#include "controls/CKeyboardExCtrl.h"
#include "controls/CLabelCtrl.h"
#include "controls/CPresetSelectorCtrl.h"
#include "controls/CScrollCtrl.h"
#include "controls/CSelectorCtrl.h"
#include "controls/CSplitCtrl.h"
#include "controls/CStepLedCtrl.h"
#include "controls/CZoomCtrl.h"
#include "controls/SkinNumbers.h"
#include "gallery/CGallery.h"
#include "texts/Texts.h"

namespace quib {

void CGallery::BuildPatterns() {
    const QPoint at = AddPanel({334, 220, 376, 96}, QStringLiteral("Patterns, steps, presets"), ESection::kPattern);
    patterns.look = {2, 4, 6, 0b0000'0110'0111'0111U, 0b0000'0000'0100'1101U};
    auto& cells = Place<CPatternSelCtrl>(ESection::kPattern, at.x(), at.y(), 22, 22, 0, &patterns);
    PoseMouse(cells, 22 * 9 + 5, 5);
    auto& leds =
        Place<CStepLedCtrl>(ESection::kPattern, at.x(), at.y() + 26, 352, 6, Palette().Colour(QStringLiteral("panel")));
    leds.playingStep = [this] { return playingStep; };
    leds.loudness = [](int step) { return step % 4 == 0 || step == 5 || step == 11 || step == 14 ? 100 : -1; };
    leds.NotesChanged();
    auto& presets = Place<CPresetSelectorCtrl>(ESection::kMix, at.x(), at.y() + 37, 176, 20, Value(3));
    presets.presetCount = [] { return 6; };
    presets.onAdd = [] {};
    presets.infoText = QStringLiteral("PRESETS - A click recalls one, the plus adds one.");
    PoseMouse(presets, 22 * 4 + 5, 5);
    auto& steps = Place<CStepLedCtrl>(ESection::kPattern, at.x() + 186, at.y() + 44, 166, 6,
                                      Palette().Colour(QStringLiteral("panel")));
    steps.SetStepCount(32);
    steps.playingStep = [this] { return playingStep * 2 + 1; };
    steps.loudness = [](int step) { return step % 3 == 0 ? 60 : -1; };
}

void CGallery::BuildTexts() {
    const QPoint at = AddPanel({718, 10, 252, 306}, QStringLiteral("Texts"), ESection::kPattern);
    auto& english = Place<CInfoCtrl>(ESection::kMix, at.x(), at.y(), 232, 105);
    english.Show(127);
    infoPanel = &english;
    auto& french = Place<CInfoCtrl>(ESection::kMix, at.x(), at.y() + 111, 232, 105);
    french.Show(InfoText(127, ELanguage::kFrench));
    auto& selector = Place<CSelectorCtrl>(
        ESection::kEqualiser, at.x(), at.y() + 224, 112, 20, Value(1),
        QStringList{QStringLiteral("Off"), QStringLiteral("Sine"), QStringLiteral("Triangle"), QStringLiteral("Saw")});
    selector.infoText = QStringLiteral("SELECTOR - The arrows and the wheel step, the text opens the list.");
    auto& lit = Place<CSelectorCtrl>(ESection::kEqualiser, at.x() + 120, at.y() + 224, 112, 20, Value(0),
                                     QStringList{QStringLiteral("Hover")});
    PoseAs(lit, EState::kHover);
    const auto fillMenu = [](QMenu& menu) { menu.addAction(QStringLiteral("One of the menu")); };
    Place<CLabelMenuCtrl>(ESection::kEffects, at.x(), at.y() + 248, 112, 20, QStringLiteral("Menu"), fillMenu);
    auto& menu = Place<CLabelMenuCtrl>(ESection::kEffects, at.x() + 120, at.y() + 248, 112, 20,
                                       QStringLiteral("Menu, hover"), fillMenu);
    PoseAs(menu, EState::kHover);
}

void CGallery::BuildIcons() {
    const QPoint at = AddPanel({334, 324, 350, 190}, QStringLiteral("Icons, bars"), ESection::kEffects);
    int index = 0;
    for (int number = picture::kGlyphPlay; number <= picture::kGlyphEdit; ++number, ++index) {
        Place<CImageCtrl>(ESection::kMix, at.x() + index % 14 * 23, at.y() + index / 14 * 24, 22, 22, number).isGlyph =
            true;
    }
    for (index = 0; index < picture::kInstrumentIconCount; ++index) {
        Place<CImageCtrl>(ESection::kPattern, at.x() + index * 26, at.y() + 52, 24, 24,
                          picture::kInstrumentIcon + index)
            .isGlyph = true;
    }
    Place<CImageCtrl>(ESection::kMix, at.x() + 250, at.y() + 50, 64, 64, picture::kProgramIcon);
    auto& zoom = Place<CZoomCtrl>(ESection::kMix, at.x(), at.y() + 84, 52, 20);
    PoseMouse(zoom, 40, 8);
    auto& split = Place<CSplitCtrl>(ESection::kMix, at.x() + 62, at.y() + 84, 60, 7, false);
    PoseAs(split, EState::kHover);
    Place<CSplitCtrl>(ESection::kMix, at.x() + 132, at.y() + 84, 7, 32, true);
    for (int bar = 0; bar < 2; ++bar) {
        auto& scroll =
            Place<CScrollCtrl>(ESection::kMix, at.x() + 150 + 50 * bar, at.y() + 84, 44, 10, Value(30), false);
        scroll.SetRange(100, 40);
        if (bar == 1) PoseAs(scroll, EState::kHover);
    }
    auto& label = Place<CLabelCtrl>(ESection::kMix, at.x(), at.y() + 126, 112, 20, QStringLiteral("Label"));
    label.fontHeight = 11;
    auto& well = Place<CLabelCtrl>(ESection::kMix, at.x() + 120, at.y() + 126, 112, 20,
                                   QStringLiteral("A label that is too long for its well"));
    well.sunken = true;
    auto& upright = Place<CScrollCtrl>(ESection::kMix, at.x() + 318, at.y() + 50, 10, 66, Value(20), true);
    upright.SetRange(100, 50);
}

void CGallery::BuildKeyboards() {
    const QPoint at =
        AddPanel({10, 522, 960, 228}, QStringLiteral("Keyboard, normal and compact"), ESection::kKeyboard);
    auto& large = Place<CKeyboardExCtrl>(ESection::kKeyboard, at.x(), at.y(), 940, 100, false);
    large.onNote = [](CKeyboardExCtrl&, int, bool) {};
    large.isSounding = [](int note) { return note == 40 || note == 43 || note == 47; };
    auto& compact = Place<CKeyboardExCtrl>(ESection::kKeyboard, at.x(), at.y() + 112, 940, 60, true);
    compact.onNote = large.onNote;
    auto& scroll = Place<CScrollCtrl>(ESection::kKeyboard, at.x(), at.y() + 178, 940, 10, Value(280), false);
    scroll.SetRange(CKeyboardExCtrl::kWholeWidth, 940);
    scroll.onChange = [&large, &compact](CControl& bar) {
        large.SetScrollOffset(static_cast<int>(bar.ValueNow()));
        compact.SetScrollOffset(static_cast<int>(bar.ValueNow()));
    };
    poses.emplace_back([&large, &compact] {
        large.SetScrollOffset(280);
        compact.SetScrollOffset(280);
    });
    PoseMouse(large, 333, 80);
    PoseMouse(compact, 237, 20);
    poses.emplace_back([&compact] { compact.OnLButtonDown(compact.X() + 410, compact.Y() + 50, 0); });
}

}  // namespace quib
