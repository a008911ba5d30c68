// An OBJ file of 50 MB, read by the program's reader and next to it in the plain way, with fscanf
// word by word. Times are of the calling thread.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <span>
#include <string>

#include "../tests/support/plain_obj_reader.h"
#include "geometry/read_obj_file.h"
#include "platform/files.h"

namespace {

constexpr std::size_t kFileBytes = 50'000'000;

template <typename... Numbers>
void AppendLine(std::string& text, const char* format, Numbers... numbers) {
    char line[128];
    text.append(line,
                static_cast<std::size_t>(std::snprintf(line, sizeof line, format, numbers...)));
}

// A grid with six decimals and all three indices, as modelling programs write it.
std::string MakeGrid(std::size_t bytes) {
    constexpr int kWidth = 512;
    constexpr std::size_t kBytesOfAVertex = 203;  // its lines and those of its two triangles
    const int rows = static_cast<int>(bytes / (kWidth * kBytesOfAVertex));
    std::string text = "# a grid\nmtllib grid.mtl\no grid\n";
    text.reserve(bytes + bytes / 8);
    const auto number = [] { return std::rand() / (RAND_MAX / 2.0) - 1.0; };
    for (int i = 0; i < rows * kWidth; ++i) {
        AppendLine(text, "v %.6f %.6f %.6f\n", 9 * number(), 9 * number(), 9 * number());
    }
    for (int i = 0; i < rows * kWidth; ++i) {
        AppendLine(text, "vt %.6f %.6f\n", number(), number());
    }
    for (int i = 0; i < rows * kWidth; ++i) {
        AppendLine(text, "vn %.6f %.6f %.6f\n", number(), number(), number());
    }
    for (int row = 1; row < rows; ++row) {
        for (int x = 1; x < kWidth; ++x) {
            const int a = (row - 1) * kWidth + x, b = a + 1, c = a + kWidth, d = c + 1;
            AppendLine(text, "f %d/%d/%d %d/%d/%d %d/%d/%d\n", a, a, a, b, b, b, c, c, c);
            AppendLine(text, "f %d/%d/%d %d/%d/%d %d/%d/%d\n", b, b, b, d, d, d, c, c, c);
        }
    }
    return text;
}

// A file in the folder for temporary files, gone when the program ends.
class GridFile {
  public:
    GridFile() {
        const std::string text = MakeGrid(kFileBytes);
        size_ = text.size();
        const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
        if (!WriteFileAtomically(path_, std::span(bytes, size_))) std::abort();
    }
    ~GridFile() { std::filesystem::remove(path_); }

    const std::string& path() const { return path_; }
    std::size_t size() const { return size_; }

  private:
    std::string path_ = (std::filesystem::temp_directory_path() / "vorn_bench_grid.obj").string();
    std::size_t size_ = 0;
};

const GridFile& Grid() {
    static const GridFile file;
    return file;
}

void SetRate(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(Grid().size()));
}

void ReadObj(benchmark::State& state) {
    const std::string& path = Grid().path();
    for (auto _ : state) {
        ObjObjects objects;
        if (!ReadObjFile(path, objects, 0)) std::abort();
        benchmark::DoNotOptimize(objects["grid"].data());
    }
    SetRate(state);
}
BENCHMARK(ReadObj)->Unit(benchmark::kMillisecond);

// What no reader can do without: the bytes of the file.
void ReadBytesOnly(benchmark::State& state) {
    const std::string& path = Grid().path();
    for (auto _ : state) benchmark::DoNotOptimize(ReadWholeFile(path));
    SetRate(state);
}
BENCHMARK(ReadBytesOnly)->Unit(benchmark::kMillisecond);

void ReadObjWithFscanf(benchmark::State& state) {
    const std::string& path = Grid().path();
    for (auto _ : state) {
        std::FILE* file = std::fopen(path.c_str(), "r");
        if (file == nullptr) std::abort();
        const PlainObj obj = PlainObjReader(file).read();
        std::fclose(file);
        benchmark::DoNotOptimize(PlainVertices(obj, "grid").data());
    }
    SetRate(state);
}
BENCHMARK(ReadObjWithFscanf)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
