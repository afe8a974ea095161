// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What plug-ins of every format are: who they are, what their parameters are, how a file names them.
// Values; editing thread.

#include <cstdint>
#include <string>

namespace quib {

enum class ESlotKind { kInstrument, kEffect };

// What a plug-in said when it was loaded.
struct PluginIdentity {
    std::string format;       // name of its format: "vst2"
    std::string id;           // what tells it from all others of its format
    std::string fileName;     // of its library, without the folder
    std::string displayName;  // effect name, or what replaces it for a built-in plug-in
    std::string effectName;
    std::string vendor;
    std::string product;
    std::intptr_t vendorVersion = 0;
    bool isInstrument = false;
    int programCount = 0;  // when it was loaded; banks may select fewer
    bool acceptsMidi = false;
    bool isDrumMachine = false;
    bool isLoopPlayer = false;
    // As numbers of its format; for scanners.
    std::int32_t version = 0;
    std::intptr_t category = 0;
    std::int32_t flags = 0;

    // Format and id, "vst2:31366378": the same wherever the library lies and whatever it is called.
    std::string Key() const { return format + ':' + id; }
};

// Values of parameters stand from 0 to 1 everywhere: in lanes, files and calls. A format whose plug-ins
// count otherwise maps them to `minimum` and `maximum`.
struct PluginParameter {
    std::string name;
    float minimum = 0;  // in the plug-in's own unit
    float maximum = 1;
    float defaultValue = 0;  // 0..1
    int steps = 0;           // between the values that differ; 0: continuous, or not told
};

// What a plug-in tells of how one of its parameters is to be shown.
struct ParameterNature {
    std::string group;     // what it belongs to; empty: not told
    int values = 0;        // that differ; 2: a switch, 0: continuous or not told
    bool isWhole = false;  // they are whole numbers
};

// How a file names a plug-in.
struct PluginReference {
    std::string fileName;  // of its library
    std::string identity;  // as PluginIdentity::Key; empty: the file does not tell
};

}  // namespace quib
