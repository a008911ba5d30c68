// Puts a project file together word by word, as the format lays it down. For tests: it shares no
// code with the program's own writer.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

class ProjectFile {
  public:
    explicit ProjectFile(std::uint32_t magic = 0x86875002) { word(magic); }

    ProjectFile& word(std::uint32_t value) {
        for (int shift = 0; shift < 32; shift += 8) {
            bytes_ += static_cast<char>((value >> shift) & 0xFF);
        }
        return *this;
    }
    ProjectFile& number(float value) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        return word(bits);
    }
    ProjectFile& text(std::string_view value) {
        bytes_ += value;
        bytes_ += '\0';
        return *this;
    }
    ProjectFile& byte(int value) {
        bytes_ += static_cast<char>(value);
        return *this;
    }

    ProjectFile& strings(float lengthSeconds = 240) {
        return word(0x86869000)
            .text("demo")
            .text(".")
            .text(".\\data\\")
            .text(".\\data\\")
            .number(lengthSeconds);
    }
    ProjectFile& types(std::uint32_t count) { return word(0x86869002).word(count); }
    ProjectFile& counters(std::uint32_t count) { return word(0x86869001).word(count); }
    ProjectFile& links(std::uint32_t count) { return word(0x86869003).word(count); }
    ProjectFile& values(std::uint32_t count) { return word(0x86869004).word(count); }
    ProjectFile& tracks(std::uint32_t count) { return word(0x86869005).word(count); }

    const std::string& bytes() const { return bytes_; }

  private:
    std::string bytes_;
};
