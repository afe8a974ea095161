// SPDX-License-Identifier: GPL-3.0-or-later
// Frozen instruments, played by an engine without a device.
#include <QDir>
#include <QTest>

#include "document/DocumentFixture.h"
#include "model/CFrozenTake.h"

namespace quib {
namespace {

using Samples = std::vector<float>;
using EFreezing = CFreezing::EState;

double Largest(const Samples& one, const Samples& other) {
    double largest = one.size() == other.size() ? 0 : 9;
    for (std::size_t i = 0; i < std::min(one.size(), other.size()); ++i)
        largest = std::max(largest, std::abs(static_cast<double>(one[i]) - static_cast<double>(other[i])));
    return largest;
}

class FreezeTest : public DocumentTest {
protected:
    static constexpr double kUnheard = 1e-6;  // -120 dBFS
    static constexpr int kBlock = 512;
    static constexpr int kSongBlocks = 400;  // beyond the end of the song

    void SetUp() override { Prepare(); }
    void Prepare() { Audio().Prepare({44100, kBlock, 1, false}); }
    CAudio& Audio() { return workstation->Audio(); }
    CFreezing& Freezing() { return workstation->Freezing(); }
    CFreezing::State State() { return Freezing().StateOf(*At(0)); }

    void GiveSong(int index) {
        Contents().SetPattern(At(index)->Id(), 0, SomePattern(36), QStringLiteral("Notes"));
        Contents().SetPlaylist(At(index)->Id(), std::make_shared<const Playlist>(Playlist{{0, 0, 0}, {0, 16, 0}}),
                               QStringLiteral("Song"));
        Audio().settings.songMode.Set(1);
    }
    // A synthesiser with an insert.
    void MakeSynth() {
        AddSynth();
        QString error;
        EXPECT_TRUE(
            Places().LoadPlugin({SlotPlace::EKind::kInsert, At(0)->Id(), 0}, QStringLiteral("QUIB chorus"), error));
        At(0)->strip.insertOn[0].Set(1);
        GiveSong(0);
    }
    Samples Listen(int blocks) {
        Samples heard;
        for (int block = 0; block < blocks; ++block) {
            EXPECT_TRUE(Audio().RenderBlock());
            for (int frame = 0; frame < kBlock; ++frame)
                heard.insert(heard.end(), {Audio().Master(0)[frame], Audio().Master(1)[frame]});
        }
        Audio().Collect();
        return heard;
    }
    Samples PlaySong(int blocks = kSongBlocks) {
        Audio().Post({EngineCommand::EKind::kStop});
        Audio().Post({EngineCommand::EKind::kLocate, 0, 0});
        Listen(200);  // until all is silent
        Audio().Post({EngineCommand::EKind::kPlay});
        return Listen(blocks);
    }
    bool Await(EFreezing wanted, int milliseconds = 20000) {
        return QTest::qWaitFor([&] { return workstation->Tick(), State().state == wanted; }, milliseconds);
    }
    void Freeze() {
        Freezing().Freeze(0);
        ASSERT_TRUE(Await(EFreezing::kFrozen)) << State().reason.toStdString() << told.toStdString();
        workstation->Tick();
    }
    // After a block.
    bool PlaysTake() { return At(0)->play.frozen.next >= 0; }
    QStringList Takes() { return QDir(folders.frozen).entryList({QStringLiteral("*.frozen")}, QDir::Files); }
};

TEST_F(FreezeTest, ATakeSoundsAsThePluginDoesWhichRestsMeanwhile) {
    QString error;
    for (const char* const name : {"QUIB synth", "QUIB drums"}) {
        SCOPED_TRACE(name);
        workstation->Session().NewProject();
        ASSERT_EQ(Stack().AddInstrument(QLatin1String(name), error), 0) << error.toStdString();
        GiveSong(0);
        ASSERT_TRUE(
            Places().LoadPlugin({SlotPlace::EKind::kInsert, At(0)->Id(), 0}, QStringLiteral("QUIB compressor"), error));
        ASSERT_TRUE(
            Places().LoadPlugin({SlotPlace::EKind::kEffect, At(0)->Id(), 0}, QStringLiteral("QUIB delay"), error));
        At(0)->strip.insertOn[0].Set(1);
        At(0)->strip.sendLevel[0].Set(100);
        const Samples live = PlaySong();
        ASSERT_GT(*std::ranges::max_element(live), 0.01F);
        Freeze();
        const Samples frozen = PlaySong();
        EXPECT_TRUE(PlaysTake());
        EXPECT_LE(Largest(live, frozen), kUnheard);

        // The buffers of the plug-in stay as they are, keys or not.
        Listen(1);
        const Samples before(PluginAt(0).Left(), PluginAt(0).Left() + kBlock);
        EXPECT_EQ(PlaySong(40), Samples(frozen.begin(), frozen.begin() + 2 * 40 * kBlock));
        EXPECT_EQ(before, Samples(PluginAt(0).Left(), PluginAt(0).Left() + kBlock));

        // One call, and it plays again.
        Freezing().Thaw(0);
        EXPECT_EQ(State().state, EFreezing::kLive);
        const Samples again = PlaySong();  // but for noise, which goes on
        EXPECT_NEAR(*std::ranges::max_element(again), *std::ranges::max_element(live), 0.05);
        EXPECT_FALSE(PlaysTake());
        for (int tick = 0; tick < 20; ++tick) workstation->Tick();
        EXPECT_EQ(At(0)->frozen.ForEdit()->take, nullptr);
    }
}

TEST_F(FreezeTest, ALoopRepeatsTheTakeAndKeysAreHeardOverIt) {
    MakeSynth();
    Freeze();
    Audio().settings.loopOn.Set(1);
    Audio().settings.loopEnd.Set(4);
    const Samples looped = PlaySong(120);
    EXPECT_TRUE(PlaysTake());
    constexpr std::ptrdiff_t kPass = 2 * 4 * 5512;  // samples of both sides
    constexpr std::ptrdiff_t kFade = 2 * 128;
    const auto pass = looped.begin() + kPass;
    EXPECT_EQ(Samples(pass + kFade, pass + kPass), Samples(looped.begin() + kFade, pass));
    Audio().settings.loopOn.Set(0);

    PlaySong(4);
    const Samples alone = Listen(30);
    PlaySong(4);
    workstation->Transport().PlayKey(At(0)->Id(), 72, 100);
    EXPECT_GT(Largest(alone, Listen(30)), 0.01);
    EXPECT_TRUE(PlaysTake());
    EXPECT_GT(At(0)->play.frozen.keyFrames, 0);
    workstation->Transport().PlayKey(At(0)->Id(), 72, 0);
    Listen(600);
    EXPECT_EQ(At(0)->play.frozen.keyFrames, 0);  // the plug-in rests again
}

TEST_F(FreezeTest, EveryEditMakesATakeStaleAtOnceAndUndoBringsItBack) {
    MakeSynth();
    Freeze();
    const auto instrument = At(0);
    const auto plugin = instrument->plugin.ForEdit()->plugin;
    const auto value = [this](auto& setting, float next) {
        const float before = setting.Get();
        setting.Set(next);
        workstation->Changes().ValueEdited(EnginePart(setting), before, next, QStringLiteral("Value"));
    };
    const auto lanes = [](int lane) {
        return std::make_shared<const CEventLanes>(CEventLanes().With(0, lane, {{0, 0.3F}, {8, 0.6F}}));
    };
    const std::pair<const char*, std::function<void()>> edits[] = {
        {"note", [&] { Contents().SetPattern(instrument->Id(), 0, SomePattern(40), QStringLiteral("Note")); }},
        {"song",
         [&] {
             Contents().SetPlaylist(instrument->Id(), std::make_shared<const Playlist>(Playlist{{0, 2, 0}}),
                                    QStringLiteral("Song"));
         }},
        {"parameter", [&] { Places().SetParameters(plugin, QStringLiteral("Cutoff"), {0.123F}); }},
        {"lane", [&] { Contents().SetLanes(instrument->Id(), ELanes::kPlugin, lanes(1), QStringLiteral("Lane")); }},
        {"MIDI lane", [&] { Contents().SetLanes(instrument->Id(), ELanes::kMidi, lanes(1), QStringLiteral("Lane")); }},
        {"insert",
         [&] {
             Places().ClearPlugin({SlotPlace::EKind::kInsert, instrument->Id(), 0});
         }},
        {"insert's switch", [&] { value(instrument->strip.insertOn[0], 0); }},
        {"swing", [&] { value(instrument->swing, 0.4F); }},
        {"tempo", [&] { value(Audio().settings.tempo, 100); }},
        {"program", [&] { Places().SelectProgram(plugin, 1); }},
    };
    for (const auto& [name, edit] : edits) {
        SCOPED_TRACE(name);
        PlaySong(3);
        ASSERT_TRUE(PlaysTake());
        edit();
        Listen(12);  // into the next step, whose length a tempo changes
        EXPECT_FALSE(PlaysTake());
        EXPECT_EQ(State().state, EFreezing::kStale);
        EXPECT_FALSE(State().reason.isEmpty());
        workstation->Changes().Undo();
        // A lane that is taken away leaves the parameter where it has moved it.
        if (std::string_view(name) == "lane") {
            EXPECT_FALSE(Await(EFreezing::kFrozen, 1000));
            Freeze();
        }
        EXPECT_TRUE(Await(EFreezing::kFrozen)) << State().reason.toStdString();
        PlaySong(3);
        EXPECT_TRUE(PlaysTake());
    }
    // What is behind it is no part of it.
    value(instrument->strip.level, 30);
    Contents().SetLanes(instrument->Id(), ELanes::kMix, lanes(0), QStringLiteral("Level"));
    Listen(12);
    EXPECT_TRUE(PlaysTake());
    EXPECT_EQ(Takes().size(), 2);
}

TEST_F(FreezeTest, ATakeIsThereAgainAtTheNextStartUnlessItIsDamaged) {
    MakeSynth();
    Freeze();
    const Samples frozen = PlaySong();
    QString error;
    ASSERT_TRUE(Session().SaveProject(File("song.prg"), error)) << error.toStdString();
    const auto restart = [&] {
        workstation = std::make_unique<CWorkstation>(settings, folders);
        Prepare();
        ASSERT_TRUE(Session().LoadProject(File("song.prg"), error)) << error.toStdString();
        EXPECT_EQ(State().state, EFreezing::kStale);
    };
    restart();
    ASSERT_TRUE(Await(EFreezing::kFrozen));
    workstation->Tick();
    EXPECT_LE(Largest(frozen, PlaySong()), kUnheard);
    EXPECT_TRUE(PlaysTake());
    EXPECT_FALSE(Session().IsModified());

    ASSERT_EQ(Takes().size(), 1);
    QFile take(folders.frozen + Takes().front());
    ASSERT_TRUE(take.open(QIODevice::ReadOnly));
    const QByteArray whole = take.readAll();
    take.close();
    QByteArray changed = whole;
    changed[changed.size() / 2] = static_cast<char>(changed[changed.size() / 2] ^ 1);
    for (const QByteArray& damaged : {changed, whole.first(whole.size() / 2), whole.first(100), QByteArray()}) {
        SCOPED_TRACE(damaged.size());
        ASSERT_TRUE(take.open(QIODevice::WriteOnly | QIODevice::Truncate));
        take.write(damaged);
        take.close();
        restart();
        EXPECT_FALSE(QTest::qWaitFor([&] { return workstation->Tick(), State().state != EFreezing::kStale; }, 300));
        EXPECT_LE(Largest(frozen, PlaySong()), kUnheard);
        EXPECT_FALSE(PlaysTake());
    }
    Freeze();  // which replaces it
    PlaySong(3);
    EXPECT_TRUE(PlaysTake());
}

}  // namespace
}  // namespace quib
