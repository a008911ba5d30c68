// The time switches of pictures and of cameras.
#include <gmock/gmock.h>

#include "core/image_node_time_switch.h"
#include "core/transform3d_node_time_switch.h"
#include "support/core_nodes.h"

namespace {

using ::testing::Each;
using ::testing::ElementsAre;

template <typename Switch>
class SwitchTest : public ::testing::Test {
  protected:
    SwitchTest() {
        engine_.addNode("S", std::make_unique<Switch>(&engine_, "S"));
        switch_ = dynamic_cast<Switch*>(engine_.findNode("S"));
    }
    void setWindow(char letter, const std::string& start, const std::string& stop) {
        set(std::string("Start ") + letter, start);
        set(std::string("Stop ") + letter, stop);
    }
    void set(const std::string& name, const std::string& text) {
        *dynamic_cast<ValueString&>(*engine_.findValue(switch_, name)).data = text;
    }
    // One frame in which only the switch is pulled.
    bool pullAt(float time) {
        engine_.update(time);
        return switch_->pull();
    }

    TestEngine engine_;
    Switch* switch_ = nullptr;
};

class ImageSwitchTest : public SwitchTest<ImageNode_TimeSwitch> {
  protected:
    ImageSwitchTest() : source_(engine_.makeNode("A")) {
        for (auto& image : source_.images) image = std::make_shared<FakeImage>();
        source_.textureMatrix[0] = 3;
        engine_.connect("A", "S", 0);
    }
    bool shows() const { return switch_->images == source_.images; }
    bool isEmpty() const { return switch_->images == decltype(switch_->images){}; }
    TestNode& source_;
};

TEST_F(ImageSwitchTest, HasOnePortForImagesAndEightTexts) {
    EXPECT_EQ(switch_->inputCount, 1);
    EXPECT_EQ(switch_->getInputName(0), "Image");
    std::vector<std::string> names;
    for (Value_Object* value : engine_.valuesOf(switch_)) {
        names.push_back(value->name);
        EXPECT_EQ(dynamic_cast<ValueString&>(*value).defaultValue, "0");
    }
    EXPECT_THAT(names, ElementsAre("Start A", "Stop A", "Start B", "Stop B", "Start C", "Stop C",
                                   "Start D", "Stop D"));
    engine_.createNode("C", "Camera");
    EXPECT_FALSE(switch_->canConnect(0, engine_.findNode("C")));
    EXPECT_FALSE(switch_->canConnect(0, nullptr));
    EXPECT_TRUE(switch_->canConnect(0, &source_));
}

TEST_F(ImageSwitchTest, PassesThePictureAndItsMatrixInsideAWindow) {
    setWindow('B', "1.5", "4");
    EXPECT_TRUE(pullAt(2));
    EXPECT_TRUE(shows());
    EXPECT_EQ(switch_->textureMatrix[0], 3.0f);
    EXPECT_EQ(switch_->hidden, 0);
    EXPECT_TRUE(switch_->updated);
    EXPECT_EQ(source_.processed, 1);
}

TEST_F(ImageSwitchTest, HoldsItsStartAndItsStop) {
    setWindow('A', "1", "2");
    for (const float time : {1.0f, 2.0f}) {
        EXPECT_TRUE(pullAt(time));
        EXPECT_TRUE(shows()) << time;
    }
    for (const float time : {0.999f, 2.001f}) {
        EXPECT_FALSE(pullAt(time));
        EXPECT_TRUE(isEmpty()) << time;
    }
}

TEST_F(ImageSwitchTest, ShowsNothingAndRunsNothingOutsideItsLiveWindows) {
    setWindow('A', "1", "2");
    setWindow('D', "5", "6");
    pullAt(1.5f);
    const int runs = source_.processed;
    EXPECT_FALSE(pullAt(3));
    EXPECT_TRUE(isEmpty());
    EXPECT_EQ(switch_->hidden, 1);
    EXPECT_TRUE(switch_->updated);
    EXPECT_EQ(source_.processed, runs);
}

TEST_F(ImageSwitchTest, ShowsAgainWhenALaterWindowMatches) {
    setWindow('A', "1", "2");
    setWindow('C', "5", "6");
    pullAt(3);
    EXPECT_TRUE(pullAt(5.5f));
    EXPECT_TRUE(shows());
    EXPECT_EQ(switch_->hidden, 0);
}

TEST_F(ImageSwitchTest, LooksAtNoWindowAfterTheOneThatMatches) {
    setWindow('A', "1", "9");
    setWindow('B', "20", "30");
    EXPECT_TRUE(pullAt(5));
    EXPECT_EQ(switch_->hidden, 0);
    EXPECT_TRUE(shows());
}

TEST_F(ImageSwitchTest, NeitherMatchesNorHidesByAWindowWithoutLength) {
    setWindow('A', "1", "1");
    setWindow('B', "5", "3");
    EXPECT_FALSE(pullAt(1));
    EXPECT_EQ(switch_->hidden, 0);
    EXPECT_EQ(source_.processed, 0);
}

TEST_F(ImageSwitchTest, KeepsWhatItShowsWithoutAnyLiveWindow) {
    setWindow('A', "1", "2");
    pullAt(1.5f);
    setWindow('A', "0", "0");
    EXPECT_FALSE(pullAt(1.6f));
    EXPECT_TRUE(shows());
    EXPECT_EQ(switch_->hidden, 0);
    EXPECT_EQ(source_.processed, 1);
}

TEST_F(ImageSwitchTest, LosesItsPictureWhenItMatchesWithoutASourceAfterAMissedWindow) {
    setWindow('A', "0", "1");
    setWindow('B', "2", "3");
    pullAt(0.5f);
    engine_.disconnect("S", 0);
    EXPECT_FALSE(pullAt(0.6f));
    EXPECT_FALSE(isEmpty()) << "the first window matches, and nothing is cleared";
    EXPECT_FALSE(pullAt(2.5f));
    EXPECT_TRUE(isEmpty());
    EXPECT_EQ(switch_->hidden, 0);
}

TEST_F(ImageSwitchTest, ReadsItsTextsOnEveryUpdateAndTakesNonsenseForZero) {
    setWindow('A', "no number", "2 seconds");
    EXPECT_TRUE(pullAt(1));
    setWindow('A', "", "0.5");
    EXPECT_FALSE(pullAt(1));
    setWindow('A', "nan", "2");
    EXPECT_FALSE(pullAt(1));
    EXPECT_EQ(switch_->hidden, 0) << "a window without a length is not live";
}

TEST_F(ImageSwitchTest, LeavesItsPictureAloneInTheLoadPass) {
    setWindow('A', "1", "2");
    pullAt(5);
    engine_.refreshNodes();
    EXPECT_TRUE(isEmpty());
    switch_->hidden = 0;
    engine_.refreshNodes();
    EXPECT_TRUE(isEmpty());
}

class CameraSwitchTest : public SwitchTest<Transform3DNode_TimeSwitch> {
  protected:
    CameraSwitchTest() {
        engine_.createNode("C", "Camera");
        camera_ = dynamic_cast<TestCamera*>(engine_.findNode("C"));
        for (int i = 0; i < 16; ++i) camera_->matrix[i] = static_cast<float>(i) + 0.5f;
        engine_.connect("C", "S", 0);
    }
    static std::vector<float> elements(const Mat4& matrix) { return {matrix.m, matrix.m + 16}; }
    TestCamera* camera_ = nullptr;
};

TEST_F(CameraSwitchTest, HasOnePortForMatrices) {
    EXPECT_EQ(switch_->inputCount, 1);
    EXPECT_EQ(switch_->getInputName(0), "Matrix");
    EXPECT_EQ(engine_.valuesOf(switch_).size(), 8u);
    EXPECT_FALSE(switch_->canConnect(0, &engine_.makeNode("A")));
    EXPECT_FALSE(switch_->canConnect(0, nullptr));
    EXPECT_EQ(switch_->getType(), 4);
}

TEST_F(CameraSwitchTest, TakesItsInputsMatrixInsideAWindow) {
    setWindow('C', "1", "2");
    EXPECT_TRUE(pullAt(2));
    EXPECT_EQ(elements(switch_->matrix), elements(camera_->matrix));
    EXPECT_EQ(camera_->processed, 1);
}

TEST_F(CameraSwitchTest, KeepsItsLastMatrixOutsideItsWindows) {
    setWindow('A', "1", "2");
    pullAt(1);
    const std::vector<float> last = elements(switch_->matrix);
    camera_->matrix[0] = 99;
    EXPECT_FALSE(pullAt(3));
    EXPECT_EQ(switch_->hidden, 1);
    EXPECT_TRUE(switch_->updated);
    EXPECT_EQ(elements(switch_->matrix), last);
    EXPECT_EQ(camera_->processed, 1);
}

TEST_F(CameraSwitchTest, BecomesTheIdentityInTheLoadPassWhenHidden) {
    setWindow('A', "1", "2");
    pullAt(1);
    pullAt(3);
    engine_.refreshNodes();
    EXPECT_EQ(elements(switch_->matrix), elements(Mat4()));
}

TEST_F(CameraSwitchTest, TakesItsInputsMatrixInTheLoadPassWhenNotHidden) {
    engine_.refreshNodes();
    EXPECT_EQ(elements(switch_->matrix), elements(camera_->matrix));
}

}  // namespace
