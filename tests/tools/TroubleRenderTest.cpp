// SPDX-License-Identifier: GPL-3.0-or-later
// What quib-render does when a plug-in aborts, ends the process, throws or hangs. The cases that take ten seconds are
// run with QUIB_THOROUGH.
#include "ToolFixture.h"
#include "TroubleProject.h"

namespace quib {
namespace {

class CTroubleRenderTest : public CToolTest {};

TEST_F(CTroubleRenderTest, APluginThatEndsOrHangsIsNamed) {
    constexpr int kMissing = 3;  // left out, the rest is rendered
    const struct {
        const char* trouble;
        int exitCode;
        const char* told;
        bool slow = false;
    } cases[] = {{"abort:load:quib-scan", kMissing, "Trouble.dll: ended while it was tried"},
                 {"exit:load:quib-scan", kMissing, "Trouble.dll: the plug-in ended the process"},
                 {"throw:load:quib-scan", kMissing, "Trouble.dll: the plug-in threw an exception while being loaded"},
                 {"hang:load:quib-scan", kMissing, "Trouble.dll: the plug-in did not answer in time", true},
                 {"abort:open:quib-scan", kMissing, "Trouble.dll: ended while it was tried"},
                 {"exit:open:quib-scan", kMissing, "Trouble.dll: the plug-in ended the process"},
                 {"throw:open:quib-scan", kMissing, "Trouble.dll: the plug-in threw an exception while being loaded"},
                 {"hang:open:quib-scan", kMissing, "Trouble.dll: the plug-in did not answer in time", true},
                 {"abort:setChunk:quib-render", 1, "\"Trouble\" crashed while giving or taking its state"},
                 {"exit:setChunk:quib-render", 1, "\"Trouble\" ended the program while giving or taking its state"},
                 {"throw:setChunk:quib-render", 0, "Trouble: threw an exception while giving or taking its state"},
                 {"hang:setChunk:quib-render", 1, "\"Trouble\" has not returned for 10 s", true},
                 {"abort:process:quib-render", 1, "\"Trouble\" crashed while rendering"},
                 {"exit:process:quib-render", 1, "\"Trouble\" ended the program while rendering"},
                 {"throw:process:quib-render", 0, "Trouble: threw an exception while rendering"},
                 {"hang:process:quib-render", 1, "\"Trouble\" has not returned for 2 s while rendering"},
                 {"abort:editor:quib-render", 0, ""},
                 {"abort:close:quib-render", 0, "\"Trouble\" crashed while being closed"},
                 {"exit:close:quib-render", 0, "\"Trouble\" ended the program while being closed"},
                 {"throw:close:quib-render", 0, ""},
                 {"hang:close:quib-render", 0, "\"Trouble\" has not returned for 10 s", true}};
    Write("song.prg", TroubleProject());
    // What a plug-in that throws while it is closed leaves behind is its own.
    for (const auto& one : cases) {
        if (one.slow && std::getenv("QUIB_THOROUGH") == nullptr) continue;
        const Outcome outcome = RunCommand(std::string("ASAN_OPTIONS=detect_leaks=0 QUIB_TROUBLE=") + one.trouble +
                                           " " QUIB_BIN_DIR "/quib-render " + Path("song.prg") + " " + Path("out.wav") +
                                           " --seconds 1 --plugins " QUIB_BIN_DIR "/testplugins");
        EXPECT_EQ(outcome.exitCode, one.exitCode) << one.trouble << ": " << outcome.error;
        EXPECT_NE(outcome.error.find(one.told), std::string::npos) << one.trouble << ": " << outcome.error;
        std::printf("%-28s exit %d  %s\n", one.trouble, outcome.exitCode,
                    outcome.error.substr(0, outcome.error.find('\n')).c_str());
    }
}

}  // namespace
}  // namespace quib
