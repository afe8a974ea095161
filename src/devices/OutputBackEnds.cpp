// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/OutputBackEnds.h"

#include <algorithm>

#include "devices/AlsaDeviceList.h"
#include "devices/CAlsaOutput.h"
#include "devices/CJackOutput.h"
#include "devices/CSilentOutput.h"
#include "devices/OutputDeviceList.h"

namespace quib {

namespace {

OutputBackEnd Alsa() {
    return {"", CAlsaOutput::kDefaultDevice, 2, false, &ListAlsaDevices, [](CAudio& audio, EFallback whenAbsent) {
                return std::make_unique<CAlsaOutput>(audio, whenAbsent);
            }};
}

OutputBackEnd Jack(const std::shared_ptr<const CJackLibrary>& library) {
    return {CJackOutput::kName,
            "",
            1,
            true,
            [] { return std::vector<std::string>{CJackOutput::kName}; },
            [library, wiring = std::make_shared<JackWiring>()](CAudio& audio, EFallback) {
                return std::make_unique<CJackOutput>(audio, library, wiring);
            }};
}

OutputBackEnd Silent() {
    return {CSilentOutput::kName,
            "",
            1,
            false,
            [] { return std::vector<std::string>{CSilentOutput::kName}; },
            [](CAudio& audio, EFallback) { return std::make_unique<CSilentOutput>(audio); }};
}

}  // namespace

COutputBackEnds::COutputBackEnds() {
    table.push_back(Alsa());
    if (const auto library = CJackLibrary::Load()) table.push_back(Jack(library));
    table.push_back(Silent());
}

std::vector<std::string> COutputBackEnds::ListDevices() const {
    std::vector<std::string> names;
    for (const OutputBackEnd& backEnd : table) {
        for (std::string& name : backEnd.list()) names.push_back(std::move(name));
    }
    return names;
}

const OutputBackEnd& COutputBackEnds::Of(const std::string& name) const {
    const auto found =
        std::find_if(table.begin() + 1, table.end(), [&](const auto& row) { return row.device == name; });
    return found != table.end() ? *found : General();
}

std::vector<std::string> ListOutputDevices() { return COutputBackEnds().ListDevices(); }

}  // namespace quib
