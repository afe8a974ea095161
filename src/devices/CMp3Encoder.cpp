// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/CMp3Encoder.h"

namespace quib {

bool CMp3Encoder::Load(const std::filesystem::path& name, std::string& error) {
    available = false;
    if (!library.Open(name, error)) return false;
    const auto find = [&](auto& function, const char* symbol) {
        function = library.Get<std::remove_reference_t<decltype(function)>>(symbol);
        if (function == nullptr) error = name.string() + " has no " + symbol;
        return function != nullptr;
    };
    available = find(init, "lame_init") && find(setInputRate, "lame_set_in_samplerate") &&
                find(setOutputRate, "lame_set_out_samplerate") && find(setChannels, "lame_set_num_channels") &&
                find(setMode, "lame_set_mode") && find(setBitRate, "lame_set_brate") &&
                find(setPrivateBit, "lame_set_extension") && find(setErrorProtection, "lame_set_error_protection") &&
                find(setCopyright, "lame_set_copyright") && find(setOriginal, "lame_set_original") &&
                find(setInfoTag, "lame_set_bWriteVbrTag") && find(initParameters, "lame_init_params") &&
                find(encode, "lame_encode_buffer_interleaved") && find(flush, "lame_encode_flush") &&
                find(getInfoTag, "lame_get_lametag_frame") && find(close, "lame_close");
    return available;
}

}  // namespace quib
