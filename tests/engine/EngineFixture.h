// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// An engine with test plug-ins, driven block by block, whose note events can be read off the output of
// the note probe.

#include "Testing.h"
#include "engine/CAudio.h"

namespace quib {

struct HeardNote {
    std::int64_t frame;
    int key;
    bool on;

    friend bool operator==(const HeardNote&, const HeardNote&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const HeardNote& note) {
        return stream << (note.on ? "on " : "off ") << note.key << " at " << note.frame;
    }
};

class CEngineTest : public testing::Test {
protected:
    static constexpr int kStep = 5512;  // samples a step at 44100 Hz and 120 bpm

    void Prepare(int blockSize, int threads = 1, double sampleRate = 44100.0) {
        audio.Prepare({sampleRate, blockSize, threads, false});
    }

    std::shared_ptr<CPlugin> LoadPlugin(const std::string& name, ESlotKind kind) {
        std::string error;
        auto plugin =
            CPlugin::Load(std::string(QUIB_BIN_DIR "/testplugins/") + name + ".so", kind, audio.environment, error);
        EXPECT_TRUE(plugin) << name << ": " << error;
        return plugin;
    }

    template <class T>
    void Publish(CPublished<T>& place, T value) {
        place.Publish(std::make_shared<const T>(std::move(value)), audio.graveyard);
    }

    void Put(CPublished<PluginSlot>& slot, std::shared_ptr<CPlugin> plugin) {
        Publish(slot, PluginSlot{std::move(plugin), nullptr});
    }

    static CPlugin& PluginOf(CInstrument& instrument) { return *instrument.plugin.ForEdit()->plugin; }

    CInstrument& AddInstrument(const std::string& pluginName = "NoteProbe") {
        auto instrument = std::make_shared<CInstrument>();
        Put(instrument->plugin, LoadPlugin(pluginName, ESlotKind::kInstrument));
        audio.PrepareInstrument(*instrument);
        InstrumentList list = *audio.instruments.ForEdit();
        list.push_back(instrument);
        audio.PublishInstruments(std::move(list));
        return *instrument;
    }

    void SetPattern(CInstrument& instrument, int index, int steps, std::vector<Note> notes) {
        Publish(instrument.patterns[static_cast<std::size_t>(index)], CPattern(steps, std::move(notes)));
    }

    void Command(EngineCommand::EKind kind, std::int32_t value = 0, std::uint32_t instrument = 0) {
        ASSERT_TRUE(audio.Post({kind, instrument, value}));
    }
    void PlayPatterns() {
        audio.settings.songMode.Set(0.0F);
        Command(EngineCommand::EKind::kPlay);
    }

    // Renders at least `frames` and returns the notes of one instrument, earliest first; at one frame note
    // offs before note ons.
    std::vector<HeardNote> Listen(const CInstrument& instrument, std::int64_t frames) {
        std::vector<HeardNote> heard;
        const CPlugin& plugin = *instrument.plugin.ForEdit()->plugin;
        for (std::int64_t end = position + frames; position < end; position += audio.Format().blockSize) {
            audio.RenderBlock();
            for (int frame = 0; frame < audio.Format().blockSize; ++frame) {
                for (const bool on : {false, true}) {
                    const float mark = plugin.Output(on ? 0 : 1)[frame];
                    if (mark != 0.0F) heard.push_back({position + frame, static_cast<int>(mark * 128.0F), on});
                }
            }
        }
        audio.Collect();
        return heard;
    }

    // Only the keys that were struck, in order.
    std::vector<int> Keys(const CInstrument& instrument, std::int64_t frames) {
        std::vector<int> keys;
        for (const HeardNote& note : Listen(instrument, frames)) {
            if (note.on) keys.push_back(note.key);
        }
        return keys;
    }

    // A pattern of `steps` steps with one note of `key` on every step.
    static std::vector<Note> EveryStep(int steps, int key) {
        std::vector<Note> notes;
        notes.reserve(static_cast<std::size_t>(steps));
        for (int step = 0; step < steps; ++step) notes.push_back({static_cast<float>(step), 0.5F, key, 100});
        return notes;
    }

    CAudio audio;
    std::int64_t position = 0;
};

}  // namespace quib
