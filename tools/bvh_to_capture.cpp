// vorn_bvh_to_capture IN.bvh OUT: turns motion-capture data into a capture file that the puppet
// plays.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <string>
#include <vector>

#include "bvh_file.h"
#include "bvh_joint_names.h"
#include "bvh_motion.h"
#include "platform/files.h"

namespace {

constexpr int kDone = 0, kWrongArguments = 2, kBadInput = 3, kNotWritten = 5;

struct Arguments {
    std::string input, output, namesFile;
    BvhConversion conversion;
};

int Fail(int code, const std::string& name, const std::string& reason) {
    std::fprintf(stderr, "%s: %s\n", name.c_str(), reason.c_str());
    return code;
}

bool ReadText(const std::string& name, std::string& text) {
    const auto bytes = ReadWholeFile(name);
    if (bytes) text.assign(bytes->begin(), bytes->end());
    return bytes.has_value();
}

void TellSize(const Arguments& arguments, const BvhFile& file, std::size_t frameCount) {
    const double metres = arguments.conversion.figureMetres > 0
                              ? arguments.conversion.figureMetres
                              : BvhFigureHeight(file) * arguments.conversion.metresPerUnit;
    std::printf("%s: %zu frames of %zu joints at %g s; the figure is %.2f m tall\n",
                arguments.input.c_str(), file.frameCount, file.joints.size(), file.frameSeconds,
                metres);
    if (metres < 0.5 || metres > 3) {
        std::printf("This is not the size of a dancer: --height or --scale sets it.\n");
    }
    std::printf("%s: %zu frames\n", arguments.output.c_str(), frameCount);
}

int Convert(const Arguments& arguments) {
    std::string text, names, fault;
    if (!ReadText(arguments.input, text)) {
        return Fail(kBadInput, arguments.input, "the file cannot be read");
    }
    if (!arguments.namesFile.empty() && !ReadText(arguments.namesFile, names)) {
        return Fail(kBadInput, arguments.namesFile, "the file cannot be read");
    }
    BvhFile file;
    BvhJointMap map;
    std::vector<CaptureFrame> frames;
    if (!ParseBvh(text, file, fault) || !MapBvhJoints(file, names, map, fault) ||
        !ConvertBvh(file, map, arguments.conversion, frames, fault)) {
        return Fail(kBadInput, arguments.input, fault);
    }
    if (!WriteFileAtomically(arguments.output, CaptureBytes(frames))) {
        return Fail(kNotWritten, arguments.output, "the file cannot be written");
    }
    TellSize(arguments, file, frames.size());
    return kDone;
}

}  // namespace

int main(int argc, char** argv) {
    Arguments arguments;
    CLI::App app("Turns BVH motion-capture data into a capture file for Kinect2Puppet.");
    app.add_option("input", arguments.input, "the BVH file")->required();
    app.add_option("output", arguments.output, "the capture file")->required();
    CLI::Option* const scale =
        app.add_option("--scale", arguments.conversion.metresPerUnit,
                       "metres in one unit of the BVH file (default 0.01: centimetres)")
            ->check(CLI::PositiveNumber);
    app.add_option("--height", arguments.conversion.figureMetres,
                   "height of the figure in metres, in place of a scale")
        ->check(CLI::PositiveNumber)
        ->excludes(scale);
    app.add_option("--turn", arguments.conversion.turnDegrees,
                   "degrees to turn the figure about y (default 180: towards the sensor)");
    app.add_option("--names", arguments.namesFile,
                   "a file with lines such as 'KneeLeft = name', for names that are not known");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kDone : kWrongArguments;
    }
    return Convert(arguments);
}
