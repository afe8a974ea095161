// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/freeze/CFrozenFile.h"

#include <algorithm>
#include <cstring>

namespace quib {

namespace {

// The file: head, units, places, steps, each as it lies in memory, and the sum of all, the head last. The counts in
// the head are written when they are known.
struct Head {
    std::array<char, 8> mark{'Q', 'U', 'I', 'B', 'F', 'R', 'Z', '1'};
    std::array<char, CFrozenWriter::kKeyLength> key{};
    double sampleRate = 0;
    double quartersPerStep = 0;
    double quartersPerBar = 0;
    std::int64_t channels = 0;
    std::int64_t steps = 0;
    std::int64_t places = 0;
    std::int64_t units = 0;
    std::int64_t endsSilent = 0;
};
static_assert(sizeof(Head) == 136 && sizeof(FrozenStep) == 16, "the files have no gaps");

constexpr std::int64_t kMostSteps = 1 << 24;
constexpr std::size_t kUnitBytes = FrozenContent::kUnitFrames * sizeof(float);

// Of whole words; everything in the file is made of them, but for the last places.
std::uint64_t Sum(std::uint64_t sum, const void* bytes, std::size_t count) {
    const auto* at = static_cast<const char*>(bytes);
    while (count > 0) {
        std::uint64_t word = 0;
        const std::size_t part = std::min(count, sizeof word);
        std::memcpy(&word, at, part);
        sum = (sum ^ word) * 0x100000001b3U;
        sum ^= sum >> 29U;
        at += part;
        count -= part;
    }
    return sum;
}

bool IsSilent(const std::vector<float>& unit) {
    return std::ranges::all_of(unit, [](float sample) { return sample == 0.0F; });
}

class CFrozenReader {
public:
    explicit CFrozenReader(const std::filesystem::path& path) : stream(path, std::ios::binary) {
        std::error_code failure;
        size = std::filesystem::file_size(path, failure);
        if (failure) size = 0;
    }

    bool IsThere() const { return stream.good(); }
    bool Read(FrozenContent& content, std::string_view key) {
        Head head;
        if (!stream.read(reinterpret_cast<char*>(&head), sizeof head) || head.mark != Head().mark) return false;
        if (std::string_view(head.key.data(), head.key.size()) != key || !HasRoom(head)) return false;
        content.format = {head.sampleRate, head.quartersPerStep, head.quartersPerBar, static_cast<int>(head.channels)};
        content.endsSilent = head.endsSilent != 0;
        content.steps.resize(static_cast<std::size_t>(head.steps));
        content.places.resize(static_cast<std::size_t>(head.places));
        content.samples.resize(static_cast<std::size_t>(head.units) * FrozenContent::kUnitFrames);
        const bool taken = Take(content.samples.data(), content.samples.size() * sizeof(float)) &&
                           Take(content.places.data(), content.places.size() * sizeof(std::int32_t)) &&
                           Take(content.steps.data(), content.steps.size() * sizeof(FrozenStep));
        const std::uint64_t all = Sum(sum, &head, sizeof head);
        std::uint64_t told = 0;
        return taken && Take(&told, sizeof told) && told == all && Agrees(content, head.units);
    }

private:
    bool Take(void* bytes, std::size_t count) {
        if (!stream.read(static_cast<char*>(bytes), static_cast<std::streamsize>(count))) return false;
        sum = Sum(sum, bytes, count);
        return true;
    }

    // The counts are those of a file of this size.
    bool HasRoom(const Head& head) const {
        if (head.channels != 2 && head.channels != CFrozenTake::kMaximumChannels) return false;
        for (const std::int64_t count : {head.steps, head.places, head.units}) {
            if (count < 0 || count > kMostSteps) return false;
        }
        if (head.places % head.channels != 0) return false;
        const auto bytes = static_cast<std::uint64_t>(head.units) * kUnitBytes +
                           static_cast<std::uint64_t>(head.places) * sizeof(std::int32_t) +
                           static_cast<std::uint64_t>(head.steps) * sizeof(FrozenStep);
        return size == sizeof(Head) + bytes + sizeof(std::uint64_t);
    }

    static bool Agrees(const FrozenContent& content, std::int64_t units) {
        std::int64_t frame = 0;
        for (const FrozenStep& step : content.steps) {
            if (step.samples <= 0 || step.frame != frame) return false;
            frame += step.samples;
        }
        return std::ranges::all_of(content.places,
                                   [units](std::int32_t place) { return place >= -1 && place < units; });
    }

    std::ifstream stream;
    std::uintmax_t size = 0;
    std::uint64_t sum = 0;
};

}  // namespace

CFrozenWriter::CFrozenWriter(const std::filesystem::path& path, std::string frozenKey, const FrozenFormat& takeFormat)
    : file(path), key(std::move(frozenKey)), format(takeFormat), units(static_cast<std::size_t>(takeFormat.channels)) {
    key.resize(kKeyLength);
}

bool CFrozenWriter::Open(std::string& error) {
    if (!file.Create(error)) return false;
    stream.open(file.WorkingPath(), std::ios::binary | std::ios::trunc);
    const Head unknown;
    return Write(&unknown, sizeof unknown, error);
}

bool CFrozenWriter::Write(const void* bytes, std::size_t count, std::string& error) {
    if (stream.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(count))) return true;
    error = file.FinalPath().string() + ": cannot be written";
    return false;
}

bool CFrozenWriter::Add(const std::array<const float*, CFrozenTake::kMaximumChannels>& channels, int count,
                        std::string& error) {
    for (int first = 0; first < count;) {
        const int filled = static_cast<int>(units[0].size());
        const int part = std::min(count - first, FrozenContent::kUnitFrames - filled);
        for (std::size_t channel = 0; channel < units.size(); ++channel) {
            const float* const from = channels[channel];
            if (from != nullptr) {
                units[channel].insert(units[channel].end(), from + first, from + first + part);
            } else {
                units[channel].resize(units[channel].size() + static_cast<std::size_t>(part));
            }
        }
        if (filled + part == FrozenContent::kUnitFrames && !WriteUnits(error)) return false;
        first += part;
        frames += part;
    }
    return true;
}

bool CFrozenWriter::WriteUnits(std::string& error) {
    for (std::size_t channel = 0; channel < units.size(); ++channel) {
        std::vector<float>& unit = units[channel];
        unit.resize(FrozenContent::kUnitFrames);
        if (IsSilent(unit)) {
            places.push_back(-1);
        } else if (channel % 2 == 1 && places.back() >= 0 && unit == units[channel - 1]) {
            places.push_back(places.back());
        } else {
            if (!Write(unit.data(), kUnitBytes, error)) return false;
            sum = Sum(sum, unit.data(), kUnitBytes);
            places.push_back(unitCount++);
        }
    }
    for (std::vector<float>& unit : units) unit.clear();
    return true;
}

// Steps of which a part alone was rendered are none.
bool CFrozenWriter::Finish(bool endsSilent, std::string& error) {
    while (!steps.empty() && steps.back().frame + steps.back().samples > frames) steps.pop_back();
    if (!units[0].empty() && !WriteUnits(error)) return false;
    Head head;
    std::copy_n(key.begin(), kKeyLength, head.key.begin());
    head.sampleRate = format.sampleRate;
    head.quartersPerStep = format.quartersPerStep;
    head.quartersPerBar = format.quartersPerBar;
    head.channels = format.channels;
    head.steps = static_cast<std::int64_t>(steps.size());
    head.places = static_cast<std::int64_t>(places.size());
    head.units = unitCount;
    head.endsSilent = endsSilent ? 1 : 0;
    const std::size_t placeBytes = places.size() * sizeof(std::int32_t);
    const std::size_t stepBytes = steps.size() * sizeof(FrozenStep);
    sum = Sum(Sum(Sum(sum, places.data(), placeBytes), steps.data(), stepBytes), &head, sizeof head);
    if (!Write(places.data(), placeBytes, error) || !Write(steps.data(), stepBytes, error)) return false;
    if (!Write(&sum, sizeof sum, error)) return false;
    stream.seekp(0);
    if (!Write(&head, sizeof head, error)) return false;
    stream.close();
    return (stream || Write(nullptr, 0, error)) && file.Keep(error);
}

std::shared_ptr<const CFrozenTake> ReadFrozenFile(const std::filesystem::path& path, std::string_view key,
                                                  std::string& error) {
    CFrozenReader reader(path);
    FrozenContent content;
    if (!reader.IsThere()) {
        error = path.string() + ": is not there";
    } else if (!reader.Read(content, key)) {
        error = path.string() + ": is damaged";
    } else {
        return std::make_shared<const CFrozenTake>(std::move(content));
    }
    return nullptr;
}

}  // namespace quib
