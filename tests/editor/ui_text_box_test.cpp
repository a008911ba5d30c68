#include "editor/ui_text_box.h"

#include "platform/debug_output.h"
#include "platform/user_dialogs.h"
#include "widget_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UiTextBoxTest : public WidgetTest {
  protected:
    UiTextBoxTest() {
        box.listener = &listener;
        box.value.defaultValue = "default";
        master.AddTopLevel(&box);
    }
    void focus() {
        EXPECT_TRUE(send(box, UI_EventType::LeftUp, 20, 50));
        ASSERT_TRUE(box.focused);
    }
    void chooseFile(std::optional<std::string> answer) {
        const FileDialogHandler before = SetFileDialogHandler([&](std::string_view pattern) {
            EXPECT_EQ(pattern, "*.*");
            return answer;
        });
        EXPECT_TRUE(send(box, UI_EventType::MiddleUp, 20, 50));
        SetFileDialogHandler(before);
    }

    std::string content = "before";
    UI_TextBox box{BoundValue<ValueString>(&content, handler), 5, 40, 380};
};

class UiTextBoxDrawTest : public WidgetDrawTest {};

}  // namespace

TEST_F(UiTextBoxTest, TypesAndTakesTheTextOverAtReturn) {
    focus();
    EXPECT_EQ(master.captured, &box);
    EXPECT_TRUE(master.capturedOnTop);
    type(box, " Ab1");
    EXPECT_EQ(box.buffer, "before Ab1");
    EXPECT_EQ(content, "before");
    press(box, kKeyReturn);
    EXPECT_TRUE(box.focused) << "the release counts";
    EXPECT_TRUE(release(box, kKeyReturn));
    EXPECT_EQ(content, "before Ab1");
    EXPECT_FALSE(box.focused);
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_THAT(listener.edited, ElementsAre(&box));
}

TEST_F(UiTextBoxTest, DropsWhatWasTypedAtAClick) {
    focus();
    type(box, "x");
    send(box, UI_EventType::LeftUp, 900, 900);
    EXPECT_FALSE(box.focused);
    EXPECT_EQ(master.captured, nullptr);
    EXPECT_EQ(content, "before");
    EXPECT_THAT(listener.edited, IsEmpty());
    focus();
    EXPECT_EQ(box.buffer, "before");
}

TEST_F(UiTextBoxTest, AcceptsTheCharactersOfFileNamesAndNumbersOnly) {
    std::string accepted;
    for (int c = -300; c < 70000; ++c) {
        box.buffer.clear();
        focus();
        box.buffer.clear();
        send(box, UI_EventType::CharInput, 0, 0, c);
        accepted += box.buffer;
        release(box, kKeyReturn);
    }
    EXPECT_EQ(accepted, " +,-.0123456789:ABCDEFGHIJKLMNOPQRSTUVWXYZ\\abcdefghijklmnopqrstuvwxyz");
}

TEST_F(UiTextBoxTest, TypesUpToEightyCharacters) {
    focus();
    box.buffer = std::string(79, 'a');
    type(box, "bc");
    EXPECT_EQ(box.buffer, std::string(79, 'a') + "b");
    press(box, kKeyBack);
    type(box, "d");
    EXPECT_EQ(box.buffer, std::string(79, 'a') + "d");
}

TEST_F(UiTextBoxTest, TypesNothingIntoALongerTextFromElsewhere) {
    content = std::string(300, 'x');
    focus();
    type(box, "y");
    release(box, kKeyReturn);
    EXPECT_EQ(content, std::string(300, 'x'));
}

TEST_F(UiTextBoxTest, HoldsAThousandAndTwentyThreeBytes) {
    content = std::string(5000, 'x');
    box.TakeValue();
    EXPECT_EQ(box.buffer.size(), 1023u);
    EXPECT_EQ(content.size(), 5000u) << "to look at a text does not cut it";
}

TEST_F(UiTextBoxTest, TakesWholeCharactersOffTheEnd) {
    focus();
    box.buffer = "a\xC3\xA9";
    press(box, kKeyBack);
    EXPECT_EQ(box.buffer, "a");
    for (int i = 0; i < 3; ++i) press(box, kKeyBack);
    EXPECT_EQ(box.buffer, "");
    std::string text = "z\xF0\x9F\x98\x80";
    EraseLastCharacter(text);
    EXPECT_EQ(text, "z");
    text = "\xA9\xA9";
    EraseLastCharacter(text);
    EXPECT_EQ(text, "\xA9") << "bytes that make no character go one by one";
    text = "\xC3";
    EraseLastCharacter(text);
    EXPECT_EQ(text, "");
    text = "ab\x80\x80\x80\x80\x80";
    EraseLastCharacter(text);
    EXPECT_EQ(text.size(), 6u);
}

TEST_F(UiTextBoxTest, TakesNoLetterForAGestureWhileTyping) {
    focus();
    for (const int key : {'S', 's', 'P'}) EXPECT_TRUE(press(box, key));
    send(box, UI_EventType::RightUp, 20, 50);
    send(box, UI_EventType::MiddleUp, 20, 50);
    EXPECT_FALSE(box.keyed);
    EXPECT_TRUE(box.focused);
    EXPECT_THAT(handler.calls, IsEmpty());
    EXPECT_EQ(content, "before");
}

TEST_F(UiTextBoxTest, DoesNotBeginWhileAnotherHasTheCapture) {
    UI_TextBox other(BoundValue<ValueString>(&content, handler), 0, 0, 100);
    master.captured = &other;
    UI_Event event = {UI_EventType::LeftUp, 0, 20, 50, false, false};
    EXPECT_FALSE(box.HandleEvent(&event));
    EXPECT_FALSE(box.focused);
    master.captured = nullptr;
}

TEST_F(UiTextBoxTest, TakesTheNameOfAFile) {
    chooseFile("Graphics\\Sky.png");
    EXPECT_EQ(content, "Graphics\\Sky.png");
    EXPECT_EQ(box.buffer, content);
    EXPECT_THAT(listener.edited, ElementsAre(&box));
    EXPECT_EQ(master.captured, nullptr);
}

TEST_F(UiTextBoxTest, KeepsItsTextWhenNoFileIsChosenOrItsNameIsTooLong) {
    chooseFile(std::nullopt);
    const DebugCapture capture;
    chooseFile(std::string(1024, 'f'));
    EXPECT_THAT(capture.text(), testing::HasSubstr("longer than a text box holds"));
    EXPECT_EQ(content, "before");
    EXPECT_THAT(listener.edited, IsEmpty());
    chooseFile(std::string(1023, 'f'));
    EXPECT_EQ(content.size(), 1023u);
}

TEST_F(UiTextBoxTest, GoesBackToItsDefault) {
    send(box, UI_EventType::RightUp, 20, 50);
    EXPECT_EQ(content, "default");
    EXPECT_EQ(box.buffer, "default");
}

TEST_F(UiTextBoxTest, WritesKeysWhenKeyed) {
    EXPECT_TRUE(press(box, 'S'));
    EXPECT_FALSE(press(box, 'P'));
    focus();
    release(box, kKeyReturn);
    EXPECT_THAT(handler.calls, ElementsAre("add n7/Size", "key n7/Size", "key n7/Size"));
}

TEST_F(UiTextBoxDrawTest, ShowsItsText) {
    std::string content = "Sky.png";
    UI_TextBox box(BoundValue<ValueString>(&content, handler), 20, 40, 380);
    master.AddTopLevel(&box);
    content = "Sea.png";
    for (const bool keyed : {false, true}) {
        box.keyed = keyed;
        expectDraws(box, [&] {
            fill(slot(3), 20, 40, 380, 30);
            text(30, 60, "Size");
            text(20 + 126, 60, "Sea.png");
            if (keyed) outline(slot(9), 20, 40, 380, 30);
        });
    }
    EXPECT_EQ(box.buffer, "Sea.png");
}

TEST_F(UiTextBoxDrawTest, ShowsAFieldAndACursorWhileTyping) {
    std::string content = "Sky";
    UI_TextBox box(BoundValue<ValueString>(&content, handler), 20, 40, 380);
    master.AddTopLevel(&box);
    box.focused = true;
    box.buffer = "Se";
    expectDraws(box, [&] {
        fill(slot(8), 20, 40, 380, 30);
        text(30, 60, "Size");
        fill(slot(3), 20 + 124, 42, 251, 26);
        text(146, 60, "Se");
        text(146 + 2 + master.MeasureText(12, "Se"), 60, "|");
    });
    EXPECT_EQ(box.buffer, "Se") << "what is typed stays";
}

TEST_F(UiTextBoxDrawTest, ShowsTheEndOfATextThatIsLongerThanItsField) {
    const std::string path = "/home/someone/demos/the-long-way-home/Graphics/Sky.png";
    std::string content = path;
    UI_TextBox box(BoundValue<ValueString>(&content, handler), 20, 40, 380);
    master.AddTopLevel(&box);
    constexpr int kField = 380 - 126;
    ASSERT_GT(master.MeasureText(12, path), kField);
    std::size_t first = 0;
    while (master.MeasureText(12, "..." + path.substr(first)) > kField - 8) ++first;
    for (const bool focused : {false, true}) {
        box.focused = focused;
        expectDraws(box, [&] {
            const std::string shown = "..." + path.substr(first);
            fill(slot(focused ? 8 : 3), 20, 40, 380, 30);
            text(30, 60, "Size");
            if (focused) fill(slot(3), 20 + 124, 42, 251, 26);
            text(146, 60, shown);
            if (focused) text(146 + 2 + master.MeasureText(12, shown), 60, "|");
        });
    }
    EXPECT_EQ(box.buffer, path);
}
