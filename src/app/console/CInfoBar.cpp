// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/CInfoBar.h"

#include <cmath>

#include "controls/CInfoCtrl.h"
#include "controls/CLabelCtrl.h"
#include "controls/CWinControl.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kLoadWidth = 70;
constexpr int kXrunsWidth = 80;
constexpr int kDeviceWidth = 196;
constexpr int kFigures = kLoadWidth + kXrunsWidth + kDeviceWidth + 24;
}  // namespace

CInfoBar::CInfoBar(CWinControl& window, std::uint32_t number, const ConsoleContext& consoleContext)
    : CPanelCtrl(window, number, 0, 0, 0, consoleLayout::kInfoHeight),
      CTicked(window),
      context(consoleContext),
      help(&AddChild<CInfoCtrl>(0U, 4, 1, 100, consoleLayout::kInfoHeight - 1, 12)),
      load(&AddDimLabel(0, 1, kLoadWidth, consoleLayout::kInfoHeight - 1, {})),
      xruns(&AddDimLabel(0, 1, kXrunsWidth, consoleLayout::kInfoHeight - 1, {})),
      device(&AddDimLabel(0, 1, kDeviceWidth, consoleLayout::kInfoHeight - 1, {})) {
    load->infoString = 439;
    xruns->infoString = 440;
    device->infoString = 441;
    device->strong = true;
    device->alignment = Qt::AlignRight | Qt::AlignVCenter;
    PaintChildren();
}

void CInfoBar::Resize(int newWidth, int newHeight) {
    SetSize(newWidth, newHeight);
    help->Resize(std::max(100, newWidth - kFigures), newHeight - 1);
    load->SetPosition(newWidth - kFigures + 12, 1);
    xruns->SetPosition(newWidth - kFigures + 12 + kLoadWidth, 1);
    device->SetPosition(newWidth - kDeviceWidth - 12, 1);
}

void CInfoBar::Draw() {
    const CPalette& palette = Palette();
    Canvas().Fill(Rectangle(), palette.Colour(QStringLiteral("panel")));
    Canvas().Fill(QRect(X(), Y(), Width(), 1), palette.Colour(QStringLiteral("line")));
    Canvas().Fill(QRect(X() + Width() - kFigures, Y() + 8, 1, Height() - 15), palette.Colour(QStringLiteral("edge")));
}

// The rate as its users write it: 44.1 kHz, 48 kHz.
void CInfoBar::Tick() {
    CWorkstation& station = context.station;
    const COutputDevice* const output = station.Output().Device();
    const Figures now{std::lround(station.Audio().CpuLoad()), station.Output().Xruns(),
                      output != nullptr ? station.Audio().Format().sampleRate : 0.0, output};
    if (now == shown) return;
    shown = now;
    load->SetText(QStringLiteral("CPU %1 %").arg(now.load));
    xruns->SetText(QStringLiteral("Xruns %1").arg(now.xruns));
    const QRgb colour = Palette().Colour(output != nullptr ? QStringLiteral("text") : QStringLiteral("warning"));
    if (device->textColour != colour) device->textColour = colour;
    device->SetText(output == nullptr
                        ? Text("No device")
                        : QStringLiteral("%1 %2 kHz")
                              .arg(QString::fromStdString(output->Name()))
                              .arg(static_cast<double>(station.Audio().Format().sampleRate) / 1000, 0, 'g', 4));
}

}  // namespace quib
