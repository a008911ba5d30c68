// The reader of OBJ files against the plain one over random files, sound and broken.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

#include "geometry/read_obj_file.h"
#include "support/plain_obj_reader.h"

namespace {

// C libraries differ in how much of a number that breaks off they eat; ours follows this one.
bool EatsUnfinishedNumbersAsWeDo() {
    float value = 0;
    char next[8] = "";
    return std::sscanf("1ex", "%f%7s", &value, next) == 2 && value == 1 && next[0] == 'x';
}

class FileMaker {
  public:
    explicit FileMaker(unsigned seed) : random_(seed) {}

    int below(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    template <std::size_t N>
    std::string oneOf(const char* const (&choices)[N]) {
        return choices[below(static_cast<int>(N))];
    }

    // Mostly sound: lines as modelling programs write them, with what the format knows.
    std::string soundFile() {
        std::string text;
        const bool uvs = below(3) != 0;
        const int points = 3 + below(20);
        const std::string end = below(3) == 0 ? "\r\n" : "\n";
        if (below(2) == 0) text += "# made by hand" + end + "mtllib a.mtl" + end;
        for (int i = 0; i < points; ++i) {
            text += "v " + number() + " " + number() + " " + number() + end;
            text += "vn " + number() + " " + number() + " " + number() + end;
            if (uvs) text += "vt " + number() + " " + number() + end;
        }
        for (int faces = below(40); faces > 0; --faces) {
            if (below(6) == 0) text += "o " + name() + end;
            if (below(9) == 0) text += "g " + name() + end;
            text += "f";
            for (int corner = 0; corner < 3; ++corner) {
                for (int k = 0; k < 3; ++k) {
                    text += (k == 0 ? " " : "/") + std::to_string(1 + below(points));
                }
            }
            text += end;
        }
        return text;
    }

    // Words that mean something, and separators, in any order.
    std::string shuffledWords() {
        static constexpr const char* kWords[] = {
            "v",        "vn",      "vt", "f",    "f",   "o",     "#",     "g",    "mtllib",
            "#x",       "usemtl",  "1",  "2",    "3",   "1/1/1", "2/2/2", "1//1", "3/3",
            "-1/-1/-1", "1/2/3/4", "0",  "99",   "1.5", "-.5",   ".",     "-",    "+",
            "1e3",      "/",       "//", "body", "s",   "off"};
        static constexpr const char* kUnfinished[] = {"1e",  "1e+", "0x", "0xg",  "nan",
                                                      "inf", "in",  "na", "0x1p", "infin"};
        static constexpr const char* kGaps[] = {" ", " ", " ", "\n", "\r\n", "\t", "", "\r", "  "};
        std::string text;
        for (int words = 5 + below(120); words > 0; --words) {
            const bool odd = unfinishedNumbers_ && below(12) == 0;
            text += (odd ? oneOf(kUnfinished) : oneOf(kWords)) + oneOf(kGaps);
        }
        return text;
    }

    // Changes, drops and repeats some bytes, and may cut the end off.
    void damage(std::string& text, std::string_view alphabet) {
        for (int edits = 1 + below(8); edits > 0 && !text.empty(); --edits) {
            const auto at = static_cast<std::size_t>(below(static_cast<int>(text.size())));
            const int kind = below(4);
            if (kind == 0) text.erase(at, 1 + static_cast<std::size_t>(below(6)));
            if (kind == 1) text.insert(at, text.substr(at / 2, 12));
            if (kind >= 2) text[at] = alphabet[random_() % alphabet.size()];
        }
        if (below(3) == 0) text.resize(text.size() / 2);
    }

    std::string bytes() {
        std::string text(static_cast<std::size_t>(1 + below(300)), ' ');
        for (char& c : text) c = static_cast<char>(random_());
        return text;
    }

  private:
    std::string number() {
        char text[64];
        const double value = below(2000001) / 1000.0 - 1000.0;
        static constexpr const char* kFormats[] = {"%.6f", "%.9f", "%.0f", "%+.2f", "%g", "%.3e"};
        std::snprintf(text, sizeof text, kFormats[below(unfinishedNumbers_ ? 6 : 4)], value);
        return text;
    }
    std::string name() {
        static constexpr const char* kNames[] = {"body", "HEAD", "a", "v", "default", "x.001"};
        return oneOf(kNames);
    }

    std::mt19937 random_;
    const bool unfinishedNumbers_ = EatsUnfinishedNumbersAsWeDo();
};

// Bytes that do not let numbers break off.
constexpr char kSafeBytes[] = " \n\r\t/.-+#0123456789vfotg\v\f\\\x80\0z";

void ExpectAsPlainReader(const std::string& text) {
    if (text.empty()) return;
    std::FILE* file = fmemopen(const_cast<char*>(text.data()), text.size(), "r");
    ASSERT_NE(file, nullptr);
    const PlainObj plain = PlainObjReader(file).read();
    std::fclose(file);

    ObjObjects objects;
    ReadObjText(text, objects, 0);
    auto it = objects.begin();
    for (const std::string& name : plain.order) {
        const std::vector<MeshVertex> expected = PlainVertices(plain, name);
        if (expected.empty()) continue;
        ASSERT_NE(it, objects.end()) << text;
        ASSERT_EQ(it->first, name) << text;
        ASSERT_EQ(it->second.size(), expected.size()) << text;
        // Bit by bit, so that it also holds for what is no number.
        ASSERT_EQ(std::memcmp(it->second.data(), expected.data(), expected.size() * 32), 0) << text;
        ++it;
    }
    ASSERT_EQ(it, objects.end()) << text;
}

TEST(ReadObjRandomFiles, SoundFilesAreReadAsThePlainReaderReadsThem) {
    FileMaker make(1);
    for (int i = 0; i < 3000; ++i) ExpectAsPlainReader(make.soundFile());
}

TEST(ReadObjRandomFiles, DamagedFilesAreReadAsThePlainReaderReadsThem) {
    FileMaker make(2);
    const std::string_view alphabet(kSafeBytes, sizeof kSafeBytes - 1);
    for (int i = 0; i < 6000; ++i) {
        std::string text = make.soundFile();
        make.damage(text, alphabet);
        ExpectAsPlainReader(text);
    }
}

TEST(ReadObjRandomFiles, ShuffledWordsAreReadAsThePlainReaderReadsThem) {
    FileMaker make(3);
    for (int i = 0; i < 10000; ++i) ExpectAsPlainReader(make.shuffledWords());
}

TEST(ReadObjRandomFiles, AnyBytesAreReadAsThePlainReaderReadsThem) {
    if (!EatsUnfinishedNumbersAsWeDo()) GTEST_SKIP() << "this C library reads numbers otherwise";
    FileMaker make(4);
    for (int i = 0; i < 3000; ++i) ExpectAsPlainReader("f 1/1/1 2" + make.bytes());
}

TEST(ReadObjRandomFiles, EveryCutOfAFileIsReadAsThePlainReaderReadsIt) {
    FileMaker make(5);
    std::string text;
    while (text.size() < 400) text = make.soundFile();
    for (std::size_t size = 1; size < text.size(); ++size) {
        ExpectAsPlainReader(text.substr(0, size));
    }
}

}  // namespace
