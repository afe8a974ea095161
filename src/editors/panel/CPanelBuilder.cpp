// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/CPanelBuilder.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "controls/CFaderCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/SkinNumbers.h"
#include "document/LoopFolders.h"
#include "editors/panel/CAmountCtrl.h"
#include "editors/panel/CChoiceCtrl.h"
#include "editors/panel/CLoopTableCtrl.h"
#include "editors/panel/CLoopWaveCtrl.h"
#include "editors/panel/CPadsCtrl.h"
#include "editors/panel/CPanelKnobCtrl.h"
#include "editors/panel/CPickCtrl.h"
#include "editors/panel/CPictureCtrl.h"
#include "editors/panel/CProgramListCtrl.h"
#include "editors/panel/PanelLook.h"
#include "editors/panel/PanelParameters.h"
#include "editors/panel/pictures/CPanelPicture.h"
#include "model/plugin/CPlugin.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kMargin = 8;
constexpr int kGap = 8;       // between groups, and between what is no knob
constexpr int kInnerGap = 4;  // between the lines of a group
constexpr int kTitled = 28;   // where the contents of a group with a title begin
constexpr int kRadius = 14;   // of a knob's disc
constexpr int kPickHeight = 20;
constexpr int kPickFoot = kFieldHeight + kGap;  // of a list: the button below it

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

bool IsOneOf(const std::string& word, std::initializer_list<const char*> words) {
    return std::any_of(words.begin(), words.end(), [&word](const char* other) { return word == other; });
}

// A length of a statement; -1 for "*" and for one without.
int Length(const PanelStatement& statement) { return statement.Number(0, -1); }

// What stands in cells of equal width without a gap.
bool IsCell(const PanelStatement& statement) { return IsOneOf(statement.word, {"knob", "fader", "step"}); }

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
        if (IsOneOf(statement->word, {"pick", "menu", "switch", "text"})) height = statement->Option("h", kPickHeight);
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

// --- What stands in them -----------------------------------------------------------------------------------------

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

void CPanelBuilder::PutControl(const PanelStatement& statement, const QRect& place, int parameter) {
    const std::string& word = statement.word;
    CControl* control = nullptr;
    const float zero = statement.Word("zero").empty() ? 0 : QString::fromStdString(statement.Word("zero")).toFloat();
    const QString caption = Caption(statement, parameter);
    const QRect field(place.x(), place.y() + (place.height() - std::min(place.height(), kFieldHeight)) / 2,
                      place.width(), std::min(place.height(), kFieldHeight));
    if (word == "knob") {
        const int wantedRadius = statement.Option("r", kRadius);
        auto& knob = panel.Add<CPanelKnobCtrl>(place, wantedRadius, values, parameter);
        knob.zero = zero;
        knob.caption = caption;
        control = &knob;
    } else if (word == "fader") {
        auto& fader =
            panel.Add<CFaderCtrl>(0U, place.x() + (place.width() - 20) / 2, place.y(), 20,
                                  std::min(place.height(), statement.Option("h", place.height())), nullptr, true);
        values.Connect(fader, parameter);
        control = &fader;
    } else if (word == "slider") {
        auto& slider = panel.Add<CAmountCtrl>(place, values, parameter);
        slider.zero = zero;
        control = &slider;
    } else if (word == "switch") {
        auto& onOff = panel.Add<CSwitchCtrl>(0U, field.x(), field.y(), field.width(), field.height(), nullptr, caption);
        values.Connect(onOff, parameter);
        control = &onOff;
    } else if (IsOneOf(word, {"pick", "waves", "cycle", "menu"}) && StepNames(statement, parameter).size() > 1) {
        const QStringList names = StepNames(statement, parameter);
        auto& pick = panel.Add<CPickCtrl>(statement.Word("columns").empty() && word != "waves" ? field : place, values,
                                          parameter, names);
        pick.columns = statement.Option("columns", 0);
        pick.waves = word == "waves";
        pick.cycles = word == "cycle";
        if (statement.Word("names").empty()) {
            for (const PanelText& text : statement.texts) pick.shown += InLanguage(text);
        }
        control = &pick;
    } else if (IsOneOf(word, {"choice", "step", "menu", "pick", "waves", "cycle"})) {
        auto& choice = panel.Add<CChoiceCtrl>(place, values, parameter);
        choice.caption = caption;
        choice.steps = parameters.StepsOf(parameter);
        control = &choice;
    }
    if (control == nullptr) return;
    control->section = SectionNamed(statement.Word("accent")).value_or(section);
    const std::string& enabling = statement.Word("on");
    if (!enabling.empty()) control->enabled = MeetsCondition(enabling);
    control->infoText = values.Name(parameter);
}

void CPanelBuilder::PutPicture(const PanelStatement& statement, const QRect& place) {
    const std::string kind = statement.arguments.empty() ? std::string() : statement.arguments.front();
    auto picture = MakePicture(kind, std::max(1, statement.Option("periods", 2)));
    if (!picture) return;
    std::map<std::string, int> roles;
    for (const auto& [role, text] : statement.options) {
        if (!IsPanelRole(role)) continue;
        // Of two parameters the first counts while the delay keeps to notes.
        const std::size_t comma = text.find(',');
        std::string chosen = text;
        if (comma != std::string::npos) {
            const int sync = Parameter(statement.Word("sync"));
            const bool notes = sync >= 0 && values.Get(sync) >= 0.5F;
            chosen = notes ? text.substr(0, comma) : text.substr(comma + 1);
            if (sync >= 0) panel.conditions.push_back({sync, 1, 1, 2});
        }
        const int parameter = Parameter(chosen);
        if (parameter >= 0) roles[role] = parameter;
    }
    auto& control = panel.Add<CPictureCtrl>(place, CPictureRoles(values, std::move(roles)), std::move(picture));
    control.section = SectionNamed(statement.Word("accent")).value_or(section);
}

void CPanelBuilder::PutMatrix(const PanelStatement& statement, const QRect& place) {
    constexpr int kHead = 66;  // the names of the sources
    constexpr int kRow = 20;
    constexpr int kCellWidth = 48;
    const int columns = static_cast<int>(statement.texts.size());
    if (columns == 0) return;
    const int way = (place.width() - kHead) / columns;
    for (int column = 0; column < columns; ++column)
        panel.labels.push_back({QRect(place.x() + kHead + column * way, place.y(), way, 16),
                                InLanguage(statement.texts[static_cast<std::size_t>(column)]), Qt::AlignCenter});
    int y = place.y() + 18;
    for (const PanelStatement& row : statement.inside) {
        if (row.word != "from" || row.texts.empty() || row.arguments.empty()) continue;
        panel.labels.push_back({QRect(place.x(), y, kHead - 4, kRow), InLanguage(row.texts.front())});
        for (std::size_t column = 0; column < statement.texts.size() && column + 1 < row.arguments.size(); ++column) {
            const QRect cell(place.x() + kHead + static_cast<int>(column) * way + (way - kCellWidth) / 2, y, kCellWidth,
                             kRow);
            const int parameter = Parameter(row.arguments[column + 1]);
            if (parameter < 0) {
                panel.labels.push_back({cell, QStringLiteral("–"), Qt::AlignCenter});
                continue;
            }
            auto& amount = panel.Add<CAmountCtrl>(cell, values, parameter);
            amount.isCell = true;
            // A modulation that goes both ways is nothing in the middle, which its text tells.
            amount.zero = values.IsSigned(parameter) ? 0.5F : 0;
            amount.defaultValue = amount.zero;
            amount.section = SectionNamed(row.arguments.front()).value_or(section);
            amount.infoText = values.Name(parameter);
        }
        y += kRow;
    }
}

void CPanelBuilder::PutPads(const PanelStatement& statement, const QRect& place) {
    std::vector<CPadsCtrl::Pad> pads;
    for (const PanelStatement& line : statement.inside) {
        if (line.word != "pad" || line.texts.empty()) continue;
        CPadsCtrl::Pad pad;
        pad.page = line.Number(0, 0);
        pad.name = InLanguage(line.texts.front());
        for (std::size_t key = 1; key < line.arguments.size(); ++key)
            pad.keys.push_back(std::clamp(line.Number(key, 0), 0, 127));
        pad.chokes = !line.Word("choke").empty();
        offset = parameters.stride * pad.page;
        pad.level = Parameter(statement.Word("level"));
        pad.pan = Parameter(statement.Word("pan"));
        pad.send = Parameter(statement.Word("send"));
        pads.push_back(std::move(pad));
    }
    offset = 0;
    auto& control = panel.Add<CPadsCtrl>(place, values, std::move(pads), statement.Option("columns", 4));
    control.section = section;
    control.page = page;
    control.infoText =
        Text("A click plays the pad: soft at its foot, loud at its top. The right button chooses it silently.");
    control.onChoose = [this_ = &panel](int chosen) { this_->ChoosePage(chosen); };
    control.onPlay = [this_ = &panel](int key, int velocity) { this_->Play(key, velocity); };
}

// Its contents once for each page, side by side, with the names of the pages above.
void CPanelBuilder::PutPages(const PanelStatement& statement, const QRect& place) {
    constexpr int kNames = 18;
    constexpr int kHead = 44;  // the names of the lines
    const int count = std::clamp(statement.Number(0, 1), 1, 64);
    const int way = (place.width() - kHead) / count;
    for (int index = 0; index < count; ++index) {
        const int x = place.x() + kHead + index * way;
        const auto name = parameters.pageNames.find(index);
        if (name != parameters.pageNames.end())
            panel.labels.push_back({QRect(x, place.y(), way, kNames), InLanguage(name->second), Qt::AlignCenter});
        offset = parameters.stride * index;
        int y = place.y() + kNames + kInnerGap;
        for (const PanelStatement& line : statement.inside) {
            const int height = line.Option("h", line.word == "cycle" ? 20 : 14);
            if (index == 0 && !line.texts.empty())
                panel.labels.push_back({QRect(place.x(), y, kHead, height), InLanguage(line.texts.front())});
            Put(line, {x + 4, y, way - 8, height});
            y += height + kGap;
        }
    }
    offset = 0;
}

void CPanelBuilder::PutHost(const PanelStatement& statement, const QRect& place) {
    const std::string kind = statement.arguments.empty() ? std::string() : statement.arguments.front();
    if (kind == "loops") return PutLoops(place);
    if (kind == "loop") return PutLoop(place);
    if (kind == "page-copy") return PutPageCopy(place);
    if (kind != "programs") return;
    const QString title = Text("Programs");
    panel.frames.push_back({place, title, ESection::kPattern});
    QStringList names;
    CPlugin& plugin = values.Plugin();
    for (int program = 0; program < plugin.ProgramCount(); ++program)
        names += QString::fromStdString(plugin.ProgramName(program));
    panel.searchPlace = QRect(place.x() + kMargin, place.y() + kTitled, place.width() - 2 * kMargin, kFieldHeight);
    QRect list = place.adjusted(kMargin, kTitled + kFieldHeight + kGap, -kMargin, -kMargin - kPickFoot);
    list.setTop(PutKinds(statement, list) + 1);
    auto& programs = panel.Add<CProgramListCtrl>(list, names, panel.UserPrograms());
    programs.section = ESection::kPattern;
    programs.infoText = Text("A click, or the arrow keys, chooses a program.");
    programs.onChoose = [this_ = &panel](int program) { this_->ChooseProgram(program); };
    programs.onChooseUser = [this_ = &panel](int index) {
        if (this_->onUserProgram) this_->onUserProgram(index);
    };
    ChooseKind(statement, programs);
    panel.programs = &programs;
    Button(QRect(list.x(), list.bottom() + 1 + kGap, list.width(), kFieldHeight), picture::kGlyphSave,
           Text("Save As ..."),
           [this_ = &panel] {
               if (this_->onSaveProgram) this_->onSaveProgram();
           })
        .infoText = Text("Keeps what is heard among your own programs.");
}

void CPanelBuilder::PutLoops(const QRect& place) {
    panel.frames.push_back({place, Text("Loops"), ESection::kPattern});
    auto loops = ListLoops(values.Plugin());
    const QRect inside = place.adjusted(kMargin, kTitled, -kMargin, -kMargin - kPickFoot);
    auto& list = panel.Add<CLoopTableCtrl>(inside, loops);
    list.section = ESection::kPattern;
    list.infoText = Text("A click chooses a loop, the sign before it lets it play in time.");
    list.onPlay = [this_ = &panel](int key, int velocity) { this_->Play(key, velocity); };
    list.Select(std::max(0, panel.chosenLoop));
    panel.chosenLoop = list.Selected();
    list.onSelect = [this_ = &panel](int loop) { this_->ChooseLoop(loop); };
    const int half = (inside.width() - kGap) / 2;
    const QRect foot(inside.x(), inside.bottom() + 1 + kGap, half, kFieldHeight);
    Button(foot, -1, Text("Scan again"), [this_ = &panel] { this_->ScanLoops(); });
    Button(foot.translated(half + kGap, 0), picture::kGlyphFolder, Text("Open folder"),
           [this_ = &panel] { this_->OpenLoopFolder(); });
}

CSwitchCtrl& CPanelBuilder::Button(const QRect& place, int glyph, const QString& text, std::function<void()> run) {
    auto& made = panel.Add<CSwitchCtrl>(0U, place.x(), place.y(), place.width(), place.height(), nullptr, text);
    made.glyph = glyph;
    made.momentary = true;
    made.captureOnClick = false;
    made.afterClick = [run = std::move(run)](CControl&) { run(); };
    return made;
}

void CPanelBuilder::PutPageCopy(const QRect& place) {
    const int first = parameters.stride * page;
    const int wide = (place.width() - 2 * kInnerGap) / 3;
    const QRect left(place.x(), place.y(), wide, place.height());
    const int way = wide + kInnerGap;
    Button(left, -1, Text("Copy sound"),
           [this_ = &panel, first, count = parameters.stride] { this_->CopyPage(first, count); });
    Button(left.translated(way, 0), -1, Text("Paste sound"), [this_ = &panel, first] {
        this_->PastePage(first);
    }).enabled = panel.HasCopy();
    Button(left.translated(2 * way, 0), -1, Text("Default sound"),
           [this_ = &panel, first, count = parameters.stride] { this_->ResetPage(first, count); });
}

void CPanelBuilder::PutLoop(const QRect& place) {
    const auto loops = ListLoops(values.Plugin());
    const bool has = panel.chosenLoop >= 0 && panel.chosenLoop < static_cast<int>(loops.size());
    panel.frames.push_back({place, has ? QString() : Text("Loops"), ESection::kPattern});
    auto& wave = panel.Add<CLoopWaveCtrl>(place.adjusted(kMargin, kTitled, -kMargin, -kMargin), values.Plugin());
    wave.section = ESection::kPattern;
    if (!has) return;
    const LoopEntry& loop = loops[static_cast<std::size_t>(panel.chosenLoop)];
    wave.Show(loop, FileOfLoop(values.Document(), loop.name));
    panel.frames.back().title = QString::fromStdString(loop.name);
    panel.labels.push_back({QRect(place.x() + 140, place.y() + 7, place.width() - 150, 16),
                            Text("%1 BPM, %2 beats, %3 strokes, key %4")
                                .arg(std::lround(loop.tempo))
                                .arg(loop.beats)
                                .arg(loop.strokes)
                                .arg(loop.key),
                            Qt::AlignRight | Qt::AlignVCenter});
}

// The kinds that the layout names, "All" before and "Mine" behind them, in rows of three; gives where they end.
int CPanelBuilder::PutKinds(const PanelStatement& statement, const QRect& place) {
    constexpr int kAcross = 3;
    constexpr int kHigh = 20;
    if (statement.inside.empty()) return place.top() - 1;
    QStringList names{Text("All")};
    for (const PanelStatement& kind : statement.inside)
        names += kind.texts.empty() ? QString() : InLanguage(kind.texts.front());
    names += Text("Mine");
    const int wide = (place.width() + kInnerGap) / kAcross;
    int bottom = place.top() - 1;
    for (int index = 0; index < names.size(); ++index) {
        const QRect area(place.x() + index % kAcross * wide, place.y() + index / kAcross * (kHigh + kInnerGap),
                         wide - kInnerGap, kHigh);
        const bool chosen = index - 1 == panel.Kind();
        auto& chip = Button(area, -1, names[index], [this_ = &panel, index] { this_->ChooseKind(index - 1); });
        if (chosen) chip.Bind(&panel.lit);
        chip.fontHeight = FittingHeight(names[index], area.width() - 4, true, 11);
        chip.section = ESection::kPattern;
        bottom = area.bottom() + kGap;
    }
    return bottom;
}

// A program is of the first kind one of whose words its name has.
void CPanelBuilder::ChooseKind(const PanelStatement& statement, CProgramListCtrl& programs) const {
    const int kind = panel.Kind();
    const int kinds = static_cast<int>(statement.inside.size());
    if (kind < 0) return;
    programs.showsUser = kind == kinds;
    programs.showsOwn = kind < kinds;
    programs.isWanted = [&statement, kind](const QString& name) {
        const QString words = QLatin1Char(' ') + name + QLatin1Char(' ');
        for (std::size_t index = 0; index < statement.inside.size(); ++index) {
            for (const std::string& word : statement.inside[index].arguments) {
                const QString sought = QString::fromStdString(word).replace(QLatin1Char('_'), QLatin1Char(' '));
                if (words.contains(QLatin1Char(' ') + sought + QLatin1Char(' '), Qt::CaseInsensitive))
                    return static_cast<int>(index) == kind;
            }
        }
        return kind == static_cast<int>(statement.inside.size()) - 1;
    };
}

// What the layout does not name: a group of its own below, so that nothing is out of reach.
void CPanelBuilder::PutRest(const QRect& place) {
    constexpr int kCellWidth = 71;
    constexpr int kCellHeight = 68;
    std::vector<int> rest;
    for (int parameter = 0; parameter < values.Count(); ++parameter) {
        if (!panel.placed[static_cast<std::size_t>(parameter)]) rest.push_back(parameter);
    }
    panel.restHeight = 0;
    if (rest.empty()) return;
    const int across = std::max(1, (place.width() - 2 * kMargin) / kCellWidth);
    const int rows = (static_cast<int>(rest.size()) + across - 1) / across;
    const QRect group(place.x(), place.y(), place.width(), kTitled + rows * kCellHeight + kMargin);
    panel.frames.push_back({group, Text("More"), ESection::kPattern});
    for (std::size_t index = 0; index < rest.size(); ++index) {
        const int at = static_cast<int>(index);
        const QRect cell(group.x() + kMargin + at % across * kCellWidth,
                         group.y() + kTitled + at / across * kCellHeight, kCellWidth, kCellHeight);
        auto& knob = panel.Add<CPanelKnobCtrl>(cell, kRadius, values, rest[index]);
        knob.caption = values.Name(rest[index]);
        knob.section = ESection::kPattern;
    }
    panel.restHeight = group.height() + kMargin;
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
