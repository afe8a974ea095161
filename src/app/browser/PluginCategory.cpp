// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/browser/PluginCategory.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <span>

#include "app/CPluginCatalog.h"
#include "texts/Texts.h"

namespace quib {

namespace {

using enum EPluginCategory;

// Words of names: whole where they stand between "|"s of nothing else, else beginnings of words. The first row
// that fits decides.
struct NameRow {
    EPluginCategory category;
    const char* pattern;
};

constexpr NameRow kEffectNames[] = {
    {kAnalyser, R"(analy[sz]|spectrum|scope|\bmeter|\btuner|prom\b|glbars|\bvu\b|visuali)"},
    {kReverb, R"(rever|verb|\bhall\b|\bplate\b|\broom|freeverb|gigaverb|impulse|convol)"},
    {kDelay, R"(delay|echo|slap)"},
    {kDistortion, R"(distort|crush|saturat|clipp|\bdrive|overdrive|fuzz|\btube|soulforce|\bamp\b|waveshap|decimat)"},
    {kDynamics, R"(compress|limit|\bgate|expand|\bcomp\b|\bzam(comp|gate)|dynam|maximi|de-?ess|transient|\bgain\b)"},
    {kPitch, R"(pitch|autotune|zamautosat|harmoni|detune|octav|\btune\b)"},
    {kModulation, R"(chorus|flang|phas(er|ing)|tremol|vibrato|rotary|leslie|ring ?mod|modulat|cycleshift)"},
    {kFilter, R"(\beq|equali|filter|\d ?band|bandeq|crossover|wah\b|spectral|\bzameq|\bgeq)"},
    {kSpace, R"(\bpan|pingpong|stereo|spati|ambi|binaural|encoder|decoder|width|rotator|surround|room ?enc|beam)"},
};

constexpr NameRow kInstrumentNames[] = {
    {kDrums, R"(drum|percus|beat|kick|snare)"},
    {kSampler, R"(sampl|loop|player|soundfont|\bsf2)"},
    {kKeys, R"(piano|organ|clavi|\bkeys|rhodes|\bep\b|string machine)"},
};

// Numbers of the published interface of VST 2.
constexpr int kAnalysis = 3;
constexpr int kMastering = 4;
constexpr int kSpacialiser = 5;
constexpr int kRoomEffect = 6;
constexpr int kSurround = 7;
constexpr int kRestoration = 8;

EPluginCategory ByNumber(int number) {
    switch (number) {
        case kAnalysis:
            return kAnalyser;
        case kMastering:
        case kRestoration:
            return kDynamics;
        case kSpacialiser:
        case kSurround:
            return kSpace;
        case kRoomEffect:
            return kReverb;
        default:
            return kUtility;
    }
}

}  // namespace

EPluginCategory CategoryOf(const PluginEntry& entry) {
    const QString names = entry.name + QLatin1Char('\n') + QFileInfo(entry.path).completeBaseName();
    const auto rows = entry.isInstrument ? std::span<const NameRow>(kInstrumentNames) : kEffectNames;
    for (const NameRow& row : rows) {
        const QRegularExpression pattern(QLatin1String(row.pattern), QRegularExpression::CaseInsensitiveOption);
        if (pattern.match(names).hasMatch()) return row.category;
    }
    return entry.isInstrument ? kSynthesiser : ByNumber(entry.category);
}

bool IsInstrumentCategory(EPluginCategory category) { return category <= kSampler; }

QString CategoryName(EPluginCategory category) {
    static constexpr const char* kNames[kPluginCategoryCount] = {
        TextKey("Synthesiser"), TextKey("Drums"),      TextKey("Keys"),     TextKey("Sampler"),
        TextKey("Delay"),       TextKey("Reverb"),     TextKey("Dynamics"), TextKey("Filter, EQ"),
        TextKey("Modulation"),  TextKey("Distortion"), TextKey("Pitch"),    TextKey("Space"),
        TextKey("Analyser"),    TextKey("Utility")};
    return Text(kNames[static_cast<int>(category)]);
}

}  // namespace quib
