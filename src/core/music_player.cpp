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
    const double milliseconds = std::clamp(seconds * 1000.0, 0.0, kLastMillisecond);
    system->setPositionMilliseconds(static_cast<std::uint32_t>(milliseconds));
}

void MusicPlayer::update() {
    if (system != nullptr) system->update();
}
