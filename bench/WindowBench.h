// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Measures what events cost a window, in processor time. User-interface thread.

#include <QApplication>
#include <QMouseEvent>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>

#include "controls/CWinControl.h"

namespace quib {

// Of all threads, in milliseconds: what others do on the machine is not counted.
inline double ProcessorTime() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

// Prints the median and the 99th percentile of the rounds.
inline void Measure(const char* name, int scale, int rounds, const std::function<void(int round)>& action) {
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        const double start = ProcessorTime();
        action(round);
        QApplication::processEvents();
        times.push_back(ProcessorTime() - start);
    }
    std::sort(times.begin(), times.end());
    const auto at = [&](double share) {
        return times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))];
    };
    std::printf("%-44s %dx  median %7.3f  p99 %7.3f\n", name, scale, at(0.5), at(0.99));
}

inline void Send(CWinControl& window, QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons buttons,
                 QPoint place) {
    const QPointF point = QPointF(place) * window.UiScale();
    QMouseEvent event(type, point, window.mapToGlobal(point), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(&window, &event);
}

}  // namespace quib
