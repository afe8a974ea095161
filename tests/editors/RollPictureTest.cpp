// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "editors/ExampleRoll.h"
#include "editors/RollFixture.h"

namespace quib {

namespace {

const std::vector<std::pair<int, const char*>> kDrums = {
    {60, "Kick"},       {61, "Rim"},     {62, "Snare"},    {63, "Clap"},     {65, "Low Tom"}, {66, "Closed Hat"},
    {68, "Pedal Hat"},  {69, "Mid Tom"}, {70, "Open Hat"}, {72, "High Tom"}, {73, "Crash"},   {75, "Ride"},
    {78, "Tambourine"}, {80, "Cowbell"}, {82, "Shaker"},   {87, "Claves"}};

void ShowMelody(CExampleRoll& example) {
    CPianoRollCtrlEx& roll = *example.roll;
    roll.options.scale = {5, EScaleType::kMinor};
    roll.options.swing = 0.25F;
    roll.options.lowerLimit = 51;
    roll.options.upperLimit = 76;
    roll.options.ghosts = {std::make_shared<CNoteIndex>(
        StateOf({{2, 1.2F, 77, 90}, {2, 1.2F, 72, 90}, {6, 1.2F, 75, 90}, {6, 1.2F, 68, 90}, {18, 1.2F, 67, 90}})
            .pattern)};
    roll.options.sounding.set(56);
    roll.Show(ExampleMelody());
    roll.OptionsChanged();
    roll.view.ScrollKeysTo(12 * (127 - 80));
    roll.ViewMoved();
    roll.SetPlayhead(13.4);
}

void ShowDrums(CExampleRoll& example) {
    CPianoRollCtrlEx& roll = *example.roll;
    std::vector<int> keys;
    for (const auto& [key, name] : kDrums) {
        roll.options.rowNames[static_cast<std::size_t>(key)] = name;
        keys.push_back(key);
    }
    roll.view.SetDrums(true);
    roll.view.SetRows(CRowOrder(keys));
    roll.options.focusedKey = 66;
    roll.options.sounding.set(60).set(82);
    roll.Show(ExampleDrums());
    roll.OptionsChanged();
    roll.SetPlayhead(18.4);
}

}  // namespace

// For the eye: build/<preset>/roll-*.png. The drawing at two scales must agree where it matters.
TEST(RollPicture, LooksAlikeAtEveryScale) {
    for (const bool drums : {false, true}) {
        QImage single;
        for (const int scale : {1, 2}) {
            CFakeDocument document;
            CExampleRoll example(document);
            example.window.SetUiScale(scale);
            example.window.resize(CExampleRoll::kWidth * scale, example.window.height() * scale);
            example.Show();
            (drums ? ShowDrums : ShowMelody)(example);
            QApplication::processEvents();
            const QImage picture = example.window.grab().toImage();
            picture.save(QStringLiteral(QUIB_BUILD_DIR "/roll-%1-%2x.png").arg(drums ? "drums" : "notes").arg(scale));
            if (scale == 1) {
                single = picture;
                continue;
            }
            // A place in the middle of a note, of the ground, of the end line.
            ASSERT_EQ(picture.width(), 2 * single.width());
            for (const QPoint& place : {QPoint(70, 380), QPoint(400, 200), QPoint(700, 300), QPoint(20, 100)}) {
                EXPECT_EQ(picture.pixel(2 * place), single.pixel(place)) << place.x() << "," << place.y();
            }
        }
    }
}

// Rows that are copied line by line and notes that are drawn one by one, as beside ghosts, are the same picture.
TEST(RollPicture, RowsOfLinesAreTheNotesThatAreDrawnOneByOne) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        CFakeDocument document;
        CExampleRoll example(document);
        example.window.SetUiScale(scale);
        example.window.resize(static_cast<int>(CExampleRoll::kWidth * scale), example.window.height());
        example.Show();
        CPianoRollCtrlEx& roll = *example.roll;
        ShowMelody(example);
        const auto noGhost = std::make_shared<CNoteIndex>(StateOf({}).pattern);
        const NoteState dense = DenseNotes(3000, 64);
        // Of names that others cover the one shows a part, the other nothing.
        for (const auto& [rowHeight, notes] :
             {std::pair(12, ExampleMelody()), {12, SelectAll(dense)}, {6, ExampleMelody()}, {6, dense}}) {
            roll.view.SetKeyZoom(rowHeight, 0);
            roll.Show(notes);
            roll.options.ghosts = {};
            const QImage lines = example.window.grab().toImage();
            roll.options.ghosts = {noGhost};
            EXPECT_EQ(lines, example.window.grab().toImage()) << scale << " " << rowHeight;
        }
    }
}

}  // namespace quib
