#include "geometry/obj_text.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace {

bool IsHexDigit(char c) {
    const char lower = static_cast<char>(c | 0x20);
    return (c >= '0' && c <= '9') || (lower >= 'a' && lower <= 'f');
}

bool IsLetter(char c, char lower) {
    return (c | 0x20) == lower;
}

// Eats the characters of `word`, whatever their case. False at the first other one, which is eaten
// too: this is what the C library does inside "nan" and "inf".
bool EatWord(const char*& at, const char* end, std::string_view word) {
    for (const char expected : word) {
        if (at == end || !IsLetter(*at++, expected)) return false;
    }
    return true;
}

// Eats "nan", "inf" or "infinity" behind a sign; false where it fails.
bool EatName(const char*& at, const char* end, std::string& number) {
    const std::string_view name = IsLetter(*at, 'n') ? "nan" : "inf";
    if (!EatWord(at, end, name)) return false;
    number += name;
    const bool goesOn = name == "inf" && at != end && IsLetter(*at, 'i');
    return !goesOn || EatWord(at, end, "inity");
}

// Eats what can be digits, a point and an exponent; false where it holds no number.
bool EatNumber(const char*& at, const char* end, std::string& number) {
    const std::size_t signs = number.size();
    bool hex = false, digit = false, point = false, exponent = false;
    if (at != end && *at == '0') {
        number += *at++;
        hex = at != end && IsLetter(*at, 'x');
        digit = !hex;
        if (hex) number += *at++;
    }
    for (const char mark = hex ? 'p' : 'e'; at != end; ++at) {
        const char c = *at;
        if ((c >= '0' && c <= '9') || (hex && !exponent && IsHexDigit(c))) {
            digit = true;
            number += c;
        } else if ((c == '-' || c == '+') && exponent && number.back() == mark) {
            number += c;
        } else if (digit && !exponent && IsLetter(c, mark)) {
            exponent = point = true;
            number += mark;
        } else if (c == '.' && !point) {
            point = true;
            number += c;
        } else {
            break;
        }
    }
    return number.size() > signs + (hex ? 2 : 0);
}

}  // namespace

void ObjText::skipLine() {
    at_ = std::find(at_, end_, '\n');
    if (at_ != end_) ++at_;
}

// Eats "e", a sign and digits; false where the exponent is too long to be common.
bool ObjText::readExponent(int& exponent) {
    constexpr int kMostDigits = 4;
    ++at_;
    const bool negative = readSign();
    std::uint64_t number = 0;
    if (readDigits(number) > kMostDigits) return false;
    exponent += static_cast<int>(negative ? -static_cast<std::int64_t>(number) : number);
    return true;
}

float ObjText::readAnyFloat() {
    std::string number;
    if (at_ != end_ && (*at_ == '-' || *at_ == '+')) number += *at_++;
    if (at_ == end_) return 0;
    const bool named = IsLetter(*at_, 'n') || IsLetter(*at_, 'i');
    if (!(named ? EatName(at_, end_, number) : EatNumber(at_, end_, number))) return 0;
    return std::strtof(number.c_str(), nullptr);
}
