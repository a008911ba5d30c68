#include "program/authoring_user.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <thread>

#include "editor/ui_button.h"
#include "editor/ui_panel.h"
#include "editor/ui_properties_column.h"
#include "platform/picture_decoder.h"
#include "platform/window.h"
#include "program/program_runs.h"

namespace fs = std::filesystem;

namespace {

constexpr int kWidth = 1920, kHeight = 1080;
constexpr int kFoot = 24;                   // the line of hints
constexpr double kLongestWaitSeconds = 90;  // generous: other tests run beside this one

struct ButtonMessages {
    std::uint32_t down, up;
};
constexpr ButtonMessages kButtons[] = {{0, 0},
                                       {kMessageLeftDown, kMessageLeftUp},
                                       {kMessageMiddleDown, kMessageMiddleUp},
                                       {kMessageRightDown, kMessageRightUp}};

int VirtualKeyOfName(const std::string& name) {
    static const std::map<std::string, int> kNamed = {
        {"Tab", kKeyTab}, {"Return", kKeyReturn}, {"BackSpace", kKeyBack}, {"space", kKeySpace},
        {"Up", kKeyUp},   {"Down", kKeyDown},     {"Home", kKeyHome},      {"Escape", kKeyEscape},
        {"F1", kKeyF1},   {"Delete", kKeyDelete},
    };
    const auto found = kNamed.find(name);
    if (found != kNamed.end()) return found->second;
    const char c = name[0];
    return c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c;
}

bool WaitUntil(const std::function<bool()>& reached) {
    const auto limit =
        std::chrono::steady_clock::now() + std::chrono::duration<double>(kLongestWaitSeconds);
    while (!reached()) {
        if (std::chrono::steady_clock::now() > limit) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
    }
    return true;
}

}  // namespace

AuthoringUser::AuthoringUser(std::string programFolder, std::string twinFolder,
                             std::string pictures)
    : programFolder_(std::move(programFolder)),
      pictures_(std::move(pictures)),
      inTwinFolder_(twinFolder) {
    // Prints what the test has put beside it, and nothing where there is no answer: a cancel.
    tools_.write("zenity",
                 "#!/bin/sh\necho \"$*\" >> \"${0%/*}/asked\"\n"
                 "cat \"${0%/*}/answer\" && rm \"${0%/*}/answer\"\n");
    fs::permissions(tools_.file("zenity"), fs::perms::owner_all);
    fs::create_directories(pictures_);
}

void AuthoringUser::start(const std::string& project) {
    twin_ = nullptr;  // the working folder's fonts and scripts are read anew
    twin_ = std::make_unique<EditorTwin>(project);
    ASSERT_NE(twin_->session, nullptr) << twin_->reason;
    std::vector<std::string> arguments = {VornProgram(), "--edit"};
    if (!project.empty()) arguments.push_back(project);
    const char* const path = std::getenv("PATH");
    program_ = std::make_unique<ChildProcess>(
        arguments,
        std::map<std::string, std::string>{
            {"DISPLAY", server_.display()},
            {"WAYLAND_DISPLAY", ""},
            {"SDL_VIDEODRIVER", "x11"},
            {"ALSOFT_DRIVERS", "null"},
            {"PATH", tools_.path().string() + ":" + (path == nullptr ? "" : path)},
            // A slow frame between its two clicks makes no two single ones of a double click.
            {"SDL_MOUSE_DOUBLE_CLICK_TIME", "5000"}},
        programFolder_);
    ASSERT_TRUE(WaitUntil([this] { return (window_ = screen_.windowTitled("vorn")) != 0; }));
    screen_.focus(window_);
    // What is pressed before its first frame, the program takes for the time before it plays.
    const std::vector<std::uint8_t> wanted = twin_->picture();
    const UI_Object* column = twin_->ui().propertiesPanel.get();
    ASSERT_TRUE(WaitUntil([&] { return pixelsApart(screen_.pixels(), wanted, column) == 0; }))
        << "the authoring screen does not come up";
    // Away from the canvas: the clock ran until now, and goes back to its start.
    moveTo(EditorTwin::middle(*twin_->ui().stopButton));
    key("space");
    click(EditorTwin::middle(*twin_->ui().stopButton));
    moveTo({kWidth / 2, kHeight / 4});
}

ProcessResult AuthoringUser::waitForEnd() {
    return program_->wait(kLongestWaitSeconds);
}

void AuthoringUser::xdotool(std::vector<std::string> arguments) {
    if (testing::Test::HasFatalFailure()) return;  // nobody waits at a screen that is not there
    arguments.insert(arguments.begin(), "xdotool");
    const ProcessResult result = RunProcess(arguments, {{"DISPLAY", server_.display()}});
    EXPECT_EQ(result.exitCode, 0) << result.err;
}

void AuthoringUser::moveTo(ScreenPoint point) {
    ASSERT_TRUE(point.x >= 0 && point.y >= 0) << "there is no such place on the screen";
    xdotool({"mousemove", std::to_string(point.x), std::to_string(point.y)});
    twin_->moveTo(point);
}

void AuthoringUser::press(ScreenPoint point, int button) {
    moveTo(point);
    twin_->send(kButtons[button].down);
    twin_->send(kButtons[button].up);
    xdotool({"click", std::to_string(button)});
}

void AuthoringUser::doubleClick(ScreenPoint point) {
    moveTo(point);
    twin_->send(kButtons[1].down);
    twin_->send(kButtons[1].up);
    twin_->send(kMessageLeftDoubleClick);
    twin_->send(kButtons[1].up);
    xdotool({"click", "--repeat", "2", "--delay", "20", "1"});
}

void AuthoringUser::drag(ScreenPoint from, ScreenPoint to) {
    const ScreenPoint half = {(from.x + to.x) / 2, (from.y + to.y) / 2};
    moveTo(from);
    twin_->send(kButtons[1].down);
    xdotool({"mousedown", "1"});
    moveTo(half);
    moveTo(to);
    twin_->send(kButtons[1].up);
    xdotool({"mouseup", "1"});
}

void AuthoringUser::key(const std::string& name, int times) {
    const int virtualKey = VirtualKeyOfName(name);
    for (int i = 0; i < times; ++i) {
        twin_->send(kMessageKeyDown, virtualKey);
        twin_->send(kMessageKeyUp, virtualKey);
        xdotool({"key", name});
    }
}

void AuthoringUser::ctrlKey(const std::string& letter) {
    twin_->send(kMessageKeyDown, kKeyControl);
    twin_->send(kMessageKeyDown, VirtualKeyOfName(letter));
    twin_->send(kMessageKeyUp, VirtualKeyOfName(letter));
    twin_->send(kMessageKeyUp, kKeyControl);
    xdotool({"key", "ctrl+" + letter});
}

void AuthoringUser::type(const std::string& smallLettersAndDigits) {
    for (const char c : smallLettersAndDigits) {
        const int virtualKey = VirtualKeyOfName(std::string(1, c));
        twin_->send(kMessageKeyDown, virtualKey);
        twin_->send(kMessageCharacter, c);
        twin_->send(kMessageKeyUp, virtualKey);
    }
    xdotool({"type", "--delay", "15", smallLettersAndDigits});
}

void AuthoringUser::escape() {
    ASSERT_EQ(twin_->ui().master.captured, nullptr);
    twin_->ui().GiveUp();
    xdotool({"key", "Escape"});
}

void AuthoringUser::willChoose(const std::string& file) {
    tools_.write("answer", file + "\n");
    twin_->chosenFile = file;
}

void AuthoringUser::answerQuestion(const std::string& keyName) {
    unsigned long box = 0;
    const bool asked = WaitUntil([&] {
        box = screen_.windowTitled("VORN");
        return box != 0 || !program_->running();
    });
    if (!asked) keep("no-question", screen_.pixels());
    ASSERT_TRUE(asked && box != 0)
        << "no question was asked; the program " << (program_->running() ? "runs" : "has ended");
    screen_.focus(box);
    // What the box looks like.
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    keep("question", screen_.pixels());
    xdotool({"key", keyName});
    ASSERT_TRUE(WaitUntil([&] { return screen_.windowTitled("VORN") == 0; }));
    if (program_->running()) screen_.focus(window_);
}

void AuthoringUser::waitFor(const std::string& what, const std::function<bool()>& reached) {
    ASSERT_TRUE(WaitUntil(reached)) << what;
}

// The toolbar shows the clock and what frames cost, the foot says things for a while, and the
// messages are those of the process: they are left out.
std::size_t AuthoringUser::pixelsApart(const std::vector<std::uint8_t>& window,
                                       const std::vector<std::uint8_t>& twin,
                                       const UI_Object* within) {
    constexpr std::size_t kBytes = std::size_t{kWidth} * kHeight * 3;
    if (window.size() != kBytes || twin.size() != kBytes) return kBytes;
    const UI_Engine& ui = twin_->ui();
    std::size_t apart = 0;
    for (int y = 0; y < kHeight - kFoot; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const std::size_t at =
                (static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x)) * 3;
            const bool same = window[at] == twin[at] && window[at + 1] == twin[at + 1] &&
                              window[at + 2] == twin[at + 2];
            if (same || ui.topPanel->Contains(x, y) || ui.rightPanel->Contains(x, y)) continue;
            if (within == nullptr || within->Contains(x, y)) ++apart;
        }
    }
    return apart;
}

void AuthoringUser::keep(const std::string& name, const std::vector<std::uint8_t>& rgb) {
    char number[16];
    std::snprintf(number, sizeof number, "/%02d-", ++pictureNumber_);
    const std::string file = pictures_ + number + name + ".png";
    EXPECT_TRUE(WritePng(file, kWidth, kHeight, 3, rgb.data())) << file;
}

void AuthoringUser::see(const std::string& pictureName) {
    if (testing::Test::HasFatalFailure()) return;
    const std::vector<std::uint8_t> wanted = twin_->picture();
    std::size_t apart = 0;
    const bool same = WaitUntil([&] {
        seen_ = screen_.pixels();
        apart = pixelsApart(seen_, wanted);
        return apart == 0 || !program_->running();
    });
    keep(pictureName, seen_);
    if (same && apart == 0) return;
    keep(pictureName + "-expected", wanted);
    FAIL() << pictureName << ": " << apart << " pixels of the window are not as the editor draws";
}
