// SPDX-License-Identifier: GPL-3.0-or-later
#include "Testing.h"
#include "engine/strip/StripTargets.h"

namespace quib {
namespace {

TEST(CLevelTables, spanTheirRangesAndMeetInAFlatPair) {
    const CLevelTables tables;
    const struct {
        float control, send, channel, crossfade;
    } cases[] = {{0, 1 / 1024.0f, 1 / 1024.0f, 0.0039f},
                 {31.9f, 0.25f / 16.72f, 0.25f / 16.72f, 0.1767767f},
                 {63, 0.25f, 0.25f, 0.70710677f},
                 {64.5f, 0.25f, 0.25f, 0.70710677f},
                 {127, 1, 2, 1},
                 {128, 1 / 1024.0f, 1 / 1024.0f, 0.0039f},
                 {-1, 1, 2, 1},
                 {std::numeric_limits<float>::quiet_NaN(), 1 / 1024.0f, 1 / 1024.0f, 0.0039f},
                 {1e30f, 1 / 1024.0f, 1 / 1024.0f, 0.0039f}};
    for (const auto& c : cases) {
        EXPECT_NEAR(tables.SendGain(c.control), c.send, c.send * 1e-4f) << c.control;
        EXPECT_NEAR(tables.ChannelGain(c.control), c.channel, c.channel * 1e-4f) << c.control;
        EXPECT_NEAR(tables.CrossfadeGainB(c.control), c.crossfade, c.crossfade * 2e-3f) << c.control;
    }
    for (int control = 1; control < 128; ++control) {
        const float ratio =
            tables.ChannelGain(static_cast<float>(control)) / tables.ChannelGain(static_cast<float>(control - 1));
        EXPECT_NEAR(ratio, control < 64 ? 1.092f : control == 64 ? 1.0f : 1.0336f, 1e-4f) << control;
    }
    EXPECT_EQ(MakeMasterTargets(127, 0, tables).crossfadeA, 1);
    EXPECT_NEAR(MakeMasterTargets(127, 0, tables).crossfadeB, 0.0039f, 1e-4f);
    EXPECT_NEAR(MakeMasterTargets(127, 63, tables).crossfadeA, 0.7071f, 1e-4f);
    EXPECT_NEAR(MakeMasterTargets(127, 63, tables).crossfadeB, 0.7071f, 1e-4f);
    EXPECT_EQ(MakeMasterTargets(127, 127, tables).crossfadeB, 1);
}

TEST(StripTargets, cutTheFarSideByThePan) {
    const CLevelTables tables;
    const struct {
        float pan, left, right;
    } cases[] = {{0, 1, 1},           {0.25f, 0.625f, 1}, {0.5f, 0.25f, 1},    {0.75f, 0.125f, 1}, {1, 0, 1},
                 {-0.25f, 1, 0.625f}, {-0.5f, 1, 0.25f},  {-0.75f, 1, 0.125f}, {-1, 1, 0},         {1.5f, 0, 1}};
    for (const auto& c : cases) {
        StripInput settings;
        settings.level = 127;
        settings.pan = c.pan;
        const StripTargets targets = MakeStripTargets(settings, tables, 1, 1);
        EXPECT_NEAR(targets.gainLeft, 2 * c.left, 1e-6f) << c.pan;
        EXPECT_NEAR(targets.gainRight, 2 * c.right, 1e-6f) << c.pan;
    }
}

TEST(StripTargets, followMuteCrossfadeMembershipAndSends) {
    const CLevelTables tables;
    StripInput settings;
    settings.level = 127;
    settings.crossfadeB = 1;
    EXPECT_FLOAT_EQ(MakeStripTargets(settings, tables, 0.5f, 0.25f).gainLeft, 0.5f);
    settings.crossfadeA = 1;
    EXPECT_FLOAT_EQ(MakeStripTargets(settings, tables, 0.5f, 0.25f).gainLeft, 1.0f);
    settings.soloMuted = 1;
    settings.pan = 1;
    settings.sendOn[2] = settings.sendOn[3] = 1;
    settings.sendLevel[2] = 127;
    const StripTargets targets = MakeStripTargets(settings, tables, 0.5f, 0.25f);
    EXPECT_EQ(targets.gainLeft, 0.000001f);
    EXPECT_EQ(targets.gainRight, 0.000001f);
    EXPECT_EQ(targets.send[0], 0.000001f);
    EXPECT_EQ(targets.send[2], 1);
    EXPECT_NEAR(targets.send[3], 1 / 1024.0f, 1e-7f);
    EXPECT_FALSE(targets.holdSend[2]);
    settings.hasSendOutputs = true;
    EXPECT_TRUE(MakeStripTargets(settings, tables, 1, 1).holdSend[2]);
    EXPECT_FALSE(MakeStripTargets(settings, tables, 1, 1).holdSend[1]);
}

}  // namespace
}  // namespace quib
