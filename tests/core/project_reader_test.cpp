// Loading whole projects: sections, prefixes, messages, and where the reader loses its place.
#include "support/project_loads.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ProjectReaderTest : public ProjectTest {
  protected:
    // Types of one or two nodes.
    static ProjectFile nodes(const std::string& first, const std::string& second = "") {
        ProjectFile file;
        file.types(second.empty() ? 1 : 2).text(first).text("Node");
        if (!second.empty()) file.text(second).text("Node");
        return file;
    }
};

TEST_F(ProjectReaderTest, ReadsTheStrings) {
    ProjectFile file;
    file.word(0x86869000).text("n").text("f").text("m").text("d").number(240);
    ASSERT_TRUE(load(file.bytes()));
    EXPECT_EQ(engine_.projectName, "n");
    EXPECT_EQ(engine_.projectFolder, "f");
    EXPECT_EQ(engine_.musicFile, "m");
    EXPECT_EQ(engine_.dataFolder, "d");
    EXPECT_EQ(engine_.lengthText, "240");
    EXPECT_THAT(said_, IsEmpty());
}

TEST_F(ProjectReaderTest, WritesTheLengthAsAStreamDoes) {
    const auto lengthOf = [&](float seconds) {
        load(ProjectFile().strings(seconds).bytes());
        return engine_.lengthText;
    };
    EXPECT_EQ(lengthOf(61.5f), "61.5");
    EXPECT_EQ(lengthOf(0), "0");
    EXPECT_EQ(lengthOf(1e10f), "1e+10");
    EXPECT_EQ(lengthOf(0.1f), "0.1");
}

TEST_F(ProjectReaderTest, FindsTheProjectsFilesBesideItself) {
    const auto fixed = [&](const std::string& text) {
        load(
            ProjectFile().word(0x86869000).text(text).text("").text("").text("").number(0).bytes());
        return engine_.projectName;
    };
    EXPECT_EQ(fixed("C:\\TEMP\\K4409\\data\\x.obj"), ".\\data\\x.obj");
    EXPECT_EQ(fixed("C:\\temp\\K4409\\data\\x.obj"), ".\\data\\x.obj");
    EXPECT_EQ(fixed("at C:\\temp\\K4409 twice C:\\temp\\K4409"), "at . twice C:\\temp\\K4409");
    EXPECT_EQ(fixed("C:\\TEMP\\K4409 C:\\temp\\K4409"), ". .");
    EXPECT_EQ(fixed("c:\\temp\\K4409\\"), "c:\\temp\\K4409\\");
    EXPECT_EQ(fixed("C:\\Temp\\K4409"), "C:\\Temp\\K4409");
}

TEST_F(ProjectReaderTest, FixesTextsOfEverySection) {
    const std::string id = "C:\\temp\\K4409!";
    ProjectFile file;
    file.types(1).text(id).text("Node");
    file.counters(1).text(id).word(4);
    file.links(1).text(id).word(1).word(0).text(id);
    file.values(1).text(id).word(1).text("Text").word(5).text(id);
    file.tracks(1).text(id).word(1).text(id + ".Size").text(id).word(0).word(0).word(0);
    ASSERT_TRUE(load(file.bytes()));
    TestNode& node = engine_.node(".!");
    EXPECT_EQ(*engine_.typeCounters.find(".!"), 4);
    EXPECT_EQ(node.getInput(0), &node);
    EXPECT_EQ(node.text, ".!");
    EXPECT_EQ(engine_.track(".!").target, &node.size);
}

TEST_F(ProjectReaderTest, ReadsNodesLinksAndEveryKindOfValue) {
    ProjectFile file = nodes("A", "B");
    file.links(2);
    file.text("A").word(3).word(0).text("").word(1).text("").word(2).text("");
    file.text("B").word(3).word(0).text("A").word(1).text("").word(2).text("B");
    file.values(1).text("B").word(6);
    file.text("On").word(0).byte(0).text("Mode").word(1).word(0xFFFFFFFE);
    file.text("Size").word(2).number(-7.25f).text("Place").word(3).number(3).number(4);
    file.text("Tint").word(4).number(5).number(6).number(7).number(8);
    file.text("Text").word(5).text("hello");
    ASSERT_TRUE(load(file.bytes()));
    const TestNode& b = engine_.node("B");
    EXPECT_THAT(b.inputs, ElementsAre(&engine_.node("A"), nullptr, &b));
    EXPECT_FALSE(b.on);
    EXPECT_EQ(b.mode, -2);
    EXPECT_EQ(b.size, -7.25f) << "ranges bound the slider only";
    EXPECT_THAT(b.place, ElementsAre(3, 4));
    EXPECT_THAT(b.tint, ElementsAre(5, 6, 7, 8));
    EXPECT_EQ(b.text, "hello");
    EXPECT_EQ(engine_.node("A").size, 1.5f);
    EXPECT_THAT(said_, IsEmpty());
}

TEST_F(ProjectReaderTest, LoadsAFloatThatCannotBeAnimated) {
    ProjectFile file = nodes("A");
    file.values(1).text("A").word(1).text("Frozen").word(2).number(0.75f);
    load(file.bytes());
    EXPECT_EQ(engine_.node("A").frozen, 0.75f);
}

TEST_F(ProjectReaderTest, ReadsAPayloadByTheValueNotByTheFilesWord) {
    ProjectFile file = nodes("A");
    file.values(1).text("A").word(2).text("Size").word(5).number(3).text("On").word(99).byte(0);
    load(file.bytes());
    EXPECT_EQ(engine_.node("A").size, 3.0f);
    EXPECT_FALSE(engine_.node("A").on);
    EXPECT_THAT(said_, IsEmpty());
}

TEST_F(ProjectReaderTest, TakesTheOldMagicWithKeysThatHaveNoMode) {
    ProjectFile file(0x86875001);
    file.types(1).text("A").text("Node");
    file.tracks(1).text("A").word(1).text("A.Size").text("A").word(8).word(9).word(2);
    file.number(1).number(0.5f).number(2).number(1.5f);
    file.strings(12);
    ASSERT_TRUE(load(file.bytes()));
    const KeyframeTrack& track = engine_.track("A");
    ASSERT_EQ(track.keys().size(), 2u);
    for (const Keyframe& key : track.keys()) EXPECT_EQ(key.mode, 0);
    EXPECT_EQ(track.keys()[1].value, 2.0f);
    EXPECT_EQ(track.keys()[1].time, 1.5f);
    EXPECT_EQ(track.reserved[1], 9u);
    EXPECT_EQ(engine_.lengthText, "12") << "the place after the keys is kept";
}

TEST_F(ProjectReaderTest, KeepsModesAndReservedWordsOfTheNewMagic) {
    ProjectFile file = nodes("A");
    file.tracks(1).text("A").word(1).text("A.Size").text("A").word(8).word(9).word(1);
    file.number(1).number(0.5f).word(0xFFFFFFFF);
    ASSERT_TRUE(load(file.bytes()));
    EXPECT_EQ(engine_.track("A").keys().at(0).mode, -1);
    EXPECT_EQ(engine_.track("A").reserved[0], 8u);
    EXPECT_EQ(engine_.track("A").owner, engine_.findNode("A"));
}

TEST_F(ProjectReaderTest, RefusesAnotherMagicAfterItHasClearedTheScene) {
    engine_.makeNode("A");
    engine_.update(5);
    EXPECT_FALSE(load(ProjectFile(0x86875003).strings().bytes()));
    EXPECT_TRUE(engine_.nodes.empty());
    EXPECT_EQ(engine_.time, 0.0f);
    EXPECT_EQ(engine_.projectName, "");
    EXPECT_THAT(said_, ElementsAre(complaint("is not a project")));
    EXPECT_FALSE(load(""));
    EXPECT_FALSE(load(ProjectFile(0x86875000).bytes()));
}

TEST_F(ProjectReaderTest, AsksBeforeItClearsAScene) {
    engine_.makeNode("A");
    EXPECT_TRUE(load(nodes("B").bytes()));
    EXPECT_THAT(boxes_, ElementsAre("VORN: Load and clear scene? [OK, Cancel]"));
    EXPECT_EQ(engine_.findNode("A"), nullptr);
    EXPECT_NE(engine_.findNode("B"), nullptr);
}

TEST_F(ProjectReaderTest, LeavesTheSceneAloneWhenTheUserRefuses) {
    engine_.makeNode("A");
    engine_.update(3);
    answer_ = MessageAnswer::Cancel;
    EXPECT_FALSE(load(nodes("B").bytes()));
    EXPECT_NE(engine_.findNode("A"), nullptr);
    EXPECT_EQ(engine_.findNode("B"), nullptr);
    EXPECT_EQ(engine_.time, 3.0f);
    EXPECT_THAT(said_, IsEmpty());
}

TEST_F(ProjectReaderTest, AsksNothingWithAnEmptySceneOrForAMerge) {
    EXPECT_TRUE(load(nodes("A").bytes()));
    EXPECT_TRUE(merge(nodes("B").bytes(), "x"));
    EXPECT_THAT(boxes_, IsEmpty());
}

TEST_F(ProjectReaderTest, AsksNothingAboutAMissingFileAndKeepsTheScene) {
    engine_.makeNode("A");
    engine_.update(3);
    EXPECT_FALSE(engine_.load(folder_.file("missing.vorn"), true, ""));
    EXPECT_FALSE(engine_.load(folder_.path().string(), true, ""));
    EXPECT_THAT(boxes_, IsEmpty());
    EXPECT_NE(engine_.findNode("A"), nullptr);
    EXPECT_EQ(engine_.time, 3.0f);
}

TEST_F(ProjectReaderTest, StartsAtTimeZeroAlsoWhenItMerges) {
    TestNode& node = engine_.makeNode("A");
    engine_.addAnimation("A", "Size");
    engine_.track("A").setKeys({{3, 0, 1}, {5, 2, 1}});
    engine_.update(2);
    EXPECT_EQ(node.size, 5.0f);
    EXPECT_TRUE(merge(ProjectFile().bytes(), "p"));
    EXPECT_EQ(engine_.time, 0.0f);
    EXPECT_EQ(node.size, 3.0f);
}

TEST_F(ProjectReaderTest, LetsEveryNodeTakeInItsValuesAtTheEnd) {
    ProjectFile file = nodes("A", "B");
    file.values(1).text("A").word(1).text("Size").word(2).number(9);
    load(file.bytes());
    EXPECT_THAT(RunLog(), ElementsAre("process A", "process B"));
    EXPECT_EQ(engine_.node("A").sizeAtProcess, 9.0f);
    EXPECT_EQ(engine_.renderEnabled, 1);
}

TEST_F(ProjectReaderTest, PrefixesEveryIdOfAMergedProject) {
    engine_.makeNode("A").size = 77;
    ProjectFile file = nodes("A", "B");
    file.counters(1).text("Node").word(6);
    file.links(1).text("B").word(1).word(0).text("A");
    file.values(1).text("A").word(1).text("Size").word(2).number(4);
    file.tracks(1).text("B").word(1).text("B.Size").text("B").word(0).word(0).word(0);
    ASSERT_TRUE(merge(file.bytes(), "p_"));
    EXPECT_EQ(engine_.node("A").size, 77.0f);
    EXPECT_EQ(engine_.node("p_A").size, 4.0f);
    EXPECT_EQ(engine_.node("p_B").getInput(0), &engine_.node("p_A"));
    EXPECT_EQ(*engine_.nodeTypes.find("p_A"), "Node") << "types take no prefix";
    ASSERT_NE(engine_.tracks.find("p_B"), nullptr);
    EXPECT_EQ(engine_.track("p_B").name, "p_B.Size");
    EXPECT_EQ(engine_.track("p_B").target, &engine_.node("p_B").size);
    EXPECT_EQ(engine_.tracks.find("B"), nullptr);
    // The keys of the counters are type names and are prefixed all the same.
    EXPECT_EQ(*engine_.typeCounters.find("p_Node"), 6);
    EXPECT_EQ(engine_.typeCounters.find("Node"), nullptr);
}

TEST_F(ProjectReaderTest, KeepsTheNodeThatIsThereWhenAMergedIdIsTaken) {
    const TestNode* node = &engine_.makeNode("A");
    ProjectFile file = nodes("A");
    file.values(1).text("A").word(1).text("Size").word(2).number(4);
    ASSERT_TRUE(merge(file.bytes(), ""));
    EXPECT_EQ(engine_.findNode("A"), node);
    EXPECT_EQ(node->size, 4.0f);
    EXPECT_THAT(said_, ElementsAre(complaint("it has node \"A\" twice")));
}

TEST_F(ProjectReaderTest, TakesSectionsInAnyOrder) {
    ProjectFile file;
    file.counters(1).text("Node").word(3);
    file.types(1).text("A").text("Node");
    file.tracks(1).text("A").word(1).text("A.Size").text("A").word(0).word(0).word(0);
    file.values(1).text("A").word(1).text("Size").word(2).number(4);
    file.links(1).text("A").word(1).word(0).text("A");
    file.strings(5);
    ASSERT_TRUE(load(file.bytes()));
    EXPECT_EQ(*engine_.typeCounters.find("Node"), 3);
    EXPECT_EQ(engine_.node("A").size, 4.0f);
    EXPECT_EQ(engine_.node("A").getInput(0), &engine_.node("A"));
    EXPECT_EQ(engine_.lengthText, "5");
    EXPECT_THAT(said_, IsEmpty());
}

TEST_F(ProjectReaderTest, PassesOverUnknownTagsFourBytesAtATime) {
    ProjectFile file;
    file.word(0x12345678).word(0).types(1).text("A").text("Node").word(0x86869006).strings(9);
    ASSERT_TRUE(load(file.bytes()));
    EXPECT_NE(engine_.findNode("A"), nullptr);
    EXPECT_EQ(engine_.lengthText, "9");
    EXPECT_THAT(said_, ElementsAre(complaint("it has sections that are not known here")));
}

TEST_F(ProjectReaderTest, NeverFindsATagThatDoesNotLieOnItsFourBytes) {
    ProjectFile file;
    file.byte(1).types(1).text("A").text("Node");
    ASSERT_TRUE(load(file.bytes()));
    EXPECT_TRUE(engine_.nodes.empty());
}

TEST_F(ProjectReaderTest, KeepsTheTypeOfANodeThatItCannotMakeAndLosesItsPlaceInItsLinks) {
    ProjectFile file;
    file.types(2).text("X").text("Vanished").text("A").text("Node");
    // Of X's entry only the id and the count are read. Then its first port word gives the empty id
    // of an entry, and so on: A's link is never met.
    file.links(2).text("X").word(1).word(0).text("A").text("A").word(1).word(0).text("A");
    ASSERT_TRUE(load(file.bytes()));
    EXPECT_EQ(*engine_.nodeTypes.find("X"), "Vanished");
    EXPECT_EQ(engine_.findNode("X"), nullptr);
    EXPECT_EQ(engine_.node("A").getInput(0), nullptr);
    EXPECT_THAT(said_, ElementsAre(complaint("node \"X\" is of the unknown type \"Vanished\"")));
}

TEST_F(ProjectReaderTest, LosesItsPlaceAfterAValueThatTheNodeNoLongerHas) {
    ProjectFile file = nodes("A");
    // "Old" has nothing more read for it; its type word is the next two names: "\2", "" and so on.
    file.values(1).text("A").word(5);
    file.text("Old").word(2).number(1).text("Size").word(2).number(9);
    // Five names: "Old", "\2", "", "", and the float's bytes 00 as "".
    file.word(0);
    ASSERT_TRUE(load(file.bytes()));
    EXPECT_EQ(engine_.node("A").size, 1.5f) << "the value after it is not reached";
    EXPECT_THAT(said_, ElementsAre(complaint("node \"A\" has no value \"Old\"")));
}

TEST_F(ProjectReaderTest, FindsValuesAgainWhenTheLostPlaceHappensToFit) {
    ProjectFile file = nodes("A");
    // The type word 2 reads as the names "\2", "", "" (bytes 02 00, 00, 00), and a payload whose
    // bytes are no zeros runs into the next name.
    file.values(1).text("A").word(5);
    file.text("Old").word(2).text("Size").word(2).number(9);
    ASSERT_TRUE(load(file.bytes()));
    EXPECT_EQ(engine_.node("A").size, 9.0f);
}

TEST_F(ProjectReaderTest, TakesEveryTextForANameInTheValuesOfAnAbsentNode) {
    ProjectFile file = nodes("A");
    file.values(2).text("Gone").word(4).text("Size").word(2);  // "Size", "\2", "", ""
    file.text("A").word(1).text("Size").word(2).number(9);
    ASSERT_TRUE(load(file.bytes()));
    EXPECT_EQ(engine_.node("A").size, 9.0f);
    EXPECT_THAT(said_, ElementsAre(complaint("node \"Gone\" has no value \"Size\"")));
}

TEST_F(ProjectReaderTest, ReadsNoMorePortsThanTheNodeHas) {
    ProjectFile file = nodes("A", "B");
    file.links(2).text("A").word(4);
    for (std::uint32_t port = 0; port < 3; ++port) file.word(port).text("A");
    // The fourth port's word 03 00 00 00 is read as the id "\3" and, with the source's letters
    // "AA" after the two zeros, as the next entry's port count: that node is absent.
    file.word(3).text("AA");
    ASSERT_TRUE(load(file.bytes()));
    EXPECT_EQ(engine_.node("A").getInput(2), &engine_.node("A"));
    EXPECT_THAT(said_, ElementsAre(complaint("node \"A\" has fewer inputs than the file links")));
}

TEST_F(ProjectReaderTest, LeavesThePortsThatTheFileDoesNotNameEmpty) {
    ProjectFile file = nodes("A", "B");
    file.links(2).text("A").word(1).word(0).text("B").text("B").word(1).word(7).text("A");
    ASSERT_TRUE(load(file.bytes()));
    EXPECT_THAT(engine_.node("A").inputs, ElementsAre(&engine_.node("B"), nullptr, nullptr));
    EXPECT_THAT(engine_.node("B").inputs, ElementsAre(&engine_.node("A"), nullptr, nullptr))
        << "ports go by their order; the port word is not used";
    EXPECT_THAT(said_, IsEmpty());
}

TEST_F(ProjectReaderTest, CutsATextThatIsTooLongAndKeepsItsPlace) {
    ProjectFile file;
    file.word(0x86869000).text(std::string(8191, 'x')).text(std::string(8192, 'y'));
    file.text("m").text("d").number(7);
    ASSERT_TRUE(load(file.bytes()));
    EXPECT_EQ(engine_.projectName, std::string(8191, 'x'));
    EXPECT_EQ(engine_.projectFolder, std::string(8191, 'y'));
    EXPECT_EQ(engine_.musicFile, "m");
    EXPECT_EQ(engine_.lengthText, "7");
    EXPECT_THAT(said_, ElementsAre(complaint("a text of more than 8191 bytes was cut")));
}

TEST_F(ProjectReaderTest, LinksNodesInCyclesThatRun) {
    ProjectFile file = nodes("A", "B");
    file.links(2).text("A").word(1).word(0).text("B").text("B").word(1).word(0).text("A");
    ASSERT_TRUE(load(file.bytes()));
    engine_.makeOutput("Out");
    engine_.connect("A", "Out", 0);
    engine_.update(1);
    engine_.update(2);
    EXPECT_EQ(engine_.node("A").product, 4);
}

}  // namespace
