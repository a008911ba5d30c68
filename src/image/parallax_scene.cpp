#include "image/parallax_scene.h"

#include <algorithm>
#include <cstring>

#include "core/byte_stream.h"

namespace {

constexpr std::size_t kRecordHeadBytes = kParallaxNameBytes + 8;
constexpr std::size_t kKeyBytes = 28;
constexpr float kKeysPerSecond = 60.0f;

// The fields of a key lie in another order in the file than in memory.
ParallaxKey ReadKey(ByteReader& reader) {
    ParallaxKey key;
    key.frame = reader.readU32();
    key.time = reader.readFloat();
    key.left = reader.readFloat();
    key.top = reader.readFloat();
    key.right = reader.readFloat();
    key.bottom = reader.readFloat();
    key.opacity = reader.readFloat();
    return key;
}

void WriteKey(ByteWriter& writer, const ParallaxKey& key) {
    writer.writeU32(key.frame);
    writer.writeFloat(key.time);
    writer.writeFloat(key.left);
    writer.writeFloat(key.top);
    writer.writeFloat(key.right);
    writer.writeFloat(key.bottom);
    writer.writeFloat(key.opacity);
}

void Tell(std::string& fault, std::size_t layer, const char* what) {
    if (fault.empty()) fault = "layer " + std::to_string(layer + 1) + " " + what;
}

// The segment of a track that a time falls in.
struct KeyMix {
    std::size_t from = 0, to = 0;
    float fraction = 0;
};

// Walks from the key that a track with 60 keys a second has at this time. The fraction is taken
// over the two intervals around the key while the mix runs from it to the next one: wanted, and
// scenes are drawn for it. A walk off the ends leaves the key that it began at.
KeyMix FindKeys(std::span<const ParallaxKey> keys, float seconds) {
    const std::size_t last = keys.size() - 1;
    const float place = seconds * kKeysPerSecond;
    std::size_t i = 0;
    if (place >= static_cast<float>(keys.size())) {
        i = last;
    } else if (place > 0) {  // not for a time that is no number
        i = std::min(static_cast<std::size_t>(place), last);
    }
    KeyMix mix{i, i, 0.0f};
    bool wentUp = false, wentDown = false;
    while (i > 0 && i < last && !(wentUp && wentDown)) {
        const float before = keys[i - 1].time;
        const float after = keys[i + 1].time;
        if (before <= seconds && seconds <= after) {
            return {i, i + 1, (seconds - before) / (after - before)};
        }
        // Times out of order can send the walk back to where it came from: it ends there.
        if (seconds < before) {
            wentDown = true;
            --i;
        } else {
            wentUp = true;
            ++i;
        }
    }
    return mix;
}

float ClipX(float x) {
    return x * 2.0f / 1920.0f - 1.0f;
}

float ClipY(float y) {
    return y * 2.0f / 1080.0f - 1.0f;
}

}  // namespace

std::vector<ParallaxRecord> ReadParallaxScene(std::span<const std::uint8_t> bytes,
                                              std::string& fault) {
    std::vector<ParallaxRecord> records;
    ByteReader reader(bytes);
    fault.clear();
    for (std::size_t layer = 0; !reader.atEnd(); ++layer) {
        if (reader.remaining() < kRecordHeadBytes) {
            Tell(fault, layer, "is cut short");
            break;
        }
        ParallaxRecord record;
        const std::span<const std::uint8_t> field = reader.readBytes(kParallaxNameBytes);
        const auto end = std::find(field.begin(), field.end(), std::uint8_t{0});
        if (end == field.end()) Tell(fault, layer, "has a name without an end");
        record.name.assign(field.begin(), end);
        record.mode = reader.readI32();
        const std::int32_t count = reader.readI32();
        if (count < 0) Tell(fault, layer, "has a count of keys below 0");
        const std::size_t wanted = count < 0 ? 0 : static_cast<std::size_t>(count);
        const std::size_t whole = std::min(wanted, reader.remaining() / kKeyBytes);
        record.keys.reserve(whole);
        for (std::size_t i = 0; i < whole; ++i) record.keys.push_back(ReadKey(reader));
        if (whole < wanted) {
            Tell(fault, layer, "has fewer keys than it says");
            if (whole > 0) records.push_back(std::move(record));
            break;
        }
        records.push_back(std::move(record));
    }
    return records;
}

std::vector<std::uint8_t> ParallaxSceneBytes(std::span<const ParallaxRecord> records) {
    ByteWriter writer;
    for (const ParallaxRecord& record : records) {
        char name[kParallaxNameBytes] = {};
        const std::size_t length = std::min(record.name.size(), kParallaxNameBytes - 1);
        std::memcpy(name, record.name.data(), length);
        writer.write(name, sizeof name);
        writer.writeI32(record.mode);
        writer.writeI32(static_cast<std::int32_t>(record.keys.size()));
        for (const ParallaxKey& key : record.keys) WriteKey(writer, key);
    }
    const std::span<const std::uint8_t> bytes = writer.bytes();
    return {bytes.begin(), bytes.end()};
}

std::optional<ParallaxPlace> ParallaxPlaceAt(std::span<const ParallaxKey> keys, float seconds,
                                             float alpha) {
    if (keys.empty()) return std::nullopt;
    const KeyMix mix = FindKeys(keys, seconds);
    const ParallaxKey& a = keys[mix.from];
    const ParallaxKey& b = keys[mix.to];
    const float f = mix.fraction;
    const auto mixed = [f](float from, float to) { return (1.0f - f) * from + f * to; };
    const float opacity = mixed(a.opacity, b.opacity) * alpha;
    if (!(opacity > 0)) return std::nullopt;
    return ParallaxPlace{mixed(ClipX(a.left), ClipX(b.left)), mixed(ClipY(a.top), ClipY(b.top)),
                         mixed(ClipX(a.right), ClipX(b.right)),
                         mixed(ClipY(a.bottom), ClipY(b.bottom)), opacity};
}
