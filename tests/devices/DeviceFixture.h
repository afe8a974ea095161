// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// An engine that plays on devices through the output manager, as the workstation does.

#include "devices/COutputManager.h"
#include "engine/EngineFixture.h"

namespace quib {

class CDeviceTest : public CEngineTest {
public:
    // Built-in synthesisers, each with notes of its own, into an engine.
    static void AddSynths(CAudio& engine, int count);

protected:
    using Seconds = std::chrono::duration<double>;

    // A turn of the program's timer.
    void Turn() {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        output.Poll();
        audio.Collect();
    }
    bool TurnUntil(const std::function<bool()>& condition, double limit = 10.0) {
        const auto end = std::chrono::steady_clock::now() + Seconds(limit);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > end) return false;
            Turn();
        }
        return true;
    }
    // Until playing has gone on by so many seconds of sound.
    bool PlayOn(double seconds) {
        const std::int64_t start = audio.Picture().sampleCounter;
        return TurnUntil([&] {
            return static_cast<double>(audio.Picture().sampleCounter - start) > seconds * audio.Format().sampleRate;
        });
    }
    bool PlaysOn(const std::string& name) const {
        return output.Device() != nullptr && output.Device()->Name() == name &&
               output.Device()->State() == EOutputState::kPlaying;
    }
    AudioSettings Settings(const std::string& device, int blockSize = 512) const {
        return {device, 48000, blockSize, "OFF", 1};
    }

    // The first `frames` of what an engine of the same music renders offline.
    static std::array<std::vector<float>, 2> RenderOffline(int synths, double rate, int blockSize, std::size_t frames);

    std::vector<std::string> messages;
    COutputManager output{
        audio, {"Cannot open", " is gone"}, [this](const std::string& caption, const std::string& text) {
            messages.push_back(caption + "|" + text);
        }};
};

inline void CDeviceTest::AddSynths(CAudio& engine, int count) {
    engine.settings.songMode.Set(0.0F);
    InstrumentList list;
    for (int index = 0; index < count; ++index) {
        auto instrument = std::make_shared<CInstrument>();
        std::string error;
        auto plugin = CPlugin::Load(QUIB_BIN_DIR "/PluginInstruments/QUIB synth.so", ESlotKind::kInstrument,
                                    engine.environment, error);
        ASSERT_TRUE(plugin) << error;
        instrument->plugin.Publish(std::make_shared<const PluginSlot>(PluginSlot{plugin, nullptr}), engine.graveyard);
        std::vector<Note> notes;
        for (int step = index % 3; step < 16; step += 2) {
            notes.push_back({static_cast<float>(step), 0.7F, 36 + 2 * index + step, 100});
        }
        instrument->patterns[0].Publish(std::make_shared<const CPattern>(16, std::move(notes)), engine.graveyard);
        engine.PrepareInstrument(*instrument);
        list.push_back(instrument);
    }
    engine.PublishInstruments(std::move(list));
}

inline std::array<std::vector<float>, 2> CDeviceTest::RenderOffline(int synths, double rate, int blockSize,
                                                                    std::size_t frames) {
    CAudio engine;
    engine.Prepare({rate, blockSize, 1, false});
    AddSynths(engine, synths);
    engine.Post({EngineCommand::EKind::kPlay});
    std::array<std::vector<float>, 2> sound;
    while (sound[0].size() < frames) {
        EXPECT_TRUE(engine.RenderBlock());
        for (const int channel : {0, 1}) {
            const float* const from = engine.Master(channel);
            auto& to = sound[static_cast<std::size_t>(channel)];
            to.insert(to.end(), from, from + blockSize);
        }
    }
    return sound;
}

}  // namespace quib
