// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One flat JSON object, built field by field in order. Texts that are not valid UTF-8 lose the bytes
// that are not.

#include <cmath>
#include <concepts>
#include <string>
#include <string_view>
#include <vector>

namespace quib {

class CJsonObject {
public:
    void Add(std::string_view name, std::string_view text);
    void Add(std::string_view name, const char* text) { Add(name, std::string_view(text)); }
    void Add(std::string_view name, bool value) { AddRaw(name, value ? "true" : "false"); }
    void Add(std::string_view name, double value);
    void Add(std::string_view name, std::integral auto value) { AddRaw(name, std::to_string(value)); }
    void Add(std::string_view name, const std::vector<std::string>& texts);

    std::string Text() const { return "{" + fields + "}"; }

private:
    void AddRaw(std::string_view name, std::string_view value);

    std::string fields;
};

}  // namespace quib
