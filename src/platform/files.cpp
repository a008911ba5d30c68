#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <random>
#include <system_error>
#include <utility>

#include "platform/debug_output.h"
#include "platform/task_pool.h"

namespace fs = std::filesystem;

namespace {

// An open file descriptor; -1 is none.
class Descriptor {
  public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    explicit operator bool() const { return descriptor_ >= 0; }
    int get() const { return descriptor_; }
    int release() { return std::exchange(descriptor_, -1); }
    // False when the system tells only now that what was written is lost.
    bool close() {
        const int descriptor = std::exchange(descriptor_, -1);
        return descriptor < 0 || ::close(descriptor) == 0;
    }

  private:
    int descriptor_;
};

char LowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool EqualWithoutCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}

// The entry of `folder` whose name is `part` but for case, the first in name order; else `part`.
std::string MatchInFolder(const fs::path& folder, const std::string& part) {
    std::string best;
    std::error_code error;
    fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::string name = entry->path().filename().string();
        if (!EqualWithoutCase(name, part)) continue;
        if (best.empty() || name < best) best = std::move(name);
    }
    return best.empty() ? part : best;
}

// Of a path of this machine, as it stands.
bool Exists(const fs::path& path) {
    std::error_code error;
    return fs::exists(path, error);
}

bool WriteAll(int descriptor, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

// The file that a chain of links ends at, so that saving keeps a link a link.
fs::path FollowLinks(fs::path path) {
    constexpr int kMostLinks = 40;
    std::error_code error;
    for (int i = 0; i < kMostLinks && fs::is_symlink(path, error); ++i) {
        const fs::path target = fs::read_symlink(path, error);
        if (error) return path;
        path = target.is_absolute() ? target : path.parent_path() / target;
    }
    return path;
}

constexpr mode_t kPermissionBits = 07777;

// Makes an empty file of a new name beside `target`, and stores the name in `temporary`.
int OpenTemporary(const fs::path& target, std::string& temporary) {
    std::random_device random;
    constexpr int kAttempts = 100;
    for (int i = 0; i < kAttempts; ++i) {
        char suffix[32];
        std::snprintf(suffix, sizeof suffix, ".%08x.tmp", random());
        // A name of its own, not one made longer, so that the longest file names can be saved too.
        temporary = (target.parent_path() / (std::string(".vorn") + suffix)).string();
        const int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
        const int descriptor = ::open(temporary.c_str(), flags, 0666);
        if (descriptor >= 0 || errno != EEXIST) return descriptor;
    }
    return -1;
}

// Writes the whole content, with the permission bits of the file that it is to replace; false
// also for a file that the user has made read-only.
bool FillTemporary(Descriptor& file, const fs::path& target, std::span<const std::uint8_t> bytes) {
    struct stat old = {};
    const bool replaces = ::stat(target.c_str(), &old) == 0;
    if (replaces) {
        if (!S_ISREG(old.st_mode) || ::access(target.c_str(), W_OK) != 0) return false;
        if (::fchmod(file.get(), old.st_mode & kPermissionBits) != 0) return false;
    }
    return WriteAll(file.get(), bytes);
}

bool FlushFolder(const fs::path& folder) {
    const fs::path name = folder.empty() ? fs::path(".") : folder;
    const Descriptor descriptor(::open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!descriptor) return false;
    // Some network file systems cannot flush folders and say EINVAL.
    return ::fsync(descriptor.get()) == 0 || errno == EINVAL;
}

}  // namespace

fs::path ResolvePath(std::string_view windowsName) {
    std::string name(windowsName);
    std::replace(name.begin(), name.end(), '\\', '/');
    // What follows a zero byte is no part of a file name.
    name.resize(std::min(name.size(), name.find('\0')));
    const fs::path given(name);
    // Names too long to be opened are not worth the search.
    if (name.empty() || name.size() >= PATH_MAX || Exists(given)) return given;

    fs::path resolved;
    for (const fs::path& part : given) {
        const bool special = part.empty() || part == "/" || part == "." || part == "..";
        if (special || Exists(resolved / part)) {
            resolved /= part;
        } else {
            resolved /= MatchInFolder(resolved, part.string());
        }
    }
    return resolved;
}

bool FileExists(std::string_view windowsName) {
    return Exists(ResolvePath(windowsName));
}

std::optional<std::vector<std::uint8_t>> ReadWholeFile(std::string_view windowsName,
                                                       std::uint64_t limitBytes) {
    const fs::path path = ResolvePath(windowsName);
    // Not blocking, so that a pipe of that name does not hold the program up.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
    if (static_cast<std::uint64_t>(status.st_size) > limitBytes) return {};

    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(status.st_size));
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t count = ::read(file.get(), bytes.data() + filled, bytes.size() - filled);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return {};
        if (count == 0) break;  // it became shorter meanwhile
        filled += static_cast<std::size_t>(count);
    }
    bytes.resize(filled);
    return bytes;
}

bool WriteFileAtomically(std::string_view windowsName, std::span<const std::uint8_t> bytes,
                         DelayedFlush* later) {
    const fs::path target = FollowLinks(ResolvePath(windowsName));
    if (target.filename().empty()) return false;
    std::string temporary;
    Descriptor file(OpenTemporary(target, temporary));
    if (!file) return false;
    const bool filled = FillTemporary(file, target, bytes) &&
                        (later != nullptr || (::fsync(file.get()) == 0 && file.close()));
    if (!filled || ::rename(temporary.c_str(), target.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    if (later == nullptr) return FlushFolder(target.parent_path());
    later->add(file.release(), target);
    return true;
}

DelayedFlush::DelayedFlush() = default;

DelayedFlush::~DelayedFlush() {
    wait();
}

void DelayedFlush::add(int descriptor, const fs::path& file) {
    std::erase_if(running_, [](const std::future<void>& flush) {
        return flush.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    });
    if (pool_ == nullptr) pool_ = std::make_unique<TaskPool>(1);
    running_.push_back(pool_->run([descriptor, file] {
        Descriptor open(descriptor);
        const bool flushed = ::fsync(open.get()) == 0;
        if (!open.close() || !flushed || !FlushFolder(file.parent_path())) {
            ReportBadFile(file.string(), "may not be whole on the disk");
        }
    }));
}

void DelayedFlush::wait() {
    for (const std::future<void>& flush : running_) flush.wait();
    running_.clear();
}

std::optional<std::vector<std::string>> ListFiles(std::string_view windowsFolder) {
    const fs::path folder = ResolvePath(windowsFolder);
    std::error_code error;
    fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, error);
    if (error) return {};
    std::vector<std::string> names;
    for (; entry != fs::directory_iterator(); entry.increment(error)) {
        if (error) return {};
        std::error_code ignored;
        if (entry->is_regular_file(ignored)) names.push_back(entry->path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}
