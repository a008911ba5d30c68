// The watch on a folder: each way in which programs save, and what comes of the folder itself. The
// files are real and so are the system's events; only the clock is the test's own.
#include "platform/folder_watch.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "platform/debug_output.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FolderWatchTest : public ::testing::TestWithParam<FolderWatch::Means> {
  protected:
    void SetUp() override {
        folder_.write("Scripts/a.node", "one");
        folder_.write("Scripts/b.node", "two");
    }
    void watch() {
        watch_ = std::make_unique<FolderWatch>(
            "Scripts", [](std::string_view name) { return name.find(".node") != name.npos; },
            GetParam());
        ASSERT_EQ(watch_->polls(), GetParam() == FolderWatch::Means::Polling);
    }
    std::string path(const std::string& name) const { return folder_.file("Scripts/" + name); }
    void write(const std::string& name, std::string_view text) const {
        folder_.write("Scripts/" + name, text);
    }
    // So that a write has another time however coarse the system's clock of files is.
    void makeOld(const std::string& file) const {
        const timespec old[2] = {{1000, 0}, {1000, 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), old, 0), 0);
    }
    // Asks every hundredth of a second for as long as it takes; what came, gone files with a "-".
    std::vector<std::string> after(double seconds) {
        std::vector<std::string> names;
        for (const double end = now_ + seconds; now_ < end; now_ += 0.01) {
            for (const FileChange& change : watch_->takeChanges(now_)) {
                names.push_back((change.gone ? "-" : "") + change.name);
            }
        }
        return names;
    }
    // Longer than any wait of the watch together with the looks before it.
    std::vector<std::string> atRest() { return after(3); }

    TempFolder folder_;
    WorkingFolder working_{folder_.path()};
    std::unique_ptr<FolderWatch> watch_;
    double now_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Means, FolderWatchTest,
                         ::testing::Values(FolderWatch::Means::Events, FolderWatch::Means::Polling),
                         [](const auto& means) {
                             return means.param == FolderWatch::Means::Events ? "Events"
                                                                              : "Polling";
                         });

TEST_P(FolderWatchTest, TellsNothingOfWhatWasThereBefore) {
    watch();
    EXPECT_THAT(atRest(), IsEmpty());
}

TEST_P(FolderWatchTest, TellsOnceOfAFileWrittenInPlace) {
    watch();
    write("a.node", "another");
    EXPECT_THAT(atRest(), ElementsAre("a.node"));
    EXPECT_THAT(atRest(), IsEmpty());
}

TEST_P(FolderWatchTest, TellsOfAChangeThatKeepsTheSize) {
    makeOld(path("a.node"));
    watch();
    write("a.node", "eno");
    EXPECT_THAT(atRest(), ElementsAre("a.node"));
}

TEST_P(FolderWatchTest, TellsOfAFileThatIsRenamedOverTheOldOne) {
    watch();
    write("a.node.tmp12", "another");
    fs::rename(path("a.node.tmp12"), path("a.node"));
    EXPECT_THAT(atRest(), ElementsAre("a.node"));
}

TEST_P(FolderWatchTest, TellsOfAFileFromAnotherFolderWithAnOldTime) {
    folder_.write("kept.node", "old");
    makeOld(folder_.file("kept.node"));
    watch();
    fs::rename(folder_.file("kept.node"), path("a.node"));
    EXPECT_THAT(atRest(), ElementsAre("a.node"));
}

TEST_P(FolderWatchTest, TellsOneChangeOfASaveThatPutsTheOldFileAsideFirst) {
    watch();
    fs::rename(path("a.node"), path("a.bak"));
    after(0.2);
    write("a.node", "another");
    fs::remove(path("a.bak"));
    EXPECT_THAT(atRest(), ElementsAre("a.node"));
}

TEST_P(FolderWatchTest, WaitsForTheTextThatFollowsATruncation) {
    watch();
    write("a.node", "");
    EXPECT_THAT(after(0.4), IsEmpty());
    write("a.node", "another");
    EXPECT_THAT(atRest(), ElementsAre("a.node"));
}

TEST_P(FolderWatchTest, TellsInTheEndOfAFileThatStaysEmpty) {
    watch();
    write("a.node", "");
    EXPECT_THAT(atRest(), ElementsAre("a.node"));
}

TEST_P(FolderWatchTest, TellsOfABurstOnce) {
    watch();
    std::vector<std::string> names;
    for (int i = 0; i < 40; ++i) {
        write("a.node", "text " + std::to_string(i));
        for (std::string& name : after(0.05)) names.push_back(std::move(name));
    }
    // Two seconds of writing: nothing is told before the file is at rest.
    EXPECT_THAT(names, IsEmpty());
    EXPECT_THAT(atRest(), ElementsAre("a.node"));
}

TEST_P(FolderWatchTest, TellsOfManyFilesInNameOrder) {
    watch();
    write("c.node", "three");
    write("b.node", "other");
    write("a.node", "other");
    EXPECT_THAT(atRest(), ElementsAre("a.node", "b.node", "c.node"));
}

TEST_P(FolderWatchTest, TellsOfNewDeletedAndRenamedFiles) {
    watch();
    write("c.node", "three");
    EXPECT_THAT(atRest(), ElementsAre("c.node"));
    fs::remove(path("c.node"));
    EXPECT_THAT(atRest(), ElementsAre("-c.node"));
    fs::rename(path("a.node"), path("d.node"));
    EXPECT_THAT(atRest(), ::testing::UnorderedElementsAre("d.node", "-a.node"));
}

TEST_P(FolderWatchTest, SaysNothingOfAFileThatCameAndWent) {
    watch();
    write("c.node", "three");
    fs::remove(path("c.node"));
    EXPECT_THAT(atRest(), IsEmpty());
}

TEST_P(FolderWatchTest, PassesOverOtherFilesAndFolders) {
    watch();
    write("readme.txt", "text");
    fs::create_directory(path("deep.node"));
    folder_.write("Scripts/deep.node/c.node", "three");
    EXPECT_THAT(atRest(), IsEmpty());
}

TEST_P(FolderWatchTest, FollowsALinkThatIsReplaced) {
    folder_.write("other/b.node", "far");
    watch();
    fs::create_symlink(folder_.file("other/b.node"), path("c.node"));
    EXPECT_THAT(atRest(), ElementsAre("c.node"));
}

TEST_P(FolderWatchTest, TellsOfALinkWhoseTargetIsWritten) {
    folder_.write("other/b.node", "far");
    fs::create_symlink(folder_.file("other/b.node"), path("c.node"));
    watch();
    folder_.write("other/b.node", "farther");
    EXPECT_THAT(atRest(), ElementsAre("c.node"));
    fs::remove(folder_.file("other/b.node"));
    EXPECT_THAT(atRest(), ElementsAre("-c.node"));
    folder_.write("other/b.node", "again");
    EXPECT_THAT(atRest(), ElementsAre("c.node"));
    EXPECT_THAT(atRest(), IsEmpty());
}

TEST_P(FolderWatchTest, TellsOfTheTargetOfALinkThatCameLater) {
    watch();
    fs::create_symlink(folder_.file("other.node"), path("c.node"));
    EXPECT_THAT(atRest(), IsEmpty()) << "it leads nowhere yet";
    folder_.write("other.node", "far");
    EXPECT_THAT(atRest(), ElementsAre("c.node"));
    folder_.write("new.node", "farther");
    fs::rename(folder_.file("new.node"), folder_.file("other.node"));
    EXPECT_THAT(atRest(), ElementsAre("c.node"));
}

TEST_P(FolderWatchTest, NoticesTheFolderWhenItComes) {
    fs::remove_all(folder_.path() / "Scripts");
    watch();
    EXPECT_THAT(atRest(), IsEmpty());
    write("a.node", "one");
    EXPECT_THAT(atRest(), ElementsAre("a.node"));
    write("a.node", "other");
    EXPECT_THAT(atRest(), ElementsAre("a.node"));
}

TEST_P(FolderWatchTest, FollowsAFolderThatIsReplaced) {
    watch();
    fs::remove_all(folder_.path() / "Scripts");
    EXPECT_THAT(atRest(), ElementsAre("-a.node", "-b.node"));
    write("a.node", "new");
    EXPECT_THAT(atRest(), ElementsAre("a.node"));
    fs::rename(folder_.path() / "Scripts", folder_.path() / "Aside");
    write("a.node", "newer");
    EXPECT_THAT(atRest(), ElementsAre("a.node"));
    write("a.node", "newest");
    EXPECT_THAT(atRest(), ElementsAre("a.node"));
}

TEST_P(FolderWatchTest, LeavesAFolderThatIsMovedAway) {
    watch();
    fs::rename(folder_.path() / "Scripts", folder_.path() / "Aside");
    EXPECT_THAT(atRest(), ElementsAre("-a.node", "-b.node"));
    folder_.write("Aside/a.node", "not seen there");
    folder_.write("Aside/c.node", "nor this");
    EXPECT_THAT(atRest(), IsEmpty());
    fs::rename(folder_.path() / "Aside", folder_.path() / "Scripts");
    EXPECT_THAT(atRest(), ElementsAre("a.node", "b.node", "c.node"));
    write("b.node", "seen again");
    EXPECT_THAT(atRest(), ElementsAre("b.node"));
}

TEST_P(FolderWatchTest, GoesToAnotherWorkingFolderWhereNothingIsGone) {
    watch();
    const TempFolder other;
    other.write("Scripts/x.node", "one");
    const WorkingFolder there(other.path());
    EXPECT_THAT(atRest(), ElementsAre("x.node"));
    other.write("Scripts/x.node", "other");
    write("a.node", "not seen here");
    EXPECT_THAT(atRest(), ElementsAre("x.node"));
}

TEST(FolderWatchEvents, WaitsForAWriterThatHasNotClosedTheFile) {
    const TempFolder folder;
    const WorkingFolder working(folder.path());
    folder.write("Scripts/a.node", "one");
    FolderWatch watch("Scripts", [](std::string_view) { return true; });
    const int file = open(folder.file("Scripts/a.node").c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    ASSERT_EQ(write(file, "first half", 10), 10);
    double now = 0;
    for (; now < 0.8; now += 0.01) ASSERT_THAT(watch.takeChanges(now), IsEmpty()) << now;
    ASSERT_EQ(write(file, " and second", 11), 11);
    for (; now < 1.6; now += 0.01) ASSERT_THAT(watch.takeChanges(now), IsEmpty()) << now;
    close(file);
    std::size_t told = 0;
    for (; now < 1.8; now += 0.01) told += watch.takeChanges(now).size();
    EXPECT_EQ(told, 1u);
}

TEST(FolderWatchEvents, TellsAboutATenthOfASecondAfterTheSave) {
    const TempFolder folder;
    const WorkingFolder working(folder.path());
    folder.write("Scripts/a.node", "one");
    FolderWatch watch("Scripts", [](std::string_view) { return true; });
    EXPECT_THAT(watch.takeChanges(0), IsEmpty());
    folder.write("Scripts/a.node", "other");
    double now = 0.01;
    while (now < 1 && watch.takeChanges(now).empty()) now += 0.01;
    EXPECT_GE(now, FolderWatch::kQuietSeconds);
    // Its looks are a twentieth of a second apart: one finds the save, one that it is at rest.
    EXPECT_LE(now, FolderWatch::kQuietSeconds + 2 * FolderWatch::kLookSeconds + 0.02);
}

TEST(FolderWatchEvents, LooksForItselfWhereTheSystemRefuses) {
    const TempFolder folder;
    const WorkingFolder working(folder.path());
    folder.write("Scripts/a.node", "one");
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit none{0, limit.rlim_max};
    const DebugCapture said;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    FolderWatch watch("Scripts", [](std::string_view) { return true; });
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_TRUE(watch.polls());
    EXPECT_EQ(said.text(),
              "The system does not tell of changes in the folder Scripts: it is looked at twice a "
              "second.\n");
    double now = 0;
    for (; now < 3; now += 0.01) watch.takeChanges(now);
    folder.write("Scripts/a.node", "other");
    std::size_t told = 0;
    for (; now < 6; now += 0.01) told += watch.takeChanges(now).size();
    EXPECT_EQ(told, 1u);
}

TEST(FolderWatchEvents, FindsEverythingThatChangedWhenThereWereTooManyEvents) {
    const TempFolder folder;
    const WorkingFolder working(folder.path());
    folder.write("Scripts/a.node", "one");
    FolderWatch watch("Scripts", [](std::string_view name) { return name.ends_with(".node"); });
    // More than the system keeps for one reader; the change that counts comes after them.
    for (int i = 0; i < 20000; ++i) {
        const std::string name = "Scripts/" + std::to_string(i % 2);
        close(open(folder.file(name).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
        unlink(folder.file(name).c_str());
    }
    folder.write("Scripts/a.node", "other");
    std::size_t told = 0;
    for (double now = 0; now < 3; now += 0.01) told += watch.takeChanges(now).size();
    EXPECT_EQ(told, 1u);
}

}  // namespace
