// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// All programs of a plug-in instance, the chosen one and their parameter values. The host's threads
// write it while the render thread reads it: values and choice are single atomics, so choosing a
// program changes all parameters at once. Names and chunks are for the host's threads alone.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "dsp/ParameterSpec.h"

namespace quibplug {

class CProgramBank {
public:
    static constexpr std::size_t kNameLength = 23;

    CProgramBank(std::int32_t pluginId, std::span<const ParameterSpec> parameters,
                 std::span<const ProgramSpec> programs);

    int ParameterCount() const noexcept { return static_cast<int>(m_parameters.size()); }
    int ProgramCount() const noexcept { return static_cast<int>(m_programCount); }
    const ParameterSpec& Parameter(int index) const noexcept { return m_parameters[static_cast<std::size_t>(index)]; }

    // Normalised value of the chosen program; 0 for an index out of range. Any thread.
    float Value(int parameter) const noexcept;
    // Ignored when the index is out of range or the value is not a number; else limited to 0..1.
    void SetValue(int parameter, float normalised) noexcept;

    int Program() const noexcept { return m_program.load(std::memory_order_acquire); }
    // Ignored when out of range. Any thread.
    void SelectProgram(int program) noexcept;

    // Goes up with every change of a value or of the choice. Any thread.
    std::uint32_t Generation() const noexcept { return m_generation.load(std::memory_order_acquire); }

    std::string ProgramName(int program) const;
    void RenameProgram(const char* name);

    // The bank, or the chosen program alone, as bytes that load on any machine.
    std::vector<std::uint8_t> Save(bool wholeBank) const;
    // Takes over what Save made. A truncated, damaged or foreign chunk answers false and changes
    // nothing. Parameters newer than the chunk go to their initial values, which leave a sound as it
    // was before there were any; programs that it does not know stay as they are.
    bool Load(std::span<const std::uint8_t> chunk, bool wholeBank);

private:
    std::atomic<float>& Slot(std::size_t program, std::size_t parameter) noexcept {
        return m_values[program * m_parameters.size() + parameter];
    }
    void Touch() noexcept { m_generation.fetch_add(1, std::memory_order_release); }

    const std::int32_t m_pluginId;
    const std::span<const ParameterSpec> m_parameters;
    const std::size_t m_programCount;
    std::vector<std::atomic<float>> m_values;  // one row of parameters per program
    std::atomic<int> m_program = 0;
    std::atomic<std::uint32_t> m_generation = 1;
    mutable std::mutex m_namesMutex;  // never taken on a render thread
    std::vector<std::string> m_names;
};

}  // namespace quibplug
