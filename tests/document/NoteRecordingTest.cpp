// SPDX-License-Identifier: GPL-3.0-or-later
// Keys played become notes that sound where they were played.
#include "document/CNoteRecording.h"

#include "document/DocumentFixture.h"
#include "engine/EngineFixture.h"
#include "platform/Clock.h"

namespace quib {
namespace {

class NoteRecordingTest : public DocumentTest {
protected:
    NoteRecordingTest() {
        QString error;
        workstation->Stack().AddInstrument(QStringLiteral(QUIB_BIN_DIR "/testplugins/NoteProbe.so"), error);
        audio.Prepare({44100.0, 256, 1, false});
        workstation->NoteRecording().SetOptions({});
        At(0)->midi.channel.Set(kChannelOmni);
    }
    void SetPattern(int steps, std::vector<Note> notes) {
        At(0)->patterns[0].Publish(std::make_shared<const CPattern>(steps, std::move(notes)), audio.graveyard);
    }
    const std::vector<Note>& Notes() { return At(0)->patterns[0].ForEdit()->Notes(); }
    void Send(int velocity, int key) {
        const auto early = static_cast<std::uint64_t>(random.Draw()) * 177;
        audio.ReceiveMidi(
            {0x90, static_cast<std::uint8_t>(key), static_cast<std::uint8_t>(velocity), Nanoseconds() - early});
    }
    std::vector<HeardNote> Listen(int blocks) {
        std::vector<HeardNote> heard;
        for (int block = 0; block < blocks; ++block, frames += 256) {
            audio.RenderBlock();
            for (int frame = 0; frame < 256; ++frame) {
                for (const bool on : {false, true}) {
                    const float mark = PluginAt(0).Output(on ? 0 : 1)[frame];
                    if (mark != 0.0F) heard.push_back({frames + frame, static_cast<int>(mark * 128.0F), on});
                }
            }
        }
        return heard;
    }
    void Play() {
        workstation->Transport().Play();
        frames = 0;
    }

    CAudio& audio = workstation->Audio();
    CRandom random{7};
    std::int64_t frames = 0;
};

TEST_F(NoteRecordingTest, AThousandNotesPlayBackWithinOneSampleOfWhereTheyWerePlayed) {
    constexpr int kNotes = 1000;
    SetPattern(512, {});
    workstation->NoteRecording().Armed().Set(1.0F);
    Play();
    std::vector<HeardNote> live = Listen(5);
    for (int note = 0; note < kNotes; ++note) {
        for (const int velocity : {100, 0}) {
            Send(velocity, 24 + note % 64);
            for (const HeardNote& heard : Listen(3)) live.push_back(heard);
        }
        if (note % 5 == 0) workstation->Tick();
    }
    workstation->Transport().Stop();
    Listen(1);
    workstation->Tick();
    EXPECT_EQ(UndoText(), "Record notes");
    EXPECT_EQ(workstation->Changes().Steps().index(), 2) << "one step of undo after that of the instrument";
    ASSERT_EQ(Notes().size(), static_cast<std::size_t>(kNotes));
    ASSERT_EQ(live.size(), 2U * kNotes);

    workstation->NoteRecording().Armed().Set(0.0F);
    Play();
    const std::vector<HeardNote> again = Listen(static_cast<int>(live.back().frame / 256 + 1));
    ASSERT_EQ(again.size(), live.size());
    for (std::size_t index = 0; index < live.size(); ++index) {
        ASSERT_EQ(again[index].key, live[index].key);
        ASSERT_NEAR(static_cast<double>(again[index].frame), static_cast<double>(live[index].frame - 256), 1);
    }
    workstation->Changes().Steps().undo();
    EXPECT_TRUE(Notes().empty());
}

TEST_F(NoteRecordingTest, ANoteThatThePedalHoldsLastsUntilItGoesUp) {
    const auto move = [&](int status, int number, int value) {
        audio.ReceiveMidi({static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(number),
                           static_cast<std::uint8_t>(value), Nanoseconds()});
    };
    SetPattern(64, {});
    workstation->NoteRecording().Armed().Set(1.0F);
    Play();
    Listen(30);
    move(0xb0, 64, 127);
    for (const int key : {60, 62}) {
        move(0x90, key, 100);
        Listen(20);
        move(0x80, key, 0);
        Listen(20);
    }
    move(0xb0, 64, 0);
    Listen(5);
    workstation->Transport().Stop();
    Listen(1);
    workstation->Tick();
    ASSERT_EQ(Notes().size(), 2U);
    EXPECT_NEAR(Notes()[0].length, 80 * 256 / 5512.0, 0.05);
    EXPECT_NEAR(Notes()[1].length, 40 * 256 / 5512.0, 0.05);
}

TEST_F(NoteRecordingTest, ATakeQuantisesWrapsReplacesAndEndsWhatIsHeld) {
    SetPattern(16, {{2, 1, 40, 90}, {5, 1, 40, 90}});
    CNoteTake take(workstation->Changes());
    const auto key = [&](int number, int velocity, float step, std::int64_t sample, const NoteTakeOptions& options) {
        take.Take({EngineNotice::EKind::kNote, At(0)->Id(), number, velocity, 0, step, 100, sample}, At(0), options);
    };
    key(60, 80, 15.7F, 1570, {false, 1, 1});  // nearer to the next pass
    key(62, 70, 14, 1400, {});                // held over the end
    take.Publish(1580, 1580);
    EXPECT_EQ(Notes().size(), 3U) << "what is ahead would be heard twice";
    key(60, 0, 0, 1650, {});
    key(62, 0, 3, 1900, {});
    take.Sweep(At(0), 0, 4);
    take.Sweep(At(0), 0, 6);
    take.Publish(1900, 1900);
    key(64, 60, 7, 2300, {});
    take.Finish(QStringLiteral("Take"), 2500);
    EXPECT_EQ(Notes(), (std::vector<Note>{{2, 1, 40, 90}, {0, 0.8F, 60, 80}, {14, 2, 62, 70}, {7, 2, 64, 60}}));
    workstation->Changes().Steps().undo();
    EXPECT_EQ(Notes(), (std::vector<Note>{{2, 1, 40, 90}, {5, 1, 40, 90}}));
}

// A hand that edits what is recorded into loses nothing, nor does the take.
TEST_F(NoteRecordingTest, WhatIsPlayedDuringAnEditIsAddedToIt) {
    CNoteRecording& recording = workstation->NoteRecording();
    SetPattern(64, {{1, 1, 40, 90}});
    recording.Armed().Set(1.0F);
    Play();
    const auto strike = [&](int key) {
        for (const int velocity : {100, 0}) {
            Send(velocity, key);
            Listen(4);
        }
        workstation->Tick();
    };
    Listen(4);
    strike(60);
    recording.Hold(true);
    ASSERT_EQ(Notes().size(), 2U) << "the take so far is a step";
    const int steps = Steps().index();
    CGesture drag(workstation->Changes());
    for (const int key : {41, 42}) {
        std::vector<Note> moved = Notes();
        moved[0].key = key;
        drag.Publish(PatternPlace(At(0), 0), std::make_shared<const CPattern>(64, moved));
        strike(61);
        EXPECT_EQ(Notes(), moved);
    }
    drag.Finish(QStringLiteral("Move notes"));
    recording.Hold(false);
    strike(62);
    workstation->Transport().Stop();
    Listen(1);
    workstation->Tick();
    ASSERT_EQ(Notes().size(), 5U);
    EXPECT_EQ(Notes()[0].key, 42);
    EXPECT_EQ(Steps().index(), steps + 2);
    Steps().undo();
    EXPECT_EQ(Notes().size(), 2U);
    Steps().undo();
    EXPECT_EQ(Notes()[0].key, 40);
}

// What is heard when a note is touched is what playing it sends, whatever the keys of a player go through.
TEST_F(NoteRecordingTest, AnAuditionSoundsTheKeyThatPlayingSends) {
    for (int round = 0; round < 40; ++round) {
        const auto any = [this](int count) { return random.Draw() % count; };
        CInstrument& instrument = *At(0);
        instrument.midi.transpose.Set(any(60) - 30);
        instrument.midi.keyFrom.Set(any(128));
        instrument.midi.keyTo.Set(any(129));
        instrument.midi.channel.Set(any(18));
        instrument.arpeggiator.on.Set(static_cast<float>(any(2)));
        instrument.swing.Set(static_cast<float>(any(10)) / 20);
        const int key = any(127) + 1;
        SetPattern(16, {{0, 0.01F, key, 100}});
        std::vector<HeardNote> touched;
        for (const float velocity : {100.0F, 0.0F}) {
            audio.Post({EngineCommand::EKind::kAudition, instrument.Id(), key, velocity});
            for (const HeardNote& heard : Listen(2)) touched.push_back(heard);
        }
        Play();
        const std::vector<HeardNote> played = Listen(4);
        workstation->Transport().Stop();
        Listen(2);
        ASSERT_EQ(touched.size(), 2U) << round;
        ASSERT_EQ(played.size(), 2U) << round;
        for (std::size_t event = 0; event < 2; ++event) {
            EXPECT_EQ(touched[event].key, played[event].key);
            EXPECT_EQ(touched[event].on, played[event].on);
        }
        EXPECT_EQ(played[0].key, key);
    }
}

TEST(NoteCaptureTest, SwingIsTakenOffWhatIsPlayedLate) {
    for (const auto& [played, written] :
         {std::pair(1.5, 1.2), std::pair(2.5, 2.5), std::pair(1.2, 1.0), std::pair(1.05, 0.999)}) {
        EXPECT_DOUBLE_EQ(WithoutSwing(played, 0.3), written);
    }
}

}  // namespace
}  // namespace quib
