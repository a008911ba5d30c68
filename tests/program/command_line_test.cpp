#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "program/program_runs.h"
#include "support/project_file.h"
#include "support/temp_folder.h"

namespace {

std::string EmptyProject() {
    return ProjectFile().strings().bytes();
}

// The fonts that the build puts beside the program, for runs that must find all of their files.
void PutFonts(const TempFolder& folder) {
    std::filesystem::copy(std::filesystem::path(VornProgram()).parent_path() / "fonts",
                          folder.path() / "fonts");
}

std::ptrdiff_t LinesWith(const std::string& text, std::string_view what) {
    std::ptrdiff_t count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos;) {
        ++count;
        at = text.find(what, std::min(text.find('\n', at), text.size()));
    }
    return count;
}

TEST(CommandLine, HelpNamesEveryCall) {
    const ProcessResult result = RunVorn({"--help"}, "");
    EXPECT_EQ(result.exitCode, 0);
    for (const char* call :
         {"--edit", "--shot", "--import", "--save", "--info", "--bench", "--strict", "--version"}) {
        EXPECT_NE(result.out.find(call), std::string::npos) << call;
    }
}

TEST(CommandLine, VersionIsOneLine) {
    const ProcessResult result = RunVorn({"--version"}, "");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out.rfind("vorn ", 0), 0u);
    EXPECT_EQ(result.out.find('\n'), result.out.size() - 1);
}

TEST(CommandLine, WrongArgumentsEndWithCode2AndOneLine) {
    const std::vector<std::vector<std::string>> calls = {
        {"--nonsense"},
        {"--shot", "1"},
        {"--shot", "soon", "a.png"},
        {"--bench", "often"},
        {"--shot", "1", "a.gif"},
        {"a.vorn", "b.vorn"},
        {"--bench", "-1"},
        {"--bench", "0"},
        {"--bench", "nan"},
        {"--bench", "inf"},
        {"--bench", "1e18"},
        {"--shot", "nan", "a.png"},
        {"--shot"},
        {"--shot", "1e39", "a.png"},
    };
    for (const auto& call : calls) {
        const ProcessResult result = RunVorn(call, "");
        EXPECT_EQ(result.exitCode, 2) << testing::PrintToString(call);
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    }
}

TEST(CommandLine, TheProjectMayStandBehindTheShots) {
    const TempFolder folder;
    folder.write("mine.vorn", EmptyProject());
    const ProcessResult result =
        RunVorn({"--shot", "0", "a.png", "--shot", "1", "b.png", "mine.vorn"}, folder.path());
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_FALSE(folder.read("a.png").empty());
    EXPECT_FALSE(folder.read("b.png").empty());
}

TEST(CommandLine, AMissingProjectEndsWithCode3AndItsName) {
    const TempFolder folder;
    const ProcessResult result = RunVorn({"absent.vorn", "--info"}, folder.path());
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_NE(result.err.find("absent.vorn"), std::string::npos);
    EXPECT_TRUE(result.out.empty());
}

TEST(CommandLine, AFileThatIsNoProjectEndsWithCode3) {
    const TempFolder folder;
    folder.write("text.vorn", "this is no project");
    const ProcessResult result = RunVorn({"text.vorn", "--info"}, folder.path());
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(LinesWith(result.err, "text.vorn"), 1) << result.err;
}

TEST(CommandLine, AnImportThatIsNoProjectEndsWithCode3) {
    const TempFolder folder;
    folder.write("demo.vorn", EmptyProject());
    folder.write("text.vorn", "this is no project");
    const ProcessResult result = RunVorn({"--import", "text.vorn", "--info"}, folder.path());
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(LinesWith(result.err, "text.vorn"), 1) << result.err;
    EXPECT_TRUE(result.out.empty());
}

TEST(CommandLine, AMissingImportEndsWithCode3) {
    const TempFolder folder;
    folder.write("demo.vorn", EmptyProject());
    const ProcessResult result = RunVorn({"--import", "absent.vorn", "--info"}, folder.path());
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_NE(result.err.find("absent.vorn"), std::string::npos);
}

TEST(CommandLine, WithoutAnyOpenGlTheCodeIs4) {
    const TempFolder folder;
    folder.write("demo.vorn", EmptyProject());
    const ProcessResult result =
        RunVorn({"--info"}, folder.path(),
                {{"MESA_GL_VERSION_OVERRIDE", "2.1"}, {"MESA_GLSL_VERSION_OVERRIDE", "120"}});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_NE(result.err.find("vorn: OpenGL"), std::string::npos) << result.err;
}

TEST(CommandLine, AnOutputThatCannotBeWrittenEndsWithCode5) {
    const TempFolder folder;
    folder.write("demo.vorn", EmptyProject());
    for (const std::vector<std::string>& call :
         std::vector<std::vector<std::string>>{{"--save", "no/such/folder/x.vorn"},
                                               {"--shot", "0", "no/such/folder/x.png"},
                                               {"--shot", "0", "no/such/folder/x.exr"}}) {
        const ProcessResult result = RunVorn(call, folder.path());
        EXPECT_EQ(result.exitCode, 5) << call[0];
        EXPECT_NE(result.err.find("folder/x."), std::string::npos) << result.err;
    }
}

TEST(CommandLine, OutputOntoAFullDiskEndsWithCode5) {
    const TempFolder folder;
    folder.write("demo.vorn", EmptyProject());
    for (const char* call : {"--info", "--bench 0.02"}) {
        const ProcessResult result = RunProcess(
            {"sh", "-c", "exec \"$0\" " + std::string(call) + " > /dev/full", VornProgram()},
            {{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}, {"SDL_VIDEODRIVER", ""}}, folder.path());
        EXPECT_EQ(result.exitCode, 5) << call;
        EXPECT_EQ(LinesWith(result.err, "vorn: standard output"), 1) << result.err;
    }
}

TEST(CommandLine, AStrictRunWithAllOfItsFilesEndsWithCode0) {
    const TempFolder folder;
    PutFonts(folder);
    folder.write("demo.vorn", EmptyProject());
    const ProcessResult result = RunVorn({"--info", "--strict"}, folder.path());
    EXPECT_EQ(result.exitCode, 0) << result.err;
}

TEST(CommandLine, StrictFailsWithCode6OnMissingFonts) {
    const TempFolder folder;
    folder.write("demo.vorn", EmptyProject());
    EXPECT_EQ(RunVorn({"--info"}, folder.path()).err.find("fonts/"), std::string::npos);
    const ProcessResult strict = RunVorn({"--info", "--strict"}, folder.path());
    EXPECT_EQ(strict.exitCode, 6);
    EXPECT_EQ(LinesWith(strict.err, "fonts/verdana.ttf"), 1) << strict.err;
    EXPECT_EQ(LinesWith(strict.err, "fonts/courier.ttf"), 1) << strict.err;
}

TEST(CommandLine, StrictFailsWithCode6OnMissingMusicEvenWhenNoFrameIsRun) {
    const TempFolder folder;
    PutFonts(folder);
    ProjectFile file;
    file.word(0x86869000).text("demo").text(".").text(".\\data\\absent.ogg").text(".").number(240);
    folder.write("demo.vorn", file.bytes());
    const ProcessResult strict = RunVorn({"--info", "--strict"}, folder.path());
    EXPECT_EQ(strict.exitCode, 6);
    EXPECT_EQ(LinesWith(strict.err, "absent.ogg"), 1) << strict.err;
}

TEST(CommandLine, StrictFailsWithCode6OnANodeWhoseScriptIsMissing) {
    const TempFolder folder;
    PutFonts(folder);
    folder.write("demo.vorn",
                 ProjectFile().strings().types(1).text("Glow1").text("Glow Of Mine").bytes());
    const ProcessResult strict = RunVorn({"--info", "--strict"}, folder.path());
    EXPECT_EQ(strict.exitCode, 6);
    EXPECT_EQ(LinesWith(strict.err, "Glow Of Mine"), 1) << strict.err;
}

TEST(CommandLine, StrictFailsWithCode6OnAMissingPicture) {
    const TempFolder folder;
    PutFonts(folder);
    folder.write("demo.vorn", ProjectFile()
                                  .strings()
                                  .types(1)
                                  .text("Reader1")
                                  .text("Reader")
                                  .values(1)
                                  .text("Reader1")
                                  .word(1)
                                  .text("Filename")
                                  .word(5)
                                  .text(".\\Graphics\\absent.png")
                                  .bytes());
    EXPECT_EQ(RunVorn({"--info"}, folder.path()).exitCode, 0);
    const ProcessResult strict = RunVorn({"--info", "--strict"}, folder.path());
    EXPECT_EQ(strict.exitCode, 6);
    EXPECT_NE(strict.err.find("absent.png"), std::string::npos) << strict.err;
}

TEST(CommandLine, StrictFailsWithCode6OnAShaderThatDoesNotCompile) {
    const TempFolder folder;
    PutFonts(folder);
    folder.write("Scripts/broken.node",
                 "Name \"Broken\" \"Test\"\nSource\n#version 330 core\nnonsense\n");
    folder.write("demo.vorn",
                 ProjectFile().strings().types(1).text("Broken1").text("Broken").bytes());
    EXPECT_EQ(RunVorn({"--info"}, folder.path()).exitCode, 0);
    const ProcessResult strict = RunVorn({"--info", "--strict"}, folder.path());
    EXPECT_EQ(strict.exitCode, 6);
    EXPECT_EQ(LinesWith(strict.err, "broken.node: "), 1) << strict.err;
}

TEST(CommandLine, TheProjectsFolderBecomesTheWorkingDirectory) {
    const TempFolder folder;
    folder.write("show/Scripts/a.node", "Name \"Mine\" \"Test\"");
    folder.write("show/My.vorn", EmptyProject());
    const auto info = VornInfo({"show/My.vorn"}, folder.path());
    ASSERT_TRUE(info.is_object());
    EXPECT_EQ(info["types"][0], "Mine");
}

TEST(CommandLine, ProjectNamesMayBeWrittenTheWindowsWay) {
    const TempFolder folder;
    folder.write("Show/My.vorn", EmptyProject());
    EXPECT_TRUE(VornInfo({"show\\MY.VORN"}, folder.path()).is_object());
}

}  // namespace
