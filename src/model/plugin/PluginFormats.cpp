// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/PluginFormats.h"

#include <algorithm>
#include <array>

#include "model/plugin/vst2/CVst2Plugin.h"

namespace quib {

namespace {

constexpr std::array<std::string_view, 3> kVst2Elsewhere = {".dll", ".dylib", ".vst"};

constexpr std::array<PluginFormat, 1> kFormats = {{
    {"vst2", ".so", kVst2Elsewhere, false, &CVst2Plugin::Load},
}};

// ASCII only: the same in every locale.
char LowerCase(char character) noexcept {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

}  // namespace

std::span<const PluginFormat> PluginFormats() noexcept { return kFormats; }

bool HasExtension(std::string_view fileName, std::string_view extension) noexcept {
    if (fileName.size() < extension.size()) return false;
    const std::string_view end = fileName.substr(fileName.size() - extension.size());
    return std::equal(end.begin(), end.end(), extension.begin(),
                      [](char is, char wanted) { return LowerCase(is) == wanted; });
}

bool HasPluginExtension(const std::filesystem::path& file) {
    const std::string extension = file.extension().string();
    return std::any_of(kFormats.begin(), kFormats.end(), [&extension](const PluginFormat& format) {
        return extension.size() == format.extension.size() && HasExtension(extension, format.extension);
    });
}

std::string_view WithoutPluginExtension(std::string_view fileName) noexcept {
    const auto strip = [&fileName](std::string_view extension) {
        const bool has = HasExtension(fileName, extension);
        if (has) fileName.remove_suffix(extension.size());
        return has;
    };
    for (const PluginFormat& format : PluginFormats()) {
        if (strip(format.extension)) return fileName;
        for (const std::string_view foreign : format.foreignExtensions) {
            if (strip(foreign)) return fileName;
        }
    }
    return fileName;
}

}  // namespace quib
