// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One page with every control in every state: to be looked at, and to be compared with the pictures in docs.
// The mouse works on it as in the product.

#include <deque>
#include <memory>
#include <string>

#include "controls/CPatternSelCtrl.h"
#include "controls/CScopeCtrl.h"
#include "controls/CWinControl.h"

namespace quib {

// Info texts in one language.
class CGallerySettings : public CControlSettings {
public:
    int ReadSettingInt(const char* /*section*/, const char* name, int fallback) const override {
        return std::string(name) == "DisplayInfoMessagesFrench" ? 0 : fallback;
    }
};

// Two waves that move a little with each picture.
class CGalleryScope : public CScopeSource {
public:
    void Show(bool /*on*/) override {}
    void Arm() override { armed = true; }
    bool Fetch(Picture& picture) override;

private:
    bool armed = false;
    int pictures = 0;
    std::vector<float> left, right;
};

class CGalleryPatterns : public CPatternOwner {
public:
    Look PatternLook() const override { return look; }
    void SelectPattern(int pattern) override { look.selected = pattern; }
    void CopyPattern(int from, int to) override;
    bool MayTogglePatternFlag() const override { return true; }
    void TogglePatternFlag(int pattern) override { look.flagged ^= 1U << pattern; }
    void SendPatternMask(std::uint32_t /*mask*/) override {}

    Look look;
};

class CGallery : public CWinControl {
public:
    static constexpr int kWidth = 980;
    static constexpr int kHeight = 760;

    CGallery();
    ~CGallery() override { RemoveAll(); }
    // Moves what moves in the product, once.
    void Live();
    // Every control in the state that the page shows it in.
    void Pose();

protected:
    void DrawBackground() override;

private:
    struct Panel {
        QRect place;
        QString title;
        ESection section;
    };

    // Each builds one panel.
    void BuildFaders();
    void BuildKnobs();
    void BuildSwitches();
    void BuildMeters();
    void BuildScopeAndFilter();
    void BuildPatterns();
    void BuildTexts();
    void BuildIcons();
    void BuildKeyboards();
    void BuildArpeggiator();

    QPoint AddPanel(const QRect& place, const QString& title, ESection section);
    void Caption(int x, int y, int width, const QString& text);
    template <class T, class... Arguments>
    T& Place(ESection section, Arguments&&... arguments) {
        T& control = Add<T>(0U, std::forward<Arguments>(arguments)...);
        control.section = section;
        control.backgroundColour = Palette().Colour(QStringLiteral("panel"));
        return control;
    }
    CValue* Value(float initial) { return &values.emplace_back(initial); }
    // The control as if the mouse were over it, or its button down.
    void PoseAs(CControl& control, EState state);
    // As if the mouse were at this place of the control.
    void PoseMouse(CControl& control, int x, int y);

    CGallerySettings gallerySettings;
    CGalleryScope scope;
    CGalleryPatterns patterns;
    std::deque<CValue> values;
    std::vector<Panel> panels;
    std::vector<std::function<void()>> poses;
    std::vector<std::pair<CValue*, float>> meterEnds;
    int playingStep = 5;
    int liveTicks = 0;
};

}  // namespace quib
