#include "support/temp_folder.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

TempFolder::TempFolder() {
    std::string pattern = (fs::temp_directory_path() / "vorn-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = pattern;
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string TempFolder::file(std::string_view name) const {
    const fs::path path = path_ / name;
    fs::create_directories(path.parent_path());
    return path.string();
}

void TempFolder::write(std::string_view name, std::string_view content) const {
    std::ofstream stream(file(name), std::ios::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
}

std::string TempFolder::read(std::string_view name) const {
    std::ifstream stream(file(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

WorkingFolder::WorkingFolder(const fs::path& folder) : before_(fs::current_path()) {
    fs::current_path(folder);
}

WorkingFolder::~WorkingFolder() {
    std::error_code ignored;
    fs::current_path(before_, ignored);
}
