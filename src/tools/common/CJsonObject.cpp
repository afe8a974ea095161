// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/common/CJsonObject.h"

#include <fmt/format.h>

namespace quib {

namespace {

// Bytes of the UTF-8 sequence that starts `text`, or 0 if it is none.
std::size_t SequenceLength(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    const std::size_t length = first < 0x80 ? 1 : first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : first >= 0xc2 ? 2 : 0;
    if (length == 0 || first > 0xf4 || length > text.size()) return 0;
    for (std::size_t index = 1; index < length; ++index) {
        if ((static_cast<unsigned char>(text[index]) & 0xc0) != 0x80) return 0;
    }
    return length;
}

std::string Quoted(std::string_view text) {
    std::string quoted = "\"";
    while (!text.empty()) {
        const std::size_t length = SequenceLength(text);
        const char first = text.front();
        if (length == 1 && (first == '"' || first == '\\')) {
            quoted += '\\';
            quoted += first;
        } else if (length == 1 && static_cast<unsigned char>(first) < 0x20) {
            quoted += fmt::format("\\u{:04x}", static_cast<unsigned>(first));
        } else {
            quoted += text.substr(0, length);
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return quoted + '"';
}

}  // namespace

void CJsonObject::AddRaw(std::string_view name, std::string_view value) {
    if (!fields.empty()) fields += ", ";
    fields += Quoted(name);
    fields += ": ";
    fields += value;
}

void CJsonObject::Add(std::string_view name, std::string_view text) { AddRaw(name, Quoted(text)); }

void CJsonObject::Add(std::string_view name, double value) {
    AddRaw(name, std::isfinite(value) ? fmt::format("{:.9g}", value) : "null");
}

void CJsonObject::Add(std::string_view name, const std::vector<std::string>& texts) {
    std::string list;
    for (const std::string& text : texts) list += (list.empty() ? "" : ", ") + Quoted(text);
    AddRaw(name, "[" + list + "]");
}

}  // namespace quib
