#include "platform/folder_watch.h"

#include <sys/stat.h>

#include <filesystem>
#include <utility>

#include "platform/debug_output.h"
#include "platform/files.h"

#ifdef __linux__
#include <sys/inotify.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#endif

namespace fs = std::filesystem;

// What the system tells of one folder.
class FolderWatch::Events {
  public:
    // What came besides names.
    enum class State { Fine, Overflow, Lost };
    using Take = std::function<void(const std::string& name, bool open)>;

#ifdef __linux__
    Events() : descriptor_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}
    ~Events() {
        if (descriptor_ >= 0) close(descriptor_);
    }
    Events(const Events&) = delete;
    Events& operator=(const Events&) = delete;

    bool usable() const {
        return descriptor_ >= 0;
    }

    // Leaves the folder before. False when the system refuses.
    bool watch(const std::string& path) {
        if (watch_ >= 0) inotify_rm_watch(descriptor_, watch_);
        constexpr std::uint32_t kMask = IN_CREATE | IN_MODIFY | IN_CLOSE_WRITE | IN_MOVED_FROM |
                                        IN_MOVED_TO | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF |
                                        IN_ONLYDIR;
        watch_ = inotify_add_watch(descriptor_, path.c_str(), kMask);
        return watch_ >= 0;
    }
    void leave() {
        if (watch_ >= 0) inotify_rm_watch(descriptor_, watch_);
        watch_ = -1;
    }

    State take(const Take& takeName) {
        constexpr int kMostReads = 64;  // a writer that never rests is heard again at the next look
        State state = State::Fine;
        for (int i = 0; i < kMostReads; ++i) {
            alignas(inotify_event) char buffer[8192];
            const ssize_t got = read(descriptor_, buffer, sizeof buffer);
            if (got <= 0) break;
            std::size_t place = 0;
            while (place + sizeof(inotify_event) <= static_cast<std::size_t>(got)) {
                inotify_event event;
                std::memcpy(&event, buffer + place, sizeof event);
                const char* name = buffer + place + sizeof event;
                place += sizeof event + event.len;
                if ((event.mask & IN_Q_OVERFLOW) != 0) {
                    if (state == State::Fine) state = State::Overflow;
                } else if (event.wd != watch_) {
                    continue;  // of a folder that was left
                } else if ((event.mask & (IN_IGNORED | IN_DELETE_SELF | IN_MOVE_SELF)) != 0) {
                    state = State::Lost;
                } else if (event.len > 0) {
                    takeName(name, (event.mask & (IN_CREATE | IN_MODIFY)) != 0);
                }
            }
        }
        return state;
    }

  private:
    int descriptor_;
    int watch_ = -1;
#else
    bool usable() const {
        return false;
    }
    bool watch(const std::string&) {
        return false;
    }
    void leave() {}
    State take(const Take&) {
        return State::Fine;
    }
#endif
};

FolderWatch::FolderWatch(std::string_view windowsFolder,
                         std::function<bool(std::string_view)> isWanted, Means means)
    : folder_(windowsFolder), isWanted_(std::move(isWanted)) {
    if (means == Means::Events) events_ = std::make_unique<Events>();
    if (events_ != nullptr && !events_->usable()) events_ = nullptr;
    place_ = findFolder();
    watchFolder();
    known_ = listFiles();
    if (means == Means::Events && polls()) {
        DebugOutput("The system does not tell of changes in the folder " + folder_ +
                    ": it is looked at twice a second.\n");
    }
}

FolderWatch::~FolderWatch() = default;

std::optional<FolderWatch::Place> FolderWatch::findFolder() const {
    const fs::path path = ResolvePath(folder_);
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return std::nullopt;
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    return Place{(error ? path : absolute).string(), status.st_dev, status.st_ino};
}

std::optional<FolderWatch::Stamp> FolderWatch::stampOf(const std::string& name) const {
    struct stat status = {};
    if (!place_ || stat((place_->path + "/" + name).c_str(), &status) != 0) return std::nullopt;
    if (!S_ISREG(status.st_mode)) return std::nullopt;
    constexpr std::int64_t kNanoseconds = 1000000000;
    return Stamp{status.st_dev, status.st_ino, status.st_size,
                 status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec,
                 status.st_ctim.tv_sec * kNanoseconds + status.st_ctim.tv_nsec};
}

bool FolderWatch::isLink(const std::string& name) const {
    struct stat status = {};
    return place_ && lstat((place_->path + "/" + name).c_str(), &status) == 0 &&
           S_ISLNK(status.st_mode);
}

std::map<std::string, FolderWatch::Stamp> FolderWatch::listFiles() {
    std::map<std::string, Stamp> files;
    anyLink_ = false;
    if (!place_) return files;
    std::error_code error;
    fs::directory_iterator entry(place_->path, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::string name = entry->path().filename().string();
        if (!isWanted_(name)) continue;
        anyLink_ = anyLink_ || isLink(name);
        if (const auto stamp = stampOf(name)) files.emplace(std::move(name), *stamp);
    }
    return files;
}

void FolderWatch::watchFolder() {
    if (events_ == nullptr) return;
    if (!place_) {
        events_->leave();
    } else if (!events_->watch(place_->path)) {
        events_ = nullptr;
    }
}

// The folder may be made, deleted, replaced by another one, or lie elsewhere since the working
// folder is another. In the last case nothing of what was there is gone.
void FolderWatch::followFolder(double now) {
    nextFolderLook_ = now + kFolderSeconds;
    std::optional<Place> found = findFolder();
    if (found == place_ && !lost_) return;
    lost_ = false;
    if (found && place_ && found->path != place_->path) {
        known_.clear();
        restless_.clear();
    }
    place_ = std::move(found);
    watchFolder();
    compareAll(now);
}

void FolderWatch::takeEvents(double now) {
    const auto take = [&](const std::string& name, bool open) { note(name, now, open); };
    switch (events_->take(take)) {
        case Events::State::Fine:
            break;
        case Events::State::Overflow:
            compareAll(now);
            break;
        case Events::State::Lost:
            lost_ = true;
            nextFolderLook_ = now;
            break;
    }
}

void FolderWatch::compareAll(double now) {
    const std::map<std::string, Stamp> files = listFiles();
    for (const auto& [name, stamp] : files) {
        const auto known = known_.find(name);
        const bool same = known != known_.end() && known->second == stamp;
        if (!same && !restless_.contains(name)) note(name, now, false);
    }
    for (const auto& [name, stamp] : known_) {
        if (!files.contains(name) && !restless_.contains(name)) note(name, now, false);
    }
}

void FolderWatch::note(const std::string& name, double now, bool open) {
    if (!isWanted_(name)) return;
    Restless& file = restless_[name];
    file.since = now;
    file.open = open;
}

double FolderWatch::restSeconds(const Restless& file) const {
    if (!file.stamp) return kGoneSeconds;
    if (file.open) return kOpenSeconds;
    if (file.stamp->size == 0) return kGoneSeconds;
    return polls() || file.link ? kPolledQuietSeconds : kQuietSeconds;
}

std::vector<FileChange> FolderWatch::takeRested(double now) {
    std::vector<FileChange> changes;
    for (auto it = restless_.begin(); it != restless_.end();) {
        const std::string& name = it->first;
        Restless& file = it->second;
        const std::optional<Stamp> stamp = stampOf(name);
        if (file.looked && stamp != file.stamp) file.since = now;
        file.stamp = stamp;
        file.looked = true;
        file.link = isLink(name);
        anyLink_ = anyLink_ || file.link;
        if (now - file.since < restSeconds(file)) {
            ++it;
            continue;
        }
        const auto known = known_.find(name);
        if (!stamp) {
            if (known != known_.end()) changes.push_back({name, true});
            known_.erase(name);
        } else if (known == known_.end() || known->second != *stamp) {
            changes.push_back({name, false});
            known_[name] = *stamp;
        }
        it = restless_.erase(it);
    }
    return changes;
}

std::vector<FileChange> FolderWatch::takeChanges(double nowSeconds) {
    if (nowSeconds < nextLook_) return {};
    nextLook_ = nowSeconds + kLookSeconds;
    if (events_ != nullptr) takeEvents(nowSeconds);
    if (nowSeconds >= nextFolderLook_) followFolder(nowSeconds);
    if ((polls() || anyLink_) && nowSeconds >= nextPoll_) {
        nextPoll_ = nowSeconds + (polls() ? kPollSeconds : kLinkSeconds);
        compareAll(nowSeconds);
    }
    if (restless_.empty()) return {};
    return takeRested(nowSeconds);
}
