#include "demo/tool/model_file.h"

#include <fstream>

bool WriteModelFile(const std::filesystem::path& file, std::span<const char> bytes,
                    std::string& error) {
    std::ofstream out(file, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (out) return true;
    error = file.string() + ": cannot be written";
    return false;
}
