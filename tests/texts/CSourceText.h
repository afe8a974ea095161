// SPDX-License-Identifier: GPL-3.0-or-later
#include "Testing.h"
#pragma once

// The string literals and numbers of C++ sources, and which of them name a text of the windows.

namespace quib {

class CSourceText {
public:
    // Reads every source below `folder`; may be called for several.
    void Read(const std::filesystem::path& folder);

    // "file: text" of the arguments of Text() and of the functions that take the name of a text.
    struct Place {
        std::string file;
        std::string text;
    };
    const std::vector<Place>& Texts() const noexcept { return texts; }
    // What reads like words of a sentence, but goes to the windows past the tables.
    const std::vector<Place>& Sentences() const noexcept { return sentences; }
    const std::set<std::string>& Literals() const noexcept { return literals; }
    const std::set<std::string>& Numbers() const noexcept { return numbers; }

private:
    struct Token {
        enum class EKind { kName, kNumber, kLiteral, kSign } kind;
        std::string text;
    };
    static std::vector<Token> Tokens(const std::string& source);
    static std::string TakeLiteral(const std::string& source, std::size_t& at);
    void TakeCall(const std::string& file, const std::vector<Token>& tokens, std::size_t open);

    std::vector<Place> texts;
    std::vector<Place> sentences;
    std::set<std::string> literals;
    std::set<std::string> numbers;
};

}  // namespace quib
