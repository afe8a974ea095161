// SPDX-License-Identifier: GPL-3.0-or-later
// Shows the gallery of controls, or writes it as a picture without a display.
//
//   quib-gallery [--scale FACTOR] [--png FILE]

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>
#include <cstdio>
#include <cstring>

#include "gallery/CGallery.h"

namespace {

bool WritePicture(quib::CGallery& gallery, const QString& file) {
    gallery.show();
    gallery.Pose();
    // A quality of 0 is the smallest file; nothing is lost.
    return gallery.grab().toImage().convertToFormat(QImage::Format_RGB888).save(file, "PNG", 0);
}

}  // namespace

int main(int argc, char** argv) {
    for (int index = 1; index < argc; ++index) {
        if (std::strncmp(argv[index], "--png", 5) == 0) qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption png(QStringLiteral("png"), QStringLiteral("Writes the page to FILE and ends."),
                                 QStringLiteral("FILE"));
    const QCommandLineOption scale(QStringLiteral("scale"), QStringLiteral("Size of a skin pixel, 0.75 to 3."),
                                   QStringLiteral("FACTOR"), QStringLiteral("1"));
    parser.addOptions({png, scale});
    parser.process(application);

    quib::CGallery gallery;
    gallery.SetUiScale(parser.value(scale).toDouble());
    gallery.setFixedSize(QSize(quib::CGallery::kWidth, quib::CGallery::kHeight) * gallery.UiScale());
    if (parser.isSet(png)) {
        if (WritePicture(gallery, parser.value(png))) return 0;
        std::fprintf(stderr, "cannot write %s\n", qPrintable(parser.value(png)));
        return 1;
    }
    gallery.show();
    gallery.Pose();
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &gallery, [&gallery] { gallery.Live(); });
    timer.start(40);
    return QApplication::exec();
}
