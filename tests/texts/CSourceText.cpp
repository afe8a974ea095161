// SPDX-License-Identifier: GPL-3.0-or-later
#include "texts/CSourceText.h"

#include <QRegularExpression>

namespace quib {

namespace {

// Their literal arguments are texts of the tables.
const std::set<std::string> kTakeTexts = {"Text", "TextKey", "BindValue", "BindLevel"};

bool IsWord(char letter) { return std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '_'; }

char Unescaped(char letter) { return letter == 'n' ? '\n' : letter == 'r' ? '\r' : letter == 't' ? '\t' : letter; }

}  // namespace

void CSourceText::Read(const std::filesystem::path& folder) {
    const QRegularExpression sentence("[A-Za-z]{2,} [A-Za-z]{3,}");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::filesystem::path& path = entry.path();
        if (path.extension() != ".cpp" && path.extension() != ".h") continue;
        std::stringstream source;
        source << std::ifstream(path).rdbuf();
        const std::vector<Token> tokens = Tokens(source.str());
        const std::string file = path.filename().string();
        for (std::size_t i = 0; i < tokens.size(); ++i) {
            const Token& token = tokens[i];
            if (token.kind == Token::EKind::kNumber) numbers.insert(token.text);
            if (token.kind == Token::EKind::kLiteral) literals.insert(token.text);
            if (token.kind != Token::EKind::kName || i + 2 >= tokens.size() || tokens[i + 1].text != "(") continue;
            if (kTakeTexts.count(token.text) != 0) TakeCall(file, tokens, i + 1);
            const std::string& argument = tokens[i + 2].text;
            if (token.text == "QStringLiteral" && sentence.match(QString::fromStdString(argument)).hasMatch()) {
                sentences.push_back({file, argument});
            }
        }
    }
}

// The literals that are arguments of the call itself, not of one inside it.
void CSourceText::TakeCall(const std::string& file, const std::vector<Token>& tokens, std::size_t open) {
    int depth = 0;
    for (std::size_t i = open; i < tokens.size(); ++i) {
        const Token& token = tokens[i];
        if (token.kind == Token::EKind::kLiteral && depth == 1) texts.push_back({file, token.text});
        if (token.kind != Token::EKind::kSign) continue;
        if (token.text == "(" || token.text == "{") ++depth;
        if ((token.text == ")" || token.text == "}") && --depth == 0) return;
    }
}

std::vector<CSourceText::Token> CSourceText::Tokens(const std::string& source) {
    std::vector<Token> tokens;
    for (std::size_t at = 0; at < source.size();) {
        const char letter = source[at];
        if (source.compare(at, 2, "//") == 0) {
            at = std::min(source.find('\n', at), source.size());
        } else if (source.compare(at, 2, "/*") == 0) {
            at = std::min(source.find("*/", at), source.size() - 2) + 2;
        } else if (letter == '\'') {
            at += source[at + 1] == '\\' ? 4 : 3;
        } else if (letter == '"') {
            const std::string text = TakeLiteral(source, at);
            const bool goesOn = !tokens.empty() && tokens.back().kind == Token::EKind::kLiteral;
            if (goesOn) tokens.back().text += text;
            if (!goesOn) tokens.push_back({Token::EKind::kLiteral, text});
        } else if (IsWord(letter)) {
            const std::size_t start = at;
            while (at < source.size() && (IsWord(source[at]) || (source[at] == '\'' && IsWord(source[at + 1])))) ++at;
            const bool number = std::isdigit(static_cast<unsigned char>(letter)) != 0;
            tokens.push_back({number ? Token::EKind::kNumber : Token::EKind::kName, source.substr(start, at - start)});
        } else {
            if (std::isspace(static_cast<unsigned char>(letter)) == 0) {
                tokens.push_back({Token::EKind::kSign, std::string(1, letter)});
            }
            ++at;
        }
    }
    return tokens;
}

std::string CSourceText::TakeLiteral(const std::string& source, std::size_t& at) {
    std::string text;
    for (++at; at < source.size() && source[at] != '"'; ++at) {
        text += source[at] == '\\' ? Unescaped(source[++at]) : source[at];
    }
    ++at;
    return text;
}

}  // namespace quib
