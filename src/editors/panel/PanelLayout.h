// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The text that lays out the panel of a plug-in: one statement a line, two spaces deeper is inside of it. Pure
// functions, any thread.
//
//   panel 1 vst2:QbDl 560 300        version, whose panel it is, width and height in skin pixels
//   column *                         a word, its arguments ("*" is an equal share of what is left)
//     knob 9 "Ping pong" r=16        texts in quotation marks, "English|French"; options NAME=VALUE
//   # a comment

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quib {

struct PanelText {
    std::string english;
    std::string french;  // the English where the layout has no other
};

struct PanelStatement {
    std::string word;
    std::vector<std::string> arguments;
    std::vector<PanelText> texts;
    std::map<std::string, std::string> options;
    std::vector<PanelStatement> inside;

    bool Is(std::initializer_list<const char*> words) const noexcept;
    // The argument as a whole number; `fallback` where it is missing or something else.
    int Number(std::size_t argument, int fallback) const noexcept;
    // The same of an option.
    int Option(const char* name, int fallback) const noexcept;
    const std::string& Word(const char* option) const noexcept;  // empty where it is missing
};

struct PanelLayout {
    static constexpr std::size_t kMaximumBytes = 64 * 1024;
    static constexpr int kMaximumStatements = 2000;
    static constexpr int kMaximumDepth = 8;
    static constexpr int kLargestSide = 4096;  // skin pixels

    std::string identity;  // as PluginIdentity::Key
    int width = 0;         // skin pixels
    int height = 0;
    std::vector<PanelStatement> statements;
};

// Nothing, with the reason in `error`, for what is no layout or breaks its limits.
std::optional<PanelLayout> ReadPanelLayout(std::string_view text, std::string& error);

// The whole number that all of the text is.
std::optional<int> WholeNumber(std::string_view text) noexcept;

}  // namespace quib
