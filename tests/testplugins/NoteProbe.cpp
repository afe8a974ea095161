// SPDX-License-Identifier: GPL-3.0-or-later
// An instrument that makes events audible to a test: a note on leaves key/128 on the left output at its
// frame, a note off the same on the right. Parameter 0 is a constant added to both outputs; parameter 1
// above 0.5 turns on a report instead: left tempo/1000, position in quarters on the right, playing and
// changed flags in the second frame.
#include "TestPlugin.h"

class CNoteProbe final : public CTestPlugin {
public:
    explicit CNoteProbe(vst2::HostCallback hostCallback)
        : CTestPlugin(hostCallback, EKind::kSynth, "Note probe", "tsNP", 4) {}

private:
    void Process(const float* const*, float* const* out, std::int32_t frames) override {
        Fill(out, frames, parameters[0]);
        if (parameters[1] > 0.5F) return ReportTime(out, frames);
        for (const Event& event : events) {
            const float mark = static_cast<float>(event.data1) / 128.0F;
            if (event.frame < 0 || event.frame >= frames) {
                out[0][0] = -1.0F;  // an event outside the block
            } else if (event.status == 0x90 && event.data2 > 0) {
                out[0][event.frame] += mark;
            } else if (event.status == 0x80 || event.status == 0x90) {
                out[1][event.frame] += mark;
            }
        }
    }

    void ReportTime(float* const* out, std::int32_t frames) {
        const auto* const time =
            reinterpret_cast<const vst2::VstTimeInfo*>(host(&effect, vst2::audioMasterGetTime, 0, 0, nullptr, 0.0F));
        if (time == nullptr) return;
        out[0][0] = static_cast<float>(time->tempo / 1000.0);
        out[1][0] = static_cast<float>(time->ppqPos);
        if (frames < 2) return;
        out[0][1] = (time->flags & vst2::kVstTransportPlaying) != 0 ? 1.0F : 0.0F;
        out[1][1] = (time->flags & vst2::kVstTransportChanged) != 0 ? 1.0F : 0.0F;
    }
};

QUIB_TEST_PLUGIN_ENTRY(CNoteProbe, VSTPluginMain)
