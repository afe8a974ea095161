// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/CPanelBuilder.h"

#include <algorithm>

#include "editors/panel/PanelLook.h"
#include "editors/panel/PanelMeasures.h"
#include "editors/panel/PanelParameters.h"
#include "texts/Texts.h"

namespace quib {

namespace {

using namespace panelMeasures;

constexpr int kPickHeight = 20;

// Lengths along an extent: each in pixels, or -1 for an equal share of what the others leave.
std::vector<int> Shares(const std::vector<int>& wanted, int extent, int gap) {
    int left = extent - gap * (static_cast<int>(wanted.size()) - 1);
    int open = 0;
    for (const int length : wanted) length < 0 ? ++open : left -= length;
    std::vector<int> lengths;
    int given = 0;
    int index = 0;
    for (const int length : wanted) {
        if (length >= 0) {
            lengths.push_back(length);
            continue;
        }
        ++index;
        const int end = std::max(0, left) * index / open;
        lengths.push_back(end - given);
        given = end;
    }
    return lengths;
}

// A length of a statement; -1 for "*" and for one without.
int Length(const PanelStatement& statement) { return statement.Number(0, -1); }

// What stands in cells of equal width without a gap.
bool IsCell(const PanelStatement& statement) { return statement.Is({"knob", "fader", "step"}); }

}  // namespace

CPanelBuilder::CPanelBuilder(CPanel& builtPanel, const PanelLayout& panelLayout, CPanelValues& panelValues,
                             int shownPage)
    : panel(builtPanel),
      layout(panelLayout),
      values(panelValues),
      page(shownPage),
      parameters(ParametersOf(panelLayout)) {}

void CPanelBuilder::Build() {
    for (const int parameter : parameters.placed) {
        if (parameter < values.Count()) panel.placed[static_cast<std::size_t>(parameter)] = true;
    }
    const QRect body(kMargin, kMargin, layout.width - 2 * kMargin, PanelBodyHeight(layout) - 2 * kMargin);
    Columns(layout.statements, body);
    PutRest(QRect(kMargin, PanelBodyHeight(layout), body.width(), 0));
}

// --- Boxes -----------------------------------------------------------------------------------------------------

std::vector<const PanelStatement*> CPanelBuilder::Shown(const std::vector<PanelStatement>& inside) {
    std::vector<const PanelStatement*> shown;
    for (const PanelStatement& statement : inside) {
        const std::string& condition = statement.Word("if");
        if (condition.empty() || MeetsCondition(condition)) shown.push_back(&statement);
    }
    return shown;
}

void CPanelBuilder::Columns(const std::vector<PanelStatement>& inside, const QRect& place) {
    const auto shown = Shown(inside);
    std::vector<int> wanted;
    for (const PanelStatement* const statement : shown) wanted.push_back(Length(*statement));
    const auto widths = Shares(wanted, place.width(), kGap);
    int x = place.x();
    for (std::size_t index = 0; index < shown.size(); ++index) {
        if (shown[index]->word == "column") Column(shown[index]->inside, {x, place.y(), widths[index], place.height()});
        x += widths[index] + kGap;
    }
}

void CPanelBuilder::Column(const std::vector<PanelStatement>& inside, const QRect& place) {
    const auto shown = Shown(inside);
    std::vector<int> wanted;
    for (const PanelStatement* const statement : shown)
        wanted.push_back(statement->word == "picture" ? statement->Option("h", -1) : Length(*statement));
    const auto heights = Shares(wanted, place.height(), kGap);
    int y = place.y();
    for (std::size_t index = 0; index < shown.size(); ++index) {
        const PanelStatement& statement = *shown[index];
        const QRect box(place.x(), y, place.width(), heights[index]);
        y += heights[index] + kGap;
        if (statement.word == "row") {
            Row(statement.inside, box);
        } else if (statement.word == "group") {
            Group(statement, box);
        } else {
            Put(statement, box);
        }
    }
}

void CPanelBuilder::Row(const std::vector<PanelStatement>& inside, const QRect& place) {
    const auto shown = Shown(inside);
    std::vector<int> wanted;
    for (const PanelStatement* const statement : shown) wanted.push_back(Length(*statement));
    const auto widths = Shares(wanted, place.width(), kGap);
    int x = place.x();
    for (std::size_t index = 0; index < shown.size(); ++index) {
        const QRect box(x, place.y(), widths[index], place.height());
        shown[index]->word == "group" ? Group(*shown[index], box) : Put(*shown[index], box);
        x += widths[index] + kGap;
    }
}

void CPanelBuilder::Group(const PanelStatement& group, const QRect& place) {
    const bool paged = group.arguments.size() > 1 && group.arguments[1] == "page";
    const ESection outer = section;
    section = SectionNamed(group.arguments.empty() ? std::string() : group.arguments.back()).value_or(section);
    QString title = group.texts.empty() ? QString() : InLanguage(group.texts.front());
    if (paged) {
        const auto name = parameters.pageNames.find(page);
        title = name != parameters.pageNames.end() ? InLanguage(name->second) : QString::number(page + 1);
        offset = parameters.stride * page;
    }
    panel.frames.push_back({place, title, section});
    const QRect contents = place.adjusted(kMargin, title.isEmpty() ? kMargin : kTitled, -kMargin, -kMargin);
    Inside(group.inside, contents, place);
    section = outer;
    offset = 0;
}

// From top to bottom: lines of their height, a pick as high as it needs to be, the rest what is left.
void CPanelBuilder::Inside(const std::vector<PanelStatement>& inside, QRect place, const QRect& title) {
    std::vector<const PanelStatement*> stacked;
    std::vector<int> wanted;
    for (const PanelStatement* const statement : Shown(inside)) {
        if (statement->Word("at") == "title") {
            const int width = statement->Option("w", 120);
            Put(*statement, {title.right() - kMargin - width + 1, title.y() + 6, width, kPickHeight});
            continue;
        }
        stacked.push_back(statement);
        int height = -1;
        if (statement->word == "line") height = Length(*statement);
        if (statement->word == "picture") height = statement->Option("h", -1);
        if (statement->Is({"pick", "menu", "switch", "text"})) height = statement->Option("h", kPickHeight);
        wanted.push_back(height);
    }
    const auto heights = Shares(wanted, place.height(), kInnerGap);
    int y = place.y();
    for (std::size_t index = 0; index < stacked.size(); ++index) {
        const QRect box(place.x(), y, place.width(), heights[index]);
        stacked[index]->word == "line" ? Line(stacked[index]->inside, box) : Put(*stacked[index], box);
        y += heights[index] + kInnerGap;
    }
}

void CPanelBuilder::Line(const std::vector<PanelStatement>& inside, const QRect& place) {
    const auto shown = Shown(inside);
    const bool cells =
        std::all_of(shown.begin(), shown.end(), [](const auto* statement) { return IsCell(*statement); });
    std::vector<int> wanted;
    for (const PanelStatement* const statement : shown) wanted.push_back(statement->Option("w", -1));
    const int gap = cells ? 0 : kInnerGap;
    const auto widths = Shares(wanted, place.width(), gap);
    int x = place.x();
    for (std::size_t index = 0; index < shown.size(); ++index) {
        Put(*shown[index], {x, place.y(), widths[index], place.height()});
        x += widths[index] + gap;
    }
}

void CPanelBuilder::Put(const PanelStatement& statement, const QRect& place) {
    if (place.width() < 4 || place.height() < 4) return;
    if (statement.word == "picture") return PutPicture(statement, place);
    if (statement.word == "matrix") return PutMatrix(statement, place);
    if (statement.word == "pads") return PutPads(statement, place);
    if (statement.word == "pages") return PutPages(statement, place);
    if (statement.word == "host") return PutHost(statement, place);
    if (statement.word == "text") {
        if (!statement.texts.empty()) panel.labels.push_back({place, InLanguage(statement.texts.front())});
        return;
    }
    const int parameter = statement.arguments.empty() ? -1 : Parameter(statement.arguments.front());
    if (parameter >= 0) PutControl(statement, place, parameter);
}

// --- Parameters ----------------------------------------------------------------------------------------------------

// -1 where the layout names none, or one that the plug-in does not have.
int CPanelBuilder::Parameter(const std::string& word) {
    const auto number = PanelParameter(word, offset);
    return number && *number >= 0 && *number < values.Count() ? *number : -1;
}

QStringList CPanelBuilder::StepNames(const PanelStatement& statement, int parameter) const {
    if (statement.Word("names") == "sends") {
        QStringList names{Text("None")};
        for (int send = 1; send <= 4; ++send) names += QStringLiteral("S%1").arg(send);
        return names;
    }
    QStringList names;
    for (const PanelText& text : statement.texts) names += QString::fromStdString(text.english);
    return names.size() == parameters.StepsOf(parameter) ? names : QStringList();
}

QString CPanelBuilder::Caption(const PanelStatement& statement, int parameter) const {
    return statement.texts.empty() ? values.Name(parameter) : InLanguage(statement.texts.front());
}

// "I:N" or "I:N..M".
bool CPanelBuilder::MeetsCondition(const std::string& condition) {
    const std::size_t colon = condition.find(':');
    const int parameter = Parameter(condition.substr(0, colon));
    if (colon == std::string::npos || parameter < 0) return true;
    const std::string range = condition.substr(colon + 1);
    const std::size_t dots = range.find("..");
    const int low = WholeNumber(range.substr(0, dots)).value_or(0);
    const int high = dots == std::string::npos ? low : WholeNumber(range.substr(dots + 2)).value_or(low);
    panel.conditions.push_back({parameter, low, high, parameters.StepsOf(parameter)});
    return panel.conditions.back().Holds(values);
}

}  // namespace quib
