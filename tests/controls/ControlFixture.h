// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A real window, off the screen, and the mouse, wheel and keys that it is sent.

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>

#include "Testing.h"
#include "controls/CWinControl.h"

namespace quib {

class CFakeSettings : public CControlSettings {
public:
    int ReadSettingInt(const char* /*section*/, const char* name, int fallback) const override {
        const auto entry = values.find(name);
        return entry != values.end() ? entry->second : fallback;
    }
    std::map<std::string, int> values;
};

// Writes down what it is told.
class CProbe : public CControl {
public:
    using CControl::CControl;
    void OnMouseMove(int /*px*/, int /*py*/) override { ++counts["move"]; }
    void OnLButtonDown(int /*px*/, int /*py*/, int button) override {
        ++counts["down"];
        lastButton = button;
    }
    void OnLButtonUp(int /*px*/, int /*py*/, int /*button*/) override { ++counts["up"]; }
    void OnDoubleClick(int /*px*/, int /*py*/) override { ++counts["double"]; }
    void OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t /*word*/) override { ++counts["wheel"]; }
    void OnMouseLeave() override { ++counts["leave"]; }
    void OnKeyDown(int key) override { Key("keyDown", key); }
    void OnKeyUp(int key) override { Key("keyUp", key); }
    void OnShow(bool nowVisible) override { ++counts[nowVisible ? "show" : "hide"]; }
    void Draw() override { ++counts["draw"]; }

    int Count(const std::string& what) { return counts[what]; }
    int lastButton = -1;
    std::vector<std::string>* keys = nullptr;
    std::string label;

private:
    void Key(const std::string& what, int key) {
        ++counts[what];
        if (keys != nullptr) keys->push_back(what + label + std::to_string(key));
    }
    std::map<std::string, int> counts;
};

class CControlTest : public testing::Test {
protected:
    void Open(int width = 400, int height = 300) {
        window.resize(width, height);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        QApplication::processEvents();
    }
    template <class T, class... Arguments>
    T& Add(Arguments&&... arguments) {
        return window.Add<T>(0U, std::forward<Arguments>(arguments)...);
    }

    void Mouse(QEvent::Type type, Qt::MouseButton button, int x, int y) {
        if (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick) buttons |= button;
        if (type == QEvent::MouseButtonRelease) buttons &= ~Qt::MouseButtons(button);
        QMouseEvent event(type, QPointF(x, y), window.mapToGlobal(QPointF(x, y)), button, buttons, modifiers);
        event.setTimestamp(time);
        QApplication::sendEvent(&window, &event);
    }
    void Move(int x, int y) { Mouse(QEvent::MouseMove, Qt::NoButton, x, y); }
    void Press(int x, int y, Qt::MouseButton button = Qt::LeftButton) { Mouse(QEvent::MouseButtonPress, button, x, y); }
    void Release(int x, int y, Qt::MouseButton button = Qt::LeftButton) {
        Mouse(QEvent::MouseButtonRelease, button, x, y);
    }
    // Lets the time pass in which a press counts as a bouncing button.
    void PassBounce() { time += 21; }
    void Click(int x, int y, Qt::MouseButton button = Qt::LeftButton) {
        Move(x, y);
        Press(x, y, button);
        Release(x, y, button);
        PassBounce();
    }
    void Drag(int x, int y, int toX, int toY) {
        Press(x, y);
        Move(toX, toY);
        Release(toX, toY);
        PassBounce();
    }
    void DoubleClick(int x, int y) {
        Move(x, y);
        Press(x, y);
        Release(x, y);
        PassBounce();
        Mouse(QEvent::MouseButtonDblClick, Qt::LeftButton, x, y);
        Release(x, y);
        PassBounce();
    }
    void Wheel(int x, int y, int notches) {
        Move(x, y);
        QWheelEvent event(QPointF(x, y), window.mapToGlobal(QPointF(x, y)), {}, QPoint(0, notches * 120), Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&window, &event);
    }
    void Key(int key, const QString& text = {}, QEvent::Type type = QEvent::KeyPress) {
        QKeyEvent event(type, key, modifiers, text);
        QApplication::sendEvent(&window, &event);
    }
    void Type(const QString& text) {
        for (const QChar character : text) Key(character.toUpper().unicode(), character);
    }
    // Screen pixels painted by an action.
    template <class Action>
    qint64 PaintedBy(const Action& action) {
        QApplication::processEvents();
        const qint64 before = window.PaintedPixels();
        action();
        QApplication::processEvents();
        return window.PaintedPixels() - before;
    }

    CFakeSettings settings;
    CWinControl window{settings, "window"};
    CValue value{0.5F};
    Qt::KeyboardModifiers modifiers;

private:
    Qt::MouseButtons buttons;
    ulong time = 1;  // of events, in milliseconds
};

}  // namespace quib
