// SPDX-License-Identifier: GPL-3.0-or-later
#include "JackServer.h"

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <thread>

extern char** environ;

// Programs of JACK meet in memory that the server hands from one to the next by means that ThreadSanitizer
// does not see; only here do two of them share a process. What our own side does stays watched.
extern "C" const char* __tsan_default_suppressions() { return "race:quib::CJackPeer::\n"; }  // NOLINT

namespace quib {

namespace {

constexpr auto kTick = std::chrono::milliseconds(5);

template <class Condition>
bool WaitUntil(Condition condition, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(kTick);
    }
    return true;
}

bool MayUseRealTime() {
    bool allowed = false;
    std::thread([&] {
        sched_param parameters{};
        parameters.sched_priority = 10;
        allowed = pthread_setschedparam(pthread_self(), SCHED_FIFO, &parameters) == 0;
    }).join();
    return allowed;
}

// JACK keeps the names of servers that were killed, and at most eight in all: a few names must do, each for
// one test program at a time. Gives the descriptor of the lock that holds the name.
int TakeName(std::string& name) {
    constexpr int kNames = 3;
    for (int number = 0;; number = (number + 1) % kNames) {
        name = "quib-test-" + std::to_string(number);
        const int lock = open(("/tmp/" + name + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        if (lock >= 0 && flock(lock, LOCK_EX | LOCK_NB) == 0) return lock;
        if (lock >= 0) close(lock);
        if (number + 1 == kNames) std::this_thread::sleep_for(kTick);
    }
}

bool AnswersClients() {
    jack_status_t status{};
    jack_client_t* const probe = jack_client_open("probe", JackNoStartServer, &status);
    if (probe == nullptr) return false;
    jack_client_close(probe);
    return true;
}

}  // namespace

bool CJackServer::IsInstalled() { return std::system("command -v jackd >/dev/null 2>&1") == 0; }  // NOLINT

CJackServer::CJackServer(int blockSize, EMode mode) : nameLock(TakeName(name)) {
    arguments = {"setpriv", "--pdeathsig", "KILL", "jackd", "-n", name, MayUseRealTime() ? "-R" : "-r"};
    if (mode == EMode::kPatient) arguments.insert(arguments.end(), {"-S", "-t", "20000"});
    arguments.insert(arguments.end(), {"-d", "dummy", "-r", "48000", "-p", std::to_string(blockSize)});
    setenv("JACK_DEFAULT_SERVER", name.c_str(), 1);  // NOLINT(concurrency-mt-unsafe)
    setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);     // NOLINT(concurrency-mt-unsafe)
    jack_set_error_function([](const char*) {});
    jack_set_info_function([](const char*) {});
}

CJackServer::~CJackServer() {
    Stop();
    close(nameLock);
}

bool CJackServer::Start() {
    std::vector<char*> words;
    for (std::string& argument : arguments) words.push_back(argument.data());
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        posix_spawn_file_actions_addopen(&actions, descriptor, "/dev/null", O_RDWR, 0);
    }
    const int result = posix_spawnp(&process, words[0], &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (result != 0) process = 0;
    return result == 0 && WaitUntil(AnswersClients, std::chrono::seconds(30));
}

void CJackServer::Stop(int signal) {
    if (process == 0) return;
    kill(process, signal);
    waitpid(process, nullptr, 0);
    process = 0;
}

CJackPeer::CJackPeer(std::size_t framesToRecord) {
    jack_status_t status{};
    client = jack_client_open("peer", JackNoStartServer, &status);
    if (client == nullptr) return;
    for (std::size_t index = 0; index < inputs.size(); ++index) {
        sound[index].assign(framesToRecord, 0.0F);
        inputs[index] =
            jack_port_register(client, index == 0 ? "in_1" : "in_2", JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0);
    }
    midi = jack_port_register(client, "midi", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
    jack_set_process_callback(client, &CJackPeer::OnProcess, this);
    jack_set_xrun_callback(
        client,
        [](void* self) {
            static_cast<CJackPeer*>(self)->xruns.fetch_add(1);
            return 0;
        },
        this);
    jack_activate(client);
}

CJackPeer::~CJackPeer() {
    if (client != nullptr) jack_client_close(client);
}

bool CJackPeer::Connect(const std::string& source, const std::string& target) {
    return jack_connect(client, source.c_str(), target.c_str()) == 0;
}

bool CJackPeer::Disconnect(const std::string& source, const std::string& target) {
    return jack_disconnect(client, source.c_str(), target.c_str()) == 0;
}

bool CJackPeer::RecordProgram() {
    recording = Connect("QUIB Sequencer:left", "peer:in_1") && Connect("QUIB Sequencer:right", "peer:in_2");
    return recording;
}

bool CJackPeer::SendMidi(std::array<unsigned char, 3> bytes, int frame) {
    message = static_cast<std::uint64_t>(frame) << 32 | 1U << 24 | static_cast<unsigned>(bytes[0]) << 16 |
              static_cast<unsigned>(bytes[1]) << 8 | bytes[2];
    return WaitUntil([this] { return message.load() == 0; }, std::chrono::seconds(10));
}

std::vector<std::string> CJackPeer::Connections(const std::string& port) const {
    std::vector<std::string> names;
    const char** const found = jack_port_get_all_connections(client, jack_port_by_name(client, port.c_str()));
    for (const char** name = found; name != nullptr && *name != nullptr; ++name) names.emplace_back(*name);
    if (found != nullptr) jack_free(static_cast<void*>(found));
    return names;
}

std::vector<float> CJackPeer::Channel(std::size_t index) const {
    const std::vector<float>& all = sound[index];
    return {all.begin(), all.begin() + static_cast<std::ptrdiff_t>(Recorded())};
}

int CJackPeer::OnProcess(jack_nframes_t frames, void* self) {
    static_cast<CJackPeer*>(self)->Process(frames);
    return 0;
}

void CJackPeer::Process(jack_nframes_t frames) {
    void* const events = jack_port_get_buffer(midi, frames);
    jack_midi_clear_buffer(events);
    if (const std::uint64_t packed = message.load(); packed != 0) {
        const auto frame = static_cast<jack_nframes_t>(packed >> 32);
        const std::array<jack_midi_data_t, 3> bytes = {static_cast<jack_midi_data_t>(packed >> 16),
                                                       static_cast<jack_midi_data_t>(packed >> 8),
                                                       static_cast<jack_midi_data_t>(packed)};
        jack_midi_event_write(events, std::min(frame, frames - 1), bytes.data(), bytes.size());
        sentAt = recorded + frame;
        message = 0;
    }
    if (!recording) return;
    const std::size_t done = recorded.load(std::memory_order_relaxed);
    const std::size_t count = std::min<std::size_t>(frames, sound[0].size() - done);
    for (std::size_t index = 0; index < inputs.size(); ++index) {
        const auto* const from = static_cast<const float*>(jack_port_get_buffer(inputs[index], frames));
        std::copy_n(from, count, sound[index].begin() + static_cast<std::ptrdiff_t>(done));
        newest[index] = from[frames - 1];
    }
    recorded.store(done + count, std::memory_order_release);
}

}  // namespace quib
