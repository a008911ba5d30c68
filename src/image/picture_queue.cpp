#include "image/picture_queue.h"

#include <utility>

#include "image/read_image_file.h"
#include "platform/task_pool.h"

PictureQueue::Picture PictureQueue::read(const Wanted& wanted) {
    Picture picture;
    picture.wanted = wanted;
    const auto readFrom = [&](const std::string& path, std::string* reason) {
        constexpr bool kPreMultiplied = true;
        ReadImageFile(path, picture.width, picture.height, picture.channels, picture.pixels,
                      kPreMultiplied, reason);
        if (picture.pixels != nullptr) picture.path = path;
        return picture.pixels != nullptr;
    };
    if (!readFrom(wanted.path, &picture.reason) && !wanted.otherPath.empty()) {
        readFrom(wanted.otherPath, nullptr);
    }
    return picture;
}

void PictureQueue::decodeAhead(TaskPool& pool, std::size_t count) {
    while (begun_.size() < count && begun_.size() < left()) {
        const Wanted& next = wanted_[taken_ + begun_.size()];
        begun_.push_back(pool.run([next] { return read(next); }));
    }
}

PictureQueue::Picture PictureQueue::takeNext() {
    const Wanted& wanted = wanted_[taken_++];
    if (begun_.empty()) return read(wanted);
    std::future<Picture> next = std::move(begun_.front());
    begun_.pop_front();
    return next.get();
}
