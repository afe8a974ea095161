// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/PanelLayout.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>

namespace quib {

namespace {

constexpr int kIndent = 2;
const std::string kNoWord;

PanelText TextOf(std::string_view quoted) {
    const std::size_t bar = quoted.find('|');
    if (bar == std::string_view::npos) return {std::string(quoted), std::string(quoted)};
    return {std::string(quoted.substr(0, bar)), std::string(quoted.substr(bar + 1))};
}

// "vst2:QbSy" and "vst2:0x51625379" name the same plug-in: its number as eight hexadecimal digits.
std::optional<std::string> IdentityOf(std::string_view name) {
    const std::size_t colon = name.find(':');
    if (colon == std::string_view::npos || colon == 0) return std::nullopt;
    std::string_view id = name.substr(colon + 1);
    std::uint32_t number = 0;
    if (id.starts_with("0x")) {
        id.remove_prefix(2);
        const auto [end, failure] = std::from_chars(id.data(), id.data() + id.size(), number, 16);
        if (failure != std::errc() || end != id.data() + id.size()) return std::nullopt;
    } else {
        if (id.size() != 4) return std::nullopt;
        for (const char letter : id) number = number << 8 | static_cast<unsigned char>(letter);
    }
    std::array<char, 9> digits{};
    std::snprintf(digits.data(), digits.size(), "%08x", number);
    return std::string(name.substr(0, colon + 1)) + digits.data();
}

class CLayoutReader {
public:
    std::optional<PanelLayout> Read(std::string_view text, std::string& error) {
        if (text.size() > PanelLayout::kMaximumBytes) Fail("is larger than 64 kB");
        if (text.find('\0') != std::string_view::npos) Fail("is no text");
        for (; reason.empty() && !text.empty(); ++line) {
            const std::size_t end = std::min(text.find('\n'), text.size());
            ReadLine(text.substr(0, end));
            text.remove_prefix(std::min(text.size(), end + 1));
        }
        if (reason.empty() && layout.identity.empty()) Fail("does not begin with a panel");
        if (reason.empty()) return std::move(layout);
        error = "line " + std::to_string(line) + ": " + reason;
        return std::nullopt;
    }

private:
    void Fail(const char* why) {
        if (reason.empty()) reason = why;
    }

    void ReadLine(std::string_view text) {
        if (text.ends_with('\r')) text.remove_suffix(1);
        const std::size_t indent = text.find_first_not_of(' ');
        if (indent == std::string_view::npos || text[indent] == '#') return;
        PanelStatement statement = Split(text.substr(indent));
        if (++count > PanelLayout::kMaximumStatements) return Fail("more than 2000 statements");
        if (layout.identity.empty()) return ReadPanel(statement);
        const std::size_t depth = indent / kIndent;
        if (indent % kIndent != 0 || depth >= open.size()) return Fail("stands inside of nothing");
        if (depth >= PanelLayout::kMaximumDepth) return Fail("is more than 8 deep");
        // What is deeper was closed by this line; what it was in has not moved since.
        open.resize(depth + 1);
        open.back()->push_back(std::move(statement));
        open.push_back(&open.back()->back().inside);
    }

    void ReadPanel(const PanelStatement& statement) {
        const auto identity =
            statement.arguments.size() == 4 ? IdentityOf(statement.arguments[1]) : std::optional<std::string>();
        layout.width = statement.Number(2, 0);
        layout.height = statement.Number(3, 0);
        const bool sized = layout.width > 0 && layout.height > 0 && layout.width <= PanelLayout::kLargestSide &&
                           layout.height <= PanelLayout::kLargestSide;
        if (statement.word != "panel" || statement.Number(0, 0) != 1 || !identity || !sized)
            return Fail("a layout begins with: panel 1 FORMAT:IDENTITY WIDTH HEIGHT");
        layout.identity = *identity;
    }

    PanelStatement Split(std::string_view text) {
        PanelStatement statement;
        while (true) {
            const std::size_t start = text.find_first_not_of(" \t");
            if (start == std::string_view::npos) return statement;
            text.remove_prefix(start);
            if (text.front() == '"') {
                text.remove_prefix(1);
                const auto quote = static_cast<std::size_t>(std::ranges::find(text, '"') - text.begin());
                if (quote == text.size()) Fail("a text without its end");
                statement.texts.push_back(TextOf(text.substr(0, quote)));
                text.remove_prefix(std::min(text.size(), quote + 1));
                continue;
            }
            const std::size_t end = std::min(text.find_first_of(" \t"), text.size());
            AddWord(statement, text.substr(0, end));
            text.remove_prefix(end);
        }
    }

    static void AddWord(PanelStatement& statement, std::string_view word) {
        const std::size_t equals = word.find('=');
        if (statement.word.empty()) {
            statement.word = word;
        } else if (equals != std::string_view::npos && equals > 0) {
            statement.options.insert_or_assign(std::string(word.substr(0, equals)),
                                               std::string(word.substr(equals + 1)));
        } else {
            statement.arguments.emplace_back(word);
        }
    }

    PanelLayout layout;
    std::vector<std::vector<PanelStatement>*> open{&layout.statements};  // what each depth adds to
    std::string reason;
    int line = 1;
    int count = 0;
};

}  // namespace

std::optional<int> WholeNumber(std::string_view text) noexcept {
    int number = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (failure != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

bool PanelStatement::Is(std::initializer_list<const char*> words) const noexcept {
    return std::any_of(words.begin(), words.end(), [this](const char* other) { return word == other; });
}

int PanelStatement::Number(std::size_t argument, int fallback) const noexcept {
    return argument < arguments.size() ? WholeNumber(arguments[argument]).value_or(fallback) : fallback;
}

int PanelStatement::Option(const char* name, int fallback) const noexcept {
    return WholeNumber(Word(name)).value_or(fallback);
}

const std::string& PanelStatement::Word(const char* option) const noexcept {
    const auto found = options.find(option);
    return found != options.end() ? found->second : kNoWord;
}

std::optional<PanelLayout> ReadPanelLayout(std::string_view text, std::string& error) {
    return CLayoutReader().Read(text, error);
}

}  // namespace quib
