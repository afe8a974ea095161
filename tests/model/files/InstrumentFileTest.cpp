// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/files/InstrumentFile.h"

#include "Testing.h"
#include "model/files/PatternRecords.h"

namespace quib {
namespace {

std::shared_ptr<CInstrument> Read(const std::string& text, std::vector<std::string>* warnings = nullptr) {
    LoadContext context;  // without a loader: every plug-in is missing
    std::string error;
    auto instrument = ReadInstrumentFile(text, context, error);
    EXPECT_TRUE(instrument) << error;
    if (warnings != nullptr) *warnings = context.warnings;
    return instrument ? instrument : std::make_shared<CInstrument>();
}

std::string Written(CInstrument& instrument, bool withPresets = true) {
    CRecordWriter writer;
    WriteInstrument(writer, instrument, instrument.play.heldKeys.Items(), withPresets);
    return {writer.Bytes().data(), writer.Bytes().size()};
}

std::string Patterns(const CInstrument& instrument) {
    CRecordWriter writer;
    WritePatternBlock(writer, instrument);
    return {writer.Bytes().data(), writer.Bytes().size()};
}

void SetPattern(CInstrument& instrument, std::size_t index, int steps, std::vector<Note> notes) {
    instrument.patterns[index].Prepare(std::make_shared<const CPattern>(steps, std::move(notes)));
}

TEST(PatternBlock, TheLengthFieldCoversLoopsAndLastNotesButNotLessThan49) {
    CInstrument instrument;
    EXPECT_EQ(Patterns(instrument), "STEPNUMBER_MODE;49;0;0.0000;\r\n");
    SetPattern(instrument, 2, 16, {{100.0F, 1.0F, 60, 1}, {60.0F, 4.5F, 62, 2}});
    EXPECT_TRUE(Patterns(instrument).starts_with("STEPNUMBER_MODE;65;")) << "the last note in the list counts";
    SetPattern(instrument, 3, 128, {});
    EXPECT_TRUE(Patterns(instrument).starts_with("STEPNUMBER_MODE;129;"));
}

TEST(PatternBlock, OnlyPatternsWithNotesOrAUsedMarkAreWritten) {
    CInstrument instrument;
    instrument.patternUsed[5].Set(2);
    SetPattern(instrument, 7, 8, {{0.5F, 1.0F, 60, 100}});
    instrument.stepNumberModes[0].Set(1.0F);
    instrument.stepNumberModes[1].Set(1.0F);  // the last switch that is on counts
    instrument.swing.Set(0.5F);
    EXPECT_EQ(Patterns(instrument),
              "STEPNUMBER_MODE;49;2;0.5000;\r\n"
              "PATTERN_NOTES;5;16;2;\r\n"
              "PATTERN_NOTES;7;8;0;0.5000;60;1.0000;100;\r\n");
    // The length of one that has only points, or nothing yet, comes back as well.
    CInstrument longOne;
    SetPattern(longOne, 9, 64, {});
    const std::string written = Patterns(longOne);
    EXPECT_EQ(written, "STEPNUMBER_MODE;65;0;0.0000;\r\nPATTERN_STEPS;9;64;\r\n");
    PatternSet set;
    std::string error;
    ASSERT_TRUE(ReadPatternFile(written, set, error)) << error;
    ASSERT_NE(set.patterns[9], nullptr);
    EXPECT_EQ(set.patterns[9]->StepCount(), 64);
}

TEST(InstrumentReader, EveryKeyIsReadByTheParserOfItsKind) {
    const auto instrument = Read(
        "UNKNOWN;1;\r\nTITLE;A;b;\r\nMIDIPITCH;0.9;\r\nMUTE;1;\r\nLEVEL;0.5\r\nPAN;-0.5;\r\nPAN;\r\n"
        "KEYBOARDON;1;\r\nKEYBOARD_KEYS;60;61;\r\nKEYBOARD_KEYS;64;\r\nICONE;x;\r\nlevel;3;\r\nEQ_ON;1.0000;\r\n");
    EXPECT_EQ(instrument->title, "A");
    EXPECT_EQ(instrument->midi.pitchBend.Get(), 0);
    EXPECT_EQ(instrument->strip.mute.Get(), 1.0F);
    EXPECT_EQ(instrument->strip.level.Get(), 73.67F);
    EXPECT_EQ(instrument->strip.pan.Get(), -0.5F);
    EXPECT_TRUE(instrument->keyboardOn.IsOn());
    EXPECT_EQ(instrument->play.heldKeys.Items(), std::vector<std::int32_t>{64});
    EXPECT_TRUE(instrument->strip.eqOn.IsOn());
}

TEST(InstrumentReader, NumbersThatCannotBeAreLimitedAndIndicesOutOfRangeSkipped) {
    const auto instrument = Read(
        "LEVEL;1e30;\r\nPAN;nan;\r\nPATTERNSELECTED;99;\r\nMIDIINCHANNEL;-5;\r\nARPEG_TEMPO;1e9;\r\n"
        "PLAYLIST;16;0;0;3;-7;1;-1;0;0;\r\nEVENT_PLUGIN_PARAM;-1;5;70000;\r\nMIX_EVENTS;24;0;0;\r\n"
        "MIX_EVENTS;1;inf;1;2;0.5;3;\r\nPATTERNS;START;\r\nPATTERN_NOTES;16;8;1;0;60;1;100;\r\n"
        "PATTERN_NOTES;0;2147483647;1;1e38;300;-1;-4;5;60;\r\nPATTERN_MIDIPARAM_EVENTS;0;4;0;0;\r\n"
        "STEPNUMBER_MODE;1;77;1e9;\r\nPATTERNS;END;\r\n");
    EXPECT_EQ(instrument->strip.level.Get(), 127.0F);
    EXPECT_EQ(instrument->strip.pan.Get(), 0.0F);
    EXPECT_EQ(instrument->patternSelected.Get(), 15);
    EXPECT_EQ(instrument->midi.channel.Get(), 0);
    EXPECT_LE(instrument->arpeggiator.tempo.Get(), 31.0F);
    EXPECT_EQ(*instrument->playlist.ForEdit(), (Playlist{{3, 0, 1}}));
    EXPECT_EQ(instrument->eventPluginParameters, std::vector<std::int32_t>{5});
    EXPECT_EQ(instrument->mixLanes.ForEdit()->Lanes(CEventLanes::kSongSlot).size(), 1U);
    EXPECT_EQ(*instrument->mixLanes.ForEdit()->Find(CEventLanes::kSongSlot, 1),
              (PointList{{0.0F, 1.0F}, {2.0F, 0.5F}}));
    const CPattern& pattern = *instrument->patterns[0].ForEdit();
    EXPECT_EQ(pattern.StepCount(), kMaximumStepCount);
    ASSERT_EQ(pattern.Notes().size(), 1U);  // the second one is not whole
    EXPECT_EQ(pattern.Notes()[0], (Note{kMaximumStepCount, 0.0F, 127, 0}));
    EXPECT_EQ(SelectedStepNumberMode(*instrument), EStepNumberMode::kLoop);
    EXPECT_TRUE(instrument->midiLanes.ForEdit()->Lanes(0).empty());
}

TEST(InstrumentReader, BallAssignmentsComeUnderSeveralKeys) {
    const auto instrument = Read(
        "PRESET_SOUND_PARAM_HORZ;0;1;0;128;0;\r\nPRESET_SOUND_BALL;10;20;2;\r\nPRESET_SOUND_MIDI;2;7;10;\r\n"
        "PRESET_SOUND_PARAM_VERT;1;4;0;128;0.5;\r\nPRESET_SOUND_MIX_PARAM_HORZ;0;3;1;2;0;\r\n"
        "PRESET_SOUND_INSERT1_PARAM_VERT;0;5;1;2;0;\r\nPRESET_SOUND_INSERT2_PARAM_HORZ;0;6;1;2;0;\r\n"
        "PRESET_SOUND_PARAM_HORZ;9;1;0;128;0;\r\nPRESET_SOUND_PARAM_HORZ;0;1;0;\r\n");
    ASSERT_EQ(instrument->ballSounds.ForEdit()->size(), 1U);
    const BallSound& ball = instrument->ballSounds.ForEdit()->front();
    EXPECT_EQ(ball.controllerY, 10);
    EXPECT_EQ(ball.horizontal,
              (std::vector<BallAssignment>{{EBallTarget::kMix, 3, 1, 2, 0}, {EBallTarget::kInsert2, 6, 1, 2, 0}}));
    EXPECT_EQ(ball.vertical,
              (std::vector<BallAssignment>{{EBallTarget::kMix, 4, 0, 128, 0.5F}, {EBallTarget::kInsert1, 5, 1, 2, 0}}));
}

TEST(PresetRecords, TheSecondSideOfTheCrossfaderGoesByTheKeyOfTheFirst) {
    for (const char* secondKey : {"PRESET_CROSSFADEA", "PRESET_CROSSFADEB"}) {
        const auto instrument = Read(std::string("PRESET_ADD;;\r\nPRESET_CROSSFADEA;0;\r\n") + secondKey +
                                     ";1;\r\nPRESET_ADD;;\r\nPRESET_LEVEL;5;\r\n");
        ASSERT_EQ(instrument->presets.size(), 2U);
        EXPECT_EQ(instrument->presets[0].strip.crossfadeA, 0.0F);
        EXPECT_EQ(instrument->presets[0].strip.crossfadeB, 1.0F);
        EXPECT_EQ(instrument->presets[1].strip.level, 5.0F);
        const std::string text = Written(*instrument);
        EXPECT_NE(text.find("PRESET_CROSSFADEA;0.0000;\r\nPRESET_CROSSFADEA;1.0000;\r\nPRESET_SYNCHRO"),
                  std::string::npos);
        EXPECT_EQ(Written(*instrument, false).find("PRESET_"), std::string::npos);
    }
}

TEST(PresetRecords, StateImagesInPresetsMayHoldAnyBytes) {
    const std::string image("PRESET_ADD;;\r\nPLUGIN;END;\r\n\0;", 29);
    const auto instrument = Read("PRESET_ADD;;\r\nPRESET_PLUGIN_PARAMS;29;\r\n" + image +
                                 "\r\nPRESET_INSERT2_PARAMS;500;\r\nPRESET_LEVEL;5;\r\n");
    ASSERT_EQ(instrument->presets.size(), 1U);
    const Preset& preset = instrument->presets[0];
    ASSERT_TRUE(preset.pluginState);
    EXPECT_TRUE(std::ranges::equal(*preset.pluginState, std::as_bytes(std::span(image))));
    EXPECT_FALSE(preset.insertState[1]) << "longer than what is left";
    EXPECT_EQ(preset.strip.level, 5.0F);
}

TEST(InstrumentReader, AMissingPluginComesBackAsItWas) {
    const std::string image("\0\r\nPRESET;END;\r\nx", 18);
    const std::string text =
        "PATTERNS;START;\r\nSTEPNUMBER_MODE;49;0;0.0000;\r\nPLUGIN_NAME;The Name;\r\n"
        "PATTERN_PLUGINPARAM_EVENTS;3;900;0.0000;0.5000;\r\nPATTERNS;END;\r\n"
        "PLUGIN_PARAM_EVENTS;START;\r\nPARAM_EVENTS;7;1.0000;0.2500;\r\nPARAM_EVENTS;END;\r\n"
        "PLUGIN_PRESET;START;\r\nPRESET_SIZE;        18;\r\n" +
        image + "\r\nPRESET_INDEX;3;\r\nPRESET;END;\r\n";
    std::vector<std::string> warnings;
    const auto instrument = Read("PLUGIN;Gone.dll;\r\n" + text, &warnings);
    const std::string written = Written(*instrument);
    EXPECT_TRUE(written.starts_with("PLUGIN;Gone.dll;\r\n"));
    EXPECT_TRUE(written.ends_with(text)) << written;
    ASSERT_EQ(warnings.size(), 1U);
    EXPECT_EQ(warnings[0].find("Gone.dll: "), 0U);
}

TEST(InstrumentReader, DamagedBlocksLoseNoMoreThanThemselves) {
    std::vector<std::string> warnings;
    const auto instrument = Read(
        "PLUGIN;Gone.dll;\r\nPLUGIN_PRESET;START;\r\nPRESET_SIZE;      "
        "9999;\r\nxx\r\nPRESET_INDEX;3;\r\nPRESET;END;\r\n"
        "LEVEL;5;\r\nPATTERNS;START;\r\nPATTERN_NOTES;0;8;1;0;60;1;100;\r\nPLUGIN;END;\r\nLEVEL;6;\r\n",
        &warnings);
    EXPECT_EQ(instrument->strip.level.Get(), 5.0F);
    EXPECT_EQ(instrument->patterns[0].ForEdit()->Notes().size(), 1U);
    EXPECT_EQ(instrument->plugin.ForEdit()->missing->program, 3);
    EXPECT_EQ(warnings.size(), 2U);
    LoadContext context;
    std::string error;
    EXPECT_FALSE(ReadInstrumentFile("nothing\r\nof;this;\r\n", context, error));
    EXPECT_EQ(error, "not an instrument file");
}

TEST(PatternFile, ReplacesPatternsAndTheirPointsButNotThoseOfTheSong) {
    CInstrument instrument;
    CRenderClock clock;
    CGraveyard graveyard(clock);
    SetPattern(instrument, 1, 8, {{0, 1, 60, 100}});
    instrument.mixLanes.Prepare(std::make_shared<const CEventLanes>(
        CEventLanes().With(CEventLanes::kSongSlot, 1, {{0, 0.5F}}).With(1, 1, {{0, 0.25F}})));
    PatternSet set;
    std::string error;
    ASSERT_TRUE(
        ReadPatternFile("STEPNUMBER_MODE;49;1;0.2500;\r\nPATTERN_NOTES;2;32;1;3.5;62;1;90;\r\n"
                        "PATTERN_MIXPARAM_EVENTS;2;0;1;100;\r\nPATTERN_MIXPARAM_EVENTS;2;0;0.5;90;\r\n",
                        set, error));
    ReplacePatterns(instrument, set, graveyard);
    EXPECT_TRUE(instrument.patterns[1].ForEdit()->Notes().empty());
    EXPECT_EQ(instrument.patterns[2].ForEdit()->StepCount(), 32);
    EXPECT_EQ(SelectedStepNumberMode(instrument), EStepNumberMode::kChain);
    const CEventLanes& lanes = *instrument.mixLanes.ForEdit();
    EXPECT_EQ(lanes.Find(1, 1), nullptr);
    EXPECT_NE(lanes.Find(CEventLanes::kSongSlot, 1), nullptr);
    EXPECT_EQ(*lanes.Find(2, 0), (PointList{{0.5F, 90.0F}, {1.0F, 100.0F}}));
    EXPECT_FALSE(ReadPatternFile("TITLE;Song;\r\n", set, error));
    EXPECT_TRUE(set.patterns[2]) << "a refused file changes nothing";
}

}  // namespace
}  // namespace quib
