// A folder for the files of one test, removed with it.
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>

class TempFolder {
  public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    // Path of a file below the folder; its folders are made.
    std::string file(std::string_view name) const;
    void write(std::string_view name, std::string_view content) const;
    std::string read(std::string_view name) const;

  private:
    std::filesystem::path path_;
};

// Makes a folder the working directory while it lives.
class WorkingFolder {
  public:
    explicit WorkingFolder(const std::filesystem::path& folder);
    ~WorkingFolder();
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;

  private:
    std::filesystem::path before_;
};
