// A demo is made from nothing in the authoring screen of the real program, in a real X server, with
// the mouse and the keyboard: nodes, links, a picture, keyframes, saves, questions, an import.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <set>

#include "core/engine.h"
#include "editor/gui_file.h"
#include "editor/ui_button.h"
#include "editor/ui_image_panel.h"
#include "editor/ui_key_timeline.h"
#include "editor/ui_node.h"
#include "editor/ui_properties_column.h"
#include "platform/files.h"
#include "platform/picture_decoder.h"
#include "program/authoring_user.h"
#include "program/program_runs.h"
#include "support/project_file.h"
#include "support/temp_folder.h"

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::json;

constexpr ScreenPoint kOnThePicture = {960, 540};
constexpr const char* kShader = "Kaleidoscope1";

std::string EnvironmentFolder(const char* name) {
    const char* folder = std::getenv(name);
    return folder == nullptr ? "." : folder;
}

// A round badge of rings and rays in warm and cold colours, with nothing around it.
std::vector<std::uint8_t> BadgePixels(int width, int height) {
    std::vector<std::uint8_t> rgba;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const double dx = (x - width / 2.0) / height, dy = (y - height / 2.0) / height;
            const double distance = std::hypot(dx, dy), angle = std::atan2(dy, dx);
            const double ring = 0.5 + 0.5 * std::sin(distance * 40);
            const double ray = 0.5 + 0.5 * std::sin(angle * 7 + distance * 9);
            constexpr double kRadius = 0.42, kEdge = 90;
            for (const double part :
                 {0.2 + 0.8 * ring * ray, 0.1 + 0.25 * ring + 0.3 * ray * ray,
                  0.25 + 0.6 * (1 - ring) * ray, (kRadius - distance) * kEdge}) {
                rgba.push_back(static_cast<std::uint8_t>(255 * std::clamp(part, 0.0, 1.0)));
            }
        }
    }
    return rgba;
}

using Pixels = std::vector<std::uint8_t>;

// The part of a picture of the screen that a widget covers.
Pixels PartOf(const Pixels& screen, const UI_Object& widget) {
    constexpr int kScreenWidth = 1920;
    Pixels part;
    for (int y = widget.y; y < widget.y + widget.height; ++y) {
        const auto row = screen.begin() + (y * kScreenWidth + widget.x) * 3;
        part.insert(part.end(), row, row + widget.width * 3);
    }
    return part;
}

Json NodeOf(const Json& info, const std::string& id) {
    for (const Json& node : info["nodes"]) {
        if (node["id"] == id) return node;
    }
    return nullptr;
}

Json ValueOf(const Json& info, const std::string& id, const std::string& name) {
    const Json node = NodeOf(info, id);
    for (const Json& value : node["values"]) {
        if (value["name"] == name) return value["value"];
    }
    return nullptr;
}

std::set<std::string> NodeIds(const Json& info) {
    std::set<std::string> ids;
    for (const Json& node : info["nodes"]) ids.insert(node["id"]);
    return ids;
}

const std::set<std::string> kMadeNodes = {"Compose1", "Kaleidoscope1", "Reader1", "Silk Plasma1",
                                          "Viewer1"};

}  // namespace

class AuthoringSession : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const TempFolder* folder : {&folder_, &twinFolder_}) fill(*folder);
        user_ =
            std::make_unique<AuthoringUser>(folder_.path().string(), twinFolder_.path().string(),
                                            EnvironmentFolder("VORN_SCREENS"));
        ASSERT_TRUE(user_->ready()) << "Xvfb does not start";
    }

    // Two scripts, a picture, and a second project that is imported later.
    static void fill(const TempFolder& folder) {
        for (const char* script : {"Kaleidoscope.node", "Plasma.node"}) {
            fs::create_directories(folder.path() / "Scripts");
            fs::copy_file(fs::path(VORN_SOURCE_DIR) / "demo/Scripts" / script,
                          folder.path() / "Scripts" / script);
        }
        constexpr int kWidth = 640, kHeight = 360;
        const auto pixels = BadgePixels(kWidth, kHeight);
        ASSERT_TRUE(WritePng(folder.file("Graphics/badge.png"), kWidth, kHeight, 4, pixels.data()));
        fs::create_directory_symlink(EnvironmentFolder("VORN_TEST_FONTS"), folder.path() / "fonts");
        ProjectFile other;
        other.strings().types(2).text("Plasma").text("Silk Plasma").text("Halo").text("Glow");
        other.counters(0).links(2).text("Plasma").word(0).text("Halo").word(2);
        other.word(0).text("Plasma").word(1).text("");
        folder.write("other.vorn", other.bytes());
        GuiFile places;
        places.positions = {{"Plasma", {100, 60}}, {"Halo", {140, 160}}};
        places.names = {{"Plasma", "Sky"}, {"Halo", "Halo"}};
        const std::vector<std::uint8_t> bytes = places.toBytes();
        folder.write("other.vorngui", {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    }

    EditorTwin& twin() { return user_->twin(); }
    Json info(const std::string& project) { return VornInfo({project}, folder_.path()); }
    std::string inFolder(const std::string& name) const { return (folder_.path() / name).string(); }

    // Opens the palette under the pointer, types until the type is found, and takes it.
    void makeNode(ScreenPoint place, const std::string& typed, const std::string& id) {
        user_->moveTo(place);
        user_->key("Tab");
        user_->type(typed);
        user_->key("Return");
        ASSERT_NE(twin().box(id), nullptr) << "the palette gave no " << id;
    }

    // Goes on to the picture, so that no button's explanation comes up.
    void press(const UI_Button& button) {
        user_->click(EditorTwin::middle(button));
        user_->moveTo(kOnThePicture);
    }

    void typeNumber(const std::string& id, const char* label, const std::string& number) {
        user_->doubleClick(twin().valueField(id, label));
        constexpr int kLongestNumber = 8;
        user_->key("BackSpace", kLongestNumber);
        user_->type(number);
        user_->key("Return");
    }

    void nameProject(const std::string& name) {
        user_->click(twin().settingsField("Name"));
        user_->key("BackSpace", static_cast<int>(std::string("demo").size()));
        user_->type(name);
        user_->key("Return");
    }

    std::vector<std::string> filesWithEnding(const std::string& ending) {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder_.path())) {
            const std::string name = entry.path().filename().string();
            if (name.ends_with(ending)) names.push_back(name);
        }
        return names;
    }

    void makeGraph();
    void setPicture();
    void animateZoom();
    void moveKey();
    void saveAs(const std::string& name);
    void leaveWithUnsavedWork();
    void checkSavedProject();
    void findEverything();
    void importAndUndo();

    TempFolder folder_, twinFolder_;
    std::unique_ptr<AuthoringUser> user_;
    Pixels pictureBefore_, valuesBefore_;
};

void AuthoringSession::makeGraph() {
    makeNode({620, 680}, "reader", "Reader1");
    makeNode({300, 660}, "plasma", "Silk Plasma1");
    // The right button on empty ground opens the palette too.
    user_->rightClick({330, 770});
    user_->see("palette");
    user_->type("kal");
    user_->see("palette-search");
    user_->key("Return");
    makeNode({500, 870}, "compose", "Compose1");
    user_->drag(twin().output("Silk Plasma1"), twin().socket(kShader, 0));
    user_->see("first-link");
    user_->drag(twin().output(kShader), twin().socket("Compose1", 0));
    user_->drag(twin().socket("Compose1", 1), twin().output("Reader1"));  // goes backwards too
    // Dropped on empty ground, a link asks for the node that takes it.
    user_->drag(twin().output("Compose1"), {500, 970});
    user_->type("viewer");
    user_->key("Return");
    user_->see("graph");
}

void AuthoringSession::setPicture() {
    user_->rightClick(twin().boxMiddle("Reader1"));
    user_->willChoose(inFolder("Graphics/badge.png"));
    user_->middleClick(twin().valueField("Reader1", "Filename"));
    user_->see("picture");
    EXPECT_NE(user_->asked().find("--title=Filename"), std::string::npos) << user_->asked();
    user_->click(twin().checkbox("Reader1", "PreMultiply"));
    user_->see("picture-with-soft-edge");
}

// 0.5 at the start, 2 after four seconds.
void AuthoringSession::animateZoom() {
    user_->rightClick(twin().boxMiddle(kShader));
    user_->see("shader-values");
    typeNumber(kShader, "Zoom", "0.5");
    user_->key("s");
    user_->see("zoom-animated");
    user_->key("Up", 4);
    user_->see("four-seconds");
    typeNumber(kShader, "Zoom", "2");
    user_->see("zoom-second-key");
}

// The second key, from 4 to 6 seconds; then a look at the middle of the way.
void AuthoringSession::moveKey() {
    press(*twin().ui().layoutButton1);
    user_->see("keys");
    user_->drag(twin().key(4, 2), twin().key(6, 2));
    user_->click(twin().ruler(3));
    user_->see("middle-of-the-way");
    press(*twin().ui().layoutButton0);
    user_->see("nodes-again");
    pictureBefore_ = PartOf(user_->seen(), *twin().ui().imagePanel);
    valuesBefore_ = PartOf(user_->seen(), *twin().ui().propertiesPanel);
}

void AuthoringSession::saveAs(const std::string& name) {
    nameProject(name);
    user_->moveTo(kOnThePicture);
    user_->ctrlKey("s");
    user_->see("saved");
    // The project, a stamped copy of it, and the other project; and the side-file of each. The
    // stamped side-file comes last.
    ASSERT_NO_FATAL_FAILURE(user_->waitFor(
        "the stamped side-file", [&] { return filesWithEnding(".vorngui").size() == 3; }));
    EXPECT_EQ(filesWithEnding(".vorn").size(), 3u);
}

// A box is moved after the save; the question is first answered with Cancel, then with OK.
void AuthoringSession::leaveWithUnsavedWork() {
    const ScreenPoint box = twin().boxMiddle("Compose1");
    user_->drag(box, {box.x + 150, box.y - 40});
    user_->see("box-moved");
    user_->escape();  // gives up the selection
    user_->see("nothing-selected");
    user_->escape();
    ASSERT_NO_FATAL_FAILURE(user_->answerQuestion("Escape"));
    user_->see("stayed");
    ASSERT_TRUE(user_->running()) << "Cancel ended the program";
    user_->escape();
    ASSERT_NO_FATAL_FAILURE(user_->answerQuestion("Return"));
    EXPECT_EQ(user_->waitForEnd().exitCode, 0);
}

void AuthoringSession::checkSavedProject() {
    const Json saved = info("first.vorn");
    ASSERT_TRUE(saved.is_object());
    EXPECT_EQ(NodeIds(saved), kMadeNodes);
    EXPECT_EQ(NodeOf(saved, kShader)["type"], "Kaleidoscope");
    EXPECT_EQ(NodeOf(saved, kShader)["inputs"][0]["source"], "Silk Plasma1");
    EXPECT_EQ(NodeOf(saved, "Compose1")["inputs"][0]["source"], kShader);
    EXPECT_EQ(NodeOf(saved, "Compose1")["inputs"][1]["source"], "Reader1");
    EXPECT_EQ(NodeOf(saved, "Viewer1")["inputs"][0]["source"], "Compose1");
    for (const Json& node : saved["nodes"]) EXPECT_EQ(node["error"], false) << node["id"];
    EXPECT_EQ(ValueOf(saved, "Reader1", "Filename"), inFolder("Graphics/badge.png"));
    EXPECT_EQ(ValueOf(saved, "Reader1", "PreMultiply"), true);
    EXPECT_EQ(saved["strings"]["projectName"], "first");
    ASSERT_EQ(saved["tracks"].size(), 1u);
    const Json& track = saved["tracks"][0];
    EXPECT_EQ(track["name"], "Kaleidoscope1.Zoom");
    EXPECT_EQ(track["target"], true);
    EXPECT_EQ(track["keys"], Json::parse("[[0.5, 0.0, 0], [2.0, 6.0, 0]]")) << track["keys"];
    // The same gestures, played as messages within the process, give the same bytes.
    EXPECT_EQ(folder_.read("first.vorn"), twinFolder_.read("first.vorn"));
    EXPECT_EQ(folder_.read("first.vorngui"), twinFolder_.read("first.vorngui"));
}

// What was seen before the program ended is seen again.
void AuthoringSession::findEverything() {
    user_->see("started-again");
    user_->rightClick(twin().boxMiddle("Reader1"));
    user_->rightClick(twin().boxMiddle(kShader));
    user_->moveTo(kOnThePicture);
    user_->key("Up", 3);
    user_->see("as-it-was");
    EXPECT_EQ(PartOf(user_->seen(), *twin().ui().imagePanel), pictureBefore_);
    EXPECT_EQ(PartOf(user_->seen(), *twin().ui().propertiesPanel), valuesBefore_);
}

void AuthoringSession::importAndUndo() {
    user_->ctrlKey("s");
    user_->see("saved-again");
    user_->willChoose(inFolder("other.vorn"));
    user_->ctrlKey("i");
    user_->see("imported");
    EXPECT_NE(user_->asked().find("*.vorn"), std::string::npos) << user_->asked();
    ASSERT_NE(twin().box("other-Plasma"), nullptr);
    ASSERT_NE(twin().box("other-Halo"), nullptr);
    EXPECT_EQ(twin().session->engine->projectName, "demo") << "a file brings its settings along";
    user_->ctrlKey("z");
    ASSERT_NO_FATAL_FAILURE(user_->answerQuestion("Return"));
    EXPECT_EQ(twin().questions.back(), "Load and clear scene?");
    user_->see("undone");
    EXPECT_EQ(twin().box("other-Plasma"), nullptr);
    EXPECT_EQ(twin().session->engine->projectName, "first") << "saving goes on where it did";
    user_->ctrlKey("s");
    user_->escape();
    EXPECT_EQ(user_->waitForEnd().exitCode, 0);
}

TEST_F(AuthoringSession, MakesADemoFromNothingAndFindsItAgain) {
    ASSERT_NO_FATAL_FAILURE(user_->start(""));
    user_->see("empty");
    ASSERT_NO_FATAL_FAILURE(makeGraph());
    ASSERT_NO_FATAL_FAILURE(setPicture());
    ASSERT_NO_FATAL_FAILURE(animateZoom());
    ASSERT_NO_FATAL_FAILURE(moveKey());
    ASSERT_NO_FATAL_FAILURE(saveAs("first"));
    ASSERT_NO_FATAL_FAILURE(leaveWithUnsavedWork());
    ASSERT_NO_FATAL_FAILURE(checkSavedProject());

    ASSERT_NO_FATAL_FAILURE(user_->start("first.vorn"));
    ASSERT_NO_FATAL_FAILURE(findEverything());
    ASSERT_NO_FATAL_FAILURE(importAndUndo());
    EXPECT_EQ(NodeIds(info("first.vorn")), kMadeNodes);
}
