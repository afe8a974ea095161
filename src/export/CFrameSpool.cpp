// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/CFrameSpool.h"

namespace quib {

namespace {

std::streamsize BytesOf(int frames) { return static_cast<std::streamsize>(sizeof(float)) * frames; }

template <class Value>
auto* Raw(Value* values) {
    if constexpr (std::is_const_v<Value>) {
        return reinterpret_cast<const char*>(values);
    } else {
        return reinterpret_cast<char*>(values);
    }
}

}  // namespace

bool CFrameSpool::Open(std::string& error) {
    if (!file.Create(error)) return false;
    stream.open(file.WorkingPath(), std::ios::in | std::ios::out | std::ios::binary | std::ios::trunc);
    return stream.is_open() || Fail(error);
}

bool CFrameSpool::Write(const float* left, const float* right, int frames, std::string& error) {
    stream.write(Raw(&frames), sizeof frames);
    stream.write(Raw(left), BytesOf(frames));
    stream.write(Raw(right), BytesOf(frames));
    return stream.good() || Fail(error);
}

bool CFrameSpool::Rewind(std::string& error) {
    stream.flush();
    if (!stream.good()) return Fail(error);
    stream.seekg(0);
    return stream.good() || Fail(error);
}

int CFrameSpool::Read() {
    int frames = 0;
    if (!stream.read(Raw(&frames), sizeof frames)) return 0;
    block.resize(2 * static_cast<std::size_t>(frames));
    if (!stream.read(Raw(block.data()), 2 * BytesOf(frames))) return 0;
    return frames;
}

bool CFrameSpool::Fail(std::string& error) const {
    error = "Cannot keep sound beside \"" + file.FinalPath().string() + "\": the disk takes no more";
    return false;
}

}  // namespace quib
