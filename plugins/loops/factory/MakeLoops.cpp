// SPDX-License-Identifier: GPL-3.0-or-later
// Plays the loop scores on the built-in plug-ins and writes them as Wave files, at build time:
//
//   make_loops FOLDER-OF-THE-PROGRAM OUTPUT-FOLDER
#include <dlfcn.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "Vst2.h"
#include "loops/factory/LoopScores.h"
#include "synth/SynthParameters.h"

namespace quibloops {

namespace {

constexpr int kSampleRate = 44100;
constexpr std::size_t kStepsPerBar = 16;
constexpr float kPeak = 0.6f;        // -4.4 dBFS
constexpr int kSeam = 441;           // frames that end as the first round does
constexpr float kReverbMix = 0.22f;  // of inserts whose programs are meant for sends

double tempo = 120.0;

std::intptr_t Host(vst2::AEffect*, std::int32_t opcode, std::int32_t, std::intptr_t, void*, float) {
    static vst2::VstTimeInfo time{};
    time.tempo = tempo;
    time.flags = vst2::kVstTempoValid;
    if (opcode == vst2::audioMasterGetTime) return reinterpret_cast<std::intptr_t>(&time);
    return opcode == vst2::audioMasterVersion ? 2400 : 0;
}

class CPlayer {
public:
    CPlayer(const std::string& library, int program) {
        void* handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (handle == nullptr) throw std::runtime_error("cannot load " + library);
        m_effect = reinterpret_cast<vst2::EntryProc>(dlsym(handle, "VSTPluginMain"))(Host);
        if (m_effect == nullptr || program >= m_effect->numPrograms) throw std::runtime_error("cannot use " + library);
        Call(vst2::effOpen);
        Call(vst2::effSetProgram, program);
        Call(vst2::effSetSampleRate, 0, nullptr, static_cast<float>(kSampleRate));
        Call(vst2::effMainsChanged, 1);
    }
    ~CPlayer() { Call(vst2::effClose); }
    CPlayer(const CPlayer&) = delete;
    CPlayer& operator=(const CPlayer&) = delete;

    vst2::AEffect& Effect() { return *m_effect; }
    void Call(int opcode, std::intptr_t value = 0, void* pointer = nullptr, float option = 0.0f) {
        m_effect->dispatcher(m_effect, opcode, 0, value, pointer, option);
    }
    void Send(bool on, int key, int velocity) {
        vst2::VstMidiEvent event{};
        event.type = vst2::kVstMidiType;
        event.byteSize = sizeof event;
        event.midiData[0] = on ? 0x90 : 0x80;
        event.midiData[1] = static_cast<std::uint8_t>(key);
        event.midiData[2] = static_cast<std::uint8_t>(velocity);
        vst2::VstEvents events{1, 0, {reinterpret_cast<vst2::VstEvent*>(&event), nullptr}};
        Call(vst2::effProcessEvents, 0, &events);
    }

private:
    vst2::AEffect* m_effect = nullptr;
};

struct Note {
    long frame;
    bool on;
    int key;
    int velocity;
};

struct Sound {
    std::vector<float> left;
    std::vector<float> right;
};

void AddLine(const LoopScore& score, const std::string& line, double stepFrames, std::vector<Note>& notes) {
    const std::size_t colon = line.find(':');
    const int key = std::stoi(line.substr(0, colon));
    std::string steps = line.substr(colon + 1);
    std::erase(steps, ':');
    const auto length = static_cast<std::size_t>(score.bars) * kStepsPerBar;
    if (steps.empty() || length % steps.size() != 0) steps.resize(length, '.');
    const auto frameOf = [&](std::size_t step) {
        const double late = step % 2 == 1 ? static_cast<double>(score.swing) : 0.0;
        return std::lround((static_cast<double>(step) + late) * stepFrames);
    };
    for (std::size_t step = 0; step < 2 * length; ++step) {  // two rounds
        const char mark = steps[step % steps.size()];
        if (mark < '1' || mark > '9') continue;
        std::size_t end = step + 1;
        while (end < 2 * length && steps[end % steps.size()] == '-' && end - step < length) ++end;
        const auto last = static_cast<long>(0.15 * stepFrames);
        notes.push_back({frameOf(step), true, key, 19 + 12 * (mark - '0')});
        notes.push_back({std::lround(static_cast<double>(end) * stepFrames) - last, false, key, 0});
    }
}

std::vector<Note> NotesOf(const LoopScore& score, double stepFrames) {
    std::vector<Note> notes;
    std::istringstream lines(score.lines);
    for (std::string line; lines >> line;) AddLine(score, line, stepFrames, notes);
    // Of one frame, ends come first.
    std::stable_sort(notes.begin(), notes.end(), [](const Note& a, const Note& b) {
        return a.frame != b.frame ? a.frame < b.frame : !a.on && b.on;
    });
    return notes;
}

Sound Play(CPlayer& player, const std::vector<Note>& notes, long frames) {
    Sound sound{std::vector<float>(static_cast<std::size_t>(frames)),
                std::vector<float>(static_cast<std::size_t>(frames))};
    std::vector<float> others(static_cast<std::size_t>(frames));
    std::vector<float*> outputs(static_cast<std::size_t>(player.Effect().numOutputs), others.data());
    std::size_t next = 0;
    for (long begin = 0; begin < frames;) {
        while (next < notes.size() && notes[next].frame <= begin) {
            player.Send(notes[next].on, notes[next].key, notes[next].velocity);
            ++next;
        }
        const long end = next < notes.size() ? std::min(frames, notes[next].frame) : frames;
        outputs[0] = sound.left.data() + begin;
        outputs[1] = sound.right.data() + begin;
        player.Effect().processReplacing(&player.Effect(), nullptr, outputs.data(),
                                         static_cast<std::int32_t>(end - begin));
        begin = end;
    }
    return sound;
}

// Through an effect, with its latency taken back.
void Insert(CPlayer& player, Sound& sound) {
    const auto latency = static_cast<std::size_t>(player.Effect().initialDelay);
    for (auto* side : {&sound.left, &sound.right}) side->resize(side->size() + latency);
    float* both[] = {sound.left.data(), sound.right.data()};
    player.Effect().processReplacing(&player.Effect(), both, both, static_cast<std::int32_t>(sound.left.size()));
    for (auto* side : {&sound.left, &sound.right}) {
        side->erase(side->begin(), side->begin() + static_cast<std::ptrdiff_t>(latency));
    }
}

// The second round, in which the first one rings, ending as the first one does.
Sound SecondRound(const Sound& sound, long frames) {
    const auto round = [&](const std::vector<float>& side) {
        std::vector<float> kept(side.begin() + frames, side.begin() + 2 * frames);
        for (long i = 0; i < kSeam; ++i) {
            const float share = static_cast<float>(i + 1) / static_cast<float>(kSeam);
            const auto at = static_cast<std::size_t>(frames - kSeam + i);
            kept[at] += share * (side[at] - kept[at]);
        }
        return kept;
    };
    return {round(sound.left), round(sound.right)};
}

void Write(const std::string& file, const Sound& sound) {
    float peak = 1e-9f;
    for (const auto* side : {&sound.left, &sound.right}) {
        for (const float sample : *side) peak = std::max(peak, std::fabs(sample));
    }
    if (peak < 1e-3f) throw std::runtime_error(file + " would be silent");
    std::vector<short> samples;
    for (std::size_t i = 0; i < sound.left.size(); ++i) {
        for (const float sample : {sound.left[i], sound.right[i]}) {
            samples.push_back(static_cast<short>(std::lround(sample * kPeak / peak * 32767.0f)));
        }
    }
    SF_INFO info{};
    info.samplerate = kSampleRate;
    info.channels = 2;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SNDFILE* output = sf_open(file.c_str(), SFM_WRITE, &info);
    const auto frames = static_cast<sf_count_t>(sound.left.size());
    const bool written = output != nullptr && sf_writef_short(output, samples.data(), frames) == frames;
    if (output == nullptr || sf_close(output) != 0 || !written) throw std::runtime_error("cannot write " + file);
}

void Make(const LoopScore& score, const std::string& program, const std::string& folder) {
    tempo = score.tempo;
    const double stepFrames = 60.0 * kSampleRate / (4.0 * score.tempo);
    const long frames = std::lround(stepFrames * score.bars * static_cast<double>(kStepsPerBar));
    CPlayer instrument(program + "/PluginInstruments/" + score.instrument + ".so", score.program);
    // Projects play these by key: they stay what they were before the synthesiser's programs became wide.
    if (std::strcmp(score.instrument, "QUIB synth") == 0) {
        instrument.Effect().setParameter(&instrument.Effect(), quibplug::kStereoWidth, 0.0f);
        instrument.Call(vst2::effMainsChanged, 1);
    }
    Sound sound = Play(instrument, NotesOf(score, stepFrames), 2 * frames);
    if (score.insert != nullptr) {
        CPlayer insert(program + "/PluginEffects/" + score.insert + ".so", score.insertProgram);
        const bool wet = std::strcmp(score.insert, "QUIB reverb") == 0 || std::strcmp(score.insert, "QUIB delay") == 0;
        if (wet) insert.Effect().setParameter(&insert.Effect(), 0, kReverbMix);
        insert.Call(vst2::effMainsChanged, 1);
        Insert(insert, sound);
    }
    Write(folder + "/" + score.name + " " + std::to_string(score.tempo) + "bpm.wav", SecondRound(sound, frames));
}

}  // namespace

}  // namespace quibloops

int main(int count, char** arguments) {
    if (count != 3) {
        std::fputs("usage: make_loops FOLDER-OF-THE-PROGRAM OUTPUT-FOLDER\n", stderr);
        return 2;
    }
    try {
        std::filesystem::create_directories(arguments[2]);
        for (const quibloops::LoopScore& score : quibloops::LoopScores()) {
            quibloops::Make(score, arguments[1], arguments[2]);
        }
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "make_loops: %s\n", fault.what());
        return 1;
    }
    return 0;
}
