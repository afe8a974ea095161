// SPDX-License-Identifier: GPL-3.0-or-later
#include "dsp/CProgramBank.h"

#include <algorithm>
#include <cmath>

#include "dsp/Chunk.h"

namespace quibplug {

CProgramBank::CProgramBank(std::int32_t pluginId, std::span<const ParameterSpec> parameters,
                           std::span<const ProgramSpec> programs)
    : m_pluginId(pluginId),
      m_parameters(parameters),
      m_programCount(programs.size()),
      m_values(programs.size() * parameters.size()) {
    for (std::size_t program = 0; program < m_programCount; ++program) {
        m_names.emplace_back(programs[program].name);
        for (std::size_t i = 0; i < m_parameters.size(); ++i) {
            Slot(program, i).store(m_parameters[i].ToNormalised(m_parameters[i].initial), std::memory_order_relaxed);
        }
        for (const ParameterValue& value : programs[program].values) {
            const auto index = static_cast<std::size_t>(value.index);
            Slot(program, index).store(m_parameters[index].ToNormalised(value.real), std::memory_order_relaxed);
        }
    }
}

float CProgramBank::Value(int parameter) const noexcept {
    if (parameter < 0 || parameter >= ParameterCount()) return 0.0f;
    const std::size_t row = static_cast<std::size_t>(Program()) * m_parameters.size();
    return m_values[row + static_cast<std::size_t>(parameter)].load(std::memory_order_relaxed);
}

void CProgramBank::SetValue(int parameter, float normalised) noexcept {
    if (parameter < 0 || parameter >= ParameterCount() || std::isnan(normalised)) return;
    Slot(static_cast<std::size_t>(Program()), static_cast<std::size_t>(parameter))
        .store(std::clamp(normalised, 0.0f, 1.0f), std::memory_order_relaxed);
    Touch();
}

void CProgramBank::SelectProgram(int program) noexcept {
    if (program < 0 || program >= ProgramCount()) return;
    m_program.store(program, std::memory_order_release);
    Touch();
}

std::string CProgramBank::ProgramName(int program) const {
    const std::lock_guard lock(m_namesMutex);
    return program >= 0 && program < ProgramCount() ? m_names[static_cast<std::size_t>(program)] : std::string();
}

void CProgramBank::RenameProgram(const char* name) {
    std::size_t length = 0;
    while (length < kNameLength && name[length] != '\0') ++length;
    const std::lock_guard lock(m_namesMutex);
    m_names[static_cast<std::size_t>(Program())].assign(name, length);
}

std::vector<std::uint8_t> CProgramBank::Save(bool wholeBank) const {
    const std::lock_guard lock(m_namesMutex);
    const int chosen = Program();
    ChunkContent content{m_pluginId, wholeBank, wholeBank ? static_cast<std::uint32_t>(chosen) : 0u, {}};
    for (int program = wholeBank ? 0 : chosen; program < (wholeBank ? ProgramCount() : chosen + 1); ++program) {
        ChunkProgram& stored = content.programs.emplace_back();
        stored.name = m_names[static_cast<std::size_t>(program)];
        const std::size_t row = static_cast<std::size_t>(program) * m_parameters.size();
        for (std::size_t i = 0; i < m_parameters.size(); ++i) {
            stored.values.push_back(m_values[row + i].load(std::memory_order_relaxed));
        }
    }
    return WriteChunk(content);
}

bool CProgramBank::Load(std::span<const std::uint8_t> chunk, bool wholeBank) {
    const std::optional<ChunkContent> content = ReadChunk(chunk);
    if (!content || content->pluginId != m_pluginId || content->wholeBank != wholeBank) return false;
    const std::lock_guard lock(m_namesMutex);
    const std::size_t first = wholeBank ? 0 : static_cast<std::size_t>(Program());
    const std::size_t count = std::min(content->programs.size(), m_programCount - first);
    for (std::size_t p = 0; p < count; ++p) {
        const ChunkProgram& stored = content->programs[p];
        m_names[first + p] = stored.name.substr(0, kNameLength);
        for (std::size_t i = 0; i < m_parameters.size(); ++i) {
            const float value =
                i < stored.values.size() ? stored.values[i] : m_parameters[i].ToNormalised(m_parameters[i].initial);
            Slot(first + p, i).store(value, std::memory_order_relaxed);
        }
    }
    if (wholeBank && content->chosen < m_programCount) {
        m_program.store(static_cast<int>(content->chosen), std::memory_order_release);
    }
    Touch();
    return true;
}

}  // namespace quibplug
