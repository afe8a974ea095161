// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/DocumentContext.h"

#include <algorithm>

namespace quib {

std::shared_ptr<CInstrument> DocumentContext::Instrument(int index) const {
    const InstrumentList& list = Instruments();
    if (index < 0 || index >= static_cast<int>(list.size())) return nullptr;
    return list[static_cast<std::size_t>(index)];
}

int DocumentContext::IndexOf(std::uint32_t id) const {
    const InstrumentList& list = Instruments();
    const auto place = std::find_if(list.begin(), list.end(), [id](const auto& entry) { return entry->Id() == id; });
    return place == list.end() ? -1 : static_cast<int>(place - list.begin());
}

}  // namespace quib
