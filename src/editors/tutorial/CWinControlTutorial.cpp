// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/tutorial/CWinControlTutorial.h"

#include <QFile>
#include <QKeyEvent>
#include <algorithm>

#include "controls/CSwitchCtrl.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kMargin = 24;
constexpr int kRail = 168;
constexpr int kRowTop = 72;
constexpr int kRowPitch = 36;
constexpr int kTextLeft = kMargin + kRail + 24;
constexpr int kBottom = 536;
constexpr const char* kKeptFile = "before-tutorial.prg";

}  // namespace

CWinControlTutorial::CWinControlTutorial(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent)
    : CToolWindow(toolContext, toolRow, parent) {
    Build();
}

CWinControlTutorial::~CWinControlTutorial() = default;

QString CWinControlTutorial::Title() const { return Text(Row().title); }

void CWinControlTutorial::Build() {
    RemoveAll();
    int number = 0;
    for (const TutorialLesson& each : TutorialLessons()) {
        const QString title = QStringLiteral("%1  %2").arg(number + 1).arg(Text(each.title));
        auto& choice = Add<CSwitchCtrl>(0U, kMargin, kRowTop + number * kRowPitch, kRail, 30, nullptr, title);
        choice.momentary = true;
        choice.infoString = 620;
        choice.backgroundColour = Palette().Colour(QStringLiteral("panel"));
        choice.onChange = [this, number](CControl&) { Begin(number); };
        ++number;
    }
    skip = &Add<CSwitchCtrl>(0U, kTextLeft, kBottom, 160, 28, nullptr, QString());
    skip->momentary = true;
    skip->backgroundColour = Palette().Colour(QStringLiteral("panel"));
    skip->onChange = [this](CControl&) { Skip(); };
    ShowSkip();
}

void CWinControlTutorial::Translate() {
    Build();
    LayoutAndRefresh();
}

void CWinControlTutorial::ShowSkip() {
    skip->label = lesson < 0 ? Text("Begin") : Text("Skip this step");
    skip->infoString = lesson < 0 ? 620 : 621;
}

int CWinControlTutorial::Target() const {
    if (!isVisible() || lesson < 0) return kNoTarget;
    const TutorialLesson& now = TutorialLessons()[static_cast<std::size_t>(lesson)];
    return now.steps[static_cast<std::size_t>(step)].target;
}

// From the event loop: the button that was pressed may be made anew.
void CWinControlTutorial::Begin(int number) {
    KeepUsersProject();
    const TutorialLesson& next = TutorialLessons()[static_cast<std::size_t>(number)];
    QString error;
    if (!PrepareGround(Document(), next.ground, error)) {
        return Q_EMIT Document().Message(QStringLiteral("QUIB Sequencer"), error);
    }
    if (lesson < 0) StepAside();
    lesson = number;
    step = 0;
    before = ReadTutorialState(Document());
    ShowSkip();
    LayoutAndRefresh();
}

// Off the left half of the main window, where most of what the lessons mean lies.
void CWinControlTutorial::StepAside() {
    const QRect room = parentWidget() != nullptr ? parentWidget()->window()->frameGeometry() : frameGeometry();
    move(room.right() - frameGeometry().width() + 1, room.bottom() - frameGeometry().height() + 1);
}

void CWinControlTutorial::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    CToolWindow::keyPressEvent(event);
}

void CWinControlTutorial::Skip() { lesson < 0 ? Begin(0) : Advance(); }

void CWinControlTutorial::Advance() {
    const std::span<const TutorialLesson> lessons = TutorialLessons();
    before = ReadTutorialState(Document());
    if (++step < static_cast<int>(lessons[static_cast<std::size_t>(lesson)].steps.size())) return LayoutAndRefresh();
    over[static_cast<std::size_t>(lesson)] = true;
    if (lesson + 1 < static_cast<int>(lessons.size())) return Begin(lesson + 1);
    lesson = -1;
    step = 0;
    ShowSkip();
    LayoutAndRefresh();
}

void CWinControlTutorial::ShowPlaying(const PlayPicture& /*picture*/) {
    if (lesson < 0) return;
    const TutorialLesson& now = TutorialLessons()[static_cast<std::size_t>(lesson)];
    if (now.steps[static_cast<std::size_t>(step)].isDone(ReadTutorialState(Document()), before)) Advance();
}

// --- The user's project

// Also among the timed backups, for the case that the program ends meanwhile.
void CWinControlTutorial::KeepUsersProject() {
    if (kept) return;
    CSession& session = Document().Session();
    if (Document().Stack().Instruments().empty() && !session.IsModified()) return;
    QString error;
    projectFile = session.ProjectPath();
    modified = session.IsModified();
    const QString path = Document().ProgramFolders().program + QLatin1String(kKeptFile);
    session.WriteCopy(path);
    session.Saver().Finish();
    if (!session.WriteTimedCopy(error)) return Q_EMIT Document().Message(QStringLiteral("QUIB Sequencer"), error);
    kept = true;
}

void CWinControlTutorial::GiveUsersProjectBack() {
    if (!std::exchange(kept, false)) return;
    const QString path = Document().ProgramFolders().program + QLatin1String(kKeptFile);
    QString error;
    if (!Document().Session().LoadSession(path, projectFile, modified, error)) {
        Q_EMIT Document().Message(QStringLiteral("QUIB Sequencer"), error);
    }
    QFile::remove(path);
}

void CWinControlTutorial::hideEvent(QHideEvent* event) {
    CToolWindow::hideEvent(event);
    if (event->spontaneous()) return;
    lesson = -1;
    ShowSkip();
    GiveUsersProjectBack();
}

// --- Drawing

void CWinControlTutorial::DrawBackground() {
    const CPalette& palette = Palette();
    const QRgb text = palette.Colour(QStringLiteral("text"));
    Canvas().Fill(QRect(QPoint(0, 0), SkinSize()), palette.Colour(QStringLiteral("panel")));
    Canvas().Text(QRectF(kMargin, 20, 500, 30), Text("Six lessons, about five minutes"), text, 20,
                  Qt::AlignLeft | Qt::AlignVCenter, true);
    for (std::size_t number = 0; number < kLessons; ++number) {
        const QRectF mark(kMargin - 12, kRowTop + static_cast<int>(number) * kRowPitch, 4, 30);
        if (over[number]) Canvas().Fill(mark, palette.Accent(ESection::kTransport));
        if (static_cast<int>(number) == lesson) Canvas().Fill(mark, palette.Accent(ESection::kPattern));
    }
    DrawSteps();
}

void CWinControlTutorial::DrawSteps() {
    const CPalette& palette = Palette();
    const qreal width = Row().size.width() - kTextLeft - kMargin;
    qreal top = kRowTop;
    const auto write = [&](const QString& words, const char* colour, int height) {
        top += Canvas().Paragraph(QRectF(kTextLeft, top, width, kBottom - top), words,
                                  palette.Colour(QLatin1String(colour)), height) +
               16;
    };
    if (lesson < 0) {
        const bool all = std::all_of(over.begin(), over.end(), [](bool each) { return each; });
        write(
            all ? Text("That is all. The manual tells the rest; F1 lists every key.")
                : Text("Choose a lesson on the left. Each tells what to do in the main window, rings the control that "
                       "is meant, and goes on by itself when it is done."),
            "text", 15);
        return write(Text("Your project is put aside and comes back when this window closes."), "textMuted", 13);
    }
    const TutorialLesson& now = TutorialLessons()[static_cast<std::size_t>(lesson)];
    for (std::size_t number = 0; number < now.steps.size(); ++number) {
        const auto current = static_cast<std::size_t>(step);
        const char* const colour = number == current ? "text" : number < current ? "transport" : "textDim";
        const QString sign = number < current ? QStringLiteral("\u2713  ") : QStringLiteral("%1.  ").arg(number + 1);
        write(sign + Text(now.steps[number].text), colour, number == current ? 17 : 14);
    }
}

}  // namespace quib
