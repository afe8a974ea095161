// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/start/CDeviceBanner.h"

#include <algorithm>

#include "app/CMainWindow.h"
#include "app/Commands.h"
#include "devices/CSilentOutput.h"
#include "devices/OutputDeviceList.h"
#include "document/CSettings.h"
#include "texts/Texts.h"

namespace quib {

namespace {

const QString kJack = QStringLiteral("JACK");

bool HasJack() {
    const std::vector<std::string> devices = ListOutputDevices();
    return std::find(devices.begin(), devices.end(), kJack.toStdString()) != devices.end();
}

}  // namespace

CDeviceBanner::CDeviceBanner(CSkin& sharedSkin, CMainWindow& mainWindow, QWidget* parent)
    : CSkinnedPart(sharedSkin, parent), window(mainWindow) {
    setObjectName(QStringLiteral("deviceBanner"));
    choose.setObjectName(QStringLiteral("chooseDevice"));
    jack.setObjectName(QStringLiteral("tryJack"));
    silent.setObjectName(QStringLiteral("playSilently"));
    connect(&choose, &QPushButton::clicked, this, [this] { window.Run(command::kAudioAndMidi); });
    connect(&jack, &QPushButton::clicked, this, &CDeviceBanner::TryJack);
    connect(&silent, &QPushButton::clicked, this,
            [this] { window.Workstation().OpenOutput(QLatin1String(CSilentOutput::kName)); });
    // A press of Space plays, whichever of them was clicked last.
    for (QPushButton* const button : {&choose, &jack, &silent}) button->setFocusPolicy(Qt::TabFocus);
    jack.setVisible(HasJack());
    Translate();
    hide();
}

void CDeviceBanner::Translate() {
    choose.setText(Text("Choose device ..."));
    jack.setText(Text("Try JACK"));
    silent.setText(Text("Play silently"));
    ArrangeButtons();
    update();
}

bool CDeviceBanner::IsNeeded() const { return window.Workstation().Output().Device() == nullptr; }

// Kept only when a server answers.
void CDeviceBanner::TryJack() {
    CWorkstation& station = window.Workstation();
    if (!station.OpenOutput(kJack)) return;
    if (station.Output().Device()->Name() != kJack.toStdString()) return;
    station.Settings().WriteSettingString(QStringLiteral("AudioSettings"), QStringLiteral("OutputDevice"), kJack);
}

void CDeviceBanner::ArrangeButtons() {
    int right = width() - static_cast<int>(12 * Scale());
    for (QPushButton* const button : {&silent, &jack, &choose}) {
        if (button->isHidden()) continue;
        const QSize size(button->sizeHint().width() + static_cast<int>(16 * Scale()), static_cast<int>(28 * Scale()));
        right -= size.width();
        button->setGeometry(QRect(QPoint(right, (height() - size.height()) / 2), size));
        right -= static_cast<int>(8 * Scale());
    }
}

void CDeviceBanner::resizeEvent(QResizeEvent* event) {
    CSkinnedPart::resizeEvent(event);
    ArrangeButtons();
}

bool CDeviceBanner::event(QEvent* event) {
    return event->type() == QEvent::ShortcutOverride ? QWidget::event(event) : CSkinnedPart::event(event);
}

void CDeviceBanner::Draw(CCanvas& canvas) {
    const CPalette& palette = Palette();
    const QRgb warning = palette.Colour(QStringLiteral("warning"));
    const QRectF area(0, 0, SkinSize().width(), SkinSize().height());
    canvas.Box(area.adjusted(0, 0, -1, -1), 4, Mix(palette.Colour(QStringLiteral("window")), warning, 0.13F), warning);
    const QPointF corners[] = {{22, 13}, {31, 30}, {13, 30}, {22, 13}};
    canvas.Polyline(corners, warning, 2);
    canvas.Line(22, 19, 22, 25, warning, 2);
    const QString what = Text("No sound device answers.");
    const qreal left = 42 + CCanvas::TextWidth(what, 13, true) + 12;
    const qreal right = choose.x() / Scale() - 12;
    const auto write = [&](qreal from, const QString& words, bool strong) {
        canvas.Text(QRectF(from, 0, right - from, area.height()), words, palette.Colour(QStringLiteral("text")), 13,
                    Qt::AlignLeft | Qt::AlignVCenter, strong);
    };
    write(42, what, true);
    if (left < right) write(left, Text("Play waits until one is chosen; work and rendering to a file go on."), false);
}

bool CanPlay(CWorkstation& station) {
    if (station.Output().Device() != nullptr) return true;
    Q_EMIT station.Notice(
        Text("Nothing plays: no sound device answers. Choose one under Settings > Audio & Midi, or play silently."));
    return false;
}

void PlayOrStop(CWorkstation& station) {
    CTransportControl& transport = station.Transport();
    if (!CanPlay(station)) return;
    transport.IsPlaying() ? transport.Stop() : transport.Play();
}

}  // namespace quib
