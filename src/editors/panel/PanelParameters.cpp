// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/PanelParameters.h"

#include <algorithm>
#include <array>

namespace quib {

namespace {

constexpr std::array kControls = {"knob",   "slider", "fader", "switch", "menu",
                                  "choice", "step",   "pick",  "waves",  "cycle"};
constexpr int kSendChoices = 5;  // none, and the four

bool IsBox(const std::string& word) {
    constexpr std::array kBoxes = {"column", "row", "group", "line", "pages", "pads", "matrix"};
    return std::find(kBoxes.begin(), kBoxes.end(), word) != kBoxes.end();
}

class CParameterSearch {
public:
    explicit CParameterSearch(const PanelLayout& layout) {
        FindPages(layout.statements);
        Search(layout.statements, 0);
    }
    PanelParameters found;

private:
    void FindPages(const std::vector<PanelStatement>& statements) {
        for (const PanelStatement& statement : statements) {
            if (statement.word == "pages") {
                found.stride = std::clamp(statement.Option("stride", 0), 0, 4096);
                pages = std::clamp(statement.Number(0, 1), 1, 64);
            }
            if (statement.word == "pad" && !statement.texts.empty())
                found.pageNames.emplace(statement.Number(0, 0), statement.texts.front());
            FindPages(statement.inside);
        }
    }

    void Search(const std::vector<PanelStatement>& statements, int offset) {
        for (const PanelStatement& statement : statements) {
            const bool paged =
                statement.word == "pages" || statement.word == "pads" ||
                (statement.word == "group" && statement.arguments.size() > 1 && statement.arguments[1] == "page");
            for (int page = 0; page < (paged ? pages : 1); ++page) {
                const int within = paged ? found.stride * page : offset;
                Take(statement, within);
                if (IsBox(statement.word)) Search(statement.inside, within);
            }
        }
    }

    void Take(const PanelStatement& statement, int offset) {
        if (std::find(kControls.begin(), kControls.end(), statement.word) != kControls.end()) {
            if (!statement.arguments.empty()) TakeControl(statement, PanelParameter(statement.arguments[0], offset));
        } else if (statement.word == "from") {
            for (std::size_t column = 1; column < statement.arguments.size(); ++column)
                Place(PanelParameter(statement.arguments[column], offset));
        }
    }

    void TakeControl(const PanelStatement& statement, std::optional<int> parameter) {
        Place(parameter);
        if (!parameter) return;
        int steps = 0;
        if (statement.word == "switch") steps = 2;
        if (statement.Word("names") == "sends") steps = kSendChoices;
        const bool named = statement.word == "pick" || statement.word == "waves" || statement.word == "cycle" ||
                           statement.word == "menu";
        if (steps == 0 && named) steps = static_cast<int>(statement.texts.size());
        if (steps > 1) found.steps[*parameter] = steps;
    }

    void Place(std::optional<int> parameter) {
        if (parameter && *parameter >= 0) found.placed.insert(*parameter);
    }

    int pages = 1;
};

}  // namespace

int PanelParameters::StepsOf(int parameter) const {
    const auto known = steps.find(parameter);
    return known != steps.end() ? known->second : 0;
}

PanelParameters ParametersOf(const PanelLayout& layout) { return CParameterSearch(layout).found; }

int PanelHeaderHeight(const PanelLayout& layout) noexcept {
    constexpr int kSmall = 400;  // panels of effects are lower
    return layout.height < kSmall ? 40 : 44;
}

int PanelBodyHeight(const PanelLayout& layout) noexcept { return layout.height - PanelHeaderHeight(layout); }

std::optional<int> PanelParameter(const std::string& word, int offset) noexcept {
    if (!word.starts_with('@')) return WholeNumber(word);
    const auto within = WholeNumber(std::string_view(word).substr(1));
    return within ? std::optional(*within + offset) : std::nullopt;
}

bool IsPanelRole(const std::string& option) {
    constexpr std::array kLook = {"w", "h", "r", "columns", "zero", "accent", "at", "if", "on", "periods", "names"};
    return std::find(kLook.begin(), kLook.end(), option) == kLook.end();
}

}  // namespace quib
