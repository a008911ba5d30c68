// vorn_scene IN OUT: makes a .scn file from a readable scene, or prints one back.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "image/parallax_scene.h"
#include "platform/files.h"
#include "scene_json.h"
#include "scene_sampler.h"

namespace {

constexpr int kDone = 0, kWrongArguments = 2, kBadInput = 3, kNotWritten = 5;

int Fail(int code, const std::string& name, const std::string& reason) {
    std::fprintf(stderr, "%s: %s\n", name.c_str(), reason.c_str());
    return code;
}

int MakeScene(const std::string& input, const std::string& output, std::string_view text) {
    SceneDescription scene;
    std::string fault;
    if (!ParseSceneJson(text, scene, fault)) return Fail(kBadInput, input, fault);
    const std::vector<ParallaxRecord> records = SampleScene(scene);
    if (!WriteFileAtomically(output, ParallaxSceneBytes(records))) {
        return Fail(kNotWritten, output, "the file cannot be written");
    }
    std::size_t keyCount = 0;
    for (const ParallaxRecord& record : records) keyCount += record.keys.size();
    std::printf("%s: %zu layers, %zu keys\n", output.c_str(), records.size(), keyCount);
    return kDone;
}

// What is whole in a damaged scene is printed all the same.
int PrintScene(const std::string& input, const std::string& output,
               std::span<const std::uint8_t> bytes) {
    std::string fault;
    const std::string text = SceneJson(ReadParallaxScene(bytes, fault));
    if (output.empty()) {
        std::fputs(text.c_str(), stdout);
    } else if (!WriteFileAtomically(
                   output, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()})) {
        return Fail(kNotWritten, output, "the file cannot be written");
    }
    return fault.empty() ? kDone : Fail(kBadInput, input, fault);
}

bool IsSceneFile(const std::string& name) {
    return name.size() >= 4 && name.compare(name.size() - 4, 4, ".scn") == 0;
}

}  // namespace

int main(int argc, char** argv) {
    std::string input, output;
    CLI::App app("Makes a .scn file from a scene in JSON, or prints a .scn file as JSON.");
    app.add_option("input", input, "the scene; a name that ends in .scn is printed as JSON")
        ->required();
    app.add_option("output", output, "the file to write; JSON goes to the screen without it");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kDone : kWrongArguments;
    }
    const auto bytes = ReadWholeFile(input);
    if (!bytes) return Fail(kBadInput, input, "the file cannot be read");
    if (IsSceneFile(input)) return PrintScene(input, output, *bytes);
    if (output.empty()) return Fail(kWrongArguments, input, "needs the name of the file to write");
    return MakeScene(input, output, {reinterpret_cast<const char*>(bytes->data()), bytes->size()});
}
