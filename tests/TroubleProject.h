// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A project whose only instrument is the test plug-in "Trouble", with a state that it must not lose.

#include <string>

namespace quib {

inline std::string BigEndian(std::size_t number) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift & 0xff);
    return bytes;
}

// A bank of one chunk.
inline std::string TroubleState() {
    const std::string chunk("kept \0 byte\r\nfor byte\xff", 23);
    return "CcnK" + BigEndian(160 - 8 + chunk.size()) + "FBCh" + BigEndian(1) + "tsTr" + BigEndian(1) + BigEndian(1) +
           std::string(128, '\0') + BigEndian(chunk.size()) + chunk;
}

inline std::string TroubleProject() {
    const std::string state = TroubleState();
    return "VERSION;1.5;\r\nTEMPO;133.000000;\r\nSONG_MODE;0.000000;\r\nPLUGIN;Trouble.dll;\r\nTITLE;Part;\r\n"
           "LEVEL;100.0000;\r\nPLUGIN_PRESET;START;\r\nPRESET_SIZE;" +
           std::to_string(state.size()) + ";\r\n" + state +
           "\r\nPRESET_INDEX;0;\r\nPRESET;END;\r\nPATTERNS;START;\r\nPATTERN_NOTES;0;4;1;0.3000;40;0.6000;100;\r\n"
           "PATTERNS;END;\r\nPLUGIN;END;\r\n";
}

}  // namespace quib
