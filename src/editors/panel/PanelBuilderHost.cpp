// SPDX-License-Identifier: GPL-3.0-or-later
// What a layout asks of the workstation: the lists of programs and loops.
#include <algorithm>
#include <cmath>

#include "controls/CSwitchCtrl.h"
#include "controls/SkinNumbers.h"
#include "document/LoopFolders.h"
#include "editors/panel/CLoopTableCtrl.h"
#include "editors/panel/CLoopWaveCtrl.h"
#include "editors/panel/CPanelBuilder.h"
#include "editors/panel/CProgramListCtrl.h"
#include "editors/panel/PanelLook.h"
#include "editors/panel/PanelMeasures.h"
#include "model/plugin/CPlugin.h"
#include "texts/Texts.h"

namespace quib {

using namespace panelMeasures;

namespace {
constexpr int kListFoot = kFieldHeight + kGap;  // of a list: the buttons below it
}  // namespace

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
    QRect list = place.adjusted(kMargin, kTitled + kFieldHeight + kGap, -kMargin, -kMargin - kListFoot);
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
    AddPanelButton(panel, QRect(list.x(), list.bottom() + 1 + kGap, list.width(), kFieldHeight), picture::kGlyphSave,
                   Text("Save As ..."),
                   [this_ = &panel] {
                       if (this_->onSaveProgram) this_->onSaveProgram();
                   })
        .infoText = Text("Keeps what is heard among your own programs.");
}

void CPanelBuilder::PutLoops(const QRect& place) {
    panel.frames.push_back({place, Text("Loops"), ESection::kPattern});
    auto loops = ListLoops(values.Plugin());
    const QRect inside = place.adjusted(kMargin, kTitled, -kMargin, -kMargin - kListFoot);
    auto& list = panel.Add<CLoopTableCtrl>(inside, loops);
    list.section = ESection::kPattern;
    list.infoText = Text("A click chooses a loop, the sign before it lets it play in time.");
    list.onPlay = [this_ = &panel](int key, int velocity) { this_->Play(key, velocity); };
    list.Select(std::max(0, panel.chosenLoop));
    panel.chosenLoop = list.Selected();
    list.onSelect = [this_ = &panel](int loop) { this_->ChooseLoop(loop); };
    const int half = (inside.width() - kGap) / 2;
    const QRect foot(inside.x(), inside.bottom() + 1 + kGap, half, kFieldHeight);
    AddPanelButton(panel, foot, -1, Text("Scan again"), [this_ = &panel] { this_->ScanLoops(); });
    AddPanelButton(panel, foot.translated(half + kGap, 0), picture::kGlyphFolder, Text("Open folder"),
                   [this_ = &panel] { this_->OpenLoopFolder(); });
}

void CPanelBuilder::PutPageCopy(const QRect& place) {
    const int first = parameters.stride * page;
    const int wide = (place.width() - 2 * kInnerGap) / 3;
    const QRect left(place.x(), place.y(), wide, place.height());
    const int way = wide + kInnerGap;
    AddPanelButton(panel, left, -1, Text("Copy sound"),
                   [this_ = &panel, first, count = parameters.stride] { this_->CopyPage(first, count); });
    AddPanelButton(panel, left.translated(way, 0), -1, Text("Paste sound"), [this_ = &panel, first] {
        this_->PastePage(first);
    }).enabled = panel.HasCopy();
    AddPanelButton(panel, left.translated(2 * way, 0), -1, Text("Default sound"),
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
        auto& chip =
            AddPanelButton(panel, area, -1, names[index], [this_ = &panel, index] { this_->ChooseKind(index - 1); });
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

}  // namespace quib
