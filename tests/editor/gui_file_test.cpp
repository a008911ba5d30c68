#include "editor/gui_file.h"

#include <gmock/gmock.h>

#include <cstring>
#include <limits>
#include <sstream>

#include "platform/debug_output.h"
#include "support/temp_folder.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

// The bytes of a file, put together by hand.
class Bytes {
  public:
    Bytes& word(std::int64_t value) {
        for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<char>(value >> 8 * i));
        return *this;
    }
    Bytes& number(float value) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &value, 4);
        return word(bits);
    }
    Bytes& text(const std::string& content) {
        bytes += content;
        bytes.push_back('\0');
        return *this;
    }
    Bytes& byte(int value) {
        bytes.push_back(static_cast<char>(value));
        return *this;
    }
    Bytes& place(const std::string& id, float x, float y) { return text(id).number(x).number(y); }
    std::string bytes;
};

class GuiFileTest : public testing::Test {
  protected:
    // Loads the bytes and gives what was reported.
    std::string load(const Bytes& content, GuiLoad mode = GuiLoad::Replace,
                     const std::string& prefix = "") {
        folder.write("p.vorngui", content.bytes);
        const DebugCapture capture;
        EXPECT_TRUE(LoadGui(path(), mode, prefix, state));
        return capture.text();
    }
    std::string path() const { return folder.file("p.vorngui"); }
    // "id x y" in the map's order.
    std::vector<std::string> places() const {
        std::vector<std::string> list;
        for (const auto& [id, place] : positions) {
            std::ostringstream line;
            line << id << " " << place.x << " " << place.y;
            list.push_back(line.str());
        }
        return list;
    }
    static Bytes twoBoxes() {
        return Bytes()
            .word(2)
            .word(2)
            .place("A", 10, 20)
            .place("B", 40, 5)
            .text("A")
            .text("Alpha")
            .text("B")
            .text("B")
            .word(2)
            .text("A")
            .byte(1)
            .text("B")
            .byte(0);
    }

    TempFolder folder;
    OrderedMap<std::string, Vec2> positions;
    std::map<std::string, std::string> names;
    OrderedMap<std::string, bool> folded;
    GuiState state{positions, names, folded};
};

}  // namespace

TEST_F(GuiFileTest, SavesThePlacesNamesAndBoxes) {
    positions["A"] = {10, 20};
    positions["B"] = {40, 5};
    names["A"] = "Alpha";
    names["B"] = "";
    names["gone"] = "Gone";
    EXPECT_TRUE(SaveGui(path(), state, {{"A", true}, {"B", false}}));
    EXPECT_EQ(folder.read("p.vorngui"), twoBoxes().bytes);
}

TEST_F(GuiFileTest, SavesWithoutAnything) {
    EXPECT_TRUE(SaveGui(path(), state, {}));
    EXPECT_EQ(folder.read("p.vorngui"), Bytes().word(2).word(0).word(0).bytes);
}

TEST_F(GuiFileTest, SaysWhenItCannotSave) {
    const DebugCapture capture;
    EXPECT_FALSE(SaveGui(folder.file("missing") + "\\p.vorngui", state, {}));
    EXPECT_THAT(capture.messages(), IsEmpty());
}

TEST_F(GuiFileTest, LoadsInPlaceOfWhatWasThere) {
    positions["B"] = {1, 1};
    positions["old"] = {2, 2};
    names["old"] = "Old";
    folded["old"] = true;
    EXPECT_EQ(load(twoBoxes()), "");
    EXPECT_THAT(places(), ElementsAre("B 40 5", "old 2 2", "A 10 20"));
    EXPECT_THAT(names, ElementsAre(Pair("A", "Alpha"), Pair("B", "B")));
    EXPECT_FALSE(folded["A"]);
    EXPECT_TRUE(folded["B"]);
    EXPECT_TRUE(folded["old"]);
}

TEST_F(GuiFileTest, LoadsWhatItSaved) {
    load(twoBoxes());
    EXPECT_TRUE(SaveGui(path(), state, {{"A", true}, {"B", false}}));
    EXPECT_EQ(folder.read("p.vorngui"), twoBoxes().bytes);
}

TEST_F(GuiFileTest, PutsThePrefixBeforeNodesButNotBoxes) {
    load(twoBoxes(), GuiLoad::Replace, "p-");
    EXPECT_THAT(places(), ElementsAre("p-A 10 20", "p-B 40 5"));
    EXPECT_THAT(names, ElementsAre(Pair("p-A", "Alpha"), Pair("p-B", "B")));
    EXPECT_TRUE(folded["B"]);
    EXPECT_FALSE(folded.contains("p-B"));
}

TEST_F(GuiFileTest, MergesIntoAnEmptyEditorFromFifty) {
    load(twoBoxes(), GuiLoad::Merge, "p-");
    EXPECT_THAT(places(), ElementsAre("p-A 50 0", "p-B 80 -15"));
}

TEST_F(GuiFileTest, MergesBesideWhatIsThere) {
    positions["A"] = {300, -50};
    positions["far"] = {100, 70};
    names["A"] = "Mine";
    folded["B"] = false;
    load(twoBoxes(), GuiLoad::Merge, "p-");
    // x - 10 - 300 + 50, y - (20 - 70): the furthest x counts against the merged boxes.
    EXPECT_THAT(places(), ElementsAre("A 300 -50", "far 100 70", "p-A -250 70", "p-B -220 55"));
    EXPECT_THAT(names, ElementsAre(Pair("A", "Mine"), Pair("p-A", "Alpha"), Pair("p-B", "B")));
    EXPECT_FALSE(folded["B"]) << "fold flags are read and dropped";
    EXPECT_EQ(folded.size(), 1u);
}

TEST_F(GuiFileTest, MergesAsIfNothingWereLeftOrAboveTheOrigin) {
    positions["low"] = {-300, -200};
    load(Bytes().word(1).word(1).place("A", 7, 9), GuiLoad::Merge, "p-");
    EXPECT_THAT(places(), ElementsAre("low -300 -200", "p-A 50 0"));
}

TEST_F(GuiFileTest, MergesOverItsOwnEarlierBoxes) {
    positions["p-A"] = {100, 10};
    load(Bytes().word(1).word(1).place("A", 7, 9), GuiLoad::Merge, "p-");
    EXPECT_THAT(places(), ElementsAre("p-A -50 10"));
}

TEST_F(GuiFileTest, KeepsTheFirstTurnAndTheLastPlaceOfAnId) {
    const auto file =
        Bytes().word(1).word(3).place("A", 1, 2).place("B", 3, 4).place("A", 100, 200);
    load(file);
    EXPECT_THAT(places(), ElementsAre("A 100 200", "B 3 4"));
    positions.clear();
    load(file, GuiLoad::Merge);
    EXPECT_THAT(places(), ElementsAre("A 147 0", "B 50 -196")) << "the first place counts nowhere";
}

TEST_F(GuiFileTest, VersionOneHasPlacesOnly) {
    names["A"] = "Alpha";
    folded["A"] = true;
    EXPECT_EQ(load(Bytes().word(1).word(1).place("A", 10, 20)), "");
    EXPECT_THAT(places(), ElementsAre("A 10 20"));
    EXPECT_THAT(names, ElementsAre(Pair("A", "Alpha")));
    EXPECT_TRUE(folded["A"]);
}

TEST_F(GuiFileTest, VersionZeroHasNothing) {
    names["A"] = "Alpha";
    EXPECT_EQ(load(Bytes().word(0).word(1).place("A", 10, 20)), "");
    EXPECT_THAT(places(), IsEmpty());
    EXPECT_EQ(names.size(), 1u);
}

TEST_F(GuiFileTest, AMissingFileLeavesEverything) {
    positions["A"] = {1, 2};
    names["A"] = "Alpha";
    const DebugCapture capture;
    EXPECT_FALSE(LoadGui(path(), GuiLoad::Replace, "", state));
    EXPECT_THAT(places(), ElementsAre("A 1 2"));
    EXPECT_EQ(names.size(), 1u);
    EXPECT_THAT(capture.messages(), IsEmpty());
}

TEST_F(GuiFileTest, AFolderIsReportedAndLeavesEverything) {
    names["A"] = "Alpha";
    const DebugCapture capture;
    EXPECT_FALSE(LoadGui(folder.path().string(), GuiLoad::Replace, "", state));
    EXPECT_EQ(names.size(), 1u);
    EXPECT_EQ(capture.text(), folder.path().string() + ": it cannot be read\n");
}

TEST_F(GuiFileTest, ACutFileRepeatsTheNumbersThatAreMissing) {
    const std::string line = path() + ": the file ends before its content does\n";
    Bytes file = Bytes().word(2).word(3).place("A", 10, 20).text("B").number(30);
    EXPECT_EQ(load(file), line);
    EXPECT_THAT(places(), ElementsAre("A 10 20", "B 30 20"));
    positions.clear();
    EXPECT_EQ(load(Bytes().word(2).word(1).text("B")), line);
    EXPECT_THAT(places(), ElementsAre("B 0 0"));
    load(Bytes().word(2).word(0).word(2).text("A").byte(0).text("B"));
    EXPECT_TRUE(folded["A"]);
    EXPECT_TRUE(folded["B"]);
    load(Bytes().word(2).word(0).word(2).text("A").byte(1).text("B"));
    EXPECT_FALSE(folded["A"]);
    EXPECT_FALSE(folded["B"]);
}

TEST_F(GuiFileTest, SurvivesEveryLengthOfACutFile) {
    const std::string whole = twoBoxes().bytes;
    for (std::size_t length = 0; length < whole.size(); ++length) {
        positions.clear();
        Bytes cut;
        cut.bytes = whole.substr(0, length);
        EXPECT_THAT(load(cut), HasSubstr("the file ends before its content does")) << length;
        for (const auto& [id, place] : positions) EXPECT_TRUE(id == "A" || id == "B") << length;
    }
}

TEST_F(GuiFileTest, TrustsNoCount) {
    for (const std::int64_t count : {0x7FFFFFFFll, 0xFFFFFFFFll, 0x80000000ll}) {
        for (const int version : {1, 2, -7, 1000}) {
            EXPECT_NE(load(Bytes().word(version).word(count).place("A", 1, 2)), "");
            EXPECT_NE(load(Bytes().word(2).word(0).word(count).text("A").byte(0)), "");
        }
    }
}

TEST_F(GuiFileTest, CutsTextsThatAreTooLong) {
    const std::string most(4095, 'm'), more(4096, 'n');
    EXPECT_EQ(load(Bytes().word(1).word(1).place(most, 1, 2)), "");
    EXPECT_TRUE(positions.contains(most));
    EXPECT_EQ(load(Bytes().word(1).word(2).place(more, 1, 2).place("A", 3, 4)),
              path() + ": a text is too long and was cut\n");
    EXPECT_TRUE(positions.contains(more.substr(1)));
    EXPECT_TRUE(positions.contains("A"));
    Bytes endless = Bytes().word(2).word(1);
    endless.bytes += std::string(100000, 'e');
    positions.clear();
    EXPECT_NE(load(endless), "");
    EXPECT_TRUE(positions.empty());
}

TEST_F(GuiFileTest, TakesAPlaceThatIsNoNumberForZero) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(load(Bytes().word(1).word(2).place("A", nan, 5).place("B", 6, -infinity)),
              path() + ": a position is no number\n");
    EXPECT_THAT(places(), ElementsAre("A 0 5", "B 6 0"));
}
