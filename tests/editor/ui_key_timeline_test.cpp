#include "editor/ui_key_timeline.h"

#include "authoring_fixture.h"
#include "editor/key_edit.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<float> TimesOf(const std::vector<Keyframe>& keys) {
    std::vector<float> times;
    for (const Keyframe& key : keys) times.push_back(key.time);
    return times;
}

class KeyTimelineTest : public AuthoringTest {
  protected:
    void SetUp() override {
        AuthoringTest::SetUp();
        if (HasFatalFailure()) return;
        makeScene();
        engine.addAnimation("a", "Size");
        track().setKeys({{0, 0, kKeyCosine}, {1, 2, kKeyLinear}, {3, 4, kKeyEaseIn}});
        edit();
        ui.SetLayoutMode(kLayoutKeyTimeline);
        timeline().view.startSeconds = -1;
        timeline().view.pixelsPerSecond = 100;
        timeline().view.topValue = 4;
        timeline().view.pixelsPerValue = 80;
    }
    UI_KeyTimeline& timeline() { return *ui.keyTimeline; }
    KeyframeTrack& track() { return *engine.tracks.find("a")->at(0); }
    int x(float seconds) { return timeline().view.xOf(seconds); }
    int y(float value) { return timeline().view.yOf(value); }
    int rulerY() { return timeline().view.top - 10; }
    void drag(int fromX, int fromY, int toX, int toY) {
        send(kMessageLeftDown, fromX, fromY);
        send(kMessageMouseMove, (fromX + toX) / 2, (fromY + toY) / 2);
        send(kMessageMouseMove, toX, toY);
        send(kMessageLeftUp, toX, toY);
    }
    void hold(int virtualKey) { send(kMessageKeyDown, 0, 0, virtualKey); }
};

}  // namespace

TEST_F(KeyTimelineTest, ListsTracksByDisplayNamesInTheEnginesOrder) {
    ui.master.displayNames["b"] = "Sky.blue";
    engine.addAnimation("b", "Place");
    engine.addAnimation("a", "Translate.X");
    frame();
    EXPECT_THAT(timeline().trackChoice.options,
                ElementsAre("a.Size", "a.Translate.X", "Sky.blue.Place.x", "Sky.blue.Place.y"));
    EXPECT_THAT(timeline().trackSelection->value.options, timeline().trackChoice.options);
    EXPECT_EQ(timeline().tracks, engine.allTracks());
}

TEST_F(KeyTimelineTest, ARefreshClosesTheOpenChoice) {
    UI_Selection& selection = *timeline().trackSelection;
    send(kMessageLeftDown, selection.x + selection.width / 2, selection.y + 10);
    ASSERT_TRUE(selection.open);
    ui.RefreshTimeline();
    EXPECT_FALSE(selection.open);
    EXPECT_EQ(ui.master.captured, nullptr);
}

TEST_F(KeyTimelineTest, AValueThatIsAnimatedIsChosenAtOnce) {
    engine.addAnimation("b", "Tint");
    frame();
    EXPECT_EQ(timeline().ChosenTrack()->name, "b.Tint.r");
    engine.removeAnimation("b", "Tint");
    frame();
    EXPECT_EQ(timeline().ChosenTrack()->name, "a.Size");
}

TEST_F(KeyTimelineTest, PickedKeysStayPickedWhenKeysComeAndGoElsewhere) {
    timeline().PickKeys({1, 2});
    track().insertKey(0.5f, 1);
    EXPECT_THAT(timeline().PickedIndices(), ElementsAre(2, 3));
    track().eraseKey(2);
    EXPECT_THAT(timeline().PickedIndices(), ElementsAre(2)) << "that key has gone";
    track().insertKey(0.25f, 1);
    send(kMessageMouseMove, x(0.75f), y(3.5f));
    send(kMessageKeyDown, x(0.75f), y(3.5f), kKeyDelete);
    EXPECT_THAT(TimesOf(track().keys()), ElementsAre(0, 0.25f, 0.5f));
}

TEST_F(KeyTimelineTest, ThePickedOneOfKeysAtTheSameTimeStaysPicked) {
    track().setKeys({{0, 1, 0}, {1, 2, 0}, {2, 2, 0}, {3, 2, 0}});
    timeline().PickKeys({2});
    track().insertKey(0.5f, 1);
    timeline().SetModeOfPicked(kKeyEaseOut);
    EXPECT_THAT(timeline().PickedIndices(), ElementsAre(3));
    EXPECT_EQ(track().keys()[3].mode, kKeyEaseOut);
    EXPECT_EQ(track().keys()[3].value, 2);
    EXPECT_EQ(track().keys()[2].mode, 0);
}

TEST_F(KeyTimelineTest, TheChosenTrackStaysChosenThroughARefresh) {
    engine.addAnimation("a", "Size2");
    frame();
    timeline().ChooseTrack(1);
    engine.removeAnimation("a", "Size");
    frame();
    EXPECT_EQ(timeline().trackChoice.value, 0);
    EXPECT_EQ(timeline().ChosenTrack()->name, "a.Size2");
}

TEST_F(KeyTimelineTest, APressOnARowOfTheListChoosesItsTrack) {
    engine.addAnimation("a", "Size2");
    frame();
    click(timeline().x + 30, timeline().y + 36 + 18 + 5);
    EXPECT_EQ(timeline().ChosenTrack()->name, "a.Size2");
}

TEST_F(KeyTimelineTest, TheRulerMovesTheClockAndTheMusic) {
    soundNotes.calls.clear();
    engine.music->play();
    click(x(3), rulerY());
    EXPECT_FLOAT_EQ(ui.editorTime, 3);
    EXPECT_EQ(soundNotes.calls.back(), "position 3000");
    drag(x(3), rulerY(), x(-0.5f), rulerY());
    EXPECT_EQ(ui.editorTime, 0);
    EXPECT_EQ(ui.master.captured, nullptr);
}

TEST_F(KeyTimelineTest, ADoubleClickAddsAKeyOnTheBeat) {
    send(kMessageLeftDoubleClick, x(1.02f), y(2));
    send(kMessageLeftUp, x(1.02f), y(2));
    ASSERT_EQ(track().keys().size(), 4u);
    EXPECT_FLOAT_EQ(track().keys()[1].time, 1);
    EXPECT_NEAR(track().keys()[1].value, 2, 0.01);  // a pixel is an eightieth
    EXPECT_EQ(track().keys()[1].mode, kKeyCosine);
    EXPECT_THAT(timeline().PickedIndices(), ElementsAre(1u));
}

TEST_F(KeyTimelineTest, WithCtrlNothingSnaps) {
    hold(kKeyControl);
    send(kMessageLeftDoubleClick, x(1.03f), y(2));
    EXPECT_NEAR(track().keys()[1].time, 1.03, 0.006);  // half a pixel
}

TEST_F(KeyTimelineTest, DraggingAKeyMovesItInTimeAndValue) {
    drag(x(2), y(1), x(3), y(2));
    EXPECT_THAT(TimesOf(track().keys()), ElementsAre(0, 3, 4));
    EXPECT_NEAR(track().keys()[1].value, 2, 0.02);
    EXPECT_EQ(track().keys()[1].mode, kKeyLinear) << "the easing goes along";
    engine.update(3);
    EXPECT_NEAR(node("a").size, 2, 0.02) << "it plays at once";
}

TEST_F(KeyTimelineTest, AKeyDraggedPastAnotherKeepsTheOrderAndStaysPicked) {
    drag(x(0), y(0), x(3), y(0));
    EXPECT_THAT(TimesOf(track().keys()), ElementsAre(2, 3, 4));
    EXPECT_THAT(timeline().PickedIndices(), ElementsAre(1u));
}

TEST_F(KeyTimelineTest, ShiftMovesOneWayOnly) {
    ui.master.readShiftKey = [] { return true; };
    drag(x(2), y(1), x(3), y(1.1f));
    EXPECT_EQ(track().keys()[1].time, 3);
    EXPECT_EQ(track().keys()[1].value, 1);
}

TEST_F(KeyTimelineTest, AClickAloneMovesNothing) {
    const std::vector<Keyframe> before = track().keys();
    click(x(2) + 2, y(1) - 2);
    EXPECT_THAT(timeline().PickedIndices(), ElementsAre(1u));
    EXPECT_EQ(track().keys()[1].time, before[1].time);
    EXPECT_EQ(track().keys()[1].value, before[1].value);
    click(x(3), y(3.5f));
    EXPECT_THAT(timeline().PickedIndices(), IsEmpty());
}

TEST_F(KeyTimelineTest, EscapeBringsADraggedKeyBack) {
    send(kMessageLeftDown, x(2), y(1));
    send(kMessageMouseMove, x(3), y(3));
    send(kMessageKeyUp, x(3), y(3), kKeyEscape);
    EXPECT_EQ(ui.master.captured, nullptr);
    EXPECT_THAT(TimesOf(track().keys()), ElementsAre(0, 2, 4));
    EXPECT_EQ(track().keys()[1].value, 1);
}

TEST_F(KeyTimelineTest, AFrameOrShiftPicksSeveralKeysThatMoveTogether) {
    drag(x(-0.5f), y(3.9f), x(2.5f), y(-0.4f));
    EXPECT_THAT(timeline().PickedIndices(), ElementsAre(0u, 1u));
    drag(x(2), y(1), x(2.5f), y(1));
    EXPECT_THAT(TimesOf(track().keys()), ElementsAre(0.5f, 2.5f, 4));
    ui.master.readShiftKey = [] { return true; };
    click(x(4), y(3));
    EXPECT_EQ(timeline().PickedIndices().size(), 3u);
}

TEST_F(KeyTimelineTest, RightPressesGoThroughTheFourEasings) {
    for (const std::int32_t mode : {kKeyEaseIn, kKeyEaseOut, kKeyCosine, kKeyLinear}) {
        send(kMessageRightDown, x(2), y(1));
        EXPECT_EQ(track().keys()[1].mode, mode);
    }
}

TEST_F(KeyTimelineTest, AModeButtonEasesAllPickedKeys) {
    timeline().PickKeys({0, 2});
    press(timeline().modeButtons[kKeyEaseOut].get());
    EXPECT_EQ(track().keys()[0].mode, kKeyEaseOut);
    EXPECT_EQ(track().keys()[1].mode, kKeyLinear);
    EXPECT_EQ(track().keys()[2].mode, kKeyEaseOut);
}

TEST_F(KeyTimelineTest, DeleteRemovesThePickedKeys) {
    timeline().PickKeys({0, 2});
    key(kKeyDelete, x(1), y(2));
    EXPECT_THAT(TimesOf(track().keys()), ElementsAre(2));
    EXPECT_THAT(timeline().PickedIndices(), IsEmpty());
    timeline().PickKeys({0});
    press(timeline().deleteButton.get());
    EXPECT_THAT(track().keys(), IsEmpty());
    frame();
    ui.DrawFrame();
}

TEST_F(KeyTimelineTest, PickedKeysThatHaveGoneDoNoHarm) {
    timeline().PickKeys({2, 57});
    ui.DrawFrame();
    timeline().SetModeOfPicked(kKeyLinear);
    key(kKeyDelete, x(1), y(2));
    EXPECT_EQ(track().keys().size(), 2u);
}

TEST_F(KeyTimelineTest, ATrackThatGoesDuringADragEndsIt) {
    send(kMessageLeftDown, x(2), y(1));
    send(kMessageMouseMove, x(2.5f), y(1));
    engine.removeAnimation("a", "Size");
    send(kMessageMouseMove, x(3), y(2));
    send(kMessageLeftUp, x(3), y(2));
    EXPECT_EQ(ui.master.captured, nullptr);
    ui.DrawFrame();
}

TEST_F(KeyTimelineTest, TheWheelZoomsAboutThePointerAndTheMiddleButtonPans) {
    const int pixel = x(2);
    send(kMessageMouseMove, pixel, y(1));
    send(kMessageWheel, 0, 0, 120);
    EXPECT_FLOAT_EQ(timeline().view.pixelsPerSecond, 125);
    EXPECT_EQ(x(2), pixel);
    const float topValue = timeline().view.topValue;
    send(kMessageMiddleDown, 700, 800);
    send(kMessageMouseMove, 700 + 125, 840);
    send(kMessageMiddleUp, 700 + 125, 840);
    EXPECT_EQ(x(2), pixel + 125);
    EXPECT_FLOAT_EQ(timeline().view.topValue, topValue + 0.5f);
    EXPECT_EQ(ui.master.captured, nullptr);
}

TEST_F(KeyTimelineTest, HomeShowsTheWholeTrack) {
    key(kKeyHome, x(1), y(2));
    for (const Keyframe& k : track().keys()) {
        EXPECT_TRUE(timeline().Contains(x(k.time), y(k.value)));
    }
}

TEST_F(KeyTimelineTest, AFramedViewFollowsKeysThatComeFromElsewhere) {
    timeline().FrameTrack();
    track().setKeys({{0, 0, kKeyCosine}, {9, 40, kKeyCosine}});
    ui.DrawFrame();
    EXPECT_GE(timeline().view.timeAt(timeline().view.left + timeline().view.width), 40);
    EXPECT_GE(timeline().view.topValue, 9);
    // Not any more once someone has chosen what to see.
    send(kMessageMouseMove, x(20), y(4));
    send(kMessageWheel, x(20), y(4), 120);
    const KeyTimelineView chosen = timeline().view;
    track().setKeys({{0, 0, kKeyCosine}, {90, 80, kKeyCosine}});
    ui.DrawFrame();
    EXPECT_EQ(timeline().view.pixelsPerSecond, chosen.pixelsPerSecond);
    EXPECT_EQ(timeline().view.topValue, chosen.topValue);
}

TEST_F(KeyTimelineTest, AShortTrackIsShownFromTheStartOfTheDemo) {
    track().setKeys({{0, 0, kKeyCosine}, {1, 1, kKeyCosine}});
    timeline().FrameTrack();
    EXPECT_LT(timeline().view.startSeconds, 0) << "with some room before its first key";
    EXPECT_GT(timeline().view.startSeconds, -1);
    EXPECT_GE(timeline().view.timeAt(timeline().view.left + timeline().view.width), 8);
}

TEST_F(KeyTimelineTest, AHiddenTimelineHearsNothing) {
    timeline().PickKeys({1});
    timeline().hidden = true;
    const UI_Event event{UI_EventType::KeyDown, kKeyDelete, x(1), y(2), false, false};
    UI_Event copy = event;
    EXPECT_FALSE(timeline().HandleEvent(&copy));
    EXPECT_EQ(track().keys().size(), 3u);
}

TEST_F(KeyTimelineTest, NumbersThatAreNoneAndKeysOutOfOrderAreDrawn) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    track().setKeys({{nan, 3, 9}, {inf, 1, -4}, {2, nan, 0}, {-inf, 1e30f, 2}});
    key(kKeyHome, x(1), y(2));
    for (int i = 0; i < 3; ++i) {
        ui.DrawFrame();
        send(kMessageMouseMove, 800, 800);
        send(kMessageWheel, 0, 0, -120);
    }
}

TEST(MoveKeysTest, StopsAtTimeZeroTogether) {
    const PickedKeys after = MoveKeys({{{1, 1, 0}, {2, 2, 0}, {3, 5, 0}}, {0, 1}}, -4, 0.5f);
    EXPECT_THAT(TimesOf(after.keys), ElementsAre(0, 1, 5));
    EXPECT_EQ(after.keys[0].value, 1.5f);
    EXPECT_EQ(after.keys[2].value, 3);
    EXPECT_THAT(after.picked, ElementsAre(0u, 1u));
}

TEST(MoveKeysTest, AMovedKeyReplacesOneAtItsTime) {
    const PickedKeys after = MoveKeys({{{1, 1, 0}, {2, 2, 0}, {3, 5, 0}}, {0}}, 4, 0);
    EXPECT_THAT(TimesOf(after.keys), ElementsAre(2, 5));
    EXPECT_EQ(after.keys[1].value, 1);
    EXPECT_THAT(after.picked, ElementsAre(1u));
}

TEST(NextKeyModeTest, StrangeModesCountAsCosine) {
    EXPECT_EQ(NextKeyMode(17), kKeyLinear);
    EXPECT_EQ(NextKeyMode(-1), kKeyLinear);
    EXPECT_EQ(NextKeyMode(kKeyEaseOut), kKeyCosine);
}

TEST(BeatGridTest, StepsAreBeatsAndWholeMultiples) {
    const BeatGrid grid{120};
    EXPECT_FLOAT_EQ(grid.beatSeconds(), 0.5f);
    EXPECT_FLOAT_EQ(grid.stepAtLeast(0.1f), 0.125f);
    EXPECT_FLOAT_EQ(grid.stepAtLeast(0.2f), 0.5f);
    EXPECT_FLOAT_EQ(grid.stepAtLeast(0.6f), 2);
    EXPECT_FLOAT_EQ(BeatGrid::Snapped(1.3f, 0.5f), 1.5f);
    EXPECT_GT(BeatGrid{0}.beatSeconds(), 0);
}

TEST(RoundStepTest, IsOneTwoOrFiveTimesAPowerOfTen) {
    EXPECT_FLOAT_EQ(RoundStepAtLeast(0.03f), 0.05f);
    EXPECT_FLOAT_EQ(RoundStepAtLeast(1), 1);
    EXPECT_FLOAT_EQ(RoundStepAtLeast(120), 200);
    EXPECT_FLOAT_EQ(RoundStepAtLeast(0.6f), 1);
    EXPECT_GT(RoundStepAtLeast(0), 0);
}
