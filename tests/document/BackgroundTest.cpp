// SPDX-License-Identifier: GPL-3.0-or-later
// What works on threads of its own while the session plays: exports and the reading of sound files.
#include <QDir>
#include <QTest>

#include "bench/RhythmMaterial.h"
#include "document/CExportJob.h"
#include "document/CSoundWork.h"
#include "document/DocumentFixture.h"
#include "export/loops/LoopCut.h"

namespace quib {
namespace {

class BackgroundTest : public DocumentTest {
protected:
    BackgroundTest() {
        AddSynth();
        Contents().SetPattern(At(0)->Id(), 0, SomePattern(60), QStringLiteral("Draw"));
        workstation->Audio().settings.songMode.Set(0);
        EXPECT_TRUE(workstation->OpenOutput(QStringLiteral("Silent"))) << told.toStdString();
        workstation->Transport().Play();
    }
    bool WaitUntil(const std::function<bool()>& isTrue) {
        return QTest::qWaitFor([&] { return workstation->Tick(), isTrue(); }, 30000);
    }
    ExportSettings OfSeconds(int seconds) const {
        ExportSettings wanted;
        wanted.range = EExportRange::kPatterns;
        wanted.frames = static_cast<std::int64_t>(seconds) * 44100;
        wanted.tailSeconds = 0;
        wanted.threads = 2;
        wanted.folder = (folder.path() + QStringLiteral("/out")).toStdString();
        wanted.namePattern = "take";
        return wanted;
    }
    QByteArray Taken() const {
        QFile file(folder.filePath(QStringLiteral("out/take.wav")));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    QStringList Written() const {
        return QDir(folder.filePath(QStringLiteral("out"))).entryList(QDir::Files | QDir::Hidden);
    }
};

TEST_F(BackgroundTest, AnExportHearsNothingOfTheSessionThatPlaysOnAndLeavesNothingWhenItIsCancelled) {
    const std::string before = Session().Bytes();
    const float usual = At(0)->strip.level.Get();
    CExportJob written(*workstation, OfSeconds(2));
    float level = 0;
    // The user turns a knob and removes what is exported meanwhile.
    EXPECT_TRUE(WaitUntil([&] {
        At(0)->strip.level.Set(level = level > 100 ? 0 : level + 10);
        return written.Share() > 0 || written.Tick() != CExportJob::EState::kWorking;
    }));
    Stack().RemoveInstrument(0);
    EXPECT_TRUE(WaitUntil([&] { return written.Tick() != CExportJob::EState::kWorking; }));
    EXPECT_EQ(written.Tick(), CExportJob::EState::kDone) << written.Error();
    EXPECT_EQ(written.PlayedFrames(), 2 * 44100);
    EXPECT_EQ(Written(), QStringList(QStringLiteral("take.wav")));
    Steps().undo();
    At(0)->strip.level.Set(usual);
    const QByteArray disturbed = Taken();
    CExportJob alone(*workstation, OfSeconds(2));
    EXPECT_TRUE(WaitUntil([&] { return alone.Tick() != CExportJob::EState::kWorking; }));
    EXPECT_TRUE(Taken() == disturbed);
    QFile::remove(folder.filePath(QStringLiteral("out/take.wav")));

    for (const bool isCancelled : {true, false}) {
        CExportJob job(*workstation, OfSeconds(3600));
        EXPECT_TRUE(WaitUntil([&] { return job.Tick(), !Written().isEmpty(); })) << "under a temporary name";
        if (!isCancelled) continue;  // it goes while it works
        job.Cancel();
        EXPECT_TRUE(WaitUntil([&] { return job.Tick() != CExportJob::EState::kWorking; }));
        EXPECT_EQ(job.Tick(), CExportJob::EState::kCancelled);
    }
    EXPECT_EQ(Written(), QStringList());
    EXPECT_TRUE(workstation->Transport().IsPlaying());
    EXPECT_TRUE(Session().Bytes() == before);
}

TEST_F(BackgroundTest, ASoundIsReadAndItsTempoFoundUnlessItIsCancelled) {
    const material::Rendered made = material::Render({.tempo = 104, .kind = 1}, 8);
    std::string error;
    const SoundClip clip{material::kRate, 1, made.mono, made.mono};
    ASSERT_TRUE(WriteLoopFile(File("beat.wav").toStdString(), clip, {}, false, error)) << error;
    CSoundWork work;
    std::shared_ptr<const HeardSound> heard;
    const auto take = [&] { return (heard = work.Take()) != nullptr; };
    work.Read(File("beat.wav"));
    EXPECT_TRUE(work.IsReading());
    ASSERT_TRUE(WaitUntil([&] {
        EXPECT_LE(work.Share(), 1);
        return take();
    }));
    EXPECT_EQ(heard->mono.size(), made.mono.size());
    work.Find(heard);
    ASSERT_TRUE(WaitUntil(take));
    EXPECT_NEAR(heard->rhythm.tempo, 104, 0.05);
    EXPECT_GT(heard->hits.size(), 12U);
    work.Read(File("nothing.wav"));
    ASSERT_TRUE(WaitUntil(take));
    EXPECT_FALSE(heard->error.empty());
    for (int round = 0; round < 6; ++round) {
        work.Read(File("beat.wav"));
        if (round % 2 == 0) work.Find(made.mono, material::kRate);
        work.Cancel();
        EXPECT_FALSE(work.IsBusy());
        EXPECT_EQ(work.Take(), nullptr);
    }
}

}  // namespace
}  // namespace quib
