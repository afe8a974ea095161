// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/BarControls.h"

#include <QFileInfo>
#include <cmath>

#include "app/FileDialogs.h"
#include "controls/CWinControl.h"
#include "controls/Colours.h"
#include "controls/SkinNumbers.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kRecordButton = 60;
constexpr int kFileRoom = 100;  // pixels beside the button from which the file is named

// Its dot is red while it waits.
class CRecordButtonCtrl : public CSwitchCtrl {
public:
    using CSwitchCtrl::CSwitchCtrl;
    void Draw() override {
        const EState state = IsOn() ? EState::kOn : PlainState();
        const QRectF area(Rectangle());
        const QRgb red = Colour("record");
        Canvas().Fill(area, backgroundColour);
        DrawCap(Canvas(), area, state, red);
        const QRgb colour = CapTextColour(state, red);
        const qreal left = area.center().x() - 22;
        Canvas().Ellipse({left + 5, area.center().y()}, 5, IsOn() ? colour : red);
        Canvas().Text({left + 14, area.top(), 34, area.height()}, QStringLiteral("REC"), colour, 14,
                      Qt::AlignLeft | Qt::AlignVCenter, true);
    }
};

}  // namespace

CStateLineCtrl::CStateLineCtrl(CWinControl& window, std::uint32_t number, CWorkstation& workstation)
    : CControl(window, number, 0, 0, 100, consoleLayout::kStateHeight), CTicked(window), station(workstation) {}

void CStateLineCtrl::Tick() {
    const bool nowPlaying = station.Transport().IsPlaying();
    const bool nowRecording = station.Recording().IsRecording();
    if (nowPlaying == playing && nowRecording == recording) return;
    playing = nowPlaying;
    recording = nowRecording;
    Update(false, true);
}

void CStateLineCtrl::Draw() {
    Canvas().Fill(Rectangle(), Colour(playing ? "transport" : "window"));
    if (!recording) return;
    const int half = Width() / 2;
    Canvas().Fill(QRect(X() + half, Y(), Width() - half, Height()), Colour("record"));
}

CArmCtrl::CArmCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                   CValue* bound, const QString& armSign, int armGlyph, const QString& restWord)
    : CSwitchCtrl(window, number, left, top, newWidth, newHeight, bound, armGlyph), sign(armSign), word(restWord) {}

void CArmCtrl::Draw() {
    const EState state = PlainState();
    const QRectF area(Rectangle());
    const QRgb red = Colour("record");
    Canvas().Fill(area, backgroundColour);
    DrawCap(Canvas(), area, state, red);
    if (IsOn()) Canvas().Box(area, 3, Colour("recordGround"), red, 2);
    const QRgb colour = CapTextColour(state, red);
    const bool withWord = !word.isEmpty();
    const qreal middle = withWord ? area.top() + 15 : area.center().y();
    const QPointF left(area.center().x() - 8, middle);
    if (glyph >= 0) {
        Canvas().Glyph(Skin(), glyph, left, colour);
    } else {
        Canvas().Text(QRectF(left.x() - 8, middle - 10, 16, 20), sign, colour, 16, Qt::AlignCenter, true);
    }
    const QPointF ring(area.center().x() + 9, middle);
    Canvas().Ellipse(ring, 5, IsOn() ? red : colour);
    if (!IsOn()) Canvas().Ellipse(ring, 3.4, Colour("panelRaised"));
    if (!withWord) return;
    Canvas().Text(QRectF(area.left(), area.bottom() - 17, area.width(), 14), IsOn() ? Text("ARMED") : word, colour, 10,
                  Qt::AlignCenter, true);
}

CPositionCtrl::CPositionCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                             CAudio& engine, int letters)
    : CControl(window, number, left, top, newWidth, newHeight),
      CTicked(window),
      audio(engine),
      fontHeight(letters),
      text(TextNow()) {}

QString CPositionCtrl::TextNow() const {
    const PlayPicture& picture = audio.Picture();
    if (picture.beatsToStart > 0) return QStringLiteral("-%1").arg(picture.beatsToStart);
    const int step = picture.playing && picture.soundingStep >= 0 ? picture.soundingStep : picture.globalStep;
    return BarBeatStep(step, audio.settings.stepsPerBeat.Get(), audio.settings.beatsPerBar.Get());
}

void CPositionCtrl::Tick() {
    if (!IsShown()) return;
    const bool nowPlaying = audio.Picture().playing;
    const PlayPicture& picture = audio.Picture();
    const int step = picture.playing && picture.soundingStep >= 0 ? picture.soundingStep : picture.globalStep;
    const Shown now{picture.beatsToStart, step, audio.settings.stepsPerBeat.Get(), audio.settings.beatsPerBar.Get()};
    if (nowPlaying == playing && now == shown) return;
    shown = now;
    QString next = TextNow();
    playing = nowPlaying;
    text = std::move(next);
    Update(false, true);
}

void CPositionCtrl::Draw() {
    const QRectF area(Rectangle());
    Canvas().Fill(area, backgroundColour);
    const QRgb accent = Colour("transport");
    Canvas().Box(area, 4, Colour(playing ? "playGround" : "glass"), playing ? accent : Colour("edge"), playing ? 2 : 1);
    Canvas().Digits(area, text, accent, fontHeight, Qt::AlignCenter, true);
}

CRecorderCtrl::CRecorderCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                             const ConsoleContext& context, QString& path)
    : CControl(window, number, left, top, newWidth, newHeight),
      CTicked(window),
      station(context.station),
      recordPath(path) {
    infoString = 458;
    const int buttonHeight = IsNarrow() ? newHeight - 16 : newHeight;
    button = &AddChild<CRecordButtonCtrl>(0U, 0, 0, IsNarrow() ? newWidth : kRecordButton, buttonHeight, &shown,
                                          QStringLiteral("REC"));
    button->infoString = 458;
    button->onChange = [this](CControl&) { Toggle(); };
}

bool CRecorderCtrl::IsNarrow() const noexcept { return Width() < kRecordButton + kFileRoom; }

QString CRecorderCtrl::TimeText() const {
    const auto seconds = static_cast<int>(station.Recording().Seconds());
    return QStringLiteral("%1:%2:%3")
        .arg(seconds / 3600, 2, 10, QLatin1Char('0'))
        .arg(seconds / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

QString CRecorderCtrl::FileText() const {
    if (recordPath.isEmpty()) return Text("no file yet");
    return QStringLiteral("%1 \u00B7 %2 MB")
        .arg(QFileInfo(recordPath).fileName())
        .arg(static_cast<double>(station.Recording().Bytes()) / 1e6, 0, 'f', 1);
}

void CRecorderCtrl::Toggle() {
    if (station.Recording().IsRecording()) return station.Recording().Stop();
    const QString proposed = recordPath.isEmpty() ? QStringLiteral("recording.wav") : recordPath;
    const QString path = ChooseFileToSave(&Owner(), station.Settings(), EFileKind::kRecording, proposed);
    if (path.isEmpty()) return;
    recordPath = path;
    station.Recording().Start(path);
}

void CRecorderCtrl::Tick() {
    if (!IsShown()) return;
    const float recording = station.Recording().IsRecording() ? 1.0F : 0.0F;
    // What stands still is not put into words again.
    if (recording == shown.Get() && recording == 0.0F && drawnPath == recordPath) return;
    if (recording == shown.Get() && drawnTime == TimeText() && drawnFile == FileText()) return;
    drawnPath = recordPath;
    shown.Set(recording);
    Update(false, true);
}

void CRecorderCtrl::Draw() {
    drawnPath = recordPath;
    drawnTime = TimeText();
    drawnFile = FileText();
    const bool recording = shown.IsOn();
    const QRectF area(Rectangle());
    Canvas().Fill(area, backgroundColour);
    if (recording) Canvas().Box(area, 3, Colour("recordGround"), Colour("record"), 2);
    const QRgb strong = Colour(recording ? "text" : "textDim");
    if (IsNarrow()) {
        return Canvas().Digits({area.left(), area.bottom() - 15, area.width(), 14}, drawnTime, strong, 11,
                               Qt::AlignCenter, true);
    }
    const QRectF room = area.adjusted(kRecordButton + 8, 0, -4, 0);
    Canvas().Digits({room.left(), room.top() + 2, room.width(), 22}, drawnTime, strong, 20,
                    Qt::AlignLeft | Qt::AlignVCenter, true);
    Canvas().Text({room.left(), room.top() + 24, room.width(), 14}, drawnFile, strong, 10,
                  Qt::AlignLeft | Qt::AlignVCenter);
}

}  // namespace quib
