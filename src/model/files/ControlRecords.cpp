// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/files/ControlRecords.h"

#include <algorithm>
#include <array>

#include "model/CInstrument.h"

namespace quib {

namespace {

constexpr int kSourceCount = 6;
constexpr std::int32_t kHighestNumber = 127;
constexpr std::int32_t kHighestIndex = 1 << 16;

bool IsWithin(std::int32_t number, std::int32_t low, std::int32_t high) { return number >= low && number <= high; }

}  // namespace

void WriteBinding(CRecordWriter& writer, const ControlBinding& binding) {
    const ControlSource& source = binding.source;
    const ControlTarget& target = binding.target;
    writer.Key(kBindingKey).Integer(static_cast<std::int32_t>(source.kind)).Integer(source.channelSelector);
    writer.Integer(source.number).Integer(static_cast<std::int32_t>(target.kind));
    writer.Integer(static_cast<std::int32_t>(target.instrument)).Integer(target.index);
    writer.Integer(static_cast<std::int32_t>(binding.mode)).Real6(binding.low).Real6(binding.high).EndLine();
}

std::optional<ControlBinding> ReadBinding(const CRecordReader& line) {
    std::array<std::int32_t, 7> fields{};
    CRecordFields rest = line.FieldsFrom(1);
    for (std::int32_t& field : fields) {
        if (!rest.Next(field)) return std::nullopt;
    }
    ControlBinding binding;
    if (!rest.Next(binding.low) || !rest.Next(binding.high)) return std::nullopt;
    const auto& [kind, selector, number, targetKind, instrument, index, mode] = fields;
    const bool sane = IsWithin(kind, 0, kSourceCount - 1) && IsWithin(selector, 1, kLastChannelSelector) &&
                      IsWithin(number, 0, kHighestNumber) && IsWithin(targetKind, 0, kControlTargetCount - 1) &&
                      instrument >= 0 && IsWithin(index, 0, kHighestIndex) && IsWithin(mode, 0, kControlModeCount - 1);
    if (!sane) return std::nullopt;
    binding.source = {static_cast<EControlSource>(kind), selector, number};
    binding.target = {static_cast<EControlTarget>(targetKind), static_cast<std::uint32_t>(instrument), index};
    binding.mode = static_cast<EControlMode>(mode);
    binding.low = std::clamp(binding.low, 0.0F, 1.0F);
    binding.high = std::clamp(binding.high, 0.0F, 1.0F);
    return binding;
}

}  // namespace quib
