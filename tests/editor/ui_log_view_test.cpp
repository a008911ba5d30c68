#include "editor/ui_log_view.h"

#include <gmock/gmock.h>

#include "editor/gui_file.h"
#include "gpu/shader_program.h"
#include "support/gl_fixture.h"
#include "support/temp_folder.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::vector<std::string> TextsOf(const std::vector<LogLine>& lines) {
    std::vector<std::string> texts;
    for (const LogLine& line : lines) texts.push_back(line.text);
    return texts;
}

// The line of the log that ends the channel's messages.
LogLine LastLine() {
    const std::vector<LogLine> lines = LinesOf(RecentDebugOutput());
    return lines.empty() ? LogLine{} : lines.back();
}

using LogOfShaders = GlTest;

}  // namespace

TEST(LogLines, AreMadeOfMessagesThatNeedNotEndThem) {
    EXPECT_THAT(
        TextsOf(LinesOf({{"one"}, {" two\n"}, {"three\nfour"}, {"\n"}, {"\n"}, {"fi\tve"}})),
        ElementsAre("one two", "three", "four", "fi ve"));
}

TEST(LogLines, AreFaultsWhereAMessageOfThemIsOne) {
    const std::vector<LogLine> lines =
        LinesOf({{"Glow"}, {" no\nno\n", true}, {"Sky Successfully linked.\n"}, {"\n", true}});
    ASSERT_THAT(TextsOf(lines), ElementsAre("Glow no", "no", "Sky Successfully linked."));
    EXPECT_TRUE(lines[0].fault);
    EXPECT_TRUE(lines[1].fault);
    EXPECT_FALSE(lines[2].fault);
}

TEST(LogLines, OfFilesThatAreDamagedAreFaultsWhateverTheirWords) {
    const DebugCapture quiet;
    const TempFolder folder;
    folder.write("bad.vorngui", std::string("\x02\0\0\0\x07\0\0\0a", 9));
    OrderedMap<std::string, Vec2> places;
    std::map<std::string, std::string> names;
    OrderedMap<std::string, bool> folded;
    LoadGui((folder.path() / "bad.vorngui").string(), GuiLoad::Replace, "",
            {places, names, folded});
    EXPECT_THAT(LastLine().text, HasSubstr("the file ends before its content does"));
    EXPECT_TRUE(LastLine().fault);
    DebugOutput("Saved .\\terror.vorn\n");
    EXPECT_FALSE(LastLine().fault) << "a name is no fault";
}

TEST_F(LogOfShaders, TellsWhatDoesNotCompileAsAFault) {
    const DebugCapture quiet;
    const ShaderProgram program("Wipe", "#version 330 core\nvoid main() { gl_Position = vec4(0); }",
                                nullptr, "#version 330 core\nvoid main() { nothing(); }", {}, 1);
    bool told = false;
    for (const LogLine& line : LinesOf(RecentDebugOutput())) {
        if (line.text.find("nothing") == std::string::npos) continue;
        told = true;
        EXPECT_TRUE(line.fault) << line.text;
    }
    EXPECT_TRUE(told);
}

TEST(LogLines, TheStripLeavesRoutineOut) {
    EXPECT_TRUE(IsRoutineLine("Texture Memory Consumed (non MM): 13.84Mb"));
    EXPECT_TRUE(IsRoutineLine("Wipe Successfully linked."));
    EXPECT_TRUE(IsRoutineLine("Load Script from File: Wipe"));
    EXPECT_FALSE(IsRoutineLine("Saved .\\demo.vorn"));
}
