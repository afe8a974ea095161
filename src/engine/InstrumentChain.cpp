// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/InstrumentChain.h"

#include "engine/ParameterChange.h"

namespace quib {

namespace {

// Earlier first, equal frames in the order in which they were added. Lists are short and nearly sorted.
void SortByFrame(std::vector<BlockEvent>& events) noexcept {
    for (std::size_t index = 1; index < events.size(); ++index) {
        const BlockEvent event = events[index];
        std::size_t place = index;
        for (; place > 0 && events[place - 1].deltaFrames > event.deltaFrames; --place)
            events[place] = events[place - 1];
        events[place] = event;
    }
}

bool BeginsNote(const BlockEvent& event) noexcept { return (event.status & 0xf0) == kNoteOn && event.data2 > 0; }

// While the plug-in's state is being changed no note begins, but every note still ends afterwards.
void KeepForNextBlock(std::vector<BlockEvent>& events) noexcept {
    std::erase_if(events, BeginsNote);
    for (BlockEvent& event : events) event.deltaFrames = 0;
}

void SendEvents(BlockInstrument& entry, const BlockContext& block) noexcept {
    InstrumentPlayState& play = entry.instrument->play;
    // What finds no room waits, but for notes that would begin.
    std::erase_if(play.liveEvents.Items(), [&](const LiveEvent& event) {
        const BlockEvent placed{event.status, event.data1, event.data2, FrameOf(event.time, block)};
        return play.blockEvents.Add(placed) || BeginsNote(placed);
    });
    SortByFrame(play.blockEvents.Items());
    if (entry.plugin->SendEvents(play.blockEvents.Items())) {
        play.blockEvents.Items().clear();
    } else {
        KeepForNextBlock(play.blockEvents.Items());
    }
}

}  // namespace

void RenderChain(BlockInstrument& entry, const BlockContext& block) noexcept {
    CInstrument& instrument = *entry.instrument;
    PlayInstrumentAutomation(entry, block);
    entry.plugin->SetBlockTime(block.time);
    SendEvents(entry, block);
    if (!entry.plugin->CanReplace()) return;
    entry.plugin->Process(block.frames);
    if (entry.plugin->OutputCount() == 0) return;
    entry.left = entry.plugin->Left();
    entry.right = entry.plugin->Right();
    for (std::size_t index = 0; index < kInsertCount; ++index) {
        CPlugin* const insert = entry.inserts[index];
        if (insert == nullptr || !insert->CanReplace() || !(instrument.strip.insertOn[index].Get() > 0.0F)) continue;
        insert->SetBlockTime(block.time);
        insert->Process(entry.left, entry.right, block.frames);
        entry.left = insert->Left();
        entry.right = insert->Right();
    }
}

}  // namespace quib
