// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/GeneratedProject.h"

#include <utility>

#include "model/MixLanes.h"

namespace quib::generated {

namespace {

PluginEnvironment& Environment() {
    static PluginEnvironment environment;
    return environment;
}

std::shared_ptr<CPlugin> Load(const std::string& name, ESlotKind kind) {
    std::string error;
    return TestPluginLoader()({name, {}}, kind, error);
}

std::shared_ptr<const PluginSlot> Slot(std::shared_ptr<CPlugin> plugin) {
    return std::make_shared<const PluginSlot>(PluginSlot{std::move(plugin), nullptr});
}

std::shared_ptr<const CEventLanes> Points(int slot, int lanes, float offset) {
    CEventLanesBuilder builder;
    for (int lane = 0; lane < lanes; ++lane) {
        builder.Append(slot, lane, {{0.0F, offset}, {3.25F, 0.1234F}, {static_cast<float>(lane) + 4.0F, 1.0F}});
        builder.Append(CEventLanes::kSongSlot, lane, {{1.5F, 0.5F}, {1000.0F, offset}});
    }
    return std::make_shared<const CEventLanes>(builder.Build());
}

std::shared_ptr<const StateImage> Image(const char* text) {
    const auto bytes = std::as_bytes(std::span(text, std::char_traits<char>::length(text)));
    return std::make_shared<const StateImage>(bytes.begin(), bytes.end());
}

BallSoundList Balls() {
    BallSound ball;
    ball.x = 12.5F;
    ball.rate = 3;
    ball.channelSelector = 2;
    ball.controllerX = 71;
    ball.horizontal = {{EBallTarget::kPlugin, 3, 0.0F, 128.0F, 0.25F}, {EBallTarget::kInsert1, 1, 10.0F, 20.0F, 0.0F}};
    ball.vertical = {{EBallTarget::kMix, 1, 64.0F, 32.0F, 0.75F}};
    return {ball, BallSound()};
}

Preset MakePreset(const CInstrument& instrument) {
    Preset preset;
    preset.strip.crossfadeA = 0.0F;
    preset.strip.crossfadeB = 1.0F;
    preset.strip.sendLevel[2] = 99.5F;
    preset.stepNumberMode = 2;
    preset.stepNumberModeValue = 0.25F;
    preset.patternSelected = 7;
    preset.patterns[7] = instrument.patterns[3].ForEdit();
    preset.patternUsed[7] = 1;
    preset.patterns[8] = std::make_shared<const CPattern>(24);
    preset.midiLanes = *Points(7, 2, 64.0F);
    preset.mixLanes = *Points(7, 3, 0.5F);
    preset.pluginLanes = *Points(7, 2, 0.75F);
    preset.eventPluginParameters = {1, 4};
    preset.ballSounds = {Balls().front()};
    preset.keyboardOn = 1;
    preset.keyboardPosition = 48;
    preset.keyboardKeys = {60, 64};
    preset.pluginState = Image("PRESET;END;\r\nPLUGIN;END;\r\nnot text");
    preset.insertState = {Image(";;;\r\n"), Image("\n")};
    return preset;
}

std::shared_ptr<CInstrument> FullInstrument() {
    auto instrument = std::make_shared<CInstrument>();
    auto synth = Load("ChunkSynth.dll", ESlotKind::kInstrument);
    auto insert = Load("ParameterBank", ESlotKind::kEffect);
    synth->SetParameter(2, 0.625F);
    insert->SetParameter(5, 0.375F);
    synth->lanes.Prepare(Points(3, 8, 0.5F));
    insert->lanes.Prepare(Points(3, 6, 0.5F));
    instrument->plugin.Prepare(Slot(synth));
    instrument->inserts[0].Prepare(Slot(insert));
    auto missing = std::make_shared<MissingPlugin>(
        MissingPlugin{"Vanished.dll", "vst2:56616e69", "Vanished", Image("PRESET;END;\r\n"), 5, *Points(2, 40, 0.0F)});
    instrument->inserts[1].Prepare(std::make_shared<const PluginSlot>(PluginSlot{nullptr, std::move(missing)}));
    instrument->title = "Bass";
    instrument->icon = 4;
    instrument->keyboardOn.Set(1.0F);
    for (const int key : {36, 43, 48}) instrument->play.heldKeys.Add(key);
    instrument->strip.level.Set(101.25F);
    instrument->strip.insertOn[0].Set(1.0F);
    instrument->arpeggiator.interval.Set(-7.0F);
    SelectStepNumberMode(*instrument, EStepNumberMode::kRandom);
    instrument->swing.Set(0.33333F);
    instrument->patterns[3].Prepare(std::make_shared<const CPattern>(
        32, std::vector<Note>{{0.0F, 0.25F, 36, 127}, {31.9999F, 40.5F, 48, 1}, {7.12345F, 1.0F, 60, 64}}));
    instrument->patternUsed[3].Set(1);
    instrument->patternUsed[9].Set(2);
    instrument->patterns[10].Prepare(std::make_shared<const CPattern>(64));
    instrument->stripColour = 0x8040c1;
    instrument->stripCollapsed = true;
    instrument->arpeggiator.latch.Set(1.0F);
    instrument->isFrozen = true;
    instrument->midiLanes.Prepare(Points(3, kMidiLaneCount, 64.0F));
    instrument->mixLanes.Prepare(Points(3, kMixLaneCount, 0.5F));
    instrument->playlist.Prepare(std::make_shared<const Playlist>(Playlist{{3, 0, 0}, {9, 32, 1}}));
    instrument->ballSounds.Prepare(std::make_shared<const BallSoundList>(Balls()));
    instrument->eventPluginParameters = {0, 2, 7};
    instrument->presets = {MakePreset(*instrument), Preset()};
    return instrument;
}

}  // namespace

PluginLoader TestPluginLoader() {
    return [](const PluginReference& wanted, ESlotKind kind, std::string& error) -> std::shared_ptr<CPlugin> {
        const std::string library = wanted.fileName.substr(0, wanted.fileName.find('.'));
        return CPlugin::Load(QUIB_BIN_DIR "/testplugins/" + library + ".so", kind, Environment(), error);
    };
}

ProjectState EveryRecord() {
    ProjectState state;
    state.master.tempo = 133.333F;
    state.master.presetMidi = {2, 14, -1};
    state.master.timeSignature = {7, 8};
    state.markers = {{32, "Bridge"}};
    state.bindings = {{{EControlSource::kFineController, 3, 7}, {EControlTarget::kStrip, 1, 16}}};
    state.detector.threshold = -24.5F;
    state.masterInserts[0] = {1.0F, Slot(Load("ParameterBank.so", ESlotKind::kEffect))};
    state.masterInserts[1] = {0.0F, Slot(Load("Gain.so", ESlotKind::kEffect))};
    for (const auto& insert : state.masterInserts) insert.slot->plugin->lanes.Prepare(Points(0, 1, 0.5F));
    state.masterLanes = *Points(CEventLanes::kSongSlot, kMasterLaneCount, 100.0F);
    for (auto& effect : state.effects) {
        auto plugin = Load("ParameterBank.so", ESlotKind::kEffect);
        plugin->lanes.Prepare(Points(0, 2, 0.25F));
        effect = Slot(std::move(plugin));
    }
    state.instruments = {FullInstrument(), std::make_shared<CInstrument>()};
    return state;
}

std::string BytesOf(const ProjectState& state) {
    CRecordWriter writer;
    WriteProject(writer, state);
    return {writer.Bytes().data(), writer.Bytes().size()};
}

}  // namespace quib::generated
