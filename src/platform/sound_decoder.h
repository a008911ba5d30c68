// Decodes sound files whole: by libsndfile (WAV, FLAC, Ogg, MP3 and its other kinds), and what that
// does not know by libopenmpt (tracker modules). No state; any thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/sound_system.h"

// As DecodeSoundFile, and gives up, with false, soon after `cancelled` has become true.
bool DecodeSoundFile(std::string_view windowsName, const std::atomic<bool>& cancelled,
                     DecodedSound& sound, std::string& reason);
bool DecodeSoundBytes(std::span<const std::uint8_t> file, const std::atomic<bool>& cancelled,
                      DecodedSound& sound, std::string& reason);
