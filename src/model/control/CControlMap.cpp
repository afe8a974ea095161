// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/control/CControlMap.h"

#include <algorithm>
#include <utility>

namespace quib {

namespace {

std::pair<EControlSource, std::int32_t> OrderOf(const CControlMap::Entry& entry) noexcept {
    return {entry.binding.source.kind, entry.binding.source.number};
}

}  // namespace

CControlMap::CControlMap(std::vector<Entry> bindings) : entries(std::move(bindings)) {
    if (entries.size() > kMostBindings) entries.resize(kMostBindings);
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& a, const Entry& b) { return OrderOf(a) < OrderOf(b); });
    for (Entry& entry : entries) {
        const ControlSource& source = entry.binding.source;
        const auto same = Having(source.kind, source.number);
        entry.overruled =
            !IsOfProject(entry.binding.target.kind) && std::any_of(same.begin(), same.end(), [&](const Entry& other) {
                return IsOfProject(other.binding.target.kind) && Overlap(other.binding.source, source);
            });
    }
}

std::span<const CControlMap::Entry> CControlMap::Having(EControlSource kind, int number) const noexcept {
    const std::pair wanted(kind, static_cast<std::int32_t>(number));
    const auto first = std::lower_bound(entries.begin(), entries.end(), wanted,
                                        [](const Entry& entry, const auto& key) { return OrderOf(entry) < key; });
    auto last = first;
    while (last != entries.end() && OrderOf(*last) == wanted) ++last;
    return {first, last};
}

CControlMap CControlMap::With(const ControlBinding& binding) const {
    std::vector<Entry> next = entries;
    next.emplace_back().binding = binding;
    return CControlMap(std::move(next));
}

CControlMap CControlMap::Replaced(std::size_t index, const ControlBinding& binding) const {
    std::vector<Entry> next = entries;
    if (index < next.size()) {
        next[index] = {};
        next[index].binding = binding;
    }
    return CControlMap(std::move(next));
}

CControlMap CControlMap::Without(const std::function<bool(const ControlBinding&)>& goes) const {
    std::vector<Entry> next = entries;
    std::erase_if(next, [&](const Entry& entry) { return goes(entry.binding); });
    return CControlMap(std::move(next));
}

CControlMap CControlMap::Retargeted(const std::function<bool(ControlTarget&)>& change) const {
    std::vector<Entry> next = entries;
    std::erase_if(next, [&](Entry& entry) { return !change(entry.binding.target); });
    return CControlMap(std::move(next));
}

}  // namespace quib
