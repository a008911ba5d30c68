#include "platform/stored_png.h"

#include <libdeflate.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace {

constexpr std::size_t kSignatureSize = 8;
constexpr std::size_t kHeaderDataSize = 13;
// Of a chunk, what stands before its data (size and type) and behind it (check sum).
constexpr std::size_t kChunkHead = 8;
constexpr std::size_t kChunkSum = 4;
constexpr std::size_t kHeaderEnd = kSignatureSize + kChunkHead + kHeaderDataSize + kChunkSum;
// Of packed data, the same (method; Adler-32 of what was packed).
constexpr std::size_t kZlibHead = 2;
constexpr std::size_t kZlibSum = 4;
constexpr std::size_t kMostInBlock = 65535;

struct Chunk {
    std::string_view type;
    FileBytes data;
};

struct Header {
    std::uint32_t width, height, channels;
};

struct FreeDecompressor {
    void operator()(libdeflate_decompressor* one) const { libdeflate_free_decompressor(one); }
};

std::uint32_t BigEndian(FileBytes bytes) {
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 |
           std::uint32_t{bytes[2]} << 8 | bytes[3];
}

void AppendBigEndian(std::vector<std::uint8_t>& bytes, std::size_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

// The first chunk of `rest`, which loses it. Nothing where it is cut short or its sum is wrong.
std::optional<Chunk> TakeChunk(FileBytes& rest) {
    if (rest.size() < kChunkHead + kChunkSum) return {};
    const std::size_t size = BigEndian(rest);
    if (size > rest.size() - kChunkHead - kChunkSum) return {};
    const FileBytes summed = rest.subspan(4, 4 + size);
    rest = rest.subspan(kChunkHead + size);
    if (libdeflate_crc32(0, summed.data(), summed.size()) != BigEndian(rest)) return {};
    rest = rest.subspan(kChunkSum);
    return Chunk{{reinterpret_cast<const char*>(summed.data()), 4}, summed.subspan(4)};
}

// Chunks that a reader may leave out, told by the small first letter.
bool MayBeLeftOut(std::string_view type) {
    const auto isSmall = [](char c) { return c >= 'a' && c <= 'z'; };
    const auto isLetter = [&](char c) { return isSmall(c) || (c >= 'A' && c <= 'Z'); };
    return isSmall(type[0]) && std::all_of(type.begin(), type.end(), isLetter);
}

std::optional<Header> PlainHeader(const std::optional<Chunk>& chunk) {
    if (!chunk || chunk->type != "IHDR" || chunk->data.size() != kHeaderDataSize) return {};
    const FileBytes data = chunk->data;
    const FileBytes kind = data.subspan(8);  // depth, colour, packing, filters, interlacing
    if (kind[0] != 8 || (kind[1] != 2 && kind[1] != 6)) return {};
    if (kind[2] != 0 || kind[3] != 0 || kind[4] != 0) return {};
    return Header{BigEndian(data), BigEndian(data.subspan(4)), kind[1] == 2 ? 3u : 4u};
}

// The data of all "IDAT" chunks of `rest`, in one piece in `buffer`, which has room for all of
// `rest`. Empty where they do not follow each other, or where the file does not end as it should.
FileBytes JoinData(FileBytes rest, std::uint8_t* buffer) {
    std::size_t size = 0;
    bool begun = false, ended = false;  // ended when something else has followed
    while (const std::optional<Chunk> chunk = TakeChunk(rest)) {
        if (chunk->type == "IDAT") {
            if (ended) return {};
            begun = true;
            std::copy(chunk->data.begin(), chunk->data.end(), buffer + size);
            size += chunk->data.size();
            continue;
        }
        ended = begun;
        if (chunk->type == "IEND")
            return chunk->data.empty() ? FileBytes(buffer, size) : FileBytes();
        if (!MayBeLeftOut(chunk->type)) return {};
    }
    return {};
}

// zlib keeps to the window that the data declares, libdeflate does not look at it. A window that is
// smaller than the data may be overstepped, or not: for zlib to find out.
bool IsWindowLargeEnough(FileBytes packed, std::size_t size) {
    constexpr int kLargest = 7;  // 32 KB, which no deflated data goes beyond
    const int window = packed[0] >> 4;
    return window >= kLargest || size <= std::size_t{256} << window;
}

// Fills `rows`, or fails where `packed` holds more, less or other data. The result is the sum that
// stands behind the data.
FileBytes Unpack(FileBytes packed, std::span<std::uint8_t> rows) {
    if (packed.empty() || !IsWindowLargeEnough(packed, rows.size())) return {};
    const std::unique_ptr<libdeflate_decompressor, FreeDecompressor> unpacker(
        libdeflate_alloc_decompressor());
    if (unpacker == nullptr) return {};
    std::size_t used = 0;
    if (libdeflate_zlib_decompress_ex(unpacker.get(), packed.data(), packed.size(), rows.data(),
                                      rows.size(), &used, nullptr) != LIBDEFLATE_SUCCESS) {
        return {};
    }
    return packed.subspan(used - kZlibSum, kZlibSum);
}

}  // namespace

std::optional<StoredPng> StoredPng::from(FileBytes file) {
    if (file.size() < kHeaderEnd) return {};
    FileBytes rest = file.subspan(kSignatureSize);
    const std::optional<Header> header = PlainHeader(TakeChunk(rest));
    std::string reason;
    if (!header || !PictureFits(header->width, header->height, header->channels,
                                rest.size() * kDeflateRatio, reason)) {
        return {};
    }
    const std::size_t size =
        (std::size_t{header->width} * header->channels + 1) * std::size_t{header->height};
    StoredPng png;
    std::unique_ptr<std::uint8_t[]> rows(new (std::nothrow) std::uint8_t[size]);
    const std::unique_ptr<std::uint8_t[]> buffer(new (std::nothrow) std::uint8_t[rest.size()]);
    if (rows == nullptr || buffer == nullptr) return {};
    const FileBytes sum = Unpack(JoinData(rest, buffer.get()), {rows.get(), size});
    if (sum.empty()) return {};
    png.picture_ = {header->width, header->height, header->channels, std::move(rows)};
    png.layOut(file.first(kHeaderEnd), size, sum);
    return png;
}

void StoredPng::layOut(FileBytes head, std::size_t size, FileBytes sum) {
    const std::size_t count = (size + kMostInBlock - 1) / kMostInBlock;
    head_.assign(head.begin(), head.end());
    AppendBigEndian(head_, kZlibHead + count * sizeof(Block) + size + kZlibSum);
    const std::string_view type = "IDAT";
    head_.insert(head_.end(), type.begin(), type.end());
    head_.insert(head_.end(), {0x78, 0x01});
    pieces_.push_back(head_);

    blocks_.reserve(count);
    for (std::size_t at = 0; at < size; at += kMostInBlock) {
        const std::size_t length = std::min(size - at, kMostInBlock);
        const auto low = static_cast<std::uint8_t>(length);
        const auto high = static_cast<std::uint8_t>(length >> 8);
        const bool isLast = at + length == size;
        blocks_.push_back({isLast ? std::uint8_t{1} : std::uint8_t{0}, low, high,
                           static_cast<std::uint8_t>(~low), static_cast<std::uint8_t>(~high)});
        pieces_.push_back(blocks_.back());
        pieces_.emplace_back(picture_.pixels.get() + at, length);
    }

    tail_.assign(sum.begin(), sum.end());
    AppendBigEndian(tail_, 0);  // no sum of the chunk: those of the file have been compared
    AppendBigEndian(tail_, 0);
    for (const char letter : {'I', 'E', 'N', 'D'})
        tail_.push_back(static_cast<std::uint8_t>(letter));
    AppendBigEndian(tail_, 0);
    pieces_.push_back(tail_);
}

void StoredPng::giveMemory(DecodedPicture& picture) {
    picture = std::move(picture_);
}

bool StoredPng::read(std::uint8_t* to, std::size_t count) {
    while (count > 0) {
        if (piece_ == pieces_.size()) return false;
        FileBytes& piece = pieces_[piece_];
        const std::size_t part = std::min(count, piece.size());
        std::memcpy(to, piece.data(), part);
        to += part;
        count -= part;
        piece = piece.subspan(part);
        if (piece.empty()) ++piece_;
    }
    return true;
}
