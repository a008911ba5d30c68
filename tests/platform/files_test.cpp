#include "platform/files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>

#include "support/temp_folder.h"

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::Optional;

namespace {

std::span<const std::uint8_t> Bytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::vector<std::uint8_t> Copy(std::string_view text) {
    return {text.begin(), text.end()};
}

std::size_t EntryCount(const fs::path& folder) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

// Runs in a child process; its exit status.
template <typename Work>
int StatusOfChild(Work work) {
    const pid_t child = fork();
    if (child == 0) _exit(work());
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

}  // namespace

class Files : public ::testing::Test {
  protected:
    TempFolder folder_;
    WorkingFolder inside_{folder_.path()};
};

TEST_F(Files, TurnsBackslashesIntoSlashes) {
    folder_.write("Graphics/logo.png", "x");
    EXPECT_EQ(ResolvePath("Graphics\\logo.png"), "Graphics/logo.png");
    EXPECT_EQ(ResolvePath(".\\Graphics\\logo.png"), "./Graphics/logo.png");
}

TEST_F(Files, MatchesFoldersAndFilesWithoutRegardToCase) {
    folder_.write("Graphics/Sub/Logo.PNG", "x");
    EXPECT_EQ(ResolvePath("graphics\\SUB\\lOGO.png"), "Graphics/Sub/Logo.PNG");
    EXPECT_EQ(ResolvePath(".\\GRAPHICS\\sub\\logo.png"), "./Graphics/Sub/Logo.PNG");
}

TEST_F(Files, PrefersTheExactNameToAnotherCase) {
    folder_.write("A.txt", "upper");
    folder_.write("a.txt", "lower");
    EXPECT_EQ(ResolvePath("a.txt"), "a.txt");
    EXPECT_EQ(ResolvePath("A.txt"), "A.txt");
}

TEST_F(Files, TakesTheFirstInNameOrderOfSeveralMatches) {
    folder_.write("logO.png", "x");
    folder_.write("LOGO.png", "x");
    folder_.write("Logo.png", "x");
    EXPECT_EQ(ResolvePath("logo.png"), "LOGO.png");
}

TEST_F(Files, KeepsPartsWithoutAMatchAsTheyWereGiven) {
    folder_.write("Graphics/logo.png", "x");
    EXPECT_EQ(ResolvePath("GRAPHICS\\New.png"), "Graphics/New.png");
    EXPECT_EQ(ResolvePath("Nowhere\\New.png"), "Nowhere/New.png");
    EXPECT_EQ(ResolvePath(""), "");
}

TEST_F(Files, KeepsNamesOfDrivesRelative) {
    EXPECT_FALSE(ResolvePath("c:\\data\\x.png").is_absolute());
}

TEST_F(Files, ResolvesAbsoluteNames) {
    folder_.write("Deep/File.txt", "x");
    const std::string name = folder_.path().string() + "\\deep\\file.TXT";
    EXPECT_EQ(ResolvePath(name), folder_.path() / "Deep/File.txt");
}

TEST_F(Files, SurvivesNamesThatNoFileCanHave) {
    EXPECT_FALSE(ReadWholeFile(std::string(100000, 'a')));
    EXPECT_FALSE(ReadWholeFile(std::string(5000, 'a') + "\\b"));
    std::string deep;
    for (int i = 0; i < 100000; ++i) deep += "a\\";
    EXPECT_FALSE(ReadWholeFile(deep));
    folder_.write("a", "x");
    EXPECT_THAT(ReadWholeFile(std::string_view("a\0b", 3)), Optional(Copy("x")));
}

TEST_F(Files, TellsWhetherThereIsAnythingOfAName) {
    folder_.write("Graphics/Logo.png", "x");
    EXPECT_TRUE(FileExists("graphics\\LOGO.png"));
    EXPECT_TRUE(FileExists(".\\Graphics")) << "a folder";
    EXPECT_TRUE(FileExists(folder_.path().string() + "\\graphics\\logo.PNG"));
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    EXPECT_TRUE(FileExists("PIPE"));
    EXPECT_FALSE(FileExists("graphics\\logo"));
    EXPECT_FALSE(FileExists("Graphics\\Logo.png\\x"));
    EXPECT_FALSE(FileExists(""));
    EXPECT_FALSE(FileExists(std::string(5000, 'a')));
}

TEST_F(Files, ALinkIsThereWhenItLeadsSomewhere) {
    folder_.write("file", "x");
    fs::create_symlink("file", "good");
    fs::create_symlink("gone", "dangling");
    fs::create_symlink("loop", "loop");
    EXPECT_TRUE(FileExists("good"));
    EXPECT_FALSE(FileExists("dangling"));
    EXPECT_FALSE(FileExists("loop"));
}

TEST_F(Files, ReadsWholeFilesThroughWindowsNames) {
    folder_.write("Data/File.bin", std::string_view("a\0b\nc", 5));
    EXPECT_THAT(ReadWholeFile("data\\file.BIN"), Optional(Copy(std::string_view("a\0b\nc", 5))));
    folder_.write("empty", "");
    EXPECT_THAT(ReadWholeFile("empty"), Optional(Copy("")));
}

TEST_F(Files, ReadsNothingButRegularFiles) {
    folder_.file("Folder/x");
    EXPECT_FALSE(ReadWholeFile("Folder"));
    EXPECT_FALSE(ReadWholeFile(".\\Folder\\"));
    EXPECT_FALSE(ReadWholeFile("missing"));
    EXPECT_FALSE(ReadWholeFile(""));
    EXPECT_FALSE(ReadWholeFile("/dev/zero"));
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    EXPECT_FALSE(ReadWholeFile("pipe"));
}

TEST_F(Files, ReadsNothingOfFilesPastTheLimit) {
    folder_.write("five", "12345");
    EXPECT_TRUE(ReadWholeFile("five", 5));
    EXPECT_FALSE(ReadWholeFile("five", 4));
}

TEST_F(Files, ListsRegularFilesInByteOrder) {
    folder_.write("Scripts/b.txt", "");
    folder_.write("Scripts/B.txt", "");
    folder_.write("Scripts/a.txt", "");
    folder_.write("Scripts/Sub/c.txt", "");
    EXPECT_THAT(ListFiles(".\\scripts\\"), Optional(ElementsAre("B.txt", "a.txt", "b.txt")));
    EXPECT_FALSE(ListFiles("missing"));
    EXPECT_FALSE(ListFiles("Scripts\\a.txt"));
}

TEST_F(Files, WritesNewFilesAndReplacesOldOnes) {
    EXPECT_TRUE(WriteFileAtomically("new.vorn", Bytes("first")));
    EXPECT_EQ(folder_.read("new.vorn"), "first");
    EXPECT_TRUE(WriteFileAtomically("NEW.vorn", Bytes("2")));
    EXPECT_EQ(folder_.read("new.vorn"), "2");
    EXPECT_EQ(EntryCount(folder_.path()), 1u);
}

TEST_F(Files, IsThereAtOnceWhenItsFlushComesLater) {
    DelayedFlush later;
    EXPECT_TRUE(WriteFileAtomically("a.vorn", Bytes("one"), &later));
    EXPECT_EQ(folder_.read("a.vorn"), "one");
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(WriteFileAtomically("b" + std::to_string(i), Bytes("two"), &later));
    }
    later.wait();
    EXPECT_EQ(folder_.read("b99"), "two");
    EXPECT_EQ(EntryCount(folder_.path()), 101u) << "nothing temporary is left";
    EXPECT_FALSE(WriteFileAtomically("no\\such\\folder", Bytes("three"), &later));
}

TEST_F(Files, KeepsThePermissionsOfTheFileThatItReplaces) {
    folder_.write("kept.vorn", "old");
    fs::permissions("kept.vorn", fs::perms{0640});
    ASSERT_TRUE(WriteFileAtomically("kept.vorn", Bytes("new")));
    EXPECT_EQ(fs::status("kept.vorn").permissions(), fs::perms{0640});
}

TEST_F(Files, GivesNewFilesThePermissionsOfTheUsersMask) {
    const mode_t before = umask(027);
    ASSERT_TRUE(WriteFileAtomically("mask.vorn", Bytes("new")));
    umask(before);
    EXPECT_EQ(fs::status("mask.vorn").permissions(), fs::perms{0640});
}

TEST_F(Files, WritesThroughLinks) {
    folder_.write("Real/file.vorn", "old");
    fs::create_symlink("Real/file.vorn", "link.vorn");
    ASSERT_TRUE(WriteFileAtomically("link.vorn", Bytes("new")));
    EXPECT_TRUE(fs::is_symlink("link.vorn"));
    EXPECT_EQ(folder_.read("Real/file.vorn"), "new");
}

TEST_F(Files, WritesNothingWhereNoFileCanBe) {
    fs::create_directory("Folder");
    EXPECT_FALSE(WriteFileAtomically("Missing\\a.vorn", Bytes("x")));
    EXPECT_FALSE(WriteFileAtomically("Folder", Bytes("x")));
    EXPECT_FALSE(WriteFileAtomically("Folder\\", Bytes("x")));
    EXPECT_FALSE(WriteFileAtomically("", Bytes("x")));
    EXPECT_EQ(EntryCount(folder_.path()), 1u);
    EXPECT_EQ(EntryCount("Folder"), 0u);
}

TEST_F(Files, WritesFilesWithTheLongestNames) {
    const std::string name(255, 'n');
    EXPECT_TRUE(WriteFileAtomically(name, Bytes("x")));
    EXPECT_EQ(folder_.read(name), "x");
}

TEST_F(Files, KeepsTheOldFileWhenTheDiskRefusesTheNewOne) {
    folder_.write("demo.vorn", "old content");
    const int status = StatusOfChild([] {
        std::signal(SIGXFSZ, SIG_IGN);
        constexpr rlimit kSmall = {.rlim_cur = 4096, .rlim_max = 4096};
        setrlimit(RLIMIT_FSIZE, &kSmall);
        return WriteFileAtomically("demo.vorn", Bytes(std::string(100000, 'n'))) ? 1 : 0;
    });
    EXPECT_EQ(status, 0) << "writing past the limit was said to have worked";
    EXPECT_EQ(folder_.read("demo.vorn"), "old content");
    EXPECT_EQ(EntryCount(folder_.path()), 1u) << "a temporary file was left behind";
}

TEST_F(Files, KeepsTheOldFileWhenTheProgramIsKilledWhileWriting) {
    folder_.write("demo.vorn", "old content");
    const int status = StatusOfChild([] {
        // The write past the limit ends the process by a signal, in the midst of saving.
        std::signal(SIGXFSZ, SIG_DFL);
        constexpr rlimit kNoCore = {.rlim_cur = 0, .rlim_max = 0};
        constexpr rlimit kSmall = {.rlim_cur = 4096, .rlim_max = 4096};
        setrlimit(RLIMIT_CORE, &kNoCore);
        setrlimit(RLIMIT_FSIZE, &kSmall);
        WriteFileAtomically("demo.vorn", Bytes(std::string(100000, 'n')));
        return 0;
    });
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(folder_.read("demo.vorn"), "old content");
}
