// Projects that are damaged or made to do harm: memory stays safe, the program goes on, and one
// line names the file.
#include <chrono>
#include <random>

#include "core/project_reader.h"
#include "support/project_loads.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A project with something in every section.
std::string SampleProject() {
    TestEngine engine;
    const TempFolder folder;
    engine.projectName = "sample";
    engine.lengthText = "30";
    engine.makeNode("A1").text = "a text";
    engine.makeNode("B1");
    engine.createNode("C1", "Camera");
    engine.makeOutput("V1");
    engine.typeCounters["Node"] = 1;
    engine.connect("A1", "B1", 0);
    engine.connect("B1", "A1", 1);
    engine.connect("B1", "V1", 0);
    engine.addAnimation("A1", "Size");
    engine.addAnimation("B1", "Tint");
    engine.track("A1").insertKey(4, 5);
    engine.save(folder.file("sample.vorn"));
    return folder.read("sample.vorn");
}

class ProjectDamageTest : public ProjectTest {
  protected:
    // Nothing, or one line that begins with the file's name.
    void expectAtMostOneLine(const std::string& about) {
        EXPECT_LE(said_.size(), 1u) << about;
        for (const std::string& line : said_) {
            EXPECT_TRUE(line.starts_with(folder_.file("a.vorn") + ": ")) << about << ": " << line;
            EXPECT_EQ(line.find('\n'), line.size() - 1) << about;
        }
    }
    // Reads bytes without a file, and runs, saves and clears what came of them.
    static void readAndRun(std::string_view bytes) {
        TestEngine engine;
        ProjectReader reader(
            engine, {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, "");
        const DebugCapture debug;
        reader.readMagic();
        reader.readSections();
        engine.refreshNodes();
        for (const float time : {0.0f, 1.0f, 0.5f, 100.0f}) engine.update(time);
    }
};

TEST_F(ProjectDamageTest, ReadsAWholeSampleInSilence) {
    EXPECT_TRUE(load(SampleProject()));
    EXPECT_THAT(said_, IsEmpty());
}

TEST_F(ProjectDamageTest, SurvivesBeingCutAtAnyByte) {
    const std::string whole = SampleProject();
    // Where a file may end without a fault: after its magic, and after each section.
    std::vector<std::size_t> ends = {4};
    for (std::uint32_t tag = 0x86869000; tag <= 0x86869005; ++tag) {
        ends.push_back(whole.find(ProjectFile(tag).bytes()));
    }
    for (std::size_t length = 0; length < whole.size(); ++length) {
        TestEngine engine;
        loadInto(engine, whole.substr(0, length), true, "");
        expectAtMostOneLine("cut at " + std::to_string(length));
        const bool isEnd = std::find(ends.begin(), ends.end(), length) != ends.end();
        EXPECT_EQ(said_.empty(), isEnd) << "cut at " << length;
        engine.update(1);
    }
}

TEST_F(ProjectDamageTest, SurvivesEveryByteBeingTurnedAround) {
    const std::string whole = SampleProject();
    for (std::size_t place = 4; place < whole.size(); ++place) {
        for (const int flip : {0x01, 0x80, 0xFF}) {
            std::string damaged = whole;
            damaged[place] = static_cast<char>(damaged[place] ^ flip);
            readAndRun(damaged);
        }
    }
}

TEST_F(ProjectDamageTest, SurvivesRandomBytes) {
    std::mt19937 random(3);
    for (int round = 0; round < 2000; ++round) {
        std::string bytes = ProjectFile().bytes();
        const std::size_t size = random() % 400;
        while (bytes.size() < size) {
            if (random() % 8 == 0) {
                bytes += ProjectFile(0x86869000 + random() % 6).bytes();
            } else if (random() % 4 == 0) {
                bytes += '\0';
            } else {
                bytes += static_cast<char>(random());
            }
        }
        readAndRun(bytes);
    }
}

TEST_F(ProjectDamageTest, SaysOneLineAboutEachFile) {
    std::mt19937 random(4);
    for (int round = 0; round < 200; ++round) {
        std::string damaged = SampleProject();
        for (int i = 0; i < 10; ++i) damaged[4 + random() % (damaged.size() - 4)] = 7;
        load(damaged);
        expectAtMostOneLine("round " + std::to_string(round));
    }
}

TEST_F(ProjectDamageTest, DoesNotBelieveCountsOfFourBillion) {
    constexpr std::uint32_t kHuge = 0xFFFFFFFF;
    const std::string ends = complaint("the file ends before its content does");
    ProjectFile node;
    node.types(1).text("A").text("Node");
    const auto check = [&](const ProjectFile& file) {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_TRUE(load(file.bytes()));
        EXPECT_THAT(said_, ElementsAre(ends));
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        EXPECT_LT(took.count(), 2.0) << "a count is not a loop";
    };
    check(ProjectFile().types(kHuge));
    check(ProjectFile().counters(kHuge));
    check(ProjectFile().links(kHuge));
    check(ProjectFile().values(kHuge));
    check(ProjectFile().tracks(kHuge));
    check(ProjectFile(node).values(1).text("A").word(kHuge));
    check(ProjectFile(node).tracks(1).text("A").word(kHuge));
    check(
        ProjectFile(node).tracks(1).text("A").word(1).text("A.Size").text("A").word(0).word(0).word(
            kHuge));
    EXPECT_EQ(engine_.track("A").keys().size(), 0u);
    check(ProjectFile(node)
              .tracks(1)
              .text("A")
              .word(1)
              .text("A.Size")
              .text("A")
              .word(0)
              .word(0)
              .word(kHuge)
              .number(3)
              .number(4)
              .word(1)
              .number(5));
    EXPECT_EQ(engine_.track("A").keys().size(), 2u) << "what is there is read, and zeros after it";
    EXPECT_EQ(engine_.track("A").keys()[0].value, 3.0f);
    EXPECT_EQ(engine_.track("A").keys()[1].value, 5.0f);
    EXPECT_EQ(engine_.track("A").keys()[1].time, 0.0f);
}

TEST_F(ProjectDamageTest, SurvivesAPortCountOfFourBillion) {
    ProjectFile file;
    file.types(1).text("A").text("Node").links(1).text("A").word(0xFFFFFFFF).word(0).text("A");
    EXPECT_TRUE(load(file.bytes()));
    EXPECT_EQ(engine_.node("A").getInput(0), engine_.findNode("A"));
    EXPECT_EQ(said_.size(), 1u);
}

TEST_F(ProjectDamageTest, SurvivesTextsWithoutAnEnd) {
    const std::string endless(1 << 20, 'a');
    EXPECT_TRUE(load(ProjectFile().word(0x86869000).bytes() + endless));
    EXPECT_EQ(engine_.projectName.size(), 8191u);
    EXPECT_EQ(said_.size(), 1u);
    EXPECT_TRUE(load(ProjectFile().types(1).bytes() + endless));
    EXPECT_EQ(said_.size(), 1u);
    load(ProjectFile().types(1).text("A").text("Node").values(1).text("A").word(9).bytes() +
         endless);
    EXPECT_EQ(said_.size(), 1u);
}

TEST_F(ProjectDamageTest, ReadsAMillionUnknownValuesOfALongIdQuickly) {
    ProjectFile file;
    file.values(1).text(std::string(8000, 'x')).word(0xFFFFFFFF);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(load(file.bytes() + std::string(1 << 20, '\0')));
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    EXPECT_LT(took.count(), 5.0) << "the words of a fault are not joined a million times";
    EXPECT_EQ(said_.size(), 1u);
}

TEST_F(ProjectDamageTest, MakesNoLinksToNodesThatAreNotThere) {
    ProjectFile file;
    file.types(2).text("A").text("Node").text("C").text("Camera");
    file.links(1).text("A").word(3).word(0).text("Gone").word(1).text("C").word(2).text("");
    EXPECT_TRUE(load(file.bytes()));
    EXPECT_THAT(engine_.node("A").inputs, ElementsAre(nullptr, nullptr, nullptr));
    engine_.update(0);
}

}  // namespace
