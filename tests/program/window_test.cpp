// The window path, in a real X server: start, resize, Esc, close box, F12, and the exit code.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <thread>

#include "program/close_box.h"
#include "program/program_runs.h"
#include "program/x_server.h"
#include "support/project_file.h"
#include "support/temp_folder.h"

namespace {

constexpr double kStartSeconds = 20;  // generous: other tests run beside this one
constexpr double kEndSeconds = 20;

class WindowPath : public ::testing::Test {
  protected:
    void SetUp() override {
        folder_.write("demo.vorn", ProjectFile().strings().bytes());
        ASSERT_FALSE(server_.display().empty()) << "Xvfb does not start";
    }

    void start(std::vector<std::string> arguments = {"--windowed"}) {
        arguments.insert(arguments.begin(), VornProgram());
        program_ = std::make_unique<ChildProcess>(
            arguments,
            std::map<std::string, std::string>{{"DISPLAY", server_.display()},
                                               {"WAYLAND_DISPLAY", ""},
                                               {"SDL_VIDEODRIVER", "x11"},
                                               {"ALSOFT_DRIVERS", "null"}},
            folder_.path());
        window_ = tool({"search", "--sync", "--onlyvisible", "--name", "^vorn$"}).out;
        window_ = window_.substr(0, window_.find('\n'));
        ASSERT_FALSE(window_.empty()) << "no window";
        // The loop takes keys once its first frames are through.
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        ASSERT_TRUE(program_->running());
    }

    ProcessResult tool(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "xdotool");
        return RunProcess(arguments, {{"DISPLAY", server_.display()}}, "", kStartSeconds);
    }

    TempFolder folder_;
    XServer server_{"1280x720x24"};
    std::unique_ptr<ChildProcess> program_;
    std::string window_;
};

TEST_F(WindowPath, EscEndsTheProgramWithCode0) {
    start();
    tool({"windowfocus", "--sync", window_});
    tool({"key", "--window", window_, "Escape"});
    tool({"key", "Escape"});
    const ProcessResult result = program_->wait(kEndSeconds);
    EXPECT_FALSE(result.timedOut) << result.err;
    EXPECT_EQ(result.exitCode, 0) << result.err;
}

TEST_F(WindowPath, TheCloseBoxEndsTheProgramWithCode0) {
    start();
    ASSERT_TRUE(PressCloseBox(server_.display(), std::stoul(window_)));
    const ProcessResult result = program_->wait(kEndSeconds);
    EXPECT_FALSE(result.timedOut) << result.err;
    EXPECT_EQ(result.exitCode, 0) << result.err;
}

TEST_F(WindowPath, ItPlaysOnThroughAResizeAndF12) {
    start();
    tool({"windowsize", "--sync", window_, "700", "500"});
    const std::string geometry = tool({"getwindowgeometry", window_}).out;
    EXPECT_NE(geometry.find("700x500"), std::string::npos) << geometry;
    tool({"windowfocus", "--sync", window_});
    tool({"key", "F12"});
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_TRUE(program_->running());
    tool({"key", "F12"});
    tool({"key", "Escape"});
    EXPECT_EQ(program_->wait(kEndSeconds).exitCode, 0);
}

TEST_F(WindowPath, EditStartsInTheAuthoringScreenWhichSavesByItsKeys) {
    start({"--windowed", "--edit"});
    tool({"windowfocus", "--sync", window_});
    tool({"mousemove", "--window", window_, "600", "300"});
    tool({"key", "ctrl+s"});
    const std::string saved = folder_.file("demo.vorngui");
    for (int i = 0; i < 100 && access(saved.c_str(), R_OK) != 0; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    EXPECT_EQ(access(saved.c_str(), R_OK), 0) << "no side-file";
    tool({"key", "Escape"});
    EXPECT_EQ(program_->wait(kEndSeconds).exitCode, 0);
}

// The program says of each step when it has taken the file up; the next one waits for that.
TEST_F(WindowPath, AScriptThatIsSavedWhileItRunsIsTakenUp) {
    const auto script = [](const std::string& colour) {
        return "Name \"Flat\", \"t\"\nSource\n#version 330 core\nout vec4 frag[1];\n"
               "void main() { frag[0] = " +
               colour + "; }\n";
    };
    folder_.write("Scripts/flat.node", script("vec4(1)"));
    folder_.write("demo.vorn", ProjectFile().strings().types(1).text("f").text("Flat").bytes());
    start({"--windowed", "--edit"});
    folder_.write("Scripts/flat.node", script("vec4(nothing)"));
    EXPECT_TRUE(
        program_->waitForError("flat.node: its shader does not compile: line 5: ", kEndSeconds));
    folder_.write("Scripts/aside", script("vec4(0.5)"));
    std::filesystem::rename(folder_.file("Scripts/aside"), folder_.file("Scripts/flat.node"));
    EXPECT_TRUE(program_->waitForError("flat.node: mended, and taken up by 1 node\n", kEndSeconds));
    tool({"windowfocus", "--sync", window_});
    tool({"key", "F12"});
    folder_.write("Scripts/flat.node", script("vec4(0.25)"));
    EXPECT_TRUE(program_->waitForError("flat.node: taken up by 1 node\n", kEndSeconds));
    tool({"key", "Escape"});
    EXPECT_EQ(program_->wait(kEndSeconds).exitCode, 0);
}

TEST_F(WindowPath, AMissingDefaultProjectPlaysAnEmptyScene) {
    unlink(folder_.file("demo.vorn").c_str());
    start();
    tool({"windowfocus", "--sync", window_});
    tool({"key", "Escape"});
    EXPECT_EQ(program_->wait(kEndSeconds).exitCode, 0);
}

TEST(WindowWithoutDisplay, EndsWithCode4AndSaysSo) {
    const TempFolder folder;
    folder.write("demo.vorn", ProjectFile().strings().bytes());
    const ProcessResult result = RunVorn({}, folder.path());
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_NE(result.err.find("vorn: OpenGL"), std::string::npos) << result.err;
}

}  // namespace
