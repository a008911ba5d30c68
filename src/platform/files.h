// Files and file names. Projects name files the Windows way; this maps such names to this machine,
// reads whole files, lists folders in name order, and writes files so that a crash or a full disk
// never costs what was there before. Depends on the debug channel and the task pool; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <future>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class TaskPool;

// The path on this machine of a name with Windows separators: "\" becomes "/", and where the exact
// name does not exist, each folder and the file are matched without regard to case (the first match
// in name order). A part without any match is kept as given, so that new files can be made. Names
// of a drive ("c:\x") stay relative names of this machine.
std::filesystem::path ResolvePath(std::string_view windowsName);

// Whether there is anything of that name: a file, a folder, a pipe. False for a link that leads
// nowhere, and for what the system does not let us look at.
bool FileExists(std::string_view windowsName);

// The content of a regular file of at most `limitBytes`; nothing when it cannot be read, is no
// regular file, or is longer. Nothing is reported: the caller knows what the file is for.
constexpr std::uint64_t kMaxFileBytes = std::uint64_t{2} << 30;
std::optional<std::vector<std::uint8_t>> ReadWholeFile(std::string_view windowsName,
                                                       std::uint64_t limitBytes = kMaxFileBytes);

// Replaces or makes the file in one step: temporary file in the same folder, flushed to the disk,
// renamed over the old one, folder flushed; permission bits and links stay. False when any step
// fails; the old file is then whole (or, when only the folder's flush failed, the new one).
// With `later` (may be null) both flushes are left to it: for new files, which stand for nothing
// that was there before.
class DelayedFlush;
bool WriteFileAtomically(std::string_view windowsName, std::span<const std::uint8_t> bytes,
                         DelayedFlush* later = nullptr);

// Flushes files to the disk on a thread of its own, so that nobody waits for a busy disk. Its end
// waits until all is there; what fails is reported. Used from one thread.
class DelayedFlush {
  public:
    DelayedFlush();
    ~DelayedFlush();
    DelayedFlush(const DelayedFlush&) = delete;
    DelayedFlush& operator=(const DelayedFlush&) = delete;

    // Takes the open file over, and flushes the folder after it.
    void add(int descriptor, const std::filesystem::path& file);
    // Until all that was added is on the disk.
    void wait();

  private:
    std::unique_ptr<TaskPool> pool_;  // made with the first file
    std::vector<std::future<void>> running_;
};

// Names of the regular files in a folder, sorted by their bytes; nothing when it cannot be opened.
std::optional<std::vector<std::string>> ListFiles(std::string_view windowsFolder);
