// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The published binary interface of VST 2 plug-ins, declared for this program: structure layouts,
// opcodes and flags that a host and its plug-ins share. Used by the plug-in host (src/model/plugin)
// and by the built-in plug-ins. Contains no code. Character codes are big-endian: "VstP" has 'V' in
// its top byte.

#include <cstdint>

#if defined(_WIN32)
#define VST2_CALL __cdecl
#define VST2_EXPORT extern "C" __declspec(dllexport)
#else
#define VST2_CALL
#define VST2_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace vst2 {

constexpr std::int32_t FourCharacters(char a, char b, char c, char d) noexcept {
    return static_cast<std::int32_t>((static_cast<std::uint32_t>(static_cast<unsigned char>(a)) << 24) |
                                     (static_cast<std::uint32_t>(static_cast<unsigned char>(b)) << 16) |
                                     (static_cast<std::uint32_t>(static_cast<unsigned char>(c)) << 8) |
                                     static_cast<std::uint32_t>(static_cast<unsigned char>(d)));
}

constexpr std::int32_t kEffectMagic = FourCharacters('V', 's', 't', 'P');

struct AEffect;

using DispatcherProc = std::intptr_t(VST2_CALL*)(AEffect* effect, std::int32_t opcode, std::int32_t index,
                                                 std::intptr_t value, void* pointer, float option);
// The inputs are nobody else's: a plug-in that writes them changes what is not read again.
using ProcessProc = void(VST2_CALL*)(AEffect* effect, const float* const* inputs, float* const* outputs,
                                     std::int32_t frames);
using ProcessDoubleProc = void(VST2_CALL*)(AEffect* effect, double** inputs, double** outputs, std::int32_t frames);
using SetParameterProc = void(VST2_CALL*)(AEffect* effect, std::int32_t index, float value);
using GetParameterProc = float(VST2_CALL*)(AEffect* effect, std::int32_t index);
using HostCallback = std::intptr_t(VST2_CALL*)(AEffect* effect, std::int32_t opcode, std::int32_t index,
                                               std::intptr_t value, void* pointer, float option);
using EntryProc = AEffect*(VST2_CALL*)(HostCallback host);

// What a plug-in hands to its host. The plug-in fills and owns it; `hostReserved1` and
// `hostReserved2` belong to the host and start as 0.
struct AEffect {
    std::int32_t magic;
    DispatcherProc dispatcher;
    ProcessProc process;  // accumulating call of VST 1, unused by hosts of this version
    SetParameterProc setParameter;
    GetParameterProc getParameter;
    std::int32_t numPrograms;
    std::int32_t numParams;
    std::int32_t numInputs;
    std::int32_t numOutputs;
    std::int32_t flags;
    std::intptr_t hostReserved1;
    std::intptr_t hostReserved2;
    std::int32_t initialDelay;  // latency in samples
    std::int32_t realQualities;
    std::int32_t offQualities;
    float ioRatio;
    void* object;
    void* user;
    std::int32_t uniqueId;
    std::int32_t version;
    ProcessProc processReplacing;
    ProcessDoubleProc processDoubleReplacing;
    char future[56];
};

enum EffectFlags : std::int32_t {
    effFlagsHasEditor = 1 << 0,
    effFlagsCanReplacing = 1 << 4,
    effFlagsProgramChunks = 1 << 5,
    effFlagsIsSynth = 1 << 8,
    effFlagsNoSoundInStop = 1 << 9,
};

enum PlugCategory : std::int32_t {
    kPlugCategUnknown = 0,
    kPlugCategEffect = 1,
    kPlugCategSynth = 2,
};

// Requests of the host to the plug-in.
enum EffectOpcodes : std::int32_t {
    effOpen = 0,
    effClose = 1,
    effSetProgram = 2,       // value: program
    effGetProgram = 3,       // returns the program
    effSetProgramName = 4,   // pointer: text, up to 24 characters
    effGetProgramName = 5,   // pointer: buffer
    effGetParamLabel = 6,    // index: parameter, pointer: buffer of the unit
    effGetParamDisplay = 7,  // index: parameter, pointer: buffer of the value
    effGetParamName = 8,     // index: parameter, pointer: buffer of the name
    effSetSampleRate = 10,   // option: hertz
    effSetBlockSize = 11,    // value: largest number of frames of a call
    effMainsChanged = 12,    // value: 0 suspend, 1 resume
    effEditGetRect = 13,
    effEditOpen = 14,
    effEditClose = 15,
    effEditIdle = 19,
    effGetChunk = 23,        // index: 0 bank, 1 program; pointer: void**; returns bytes
    effSetChunk = 24,        // index: 0 bank, 1 program; value: bytes; pointer: data
    effProcessEvents = 25,   // pointer: VstEvents
    effCanBeAutomated = 26,  // index: parameter
    effString2Parameter = 27,
    effGetProgramNameIndexed = 29,  // index: program, pointer: buffer
    effGetInputProperties = 33,
    effGetOutputProperties = 34,
    effGetPlugCategory = 35,
    effGetEffectName = 45,     // pointer: buffer of 32 characters
    effGetVendorString = 47,   // pointer: buffer of 64 characters
    effGetProductString = 48,  // pointer: buffer of 64 characters
    effGetVendorVersion = 49,
    effVendorSpecific = 50,
    effCanDo = 51,  // pointer: text; returns 1 yes, -1 no, 0 unknown
    effGetTailSize = 52,
    effIdle = 53,
    effGetParameterProperties = 56,  // index: parameter, pointer: ParameterProperties; returns 1 when it has told
    effGetVstVersion = 58,
    effGetMidiKeyName = 66,  // pointer: MidiKeyName; returns 1 when the key has a name
    effBeginSetProgram = 67,
    effEndSetProgram = 68,
    effStartProcess = 71,
    effStopProcess = 72,
    effSetProcessPrecision = 77,
};

// Index of effVendorSpecific, for this program's own plug-ins: one that measures its input writes what it has measured
// since it was asked last behind `pointer` and returns 1.
constexpr std::int32_t kTellMeasured = FourCharacters('Q', 'b', 'L', 'v');
struct Measured {
    float level;      // the highest, dBFS; -120 is silence
    float reduction;  // the greatest, dB, from 0 on
};

// What a key of a program is called, such as a drum.
struct MidiKeyName {
    std::int32_t program;
    std::int32_t key;
    char name[64];
    std::int32_t reserved;
    std::int32_t flags;
};

// How a parameter is to be shown.
struct ParameterProperties {
    float step;
    float smallStep;
    float largeStep;
    char label[64];
    std::int32_t flags;  // ParameterFlags: what of the rest is told
    std::int32_t lowest;
    std::int32_t highest;
    std::int32_t wholeStep;
    std::int32_t largeWholeStep;
    char shortLabel[8];
    std::int16_t place;
    std::int16_t category;  // from 1; 0: none
    std::int16_t categorySize;
    std::int16_t reserved;
    char categoryLabel[24];
    char future[16];
};

enum ParameterFlags : std::int32_t {
    kParameterIsSwitch = 1 << 0,
    kParameterHasWholeRange = 1 << 1,  // lowest, highest
    kParameterHasWholeStep = 1 << 3,
    kParameterHasCategory = 1 << 5,
};

// Requests of the plug-in to the host.
enum HostOpcodes : std::int32_t {
    audioMasterAutomate = 0,  // index: parameter, option: value
    audioMasterVersion = 1,
    audioMasterCurrentId = 2,
    audioMasterIdle = 3,
    audioMasterWantMidi = 6,
    audioMasterGetTime = 7,  // value: wanted VstTimeInfo flags; returns VstTimeInfo*
    audioMasterProcessEvents = 8,
    audioMasterIOChanged = 13,
    audioMasterNeedIdle = 14,
    audioMasterSizeWindow = 15,
    audioMasterGetSampleRate = 16,
    audioMasterGetBlockSize = 17,
    audioMasterGetVendorString = 32,
    audioMasterGetProductString = 33,
    audioMasterGetVendorVersion = 34,
    audioMasterCanDo = 37,
    audioMasterUpdateDisplay = 42,
    audioMasterBeginEdit = 43,
    audioMasterEndEdit = 44,
};

enum EventTypes : std::int32_t { kVstMidiType = 1, kVstSysExType = 6 };
enum MidiEventFlags : std::int32_t { kVstMidiEventIsRealtime = 1 };

struct VstEvent {
    std::int32_t type;
    std::int32_t byteSize;
    std::int32_t deltaFrames;
    std::int32_t flags;
    char data[16];
};

struct VstMidiEvent {
    std::int32_t type;         // kVstMidiType
    std::int32_t byteSize;     // sizeof(VstMidiEvent)
    std::int32_t deltaFrames;  // frames after the start of the block
    std::int32_t flags;
    std::int32_t noteLength;
    std::int32_t noteOffset;
    std::uint8_t midiData[4];
    std::int8_t detune;
    std::uint8_t noteOffVelocity;
    std::uint8_t reserved1;
    std::uint8_t reserved2;
};

// `events` stands for `numEvents` pointers.
struct VstEvents {
    std::int32_t numEvents;
    std::intptr_t reserved;
    VstEvent* events[2];
};

enum TimeInfoFlags : std::int32_t {
    kVstTransportChanged = 1 << 0,
    kVstTransportPlaying = 1 << 1,
    kVstTransportCycleActive = 1 << 2,
    kVstTransportRecording = 1 << 3,
    kVstNanosValid = 1 << 8,
    kVstPpqPosValid = 1 << 9,
    kVstTempoValid = 1 << 10,
    kVstBarsValid = 1 << 11,
    kVstCyclePosValid = 1 << 12,
    kVstTimeSigValid = 1 << 13,
};

struct VstTimeInfo {
    double samplePos;
    double sampleRate;
    double nanoSeconds;
    double ppqPos;  // quarter notes since the start
    double tempo;   // beats per minute
    double barStartPos;
    double cycleStartPos;
    double cycleEndPos;
    std::int32_t timeSigNumerator;
    std::int32_t timeSigDenominator;
    std::int32_t smpteOffset;
    std::int32_t smpteFrameRate;
    std::int32_t samplesToNextClock;
    std::int32_t flags;
};

// Editor window size in pixels, answered by effEditGetRect.
struct ERect {
    std::int16_t top;
    std::int16_t left;
    std::int16_t bottom;
    std::int16_t right;
};

static_assert(sizeof(VstMidiEvent) == 32, "MIDI events are 32 bytes on every platform");
static_assert(sizeof(void*) != 8 || sizeof(AEffect) == 192, "AEffect is 192 bytes on 64-bit platforms");

}  // namespace vst2
