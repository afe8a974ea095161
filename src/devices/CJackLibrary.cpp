// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/CJackLibrary.h"

namespace quib {

std::shared_ptr<const CJackLibrary> CJackLibrary::Load() {
    std::shared_ptr<const CJackLibrary> loaded(new CJackLibrary);
    return loaded->complete ? loaded : nullptr;
}

CJackLibrary::CJackLibrary() {
    std::string reason;
    if (!library.Open(kLibraryName, reason)) return;
    // It keeps things for as long as the process lives, which would be lost with it.
    library.Pin();
    const auto find = [&](auto& function, const char* symbol) {
        function = library.Get<std::remove_reference_t<decltype(function)>>(symbol);
        return function != nullptr;
    };
    complete = find(open, "jack_client_open") && find(close, "jack_client_close") && find(activate, "jack_activate") &&
               find(sampleRate, "jack_get_sample_rate") && find(blockSize, "jack_get_buffer_size") &&
               find(realTimePriority, "jack_client_real_time_priority") &&
               find(setProcess, "jack_set_process_callback") && find(setBlockSize, "jack_set_buffer_size_callback") &&
               find(setSampleRate, "jack_set_sample_rate_callback") && find(setXrun, "jack_set_xrun_callback") &&
               find(setConnect, "jack_set_port_connect_callback") && find(onShutdown, "jack_on_shutdown") &&
               find(registerPort, "jack_port_register") && find(portById, "jack_port_by_id") &&
               find(latencyRange, "jack_port_get_latency_range") && find(buffer, "jack_port_get_buffer") &&
               find(portName, "jack_port_name") && find(connections, "jack_port_get_all_connections") &&
               find(ports, "jack_get_ports") && find(connect, "jack_connect") && find(free, "jack_free") &&
               find(midiCount, "jack_midi_get_event_count") && find(midiEvent, "jack_midi_event_get") &&
               find(setErrorText, "jack_set_error_function") && find(setInfoText, "jack_set_info_function");
    if (!complete) return;
    // It would print to standard error; what matters comes back as results.
    setErrorText([](const char*) {});
    setInfoText([](const char*) {});
}

}  // namespace quib
