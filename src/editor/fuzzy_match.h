// How well a text answers to what was typed: its letters must appear in the text in their order.
// No state; any thread.
#pragma once

#include <optional>
#include <string_view>

// Nothing when it does not answer. Higher is better: letters at the start of the text and of words,
// and runs of letters, count more; long gaps and long texts less. Case and blanks of what was typed
// count for nothing; nothing typed matches everything alike.
std::optional<int> FuzzyScore(std::string_view typed, std::string_view text);
