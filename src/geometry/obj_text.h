// Reads a text word by word and number by number exactly as C's scanf does on a file, only faster:
// the rules of model files are told in its conversions. What a failed conversion has eaten is gone,
// as with scanf. It follows the C library of this system in the unfinished numbers too ("1e" is 1,
// "0x" fails and is eaten). Standard library only; any thread.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

class ObjText {
  public:
    // Views the text; it must outlive the reader.
    explicit ObjText(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

    // "%s": the next word, up to white space. False at the end of the text.
    bool readWord(std::string_view& word) {
        skipSpace();
        const char* at = at_;
        while (at != end_ && !IsSpace(*at)) ++at;
        word = std::string_view(at_, static_cast<std::size_t>(at - at_));
        at_ = at;
        return !word.empty();
    }

    // "%c", again as long as it gives a carriage return.
    void readCharacter() {
        while (at_ != end_ && *at_ == '\r') ++at_;
        if (at_ != end_) ++at_;
    }

    // "%d", 0 where it fails. Numbers that 32 bits cannot hold become the largest of their sign.
    std::int32_t readInteger() {
        skipSpace();
        const bool negative = readSign();
        std::int64_t value = 0;
        const char* at = at_;
        for (unsigned digit = 0; at != end_ && IsDigit(*at, digit); ++at) {
            value = value * 10 + digit;
            if (value > kMostInteger) value = kMostInteger;
        }
        at_ = at;
        return static_cast<std::int32_t>(negative ? -value : value);
    }

    // "%f", 0 where it fails. Correctly rounded.
    float readFloat() {
        skipSpace();
        const char* const first = at_;
        float value = 0;
        if (readCommonFloat(value)) return value;
        at_ = first;
        return readAnyFloat();
    }

    // To behind the next line feed.
    void skipLine();

  private:
    static constexpr std::int64_t kMostInteger = std::numeric_limits<std::int32_t>::max();

    static bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
    static bool IsDigit(char c, unsigned& digit) {
        digit = static_cast<unsigned char>(c) - unsigned{'0'};
        return digit <= 9;
    }
    void skipSpace() {
        const char* at = at_;
        while (at != end_ && IsSpace(*at)) ++at;
        at_ = at;
    }
    // Eats a sign; true for a minus.
    bool readSign() {
        if (at_ == end_ || (*at_ != '-' && *at_ != '+')) return false;
        return *at_++ == '-';
    }
    // Appends the digits that come to a number, and returns how many they are.
    int readDigits(std::uint64_t& number) {
        const char* at = at_;
        for (unsigned digit = 0; at != end_ && IsDigit(*at, digit); ++at) {
            number = number * 10 + digit;
        }
        const auto count = static_cast<int>(at - at_);
        at_ = at;
        return count;
    }
    bool readCommonFloat(float& value);
    bool readExponent(int& exponent);
    float readAnyFloat();

    const char* at_;
    const char* end_;
};

// A number of up to 18 digits with a decimal exponent of at most 22, both ways: as a double it is
// off by less than two units in the last place, and rounding that to single precision is right
// unless it lies next to the middle between two floats (Clinger, "How to read floating point
// numbers accurately", 1990). False, with the place anywhere, for every other number.
inline bool ObjText::readCommonFloat(float& value) {
    static constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                              1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                              1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    constexpr int kMostDigits = 18, kMostExponent = 22;
    constexpr double kLargest = 1e38, kSmallest = 1e-37;  // well inside the normal floats
    constexpr std::uint64_t kTailMask = (1u << 29) - 1, kTailMiddle = 1u << 28, kDoubt = 4;

    const bool negative = readSign();
    std::uint64_t digits = 0;
    int count = readDigits(digits);
    int exponent = 0;
    if (at_ != end_ && *at_ == '.') {
        ++at_;
        exponent = -readDigits(digits);
        count -= exponent;
    }
    if (count == 0 || count > kMostDigits) return false;
    if (at_ != end_) {
        const char next = static_cast<char>(*at_ | 0x20);
        if (next == 'x' || (next == 'e' && !readExponent(exponent))) return false;
    }
    if (exponent < -kMostExponent || exponent > kMostExponent) return false;

    double number = static_cast<double>(static_cast<std::int64_t>(digits));
    number = exponent < 0 ? number / kPowersOfTen[-exponent] : number * kPowersOfTen[exponent];
    const std::uint64_t tail = std::bit_cast<std::uint64_t>(number) & kTailMask;
    if (tail - (kTailMiddle - kDoubt) <= 2 * kDoubt) return false;
    if (digits != 0 && !(number > kSmallest && number < kLargest)) return false;
    value = static_cast<float>(negative ? -number : number);
    return true;
}
