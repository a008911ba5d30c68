// Little-endian reading and writing of files in memory. A reader never leaves its bytes: past the
// end it gives zeros and empty text, and remembers that it was asked. Any thread.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

static_assert(std::endian::native == std::endian::little, "files are read as they lie in memory");

class ByteReader {
  public:
    explicit ByteReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    bool atEnd() const { return place_ >= bytes_.size(); }
    std::size_t remaining() const { return bytes_.size() - place_; }
    bool ranShort() const { return ranShort_; }  // something was read that is not there
    bool cutText() const { return cutText_; }    // a text was longer than its limit

    std::uint8_t readByte() { return read<std::uint8_t>(); }
    std::uint32_t readU32() { return read<std::uint32_t>(); }
    std::int32_t readI32() { return read<std::int32_t>(); }
    float readFloat() { return read<float>(); }

    // The next `size` bytes, or as many as there are.
    std::span<const std::uint8_t> readBytes(std::size_t size) {
        const std::size_t kept = remaining() < size ? remaining() : size;
        if (kept < size) ranShort_ = true;
        place_ += kept;
        return bytes_.subspan(place_ - kept, kept);
    }

    // Bytes up to the next zero, at most `limit` of them; the rest up to the zero is passed over.
    std::string readText(std::size_t limit) {
        const std::size_t left = remaining();
        const void* start = left == 0 ? nullptr : bytes_.data() + place_;
        const void* zero = left == 0 ? nullptr : std::memchr(start, 0, left);
        std::size_t length = left;
        if (zero != nullptr) {
            length = static_cast<std::size_t>(static_cast<const std::uint8_t*>(zero) -
                                              static_cast<const std::uint8_t*>(start));
        } else {
            ranShort_ = true;
        }
        if (length > limit) cutText_ = true;
        const std::size_t kept = length < limit ? length : limit;
        std::string text =
            left == 0 ? std::string() : std::string(static_cast<const char*>(start), kept);
        place_ += length + (zero != nullptr ? 1 : 0);
        return text;
    }

  private:
    template <typename T>
    T read() {
        T value{};
        const std::size_t size = remaining() < sizeof(T) ? remaining() : sizeof(T);
        if (size < sizeof(T)) ranShort_ = true;
        if (size > 0) std::memcpy(&value, bytes_.data() + place_, size);
        place_ += size;
        return value;
    }

    std::span<const std::uint8_t> bytes_;
    std::size_t place_ = 0;
    bool ranShort_ = false;
    bool cutText_ = false;
};

class ByteWriter {
  public:
    void writeByte(std::uint8_t value) { bytes_.push_back(value); }
    void writeU32(std::uint32_t value) { write(&value, sizeof value); }
    void writeI32(std::int32_t value) { write(&value, sizeof value); }
    void writeFloat(float value) { write(&value, sizeof value); }
    // The text up to its first zero byte, and a zero byte.
    void writeText(std::string_view text) {
        text = text.substr(0, text.find('\0'));
        write(text.data(), text.size());
        writeByte(0);
    }
    void write(const void* data, std::size_t size) {
        const auto* bytes = static_cast<const std::uint8_t*>(data);
        bytes_.insert(bytes_.end(), bytes, bytes + size);
    }
    std::span<const std::uint8_t> bytes() const { return bytes_; }

  private:
    std::vector<std::uint8_t> bytes_;
};
