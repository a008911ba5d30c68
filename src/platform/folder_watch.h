// Tells which files of a folder were changed, made or deleted, once they are at rest: programs save
// by writing in place, by truncating first, or by renaming a new file over the old one, and what is
// half written is no news yet. The system tells of changes (inotify); where it refuses, the folder
// is looked at twice a second, and once a second while there are links, since it does not tell of
// the files that they lead to. There is no thread: whoever wants to know asks each frame, which is
// a comparison of two numbers but for some times a second. Main thread.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct FileChange {
    std::string name;  // without the folder
    bool gone = false;
};

class FolderWatch {
  public:
    enum class Means { Events, Polling };

    // `windowsFolder` as projects name folders. It need not exist: its coming, its going and
    // another working folder are noticed. `isWanted` chooses files by their names.
    FolderWatch(std::string_view windowsFolder, std::function<bool(std::string_view)> isWanted,
                Means means = Means::Events);
    ~FolderWatch();
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

    // What has changed since the last time, or since the watch was made, in name order.
    // `nowSeconds`: of any clock that starts at 0 or later and never goes back.
    std::vector<FileChange> takeChanges(double nowSeconds);
    // False while the system tells of changes.
    bool polls() const { return events_ == nullptr; }

    static constexpr double kLookSeconds = 0.05;  // between two looks at what the system tells
    static constexpr double kPollSeconds = 0.5;   // between two looks at all files
    static constexpr double kLinkSeconds = 1;     // the same where only links want it
    static constexpr double kFolderSeconds = 1;   // between two looks where the folder is
    static constexpr double kQuietSeconds = 0.1;  // a file is at rest
    static constexpr double kPolledQuietSeconds = 0.3;
    static constexpr double kGoneSeconds = 0.5;  // a file is gone, or meant to be empty
    static constexpr double kOpenSeconds = 1;    // a file that its writer has not closed

  private:
    class Events;

    // Differs after every change of the file's content or place.
    struct Stamp {
        std::uint64_t device = 0, inode = 0;
        std::int64_t size = 0, modified = 0, changed = 0;  // times in nanoseconds
        bool operator==(const Stamp&) const = default;
    };
    // Where the folder is; another one may come to be there.
    struct Place {
        std::string path;
        std::uint64_t device = 0, inode = 0;
        bool operator==(const Place&) const = default;
    };
    // A file that something happened to.
    struct Restless {
        double since = 0;  // seconds
        bool open = false;
        bool looked = false;
        bool link = false;
        std::optional<Stamp> stamp;  // none: there is no such file
    };

    std::optional<Place> findFolder() const;
    std::optional<Stamp> stampOf(const std::string& name) const;
    bool isLink(const std::string& name) const;
    std::map<std::string, Stamp> listFiles();
    void followFolder(double now);
    void watchFolder();
    void takeEvents(double now);
    void compareAll(double now);
    void note(const std::string& name, double now, bool open);
    double restSeconds(const Restless& file) const;
    std::vector<FileChange> takeRested(double now);

    std::string folder_;
    std::function<bool(std::string_view)> isWanted_;
    std::unique_ptr<Events> events_;  // null: polls
    std::optional<Place> place_;      // none: there is no such folder
    bool lost_ = false;     // it was moved or deleted: to be found anew, even in its place
    bool anyLink_ = false;  // among the wanted names, wherever it leads
    std::map<std::string, Stamp> known_;
    std::map<std::string, Restless> restless_;
    double nextLook_ = 0, nextPoll_ = 0, nextFolderLook_ = 0;  // seconds
};
