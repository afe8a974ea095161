// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/CAlsaMidiInput.h"

#include "devices/AlsaMessages.h"
#include "platform/Clock.h"
#include "platform/ThreadPriority.h"

namespace quib {

namespace {

constexpr int kRetryMilliseconds = 2;  // while note offs wait for room
constexpr int kEventsBetweenLooks = 256;
constexpr unsigned kReadable = SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ;

bool MeansNoSequencer(int error) noexcept { return error == -ENOENT || error == -ENODEV || error == -ENXIO; }

// Calls `visit(name, address)` for every port that can be listened to until it returns false.
template <class Visit>
void ForEachPort(snd_seq_t* handle, Visit visit) {
    snd_seq_client_info_t* client = nullptr;
    snd_seq_client_info_alloca(&client);
    snd_seq_port_info_t* port = nullptr;
    snd_seq_port_info_alloca(&port);
    snd_seq_client_info_set_client(client, -1);
    while (snd_seq_query_next_client(handle, client) >= 0) {
        const int number = snd_seq_client_info_get_client(client);
        if (number == SND_SEQ_CLIENT_SYSTEM || number == snd_seq_client_id(handle)) continue;
        snd_seq_port_info_set_client(port, number);
        snd_seq_port_info_set_port(port, -1);
        while (snd_seq_query_next_port(handle, port) >= 0) {
            const unsigned capability = snd_seq_port_info_get_capability(port);
            if ((capability & kReadable) != kReadable || (capability & SND_SEQ_PORT_CAP_NO_EXPORT) != 0) continue;
            const std::string name =
                std::string(snd_seq_client_info_get_name(client)) + ":" + snd_seq_port_info_get_name(port);
            if (!visit(name, *snd_seq_port_info_get_addr(port))) return;
        }
    }
}

}  // namespace

std::vector<std::string> CAlsaMidiInput::ListPorts() {
    QuietAlsa();
    std::vector<std::string> names;
    snd_seq_t* handle = nullptr;
    if (snd_seq_open(&handle, "default", SND_SEQ_OPEN_INPUT, SND_SEQ_NONBLOCK) < 0) return names;
    const Sequencer closing(handle);
    ForEachPort(handle, [&](const std::string& name, const snd_seq_addr_t&) {
        names.push_back(name);
        return true;
    });
    return names;
}

std::optional<snd_seq_addr_t> CAlsaMidiInput::Find(const std::string& name) {
    std::optional<snd_seq_addr_t> found;
    ForEachPort(sequencer.get(), [&](const std::string& candidate, const snd_seq_addr_t& address) {
        if (candidate == name) found = address;
        return !found;
    });
    return found;
}

bool CAlsaMidiInput::Connect(snd_seq_addr_t source) {
    return snd_seq_connect_from(sequencer.get(), port, source.client, source.port) >= 0;
}

bool CAlsaMidiInput::Open(const std::string& portName, std::string& error) {
    Close();
    QuietAlsa();
    snd_seq_t* handle = nullptr;
    const int result = snd_seq_open(&handle, "default", SND_SEQ_OPEN_INPUT, SND_SEQ_NONBLOCK);
    if (MeansNoSequencer(result)) return true;
    if (result < 0) {
        error = snd_strerror(result);
        return false;
    }
    sequencer.reset(handle);
    if (!MakePort(error)) {
        Close();
        return false;
    }
    link.Listen(portName);
    thread = std::thread([this] { Run(); });
    return true;
}

bool CAlsaMidiInput::MakePort(std::string& error) {
    snd_seq_t* const handle = sequencer.get();
    snd_seq_set_client_name(handle, kClientName);
    port = snd_seq_create_simple_port(handle, "in", SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE,
                                      SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_APPLICATION);
    const int count = snd_seq_poll_descriptors_count(handle, POLLIN);
    if (port < 0 || count < 0) {
        error = snd_strerror(port < 0 ? port : count);
        return false;
    }
    // From now on ports that come and go are announced; the wanted one may come before it is looked for.
    snd_seq_connect_from(handle, port, SND_SEQ_CLIENT_SYSTEM, SND_SEQ_PORT_SYSTEM_ANNOUNCE);
    descriptors.assign(static_cast<std::size_t>(count) + 1, pollfd{});
    descriptors[0] = {stopping.Descriptor(), POLLIN, 0};
    snd_seq_poll_descriptors(handle, descriptors.data() + 1, static_cast<unsigned>(count), POLLIN);
    return true;
}

void CAlsaMidiInput::Close() noexcept {
    if (thread.joinable()) {
        stopping.Signal();
        thread.join();
        stopping.Clear();
    }
    link.Leave(Nanoseconds());
    sequencer.reset();
}

void CAlsaMidiInput::Run() noexcept {
    SetRealTimePriority();
    while (Wait(link.Flush(Nanoseconds()) ? -1 : kRetryMilliseconds)) Receive();
}

// False when the thread is to end.
bool CAlsaMidiInput::Wait(int milliseconds) noexcept {
    poll(descriptors.data(), descriptors.size(), milliseconds);
    return (descriptors[0].revents & POLLIN) == 0;
}

// Everything that is there, but a flood does not keep the thread from ending.
void CAlsaMidiInput::Receive() noexcept {
    for (int count = 1; count % kEventsBetweenLooks != 0 || !stopping.WaitFor(0); ++count) {
        snd_seq_event_t* event = nullptr;
        const int result = snd_seq_event_input(sequencer.get(), &event);
        if (result == -ENOSPC) {
            link.LostSome(Nanoseconds());
        } else if (result < 0 || event == nullptr) {
            return;
        } else {
            link.Handle(*event, Nanoseconds());
        }
    }
}

}  // namespace quib
