// A process that saves a project over and over is killed without warning, a thousand times: at any
// moment every file of the project is a whole one, of the save that was cut or of the one before.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "editor/gui_file.h"
#include "editor/ui_engine.h"
#include "platform/debug_output.h"
#include "platform/files.h"
#include "support/core_nodes.h"
#include "support/temp_folder.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int kKills = 1000;
constexpr int kNodes = 24;

std::string NodeName(int index) {
    return "node" + std::to_string(index);
}

// A project that tells by every part of its files which save they are of. Their lengths change from
// save to save, so that a new beginning with an old end is no project either.
class Work {
  public:
    Work() {
        engine.projectName = "work";
        engine.projectFolder = ".";
        ui.engine = &engine;
        ui.localTime = [] { return std::tm{}; };
        for (int i = 0; i < kNodes; ++i) engine.createNode(NodeName(i), "Node");
    }

    void setNumber(int number) {
        const std::string mark = std::to_string(number) + "/";
        std::string text;
        while (text.size() < 100 + 37 * static_cast<std::size_t>(number % 40)) text += mark;
        for (int i = 0; i < kNodes; ++i) {
            auto& node = dynamic_cast<TestNode&>(*engine.findNode(NodeName(i)));
            node.text = text;
            node.place[0] = static_cast<float>(number);
            ui.nodePositions[NodeName(i)] = {static_cast<float>(number), 0};
            ui.master.displayNames[NodeName(i)] = text;
        }
    }

    Bytes projectBytes(int number) {
        setNumber(number);
        return engine.sceneBytes();
    }
    Bytes guiBytes(int number) {
        setNumber(number);
        GuiFile file;
        for (int i = 0; i < kNodes; ++i) {
            file.positions.push_back({NodeName(i), ui.nodePositions[NodeName(i)]});
            file.names.push_back({NodeName(i), ui.master.displayNames[NodeName(i)]});
            file.boxes.push_back({NodeName(i), true});
        }
        return file.toBytes();
    }

    TestEngine engine;
    UI_Engine ui;
};

// Of which save a project file is; -1 for one that does not load whole.
int NumberOfProject(const std::string& name, Work& reference) {
    const auto bytes = ReadWholeFile(name);
    if (!bytes) return -1;
    TestEngine engine;
    const std::size_t faultsBefore = BadFileCount();
    if (!engine.load(name, true, "") || BadFileCount() != faultsBefore) return -1;
    const auto* node = dynamic_cast<TestNode*>(engine.findNode(NodeName(0)));
    if (node == nullptr) return -1;
    const int number = static_cast<int>(node->place[0]);
    return *bytes == reference.projectBytes(number) ? number : -1;
}

int NumberOfGui(const std::string& name, Work& reference) {
    const auto bytes = ReadWholeFile(name);
    if (!bytes) return -1;
    std::string fault;
    const GuiFile file = GuiFile::FromBytes(*bytes, fault);
    if (!fault.empty() || file.positions.empty()) return -1;
    const int number = static_cast<int>(file.positions.front().place.x);
    return *bytes == reference.guiBytes(number) ? number : -1;
}

[[noreturn]] void SaveWithoutEnd(Work& work, int number) {
    work.ui.ProjectLoaded("work.vorn");  // it may be replaced unasked
    for (;; ++number) {
        work.setNumber(number);
        work.ui.Save();
    }
}

// What is left of the temporary files of cut saves: no list of the program's takes one for a file
// of the user's.
bool IsTemporary(const std::string& name) {
    return name.starts_with(".vorn.") && name.ends_with(".tmp");
}

}  // namespace

class KilledSave : public ::testing::Test {
  protected:
    // Starts a process that saves from a number on, and kills it.
    void saveAndKill(int number, int delayMicroseconds) {
        const pid_t process = fork();
        if (process == 0) SaveWithoutEnd(work_, number);
        ASSERT_GT(process, 0);
        usleep(static_cast<useconds_t>(delayMicroseconds));
        kill(process, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(process, &status, 0), process);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the saving ended by itself";
    }

    // Every file is whole, and the side-file is of the same save as the project or, written after
    // it, of the one before. Backups, which no save replaces, go when they have been looked at.
    void check() {
        for (const std::string& name : files()) {
            if (IsTemporary(name)) continue;
            ASSERT_TRUE(name.starts_with("work")) << name;
            const int number =
                name.ends_with(".vorn") ? NumberOfProject(name, work_) : NumberOfGui(name, work_);
            ASSERT_GE(number, 0) << name << " is not whole";
            if (name == "work.vorn") project_ = number;
            if (name == "work.vorngui") gui_ = number;
            if (name != "work.vorn" && name != "work.vorngui") std::filesystem::remove(name);
        }
        ASSERT_TRUE(gui_ == project_ || gui_ == project_ - 1) << project_ << " and " << gui_;
    }

    static std::vector<std::string> files() { return ListFiles(".").value(); }
    static long countOfTemporaries() {
        const std::vector<std::string> names = files();
        return std::count_if(names.begin(), names.end(), &IsTemporary);
    }

    // How long the first save takes from the start of its process, on this disk and at this load.
    int microsecondsOfASave() {
        const auto start = std::chrono::steady_clock::now();
        const pid_t process = fork();
        if (process == 0) {
            work_.setNumber(0);
            work_.ui.Save();
            _exit(0);
        }
        int status = 0;
        EXPECT_EQ(waitpid(process, &status, 0), process);
        const auto time = std::chrono::steady_clock::now() - start;
        return static_cast<int>(
            std::chrono::duration_cast<std::chrono::microseconds>(time).count());
    }

    TempFolder folder_;
    WorkingFolder inside_{folder_.path()};
    DebugCapture silent_;
    Work work_;
    int project_ = -1, gui_ = -1;  // the saves that the two files are of
};

TEST_F(KilledSave, LeavesEveryFileWholeAtEveryMoment) {
    std::mt19937 random(20090815);
    const int longest = std::clamp(2 * microsecondsOfASave(), 8000, 60000);
    ASSERT_NO_FATAL_FAILURE(check());
    std::uniform_int_distribution<int> delay(0, longest);
    int betweenTheTwo = 0;
    for (int i = 0; i < kKills; ++i) {
        SCOPED_TRACE(i);
        ASSERT_NO_FATAL_FAILURE(saveAndKill(gui_ + 1, delay(random)));
        ASSERT_NO_FATAL_FAILURE(check());
        betweenTheTwo += gui_ != project_ ? 1 : 0;
    }
    // Else the kills came at other moments than those that this is about.
    EXPECT_GT(countOfTemporaries(), 0) << "no save was cut while a file was written";
    EXPECT_GT(betweenTheTwo, 0) << "no save was cut between its two files";
    RecordProperty("Saves", project_);
    RecordProperty("Temporaries", static_cast<int>(countOfTemporaries()));
    RecordProperty("BetweenTheTwo", betweenTheTwo);

    // What is left over is in nobody's way.
    work_.ui.ProjectLoaded("work.vorn");
    work_.setNumber(project_ + 1);
    work_.ui.Save();
    const int before = project_;
    check();
    EXPECT_EQ(project_, before + 1);
    EXPECT_EQ(gui_, project_);
}
