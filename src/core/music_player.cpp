#include "core/music_player.h"

#include <algorithm>
#include <cstdint>

bool MusicPlayer::setFile(const std::string& path) {
    if (path == fileName) return false;
    fileName = path;
    channelLive = false;
    if (system != nullptr) system->load(path);
    return true;
}

void MusicPlayer::play() {
    channelLive = true;
    if (system != nullptr) system->play();
}

void MusicPlayer::pause() {
    if (channelLive && system != nullptr) system->pause();
}

void MusicPlayer::seek(double seconds) {
    if (!channelLive || system == nullptr) return;
    constexpr double kLastMillisecond = 4294967295.0;
    const double milliseconds = std::min(seconds * 1000.0, kLastMillisecond);
    // No number counts as 0, like what lies before the start.
    const bool inside = milliseconds > 0.0;
    system->setPositionMilliseconds(inside ? static_cast<std::uint32_t>(milliseconds) : 0);
}

void MusicPlayer::update() {
    if (system != nullptr) system->update();
}
