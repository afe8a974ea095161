// SPDX-License-Identifier: GPL-3.0-or-later
// A sound card for the tests, as an external PCM plug-in of ALSA: it plays by the clock into nothing. Its
// configuration names a folder; a file there named "absent" takes the card away, "mute" keeps it from starting,
// "busy" refuses it once, and "dry" makes it run dry once, which it never does by itself.
#include <alsa/asoundlib.h>
#include <alsa/pcm_external.h>
#include <alsa/pcm_ioplug.h>
#include <sys/timerfd.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <string>

namespace {

struct Card {
    snd_pcm_ioplug_t io{};
    std::string folder;
    double startTime = 0;
    bool running = false;

    bool Has(const char* file) const { return access((folder + "/" + file).c_str(), F_OK) == 0; }
    bool Take(const char* file) const { return unlink((folder + "/" + file).c_str()) == 0; }
};

Card& Of(snd_pcm_ioplug_t* io) { return *static_cast<Card*>(io->private_data); }

double Now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

int Start(snd_pcm_ioplug_t* io) {
    if (Of(io).Has("mute")) return -EIO;
    Of(io).startTime = Now();
    Of(io).running = true;
    const auto period = static_cast<long>(1e9 * static_cast<double>(io->period_size) / io->rate);
    const itimerspec times{{0, period}, {0, period}};
    return timerfd_settime(io->poll_fd, 0, &times, nullptr);
}

int Stop(snd_pcm_ioplug_t* io) {
    Of(io).running = false;
    return 0;
}

snd_pcm_sframes_t Pointer(snd_pcm_ioplug_t* io) {
    Card& card = Of(io);
    if (card.Has("absent")) return -ENODEV;
    if (card.running && card.Take("dry")) return -EPIPE;
    if (!card.running) return static_cast<snd_pcm_sframes_t>(io->hw_ptr);
    const auto played = static_cast<snd_pcm_uframes_t>((Now() - card.startTime) * io->rate);
    // However late its feeder is, one frame is left to play.
    const auto written = std::max(snd_pcm_uframes_t{io->appl_ptr}, snd_pcm_uframes_t{1});
    return static_cast<snd_pcm_sframes_t>(std::min(played, written - 1) % io->buffer_size);
}

int Revents(snd_pcm_ioplug_t* io, pollfd* descriptors, unsigned, unsigned short* events) {
    std::uint64_t count = 0;
    if ((descriptors[0].revents & POLLIN) != 0) [[maybe_unused]]
        const auto got = read(io->poll_fd, &count, sizeof count);
    *events = count > 0 ? POLLOUT : 0;
    return 0;
}

snd_pcm_sframes_t Transfer(snd_pcm_ioplug_t* io, const snd_pcm_channel_area_t*, snd_pcm_uframes_t,
                           snd_pcm_uframes_t size) {
    return Of(io).Has("absent") ? -ENODEV : static_cast<snd_pcm_sframes_t>(size);
}

int Close(snd_pcm_ioplug_t* io) {
    close(io->poll_fd);
    delete &Of(io);
    return 0;
}

const snd_pcm_ioplug_callback_t kCallbacks = [] {
    snd_pcm_ioplug_callback_t callbacks{};
    callbacks.start = &Start;
    callbacks.stop = &Stop;
    callbacks.pointer = &Pointer;
    callbacks.transfer = &Transfer;
    callbacks.close = &Close;
    callbacks.prepare = &Stop;
    callbacks.poll_revents = &Revents;
    return callbacks;
}();

std::string FolderOf(snd_config_t* configuration) {
    snd_config_t* entry = nullptr;
    const char* text = nullptr;
    if (snd_config_search(configuration, "folder", &entry) < 0 || snd_config_get_string(entry, &text) < 0) return {};
    return text;
}

int Constrain(snd_pcm_ioplug_t* io) {
    const unsigned access = SND_PCM_ACCESS_RW_INTERLEAVED;
    const unsigned format = SND_PCM_FORMAT_S16_LE;
    snd_pcm_ioplug_set_param_list(io, SND_PCM_IOPLUG_HW_ACCESS, 1, &access);
    snd_pcm_ioplug_set_param_list(io, SND_PCM_IOPLUG_HW_FORMAT, 1, &format);
    snd_pcm_ioplug_set_param_minmax(io, SND_PCM_IOPLUG_HW_CHANNELS, 2, 2);
    snd_pcm_ioplug_set_param_minmax(io, SND_PCM_IOPLUG_HW_RATE, 44100, 48000);
    snd_pcm_ioplug_set_param_minmax(io, SND_PCM_IOPLUG_HW_PERIOD_BYTES, 64 * 4, 8192 * 4);
    return snd_pcm_ioplug_set_param_minmax(io, SND_PCM_IOPLUG_HW_PERIODS, 2, 8);
}

}  // namespace

extern "C" {

SND_PCM_PLUGIN_DEFINE_FUNC(testcard) {
    static_cast<void>(root);
    auto* const card = new Card;
    card->folder = FolderOf(conf);
    if (const int refusal = card->Has("absent") ? -ENODEV : card->Take("busy") ? -EBUSY : 0; refusal != 0) {
        delete card;
        return refusal;
    }
    card->io.version = SND_PCM_IOPLUG_VERSION;
    card->io.name = "Test card";
    card->io.poll_fd = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    card->io.poll_events = POLLIN;
    card->io.callback = &kCallbacks;
    card->io.private_data = card;
    const int result = snd_pcm_ioplug_create(&card->io, name, stream, mode);
    if (result < 0) {
        close(card->io.poll_fd);
        delete card;
        return result;
    }
    Constrain(&card->io);
    *pcmp = card->io.pcm;
    return 0;
}

SND_PCM_PLUGIN_SYMBOL(testcard)
}
