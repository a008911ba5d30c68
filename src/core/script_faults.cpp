#include "core/script_faults.h"

#include <algorithm>
#include <cctype>
#include <optional>

namespace {

bool IsDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

// Takes off a run of digits; empty when there is none.
std::string_view TakeDigits(std::string_view& text) {
    std::size_t count = 0;
    while (count < text.size() && IsDigit(text[count])) ++count;
    const std::string_view digits = text.substr(0, count);
    text.remove_prefix(count);
    return digits;
}

bool TakeChar(std::string_view& text, char c) {
    if (!text.starts_with(c)) return false;
    text.remove_prefix(1);
    return true;
}

std::string_view WithoutSpaces(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())) != 0)
        text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())) != 0)
        text.remove_suffix(1);
    return text;
}

// The drivers' forms, S being the number of the source text, always 0 here:
// "S:LINE(COLUMN): error: ...", "S(LINE) : error C1: ..." and "ERROR: S:LINE: ...".
std::optional<std::string> LineFirst(std::string_view text) {
    std::string_view kind;
    for (const std::string_view word : {"ERROR: ", "WARNING: "}) {
        if (!text.starts_with(word)) continue;
        kind = word;
        text.remove_prefix(word.size());
    }
    if (TakeDigits(text).empty()) return std::nullopt;
    const bool inBrackets = text.starts_with('(');
    if (!TakeChar(text, inBrackets ? '(' : ':')) return std::nullopt;
    const std::string_view line = TakeDigits(text);
    if (line.empty()) return std::nullopt;
    if (inBrackets) {
        if (!TakeChar(text, ')')) return std::nullopt;
    } else if (TakeChar(text, '(')) {
        TakeDigits(text);
        if (!TakeChar(text, ')')) return std::nullopt;
    }
    text = WithoutSpaces(text);
    if (!TakeChar(text, ':')) return std::nullopt;
    std::string result = "line " + std::string(line) + ": ";
    if (!kind.empty()) result += kind.starts_with('E') ? "error: " : "warning: ";
    result += WithoutSpaces(text);
    return result;
}

bool NamesAnError(std::string_view line) {
    constexpr std::string_view kWord = "error";
    const auto sameLetter = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == b;
    };
    return std::search(line.begin(), line.end(), kWord.begin(), kWord.end(), sameLetter) !=
           line.end();
}

}  // namespace

std::vector<std::string> ScriptFaults(std::string_view driverLog) {
    std::vector<std::string> faults;
    while (!driverLog.empty()) {
        const std::size_t end = driverLog.find('\n');
        const std::string_view line = WithoutSpaces(driverLog.substr(0, end));
        driverLog.remove_prefix(end == std::string_view::npos ? driverLog.size() : end + 1);
        if (!line.empty()) faults.push_back(LineFirst(line).value_or(std::string(line)));
    }
    return faults;
}

std::string FirstError(const std::vector<std::string>& faults) {
    for (const std::string& fault : faults) {
        if (NamesAnError(fault)) return fault;
    }
    return faults.empty() ? std::string() : faults.front();
}

std::string CompileFault(std::string_view driverLog) {
    const std::string first = FirstError(ScriptFaults(driverLog));
    return "its shader does not compile" + (first.empty() ? first : ": " + first);
}
