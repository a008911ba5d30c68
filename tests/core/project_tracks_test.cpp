// The tracks of a project: where their names lead.
#include "support/project_loads.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ProjectTracksTest : public ProjectTest {
  protected:
    // Loads a node and one track of it, and tells what the track drives: a value's name with the
    // number of the float in it, or "nothing".
    std::string driven(const std::string& trackName) {
        ProjectFile file;
        file.types(1).text("A1").text("Node");
        file.tracks(1).text("A1").word(1).text(trackName).text("A1").word(0).word(0).word(1);
        file.number(1).number(2).word(0);
        EXPECT_TRUE(load(file.bytes()));
        const KeyframeTrack& track = engine_.track("A1");
        EXPECT_EQ(track.owner, engine_.findNode("A1"));
        EXPECT_EQ(track.keys().size(), 1u);
        EXPECT_EQ(said_.size(), track.target == nullptr ? 1u : 0u);
        return nameOf(engine_.node("A1"), track.target);
    }
    static std::string nameOf(const TestNode& node, const float* target) {
        if (target == nullptr) return "nothing";
        for (const Value_Object* value : node.engine->valuesOf(&node)) {
            const std::vector<ValueChannel> channels = ChannelsOf(*value);
            for (std::size_t i = 0; i < channels.size(); ++i) {
                if (channels[i].data == target) return value->name + " " + std::to_string(i);
            }
        }
        return "something else";
    }
};

TEST_F(ProjectTracksTest, DriveAFloatByItsName) {
    EXPECT_EQ(driven("A1.Size"), "Size 0");
    EXPECT_EQ(driven("A1.Size2"), "Size2 0");
    EXPECT_EQ(driven("A1.Frozen"), "Frozen 0");
}

TEST_F(ProjectTracksTest, TakeTheWholeNamesOfTransformsWithTheirDots) {
    EXPECT_EQ(driven("A1.Translate.X"), "Translate.X 0");
    EXPECT_EQ(driven("A1.Translate.Y"), "Translate.Y 0");
    EXPECT_EQ(driven("A1.Translate.Z"), "Translate.Z 0");
    for (const char* name :
         {"Rotate.X", "Rotate.Y", "Rotate.Z", "Rotat-e.X", "Rotat-e.Y", "Rotat-e.Z"}) {
        ProjectFile file;
        file.tracks(1).text("R").word(1).text(std::string("R.") + name).text("R");
        file.word(0).word(0).word(0);
        TestEngine engine;
        float rotation = 0;
        engine.declareFloat(&engine.makeNode("R"), name, rotation, 0, 360, 2, 0, true);
        loadInto(engine, file.bytes(), false, "");
        EXPECT_EQ(engine.track("R").target, &rotation) << name;
    }
}

TEST_F(ProjectTracksTest, LoseOtherNamesWithDots) {
    EXPECT_EQ(driven("A1.Center.X"), "nothing");
    EXPECT_EQ(driven("A1.Center.Z"), "nothing");
    EXPECT_EQ(driven("A1.Alpha.x"), "nothing");
    EXPECT_EQ(driven("A1.translate.x"), "nothing");
    EXPECT_EQ(driven("A1.Size.x"), "nothing") << "a float has no channels";
    EXPECT_THAT(said_, ElementsAre(complaint("track \"A1.Size.x\" drives nothing")));
}

TEST_F(ProjectTracksTest, DriveTheChannelsOfAVec2) {
    EXPECT_EQ(driven("A1.Place.x"), "Place 0");
    for (const char* name : {"A1.Place.y", "A1.Place.X", "A1.Place.r", "A1.Place.anything"}) {
        EXPECT_EQ(driven(name), "Place 1") << name;
    }
    EXPECT_EQ(driven("A1.Place"), "nothing");
}

TEST_F(ProjectTracksTest, DriveTheChannelsOfAVec4) {
    const char* letters[4] = {"xr", "yg", "zb", "awRGBX1"};
    for (std::size_t channel = 0; channel < 4; ++channel) {
        for (const char* letter = letters[channel]; *letter != 0; ++letter) {
            EXPECT_EQ(driven(std::string("A1.Tint.") + *letter), "Tint " + std::to_string(channel))
                << *letter;
        }
    }
    EXPECT_EQ(driven("A1.Tint"), "nothing");
}

TEST_F(ProjectTracksTest, TakeTheLastCharacterThatIsNoDotForTheChannel) {
    EXPECT_EQ(driven("A1.Tint.some g"), "Tint 1");
    // "Tint." is cut at its last dot; the last character that is no dot is the "t" of the name.
    EXPECT_EQ(driven("A1.Tint."), "Tint 3");
    EXPECT_EQ(driven("A1.Tint.b."), "nothing") << "cut at the last dot, it is \"Tint.b\"";
}

TEST_F(ProjectTracksTest, FindTheirOwnersIdAnywhereInTheName) {
    EXPECT_EQ(driven("someA1.Size"), "Size 0");
    EXPECT_EQ(driven("A1-Size"), "Size 0") << "the character after the id is passed over";
    EXPECT_EQ(driven("Size"), "nothing");
    EXPECT_EQ(driven("A1"), "nothing");
    EXPECT_EQ(driven("A1."), "nothing");
    EXPECT_EQ(driven("A1.."), "nothing");
    EXPECT_EQ(driven(""), "nothing");
}

TEST_F(ProjectTracksTest, DriveTheLastOfSeveralValuesOfOneName) {
    TestNode& node = engine_.makeNode("A1");
    float second = 0, third = 0;
    bool notAFloat = false;
    engine_.declareFloat(&node, "Size", second, 0, 1, 2, 0, true);
    engine_.declareFloat(&node, "Size", third, 0, 1, 2, 0, true);
    engine_.declareBool(&node, "Size", notAFloat, false);
    ProjectFile file;
    file.tracks(1).text("A1").word(1).text("A1.Size").text("A1").word(0).word(0).word(0);
    merge(file.bytes(), "");
    EXPECT_EQ(engine_.track("A1").target, &third);
}

TEST_F(ProjectTracksTest, AreFiledUnderTheirOwnerNotUnderTheSectionsId) {
    ProjectFile file;
    file.types(1).text("A1").text("Node");
    file.tracks(1).text("Other").word(1).text("A1.Size").text("A1").word(0).word(0).word(0);
    load(file.bytes());
    EXPECT_EQ(engine_.tracks.find("Other"), nullptr);
    EXPECT_EQ(engine_.track("A1").target, &engine_.node("A1").size);
    EXPECT_THAT(said_, IsEmpty());
}

TEST_F(ProjectTracksTest, OfAnAbsentOwnerAreKeptWithoutATargetAndSaved) {
    ProjectFile file;
    file.tracks(1).text("Gone").word(1).text("Gone.Size").text("Gone").word(3).word(4).word(2);
    file.number(1).number(2).word(1).number(5).number(6).word(2);
    load(file.bytes());
    EXPECT_EQ(engine_.track("Gone").owner, nullptr);
    EXPECT_EQ(engine_.track("Gone").target, nullptr);
    for (const float time : {0.0f, 3.0f, 9.0f}) engine_.update(time);
    const std::string bytes = saved(engine_);
    EXPECT_TRUE(bytes.ends_with(file.bytes().substr(4))) << "the section is written as it was read";
}

}  // namespace
