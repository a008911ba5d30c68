// Decodes a row of picture files on all cores, a few ahead of the one that is taken, so that the
// memory for a scene of hundreds of pictures stays small. Depends on ReadImageFile; used from one
// thread.
#pragma once

#include <cstdint>
#include <deque>
#include <future>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class TaskPool;

class PictureQueue {
  public:
    // A picture is looked for under `path`, and then under `otherPath` unless that is empty.
    struct Wanted {
        std::string path, otherPath;
    };
    // A picture as it comes from its file, premultiplied.
    struct Picture {
        Wanted wanted;
        std::string path;  // the one of the two that gave it; empty where there is no picture
        std::uint32_t width = 0, height = 0, channels = 0;
        std::unique_ptr<std::uint8_t[]> pixels;  // null where there is no picture
        std::string reason;                      // why the first path gave none
    };

    PictureQueue() = default;
    explicit PictureQueue(std::vector<Wanted> wanted) : wanted_(std::move(wanted)) {}

    // Begins to decode, until `count` pictures wait or are being worked on.
    void decodeAhead(TaskPool& pool, std::size_t count);
    // The next picture in the order of the list, of which one must be left; decodes it here when
    // that has not been begun.
    Picture takeNext();
    std::size_t left() const { return wanted_.size() - taken_; }

  private:
    static Picture read(const Wanted& wanted);

    std::vector<Wanted> wanted_;
    std::size_t taken_ = 0;
    std::deque<std::future<Picture>> begun_;  // of wanted_[taken_] and those that follow
};
