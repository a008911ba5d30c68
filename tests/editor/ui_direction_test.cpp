#include "editor/ui_direction.h"

#include <cmath>
#include <limits>

#include "widget_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// At 5, 40: radius 90, centre 290, 145.
constexpr int kCx = 290, kCy = 145;

class UiDirectionTest : public WidgetTest {
  protected:
    UiDirectionTest() {
        dial.value.defaultValue[0] = 0.5f;
        dial.value.defaultValue[1] = -0.5f;
        master.AddTopLevel(&dial);
    }
    void expectVector(double x, double y) {
        EXPECT_NEAR(vector[0], x, 1e-6) << "a float quotient";
        EXPECT_NEAR(vector[1], y, 1e-6);
    }
    float vector[2] = {0, 1};
    UI_Direction dial{BoundValue<ValueVec2>(vector, handler), 40};
};

class UiDirectionDrawTest : public WidgetDrawTest {};

}  // namespace

TEST_F(UiDirectionTest, HasItsPlace) {
    EXPECT_EQ(dial.x, 5);
    EXPECT_EQ(dial.width, 380);
    EXPECT_EQ(dial.height, 200);
    EXPECT_EQ(dial.GetHeight(), 200);
}

TEST_F(UiDirectionTest, FollowsThePointerAndKeepsToTheDial) {
    EXPECT_FALSE(send(dial, UI_EventType::LeftDown, kCx + 45, kCy - 9));
    EXPECT_EQ(master.captured, &dial);
    EXPECT_TRUE(master.capturedOnTop);
    expectVector(0.5, -0.1);
    EXPECT_FALSE(send(dial, UI_EventType::MouseMove, kCx + 300, kCy + 400));
    expectVector(0.6, 0.8);
    EXPECT_FALSE(send(dial, UI_EventType::LeftUp, 0, 0));
    EXPECT_EQ(master.captured, nullptr);
    send(dial, UI_EventType::MouseMove, kCx, kCy);
    expectVector(0.6, 0.8);
}

TEST_F(UiDirectionTest, BeginsRightOfItsLabel) {
    send(dial, UI_EventType::LeftDown, 131, 100);
    EXPECT_FALSE(dial.dragging);
    EXPECT_EQ(master.captured, nullptr);
    send(dial, UI_EventType::LeftDown, 132, 100);
    EXPECT_TRUE(dial.dragging);
}

TEST_F(UiDirectionTest, SnapsToEightDirectionsAtLengthOneOrAHalf) {
    send(dial, UI_EventType::LeftDown, kCx, kCy);
    press(dial, kKeyControl);
    for (int degrees = 0; degrees < 360; ++degrees) {
        if (degrees % 90 == 30 || degrees % 90 == 60) continue;  // between two
        const double angle = degrees * M_PI / 180;
        // Cut from 30 to 60 degrees: diagonal.
        const bool diagonal = degrees % 90 > 30 && degrees % 90 < 60;
        const int sector = diagonal ? degrees / 90 * 2 + 1 : (degrees + 30) / 90 * 2;
        const double snapped = sector * M_PI / 4;
        for (const auto& [pixels, length] : {std::pair{2000.0, 1.0}, {5000.0, 1.0}}) {
            send(dial, UI_EventType::MouseMove,
                 kCx + static_cast<int>(std::lround(pixels * std::cos(angle))),
                 kCy + static_cast<int>(std::lround(pixels * std::sin(angle))));
            expectVector(length * std::cos(snapped), length * std::sin(snapped));
        }
    }
    send(dial, UI_EventType::MouseMove, kCx + 44, kCy);
    expectVector(0.5, 0);
    send(dial, UI_EventType::MouseMove, kCx + 45, kCy);
    expectVector(1, 0);
    send(dial, UI_EventType::MouseMove, kCx - 20, kCy + 20);
    expectVector(-0.5 * M_SQRT1_2, 0.5 * M_SQRT1_2);
    release(dial, kKeyControl);
    send(dial, UI_EventType::MouseMove, kCx + 9, kCy);
    expectVector(0.1, 0);
}

TEST_F(UiDirectionTest, BeginsWithoutSnapping) {
    press(dial, kKeyControl);
    EXPECT_TRUE(dial.snapping);
    send(dial, UI_EventType::LeftDown, kCx + 9, kCy);
    EXPECT_FALSE(dial.snapping);
    expectVector(0.1, 0);
}

TEST_F(UiDirectionTest, HasNoDirectionAtTheCentreWhenSnapping) {
    send(dial, UI_EventType::LeftDown, kCx + 9, kCy);
    press(dial, kKeyControl);
    send(dial, UI_EventType::MouseMove, kCx, kCy);
    EXPECT_FALSE(std::isfinite(vector[0]));
    EXPECT_FALSE(std::isfinite(vector[1]));
    send(dial, UI_EventType::MouseMove, kCx + 90, kCy);
    expectVector(1, 0);
}

TEST_F(UiDirectionTest, GoesBackToItsDefault) {
    EXPECT_FALSE(send(dial, UI_EventType::RightUp, 20, 50));
    expectVector(0.5, -0.5);
    EXPECT_THAT(handler.calls, IsEmpty());
}

TEST_F(UiDirectionTest, KeysChangesOfAnAnimatedDirection) {
    EXPECT_FALSE(press(dial, 'S'));
    EXPECT_TRUE(dial.keyed);
    send(dial, UI_EventType::MouseMove, kCx, kCy);
    EXPECT_THAT(handler.calls, ElementsAre("add n7/Size")) << "a mere move is no change";
    send(dial, UI_EventType::LeftDown, kCx + 45, kCy);
    send(dial, UI_EventType::MouseMove, kCx + 46, kCy);
    send(dial, UI_EventType::LeftUp, kCx + 46, kCy);
    send(dial, UI_EventType::RightUp, kCx + 46, kCy);
    press(dial, 'P');
    EXPECT_EQ(handler.calls.size(), 5u);
    EXPECT_EQ(handler.calls.back(), "key n7/Size");
    press(dial, 's');
    EXPECT_EQ(handler.calls.back(), "remove n7/Size");
}

TEST_F(UiDirectionTest, LeavesTheCaptureOfAnotherAlone) {
    UI_Direction other(BoundValue<ValueVec2>(vector, handler), 0);
    master.captured = &other;
    UI_Event event = {UI_EventType::LeftUp, 0, kCx, kCy, false, false};
    dial.HandleEvent(&event);
    EXPECT_EQ(master.captured, &other);
    event.type = UI_EventType::LeftDown;
    dial.HandleEvent(&event);
    EXPECT_FALSE(dial.dragging);
    expectVector(0, 1);
    master.captured = nullptr;
}

TEST_F(UiDirectionDrawTest, ShowsADialWithItsVector) {
    float vector[2] = {0.5f, -0.3f};
    UI_Direction dial(BoundValue<ValueVec2>(vector, handler), 40);
    master.AddTopLevel(&dial);
    const Vec4 dimmed = {0.95f * 0.75f, 0.95f * 0.75f, 0.95f * 0.75f, 0.75f};
    for (const bool keyed : {false, true}) {
        dial.keyed = keyed;
        expectDraws(dial, [&] {
            fill(slot(3), 5, 40, 380, 200);
            text(15, 60, "Size");
            text(20, 80, "X: 0.50");
            text(20, 96, "Y: -0.30");
            master.SetColor(slot(0));
            master.DrawRing(kCx, kCy, 90);
            master.SetColor(dimmed);
            master.DrawRing(kCx, kCy, 45);
            line(dimmed, 1, kCx, kCy - 10, kCx, kCy + 10);
            line(dimmed, 1, kCx - 10, kCy, kCx + 10, kCy);
            line(slot(0), 1, kCx, kCy, 335, 118);
            fill({0, 0, 0, 0.5f}, 334, 117, 7, 7);
            fill(slot(0), 332, 115, 6, 6);
            if (keyed) outline(slot(9), 5, 40, 380, 200);
        });
    }
}

TEST_F(UiDirectionDrawTest, SurvivesAVectorThatIsNone) {
    for (const float bad : {std::numeric_limits<float>::quiet_NaN(), 3e38f, -3e38f}) {
        float vector[2] = {bad, bad};
        UI_Direction dial(BoundValue<ValueVec2>(vector, handler), 40);
        master.AddTopLevel(&dial);
        begin(kBackground);
        dial.Draw();
        const Picture drawn = end();
        EXPECT_LE(Difference(drawn.at(6, 236), slot(3)), kBlendTolerance);
    }
}
