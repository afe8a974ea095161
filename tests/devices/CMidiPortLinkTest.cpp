// SPDX-License-Identifier: GPL-3.0-or-later
// The ALSA sequencer's events, made by hand: what a machine without a sequencer can test of it.
#include "Testing.h"
#include "devices/CMidiPortLink.h"

namespace quib {
namespace {

snd_seq_event_t Note(snd_seq_event_type type, int channel, int key, int velocity) {
    snd_seq_event_t event{};
    event.type = static_cast<snd_seq_event_type_t>(type);
    event.data.note.channel = static_cast<unsigned char>(channel);
    event.data.note.note = static_cast<unsigned char>(key);
    event.data.note.velocity = static_cast<unsigned char>(velocity);
    return event;
}

snd_seq_event_t Control(snd_seq_event_type type, int channel, unsigned number, int value) {
    snd_seq_event_t event{};
    event.type = static_cast<snd_seq_event_type_t>(type);
    event.data.control.channel = static_cast<unsigned char>(channel);
    event.data.control.param = number;
    event.data.control.value = value;
    return event;
}

TEST(MidiMessageOfAlsaTest, ChannelMessagesAreTranslatedAndOthersAreNot) {
    const struct {
        snd_seq_event_t event;
        std::array<int, 3> bytes;
    } cases[] = {
        {Note(SND_SEQ_EVENT_NOTEON, 9, 60, 100), {0x99, 60, 100}},
        {Note(SND_SEQ_EVENT_NOTEOFF, 15, 60, 64), {0x8f, 60, 0}},
        {Control(SND_SEQ_EVENT_CONTROLLER, 1, 7, 127), {0xb1, 7, 127}},
        {Control(SND_SEQ_EVENT_PGMCHANGE, 2, 0, 5), {0xc2, 5, 0}},
        {Control(SND_SEQ_EVENT_CHANPRESS, 3, 0, 99), {0xd3, 99, 0}},
        {Control(SND_SEQ_EVENT_PITCHBEND, 4, 0, -8192), {0xe4, 0, 0}},
        {Control(SND_SEQ_EVENT_PITCHBEND, 4, 0, 0), {0xe4, 0, 64}},
        {Control(SND_SEQ_EVENT_PITCHBEND, 4, 0, 8191), {0xe4, 127, 127}},
    };
    for (const auto& [event, bytes] : cases) {
        const auto message = ToMessage(event, 77);
        ASSERT_TRUE(message);
        EXPECT_EQ((std::array<int, 3>{message->status, message->data1, message->data2}), bytes);
        EXPECT_EQ(message->time, 77U);
    }
    for (const auto type : {SND_SEQ_EVENT_CLOCK, SND_SEQ_EVENT_SYSEX, SND_SEQ_EVENT_SENSING, SND_SEQ_EVENT_KEYPRESS})
        EXPECT_FALSE(ToMessage(Control(type, 0, 0, 0), 0));
}

// A sequencer whose ports come and go as the test says; the link hears of it as from the real one.
class CMidiPortLinkTest : public testing::Test, protected CMidiPorts {
protected:
    std::optional<snd_seq_addr_t> Find(const std::string& name) override {
        const auto found = known.find(name);
        return found == known.end() ? std::nullopt : std::optional(found->second);
    }
    bool Connect(snd_seq_addr_t source) override {
        ++attempts;
        connectedTo = source.client;
        return !refuses;
    }
    void Announce(snd_seq_event_type type, int client, int port = 0) {
        snd_seq_event_t event{};
        event.type = static_cast<snd_seq_event_type_t>(type);
        event.source = {SND_SEQ_CLIENT_SYSTEM, SND_SEQ_PORT_SYSTEM_ANNOUNCE};
        event.data.addr = {static_cast<unsigned char>(client), static_cast<unsigned char>(port)};
        link.Handle(event, 0);
    }
    void Come(const std::string& name, unsigned char client) {
        known[name] = {client, 0};
        Announce(SND_SEQ_EVENT_PORT_START, client);
    }
    void Go(const std::string& name) {
        const snd_seq_addr_t address = known.at(name);
        known.erase(name);
        Announce(SND_SEQ_EVENT_PORT_EXIT, address.client, address.port);
    }
    void Press(int key) { link.Handle(Note(SND_SEQ_EVENT_NOTEON, 0, key, 90), 0); }
    // Note ons less note offs that have reached the engine.
    int Sounding() {
        for (MidiMessage message; queue.TryPop(message);) sounding += message.status >= 0x90 ? 1 : -1;
        return sounding;
    }

    std::map<std::string, snd_seq_addr_t> known;
    int attempts = 0;
    int connectedTo = -1;
    bool refuses = false;
    int sounding = 0;
    CBoundedQueue<MidiMessage> queue{64};
    CMidiPortLink link{*this, queue};
};

TEST_F(CMidiPortLinkTest, APortIsConnectedByNameWheneverItIsThere) {
    link.Listen("Keys:out");
    Come("Other:out", 20);
    EXPECT_FALSE(link.IsConnected());
    for (const std::uint8_t client : {std::uint8_t{24}, std::uint8_t{31}}) {  // plugged in anew it gets another number
        Come("Keys:out", client);
        EXPECT_TRUE(link.IsConnected());
        EXPECT_EQ(connectedTo, client);
        Press(60);
        EXPECT_EQ(Sounding(), 1);
        Announce(SND_SEQ_EVENT_PORT_EXIT, client, 1);  // another port of it
        Announce(SND_SEQ_EVENT_CLIENT_EXIT, 20);
        EXPECT_TRUE(link.IsConnected());
        EXPECT_EQ(Sounding(), 1);
        Go("Keys:out");
        EXPECT_FALSE(link.IsConnected());
        EXPECT_EQ(Sounding(), 0) << "a key hangs";
    }
    EXPECT_EQ(attempts, 2);
    refuses = true;
    Come("Keys:out", 40);
    EXPECT_FALSE(link.IsConnected());
    refuses = false;
    Announce(SND_SEQ_EVENT_PORT_CHANGE, 40);
    EXPECT_TRUE(link.IsConnected());
}

TEST_F(CMidiPortLinkTest, OfTwoPortsOfOneNameTheOtherTakesOverAndLateNamesCount) {
    known["Keys:out"] = {24, 0};
    link.Listen("Keys:out");
    known["Keys:out"] = {25, 0};
    Announce(SND_SEQ_EVENT_CLIENT_EXIT, 24);
    EXPECT_EQ(connectedTo, 25);
    Go("Keys:out");
    known["Keys:out"] = {26, 0};  // a program that is named after its port was made
    Announce(SND_SEQ_EVENT_CLIENT_CHANGE, 26);
    EXPECT_EQ(connectedTo, 26);
    EXPECT_TRUE(link.IsConnected());
}

TEST_F(CMidiPortLinkTest, WhereEventsWereLostNoKeyHangsAndThePortIsLookedForAgain) {
    Come("Keys:out", 24);
    link.Listen("Keys:out");
    Press(60);
    link.LostSome(0);
    EXPECT_EQ(Sounding(), 0);
    EXPECT_EQ(attempts, 1);
    known["Keys:out"] = {25, 0};
    link.LostSome(0);
    EXPECT_EQ(connectedTo, 25);
    known.clear();
    link.LostSome(0);
    EXPECT_FALSE(link.IsConnected());
}

TEST_F(CMidiPortLinkTest, WhatTheUserTakesApartEndsItsNotes) {
    link.Listen("Keys:out");
    snd_seq_event_t event{};
    event.type = SND_SEQ_EVENT_PORT_UNSUBSCRIBED;
    event.source = {SND_SEQ_CLIENT_SYSTEM, SND_SEQ_PORT_SYSTEM_ANNOUNCE};
    event.dest = {130, 0};
    Press(60);
    event.data.connect.dest = {140, 0};  // two other programs
    link.Handle(event, 0);
    EXPECT_EQ(Sounding(), 1);
    event.data.connect.dest = {130, 0};
    link.Handle(event, 0);
    EXPECT_EQ(Sounding(), 0);
}

}  // namespace
}  // namespace quib
