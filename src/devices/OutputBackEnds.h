// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The kinds of sound devices that the program plays on, as one table: a further kind is a row in
// OutputBackEnds.cpp, and nobody else names it. Editing thread.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "devices/COutputDevice.h"

namespace quib {

struct OutputBackEnd {
    // The name of its only device. Empty: it takes every name that is no other's.
    std::string device;
    // What stands for an empty name in messages.
    std::string defaultDevice;
    // How often a device is tried, and whether one of any name is tried next when it does not open.
    int attempts = 1;
    bool hasSubstitute = false;
    std::function<std::vector<std::string>()> list;
    std::function<std::unique_ptr<COutputDevice>(CAudio&, EFallback)> make;
};

class COutputBackEnds {
public:
    // What this system offers at present.
    COutputBackEnds();

    // Names of all devices, in the order in which the user sees them.
    std::vector<std::string> ListDevices() const;

    // The one that a name belongs to.
    const OutputBackEnd& Of(const std::string& name) const;
    // The one that takes any name, and the one that needs no hardware.
    const OutputBackEnd& General() const { return table.front(); }
    const OutputBackEnd& StandIn() const { return table.back(); }

private:
    std::vector<OutputBackEnd> table;
};

}  // namespace quib
