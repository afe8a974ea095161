// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A real JACK server without hardware, and a client of it that stands for another program: it records what
// it is connected to and plays MIDI.

#include <jack/jack.h>
#include <jack/midiport.h>
#include <sys/types.h>

#include <array>
#include <atomic>
#include <string>
#include <vector>

namespace quib {

class CJackServer {
public:
    // False where jackd is not installed.
    static bool IsInstalled();

    // A patient server waits for its clients in every block, so that no sound and no message gets lost,
    // whatever else the machine does. The other kind is what users run.
    enum class EMode { kPatient, kRealTime };

    explicit CJackServer(int blockSize, EMode mode = EMode::kPatient);
    ~CJackServer();
    CJackServer(const CJackServer&) = delete;
    CJackServer& operator=(const CJackServer&) = delete;

    // Starts it and waits until clients can connect.
    bool Start();
    // SIGTERM lets it say goodbye, SIGKILL does not.
    void Stop(int signal = 15);

private:
    std::string name;
    int nameLock;
    std::vector<std::string> arguments;
    pid_t process = 0;
};

class CJackPeer {
public:
    explicit CJackPeer(std::size_t framesToRecord = 0);
    ~CJackPeer();
    CJackPeer(const CJackPeer&) = delete;
    CJackPeer& operator=(const CJackPeer&) = delete;

    bool IsOpen() const { return client != nullptr; }
    bool Connect(const std::string& source, const std::string& target);
    bool Disconnect(const std::string& source, const std::string& target);
    // Connects our program's two ports and begins to record.
    bool RecordProgram();
    // One message in the next block, at a frame of it. Waits until it has been handed over; false when it was not.
    bool SendMidi(std::array<unsigned char, 3> bytes, int frame = 0);
    // Where in the recording that was.
    std::size_t SentAt() const { return sentAt.load(); }
    std::vector<std::string> Connections(const std::string& port) const;
    // Of a port on its way out, in frames.
    int PlaybackLatency(const std::string& port) const {
        jack_latency_range_t range{};
        jack_port_get_latency_range(jack_port_by_name(client, port.c_str()), JackPlaybackLatency, &range);
        return static_cast<int>(range.max);
    }
    void SetBlockSize(int frames) { jack_set_buffer_size(client, static_cast<jack_nframes_t>(frames)); }

    std::size_t Recorded() const { return recorded.load(std::memory_order_acquire); }
    // What was recorded of a channel so far.
    std::vector<float> Channel(std::size_t index) const;
    // The newest sample that came in on a channel.
    float Last(std::size_t index) const { return newest[index].load(); }
    int Xruns() const { return xruns.load(); }

private:
    static int OnProcess(jack_nframes_t frames, void* self);
    void Process(jack_nframes_t frames);

    jack_client_t* client = nullptr;
    std::array<jack_port_t*, 2> inputs{};
    jack_port_t* midi = nullptr;
    std::array<std::vector<float>, 2> sound;
    std::array<std::atomic<float>, 2> newest{};
    std::atomic<bool> recording{false};
    std::atomic<std::size_t> recorded{0};
    std::atomic<std::uint64_t> message{0};  // packed; 0 for none
    std::atomic<std::size_t> sentAt{0};
    std::atomic<int> xruns{0};
};

}  // namespace quib
