// SPDX-License-Identifier: GPL-3.0-or-later
// The panels of plug-ins: their layouts, and what they show and move.
#include <QDir>
#include <QFile>
#include <random>

#include "app/CPluginWindows.h"
#include "app/CSettingsForControls.h"
#include "app/CSoundTools.h"
#include "controls/CControl.h"
#include "document/DocumentFixture.h"
#include "editors/panel/CPanel.h"
#include "editors/panel/PanelFiles.h"
#include "editors/panel/PanelParameters.h"

namespace quib {
namespace {

constexpr int kBuiltIn = 8;

class PanelTest : public DocumentTest {
protected:
    CPanel& Open(const SlotPlace& place) {
        CPluginWindow* const window = windows.Show(place);
        EXPECT_NE(window->Panel(), nullptr);
        QCoreApplication::processEvents();
        return *window->Panel();
    }
    static CControl* Showing(CPanel& panel, int parameter) {
        for (const auto& control : panel.Controls()) {
            if (control->Value() == &panel.Values().Value(parameter)) return control.get();
        }
        return nullptr;
    }

    CPluginWindows windows{*workstation};
};

std::string TextOf(const char* name) {
    QFile file(QStringLiteral(":/panels/") + QLatin1String(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll().toStdString();
}

TEST_F(PanelTest, EveryParameterOfTheBuiltInsHasItsPlace) {
    PluginEnvironment environment;
    int found = 0;
    for (const char* const kind : {"PluginInstruments", "PluginEffects"}) {
        const QDir plugins(QStringLiteral(QUIB_BIN_DIR "/") + QLatin1String(kind));
        for (const QString& name : plugins.entryList({QStringLiteral("*.so")}, QDir::Files)) {
            std::string error;
            const auto plugin = CPlugin::LoadAny(plugins.filePath(name).toStdString(), environment, error);
            ASSERT_NE(plugin, nullptr) << error;
            const auto layout = FindPanelLayout(plugin->Identity().Key(), {});
            ASSERT_TRUE(layout) << qPrintable(name);
            std::set<int> all;
            for (std::size_t parameter = 0; parameter < plugin->Parameters().size(); ++parameter)
                all.insert(static_cast<int>(parameter));
            EXPECT_EQ(ParametersOf(*layout).placed, all) << qPrintable(name);
            ++found;
        }
    }
    EXPECT_EQ(found, kBuiltIn);
}

TEST_F(PanelTest, TheCompressorShowsTheLevelThatItHearsUntilItHasBeenQuietForLong) {
    QString error;
    const SlotPlace place{SlotPlace::EKind::kInsert, At(AddSynth())->Id(), 0};
    ASSERT_TRUE(Places().LoadPlugin(place, QStringLiteral("QUIB compressor"), error)) << error.toStdString();
    CPanel& panel = Open(place);
    const auto render = [&](int blocks) {
        for (int block = 0; block < blocks; ++block) workstation->Audio().RenderBlock();
        panel.Follow();
    };
    render(8);
    EXPECT_TRUE(panel.Values().Measured().empty()) << "nothing has sounded";
    const unsigned before = panel.Values().MeasuredCount();
    workstation->Audio().Post({EngineCommand::EKind::kAudition, At(0)->Id(), 60, 127.0F});
    render(8);
    ASSERT_FALSE(panel.Values().Measured().empty());
    EXPECT_GT(panel.Values().Measured().back().level, -60);
    EXPECT_NE(panel.Values().MeasuredCount(), before);
    workstation->Audio().Post({EngineCommand::EKind::kAudition, At(0)->Id(), 60, 0.0F});
    for (std::size_t tick = 0; tick < 10 * CPanelValues::kMeasuredTicks && !panel.Values().Measured().empty(); ++tick) {
        render(8);
    }
    EXPECT_TRUE(panel.Values().Measured().empty()) << "its pictures stand still";
}

TEST_F(PanelTest, HostileLayoutsAreRefusedOrDrawnWithoutWhatTheyGetWrong) {
    std::string error;
    const std::string good = TextOf("synth.panel");
    ASSERT_TRUE(ReadPanelLayout(good, error)) << error;
    const std::string deep = [] {
        std::string text = "panel 1 vst2:QbSy 100 100\n";
        for (int depth = 0; depth < 9; ++depth)
            text += std::string(static_cast<std::size_t>(2 * depth), ' ') + "row *\n";
        return text;
    }();
    std::string many = "panel 1 vst2:QbSy 100 100\n";
    for (int line = 0; line < 2001; ++line) many += "row 1\n";
    for (const std::string& bad :
         {std::string(), std::string("column *\n"), std::string("panel 2 vst2:QbSy 10 10\n"),
          std::string("panel 1 vst2:QbSy 0 10\n"), std::string("panel 1 vst2:Qb 10 10\n"),
          std::string("panel 1 vst2:QbSy 10 10\n    row *\n"), std::string("panel 1 vst2:QbSy 10 10\ntext \"open\n"),
          deep, many, good + std::string(1, '\0'), good + std::string(65536, ' ')}) {
        EXPECT_FALSE(ReadPanelLayout(bad, error)) << bad.substr(0, 60);
        EXPECT_FALSE(error.empty());
    }
    AddSynth();
    const CSettingsForControls forControls(workstation->Settings());
    std::mt19937 random(1);
    for (int round = 0; round < 150; ++round) {
        std::string text = good;
        for (int change = 0; change < 8; ++change)
            text[random() % text.size()] = "0123456789-*@:.|\" xw="[random() % 21];
        const auto layout = ReadPanelLayout(text, error);
        if (!layout) continue;
        CPanel panel(forControls, *workstation, At(0)->plugin.ForEdit()->plugin, *layout);
        panel.resize(panel.sizeHint().boundedTo({2000, 2000}));
        panel.show();
        panel.Follow();
    }
}

TEST_F(PanelTest, AUsersLayoutWinsAndWhatItLeavesOutStandsBelow) {
    AddSynth();
    QDir().mkpath(workstation->ProgramFolders().program + "Panels");
    QFile file(workstation->ProgramFolders().program + "Panels/mine.panel");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const std::string key = PluginAt(0).Identity().Key();
    file.write(("panel 1 vst2:0x" + key.substr(key.find(':') + 1) +
                " 400 200\ncolumn *\n  group * \"A\" mix\n    knob 0\n    knob 9999\n    nonsense\n      knob 1\n")
                   .c_str());
    file.close();
    CPanel& panel = Open(Place(0));
    EXPECT_EQ(panel.width(), 400);
    for (int parameter = 0; parameter < panel.Values().Count(); ++parameter)
        EXPECT_NE(Showing(panel, parameter), nullptr) << parameter;
}

TEST_F(PanelTest, TwoSoundsAreComparedAndARandomOneKeepsLevelsAndPitch) {
    AddSynth();
    CSoundTools tools(*workstation, At(0)->plugin.ForEdit()->plugin);
    const auto values = [this] {
        std::vector<float> all;
        for (int index = 0; index < 60; ++index) all.push_back(PluginAt(0).Parameter(index));
        return all;
    };
    const auto a = values();
    const int steps = Steps().index();
    tools.Randomise(20);
    const auto random = values();
    int moved = 0;
    for (std::size_t index = 0; index < a.size(); ++index) {
        const std::string name = PluginAt(0).Parameters()[index].name;
        EXPECT_LE(std::abs(random[index] - a[index]), 0.201F) << name;
        if (name.find("Level") != std::string::npos) {
            EXPECT_EQ(random[index], a[index]) << name;
        }
        moved += random[index] != a[index];
    }
    EXPECT_GT(moved, 20);
    EXPECT_EQ(Steps().index(), steps + 1);
    tools.Swap();
    EXPECT_EQ(values(), a);
    tools.CopyToOther();
    tools.Swap();
    EXPECT_EQ(values(), a) << "copied over the random one";
    while (Steps().index() > steps) Steps().undo();
    EXPECT_EQ(values(), a);
}

TEST_F(PanelTest, AKnobIsOneStepOfUndoAndWhatHasNoEffectIsOff) {
    AddSynth();
    CPanel& panel = Open(Place(0));
    constexpr int kWave = 0, kWidth = 4, kCutoff = 24;
    ASSERT_NE(Showing(panel, kWidth), nullptr);
    panel.Values().Set(kWave, 0);
    panel.Follow();
    EXPECT_FALSE(Showing(panel, kWidth)->enabled);
    panel.Values().Set(kWave, 1.0F / 3);  // the pulse
    panel.Follow();
    EXPECT_TRUE(Showing(panel, kWidth)->enabled);

    const int steps = Steps().index();
    CControl& knob = *Showing(panel, kCutoff);
    const float before = panel.Values().Get(kCutoff);
    knob.BeginGesture();
    knob.SetValueAndUpdate(true, true, 0.25F);
    knob.SetValueAndUpdate(true, true, 0.5F);
    EXPECT_NEAR(PluginAt(0).Parameter(kCutoff), 0.5F, 1e-4F) << "heard while it is turned";
    knob.EndGesture();
    EXPECT_EQ(Steps().index(), steps + 1);
    Steps().undo();
    panel.Follow();
    EXPECT_NEAR(knob.ValueNow(), before, 1e-4F);
}

}  // namespace
}  // namespace quib
