#include "editor/fuzzy_match.h"

#include <algorithm>
#include <cctype>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr int kNever = std::numeric_limits<int>::min() / 2;
constexpr int kLetter = 10, kTextStart = 25, kWordStart = 18, kRun = 12;
constexpr int kGap = 1, kMostGap = 4;
constexpr std::size_t kLongestTyped = 64;

char Small(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool IsAlike(char c, int (*kind)(int)) {
    return kind(static_cast<unsigned char>(c)) != 0;
}

bool StartsWord(std::string_view text, std::size_t i) {
    if (i == 0) return true;
    if (!IsAlike(text[i - 1], std::isalnum)) return true;
    if (IsAlike(text[i], std::isdigit)) return !IsAlike(text[i - 1], std::isdigit);
    return IsAlike(text[i], std::isupper) && !IsAlike(text[i - 1], std::isupper);
}

int PlaceBonus(std::string_view text, std::size_t i) {
    if (i == 0) return kTextStart;
    return StartsWord(text, i) ? kWordStart : 0;
}

}  // namespace

std::optional<int> FuzzyScore(std::string_view typed, std::string_view text) {
    std::string letters;
    for (const char c : typed.substr(0, kLongestTyped)) {
        if (!IsAlike(c, std::isspace)) letters.push_back(Small(c));
    }
    if (letters.empty()) return 0;
    // best[i]: the best score with the letter of this turn at place i of the text.
    std::vector<int> before(text.size(), kNever), best(text.size(), kNever);
    for (std::size_t turn = 0; turn < letters.size(); ++turn) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            best[i] = kNever;
            if (Small(text[i]) != letters[turn]) continue;
            int lead = turn == 0 ? 0 : kNever;
            for (std::size_t last = 0; turn > 0 && last < i; ++last) {
                if (before[last] == kNever) continue;
                const int gap = static_cast<int>(i - last - 1);
                const int step = gap == 0 ? kRun : -std::min(gap * kGap, kMostGap);
                lead = std::max(lead, before[last] + step);
            }
            if (lead != kNever) best[i] = lead + kLetter + PlaceBonus(text, i);
        }
        std::swap(before, best);
    }
    if (text.empty()) return std::nullopt;
    const int score = *std::max_element(before.begin(), before.end());
    if (score == kNever) return std::nullopt;
    return score - static_cast<int>(std::min<std::size_t>(text.size(), 100)) / 4;
}
