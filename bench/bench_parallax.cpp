// What a frame of a scene of 40 layers costs the calling thread, next to the plain way of a buffer
// for each layer; and how long a project's 300 pictures of the screen's size take to load, next to
// libpng alone on the same number of threads.
#include <GL/glew.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "core/engine.h"
#include "gpu/embedded_shaders.h"
#include "gpu/full_screen_quad.h"
#include "gpu/gl_framebuffer.h"
#include "gpu/gl_mem_texture.h"
#include "gpu/shader_program.h"
#include "image/image_node_2d_parallax_renderer.h"
#include "platform/debug_output.h"
#include "platform/task_pool.h"
#include "platform/window.h"
#include "png_alone.h"

namespace {

namespace fs = std::filesystem;

constexpr int kLayers = 40;
constexpr int kKeys = 1800;  // half a minute
constexpr int kPictures = 300;

double ThreadMilliseconds() {
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

// Time by the clock, and of all processors: the first one depends on what else the machine does.
struct Seconds {
    double clock = 0, processors = 0;

    static Seconds now() {
        using Clock = std::chrono::steady_clock;
        timespec time;
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return {std::chrono::duration<double>(Clock::now().time_since_epoch()).count(),
                static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9};
    }
    Seconds since(const Seconds& start) const {
        return {clock - start.clock, processors - start.processors};
    }
};

// Median of the calling thread's time for one call.
template <typename Call>
double MedianMilliseconds(int calls, const Call& call) {
    std::vector<double> times;
    for (int i = 0; i < calls; ++i) {
        const double start = ThreadMilliseconds();
        call(i);
        times.push_back(ThreadMilliseconds() - start);
    }
    std::nth_element(times.begin(), times.begin() + calls / 2, times.end());
    return times[static_cast<std::size_t>(calls / 2)];
}

std::vector<ParallaxKey> Track(int layer) {
    std::vector<ParallaxKey> keys;
    for (int i = 0; i < kKeys; ++i) {
        const auto x = static_cast<float>(i + layer);
        keys.push_back({x, x / 2, 1920, 1080, 0.9f, static_cast<float>(i) / 60,
                        static_cast<std::uint32_t>(i)});
    }
    return keys;
}

void WriteScene(const std::string& file, const std::vector<ParallaxRecord>& records) {
    if (!WriteFileAtomically(file, ParallaxSceneBytes(records))) std::abort();
}

void MeasureKeys() {
    std::vector<std::vector<ParallaxKey>> tracks;
    for (int i = 0; i < kLayers; ++i) tracks.push_back(Track(i));
    float sum = 0;
    const double time = MedianMilliseconds(1001, [&](int frame) {
        const float seconds = static_cast<float>(frame) * 0.0166f;
        for (const auto& keys : tracks) sum += ParallaxPlaceAt(keys, seconds, 1)->x0;
    });
    std::printf("keys of %d layers: %.4f ms (%g)\n", kLayers, time, static_cast<double>(sum));
}

// Only a few pixels are drawn, so that the figures are those of the calls.
void DrawFewPixels() {
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 8, 8);
}

void MeasureFrame() {
    std::vector<ParallaxRecord> records;
    for (int i = 0; i < kLayers; ++i) {
        records.push_back({i % 2 == 0 ? "Neon.png" : "plain.png", i % 3 == 0 ? 7 : 2, Track(i)});
    }
    WriteScene("forty.scn", records);
    const std::vector<std::uint8_t> pixels(16 * 16 * 4, 128);
    for (const char* name : {"Graphics/Neon.png", "Graphics/plain.png"}) {
        if (!WritePng(name, 16, 16, 4, pixels.data())) std::abort();
    }
    Engine engine({}, nullptr);
    ImageNode_2DParallaxRenderer node(&engine, "parallax");
    const auto frame = [&](int i) {
        engine.time = static_cast<float>(i) * 0.0166f;
        node.process();
    };
    DrawFewPixels();
    const double passesAlone = [&] {
        WriteScene("none.scn", {{"plain.png", 2, {{0, 0, 1, 1, 0, 0, 0}}}});
        node.scnFiles[0] = "none.scn";
        return MedianMilliseconds(301, frame);
    }();
    node.scnFiles[0] = "forty.scn";
    const double whole = MedianMilliseconds(301, frame);
    std::printf("frame of %d layers: %.3f ms, of it blur and passes without layers %.3f ms\n",
                kLayers, whole, passesAlone);
}

// A vertex array, a buffer and a draw for each rectangle, against a uniform and the shared quad.
void MeasureRectangles() {
    const ShaderProgram program("rectangles", EmbeddedShader("parallax_layer.vert").data(), nullptr,
                                EmbeddedShader("parallax_compose.frag").data(), QuadAttributes(),
                                2);
    const GL_FrameBuffer target(kFrameWidth, kFrameHeight, 2, 16, GL_RGBA, TargetDepth::None,
                                TargetWrap::Border);
    target.Bind();
    target.SelectDrawBuffers();
    target.SetViewport();
    program.Use();
    DrawFewPixels();
    const int rect = program.UniformLocation("rect");
    const auto uniforms = [&](int) {
        for (int i = 0; i < kLayers; ++i) {
            glUniform4f(rect, -1, -1, static_cast<float>(i) / kLayers, 1);
            DrawFullScreenQuad();
        }
    };
    const auto buffers = [&](int) {
        for (int i = 0; i < kLayers; ++i) {
            const float x = static_cast<float>(i) / kLayers;
            const float corners[] = {-1, -1, 0, 0, x, -1, 1, 0, -1, 1, 0, 1, x, 1, 1, 1};
            GLuint array = 0, buffer = 0;
            glGenVertexArrays(1, &array);
            glBindVertexArray(array);
            glGenBuffers(1, &buffer);
            glBindBuffer(GL_ARRAY_BUFFER, buffer);
            glBufferData(GL_ARRAY_BUFFER, sizeof corners, corners, GL_STATIC_DRAW);
            const void* const uv = reinterpret_cast<const void*>(8);
            glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 16, nullptr);
            glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 16, uv);
            glEnableVertexAttribArray(0);
            glEnableVertexAttribArray(1);
            glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
            glBindVertexArray(0);
            glBindBuffer(GL_ARRAY_BUFFER, 0);
            glDeleteVertexArrays(1, &array);
            glDeleteBuffers(1, &buffer);
        }
    };
    std::printf("rectangles of %d layers: %.3f ms; with a buffer for each %.3f ms\n", kLayers,
                MedianMilliseconds(301, uniforms), MedianMilliseconds(301, buffers));
    ShaderProgram::Unuse();
    GL_FrameBuffer::Unbind();
}

std::string PictureName(int index) {
    return "picture" + std::to_string(index) + ".png";
}

// Pictures of four channels, opaque and not, as layers are. All names of a kind are one file.
void MakePictures() {
    for (const int alpha : {-1, 255}) {
        const std::string file = "Graphics/" + PictureName(alpha < 0 ? 0 : 1);
        if (!WritePng(file, kWidth, kHeight, 4, MakePixels(4, alpha).data())) std::abort();
    }
    for (int i = 2; i < kPictures; ++i) {
        fs::create_hard_link("Graphics/" + PictureName(i % 2), "Graphics/" + PictureName(i));
    }
}

Seconds LibpngAlone() {
    const Seconds start = Seconds::now();
    TaskPool pool;
    std::vector<std::future<bool>> done;
    for (int i = 0; i < kPictures; ++i) {
        done.push_back(pool.run([i] {
            return DecodeWithLibpng(ReadWholeFile("Graphics/" + PictureName(i)).value()) == nullptr;
        }));
    }
    for (auto& one : done) one.get();
    return Seconds::now().since(start);
}

Seconds DecodeInQueue() {
    const Seconds start = Seconds::now();
    std::vector<PictureQueue::Wanted> wanted;
    for (int i = 0; i < kPictures; ++i) wanted.push_back({"Graphics/" + PictureName(i), ""});
    PictureQueue queue(std::move(wanted));
    TaskPool pool;
    while (queue.left() > 0) {
        queue.decodeAhead(pool, std::size_t{2} * pool.threadCount());
        if (queue.takeNext().pixels == nullptr) std::abort();
    }
    return Seconds::now().since(start);
}

// What the driver takes for as many textures of one block of pixels. On a software renderer the
// most of it is the memory: page after page that has not been touched before.
Seconds UploadAlone() {
    const Bytes pixels = MakePixels(4);
    const Seconds start = Seconds::now();
    std::vector<std::unique_ptr<GL_MemTexture>> textures;
    for (int i = 0; i < kPictures; ++i) {
        textures.push_back(std::make_unique<GL_MemTexture>(
            static_cast<int>(kWidth), static_cast<int>(kHeight), GL_RGBA, GL_CLAMP_TO_EDGE,
            GL_CLAMP_TO_EDGE, pixels.data()));
    }
    glFinish();
    return Seconds::now().since(start);
}

Seconds LoadProject() {
    Engine engine({}, nullptr);
    auto made = std::make_unique<ImageNode_2DParallaxRenderer>(&engine, "parallax");
    for (int slot = 0; slot < 10; ++slot) {
        std::vector<ParallaxRecord> records;
        for (int i = slot; i < kPictures; i += 10) records.push_back({PictureName(i), 2, Track(i)});
        const std::string file = "load" + std::to_string(slot) + ".scn";
        WriteScene(file, records);
        made->scnFiles[static_cast<std::size_t>(slot)] = file;
    }
    const auto& node = *made;
    engine.addNode("parallax", std::move(made));
    const Seconds start = Seconds::now();
    engine.refreshNodes();
    glFinish();
    const Seconds seconds = Seconds::now().since(start);
    if (node.imageCache.size() != kPictures) std::abort();
    return seconds;
}

void Print(const char* what, const Seconds& seconds, const Seconds& alone) {
    std::printf("  %s: %.2f s, %.2f s of all processors (%.2f and %.2f of libpng alone)\n", what,
                seconds.clock, seconds.processors, seconds.clock / alone.clock,
                seconds.processors / alone.processors);
}

void MeasureLoad() {
    MakePictures();
    std::printf("%d pictures\n", kPictures);
    for (int run = 0; run < 2; ++run) {
        const Seconds alone = LibpngAlone();
        Print("libpng alone", alone, alone);
        Print("decoded and premultiplied", DecodeInQueue(), alone);
        Print("uploads and mipmaps alone", UploadAlone(), alone);
        Print("the project's load, with uploads and mipmaps", LoadProject(), alone);
    }
}

}  // namespace

int main() {
    std::string reason;
    const auto window = MakeWindow(WindowKind::Offscreen, reason);
    if (window == nullptr) {
        std::fprintf(stderr, "%s\n", reason.c_str());
        return 1;
    }
    const BenchFolder folder;
    fs::current_path(folder.path());
    fs::create_directory("Graphics");
    const DebugCapture quiet;
    MeasureKeys();
    MeasureRectangles();
    MeasureFrame();
    MeasureLoad();
    ReleaseFullScreenQuad();
    fs::current_path("/");
    return 0;
}
