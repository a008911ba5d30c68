// The demo's dance as a depth sensor would have recorded it: one body of 25 joints, 30 frames a
// second, for the whole length of the music. It is composed and moved by this code, so that no
// recording is kept with the sources. Same frames on every machine of one kind; any thread.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "geometry/skeleton_capture.h"

// The whole dance on the music's clock.
std::vector<CaptureFrame> DanceFrames();

// The take of the dance in which the hand draws: a minute from this second of the music on, on a
// clock of its own that starts at 0. A line in the air is sampled from the first minute of a
// capture only.
inline constexpr float kTakeStartSeconds = 150;
inline constexpr float kTakeSeconds = 60;
std::vector<CaptureFrame> TakeOf(std::span<const CaptureFrame> dance);

// Writes dance.cap, the extended form, dance_plain.cap, the plain form, and dance_take.cap, the
// take in the extended form, into `folder`. False when that fails; `error` then names the file.
bool WriteDance(const std::filesystem::path& folder, std::string& error);
