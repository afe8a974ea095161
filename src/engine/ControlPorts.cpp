// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/ControlPorts.h"

#include <algorithm>
#include <cmath>

#include "engine/ParameterChange.h"
#include "model/edits/BallEdits.h"

namespace quib {

namespace {

constexpr auto kMasterControls = std::to_array<ControlPort<EngineSettings>>({
    {"Master level", [](EngineSettings& s) -> CValue& { return s.masterLevel; }, 0, 127, 0},
    {"Crossfader", [](EngineSettings& s) -> CValue& { return s.crossfader; }, 0, 127, 1},
    {"Master insert", [](EngineSettings& s) -> CValue& { return s.masterInsertOn[0]; }, 0, 1, 2, true},
    {"Master insert", [](EngineSettings& s) -> CValue& { return s.masterInsertOn[1]; }, 0, 1, 3, true},
    {"Tempo", [](EngineSettings& s) -> CValue& { return s.tempo; }, 20, 300, 4},
    {"Headphones level", [](EngineSettings& s) -> CValue& { return s.headphonesLevel; }, 0, 127},
    {"Loop", [](EngineSettings& s) -> CValue& { return s.loopOn; }, 0, 1, -1, true},
    {"Synchro", [](EngineSettings& s) -> CValue& { return s.synchroOn; }, 0, 1, -1, true},
    {"Song mode", [](EngineSettings& s) -> CValue& { return s.songMode; }, 0, 1, -1, true},
});

constexpr auto kInstrumentControls = std::to_array<ControlPort<CInstrument>>({
    {"Arpeggiator", [](CInstrument& i) -> CValue& { return i.arpeggiator.on; }, 0, 1, -1, true},
    {"Arpeggiator mode", [](CInstrument& i) -> CValue& { return i.arpeggiator.mode; }, 0, 3},
    {"Arpeggiator holes", [](CInstrument& i) -> CValue& { return i.arpeggiator.hole; }, 0, 8},
    {"Arpeggiator extension", [](CInstrument& i) -> CValue& { return i.arpeggiator.ext; }, 0, 8},
    {"Arpeggiator extension mode", [](CInstrument& i) -> CValue& { return i.arpeggiator.extMode; }, 0, 3},
    {"Arpeggiator velocity", [](CInstrument& i) -> CValue& { return i.arpeggiator.velocity; }, 0, 4},
    {"Arpeggiator interval", [](CInstrument& i) -> CValue& { return i.arpeggiator.interval; }, 0, 24},
    {"Arpeggiator gate time", [](CInstrument& i) -> CValue& { return i.arpeggiator.gateTime; }, 0, 4},
    {"Arpeggiator tempo", [](CInstrument& i) -> CValue& { return i.arpeggiator.tempo; }, 0, 4},
    {"Swing", [](CInstrument& i) -> CValue& { return i.swing; }, 0, 1},
    {"Arpeggiator latch", [](CInstrument& i) -> CValue& { return i.arpeggiator.latch; }, 0, 1, -1, true},
});

BlockInstrument* Find(BlockContext& block, std::uint32_t id) noexcept {
    const auto found = std::find_if(block.instruments.begin(), block.instruments.end(),
                                    [id](const BlockInstrument& entry) { return entry.instrument->Id() == id; });
    return found == block.instruments.end() ? nullptr : &*found;
}

CPlugin* PluginOf(const ControlTarget& target, BlockContext& block, const BlockInstrument* owner) noexcept {
    const auto place = [&target](EControlTarget first) {
        return static_cast<std::size_t>(static_cast<int>(target.kind) - static_cast<int>(first));
    };
    if (target.kind >= EControlTarget::kEffect1) return block.sharedEffects[place(EControlTarget::kEffect1)];
    if (target.kind >= EControlTarget::kMasterInsert1)
        return block.masterInserts[place(EControlTarget::kMasterInsert1)];
    if (owner == nullptr) return nullptr;
    return target.kind == EControlTarget::kPlugin ? owner->plugin : owner->inserts[place(EControlTarget::kInsert1)];
}

template <class Owner>
const ControlPort<Owner>* PortOf(std::span<const ControlPort<Owner>> ports, int index) noexcept {
    return index >= 0 && static_cast<std::size_t>(index) < ports.size() ? &ports[static_cast<std::size_t>(index)]
                                                                        : nullptr;
}

float Scaled(float share, float minimum, float maximum) noexcept { return minimum + (maximum - minimum) * share; }
float ShareWithin(float value, float minimum, float maximum) noexcept {
    return std::clamp((value - minimum) / (maximum - minimum), 0.0F, 1.0F);
}

template <class Owner>
std::optional<float> Read(std::span<const ControlPort<Owner>> ports, int index, Owner& owner) noexcept {
    const ControlPort<Owner>* const port = PortOf(ports, index);
    if (port == nullptr) return std::nullopt;
    return ShareWithin(port->value(owner).Get(), port->minimum, port->maximum);
}

template <class Owner>
const ControlPort<Owner>* Write(std::span<const ControlPort<Owner>> ports, int index, Owner& owner,
                                float share) noexcept {
    const ControlPort<Owner>* const port = PortOf(ports, index);
    if (port == nullptr) return nullptr;
    const float value = Scaled(share, port->minimum, port->maximum);
    port->value(owner).Set(port->isSwitch ? std::round(share) : value);
    return port;
}

bool IsBall(int index) noexcept { return index >= 0 && index < static_cast<int>(InstrumentPlayState::kMaximumBalls); }

bool WriteStrip(BlockInstrument& entry, int parameter, float share, double sampleRate) noexcept {
    const StripSetting* const setting = MixSetting(parameter);
    if (setting == nullptr) return false;
    const float value = Scaled(share, setting->range.minimum, setting->range.maximum);
    if (IsMixLane(parameter)) entry.instrument->heldMix.SetBits(1U << parameter);
    ChangeMixValue(*entry.instrument, parameter, setting->IsSwitch() ? std::round(value) : value, sampleRate);
    return true;
}

bool WriteBall(BlockInstrument& entry, int ball, std::size_t axis, float share, double sampleRate) noexcept {
    const BallSoundList& sounds = entry.instrument->ballSounds.ForRender();
    if (!IsBall(ball) || static_cast<std::size_t>(ball) >= sounds.size()) return false;
    const auto index = static_cast<std::size_t>(ball);
    entry.instrument->play.balls[index][axis] = share * kBallReach;
    MoveBall(entry, axis == 0 ? sounds[index].horizontal : sounds[index].vertical, share * kBallReach, sampleRate);
    return true;
}

bool WritePlugin(CPlugin* plugin, int parameter, float share) noexcept {
    if (plugin == nullptr || !plugin->PlayParameter(parameter, share)) return false;
    plugin->Hold(parameter, true);
    return true;
}

}  // namespace

std::span<const ControlPort<EngineSettings>> MasterControls() noexcept { return kMasterControls; }
std::span<const ControlPort<CInstrument>> InstrumentControls() noexcept { return kInstrumentControls; }

std::optional<float> ReadControl(const ControlTarget& target, BlockContext& block, EngineSettings& settings) noexcept {
    if (target.kind == EControlTarget::kMaster) return Read(MasterControls(), target.index, settings);
    BlockInstrument* const owner = IsOfInstrument(target.kind) ? Find(block, target.instrument) : nullptr;
    if (IsPluginParameter(target.kind)) {
        CPlugin* const plugin = PluginOf(target, block, owner);
        return plugin != nullptr ? plugin->PlayedParameter(target.index) : std::nullopt;
    }
    if (owner == nullptr) return std::nullopt;
    switch (target.kind) {
        case EControlTarget::kStrip: {
            const StripSetting* const setting = MixSetting(target.index);
            if (setting == nullptr) return std::nullopt;
            return ShareWithin(setting->member(owner->instrument->strip).Get(), setting->range.minimum,
                               setting->range.maximum);
        }
        case EControlTarget::kInstrument:
            return Read(InstrumentControls(), target.index, *owner->instrument);
        case EControlTarget::kBallX:
        case EControlTarget::kBallY:
            if (!IsBall(target.index)) return std::nullopt;
            return owner->instrument->play
                       .balls[static_cast<std::size_t>(target.index)][target.kind == EControlTarget::kBallY ? 1 : 0] /
                   kBallReach;
        default:
            return std::nullopt;
    }
}

bool WriteControl(const ControlTarget& target, float share, BlockContext& block, EngineSettings& settings) noexcept {
    if (target.kind == EControlTarget::kMaster) {
        const auto* const port = Write(MasterControls(), target.index, settings, share);
        if (port != nullptr && port->lane >= 0) settings.heldLanes.SetBits(1U << port->lane);
        return port != nullptr;
    }
    BlockInstrument* const owner = IsOfInstrument(target.kind) ? Find(block, target.instrument) : nullptr;
    if (IsPluginParameter(target.kind)) return WritePlugin(PluginOf(target, block, owner), target.index, share);
    if (owner == nullptr) return false;
    switch (target.kind) {
        case EControlTarget::kStrip:
            return WriteStrip(*owner, target.index, share, block.sampleRate);
        case EControlTarget::kInstrument:
            return Write(InstrumentControls(), target.index, *owner->instrument, share) != nullptr;
        case EControlTarget::kBallX:
            return WriteBall(*owner, target.index, 0, share, block.sampleRate);
        case EControlTarget::kBallY:
            return WriteBall(*owner, target.index, 1, share, block.sampleRate);
        default:
            return false;
    }
}

}  // namespace quib
