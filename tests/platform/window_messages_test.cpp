#include "platform/window_messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

using ::testing::ElementsAre;
using ::testing::IsEmpty;

bool operator==(const WindowMessage& a, const WindowMessage& b) {
    return a.message == b.message && a.value == b.value && a.x == b.x && a.y == b.y;
}
void PrintTo(const WindowMessage& m, std::ostream* out) {
    *out << m.message << " value " << m.value << " at " << m.x << ", " << m.y;
}

namespace {

constexpr WindowSizes kFullSize = {1920, 1080, 1920, 1080};

SDL_Event Key(Uint32 type, SDL_Keycode symbol, int modifiers = KMOD_NONE) {
    SDL_Event event = {};
    event.type = type;
    event.key.type = type;
    event.key.keysym.sym = symbol;
    event.key.keysym.scancode = SDL_GetScancodeFromKey(symbol);
    event.key.keysym.mod = static_cast<Uint16>(modifiers);
    return event;
}

SDL_Event Button(Uint32 type, Uint8 button, int x, int y, Uint8 clicks = 1) {
    SDL_Event event = {};
    event.type = type;
    event.button.type = type;
    event.button.button = button;
    event.button.x = x;
    event.button.y = y;
    event.button.clicks = clicks;
    return event;
}

SDL_Event Motion(int x, int y) {
    SDL_Event event = {};
    event.type = SDL_MOUSEMOTION;
    event.motion.x = x;
    event.motion.y = y;
    return event;
}

SDL_Event Wheel(float notches) {
    SDL_Event event = {};
    event.type = SDL_MOUSEWHEEL;
    event.wheel.y = static_cast<Sint32>(notches);
    event.wheel.preciseY = notches;
    return event;
}

SDL_Event Text(const char* utf8) {
    SDL_Event event = {};
    event.type = SDL_TEXTINPUT;
    std::strncpy(event.text.text, utf8, sizeof event.text.text - 1);
    return event;
}

std::vector<WindowMessage> Translate(const std::vector<SDL_Event>& events,
                                     const WindowSizes& sizes = kFullSize) {
    MessageTranslator translator;
    for (const SDL_Event& event : events) translator.translate(event, sizes);
    std::vector<WindowMessage> messages;
    for (WindowMessage message; translator.take(message);) messages.push_back(message);
    return messages;
}

std::int32_t KeyOf(SDL_Keycode symbol, int modifiers = KMOD_NONE) {
    return VirtualKeyOf(Key(SDL_KEYDOWN, symbol, modifiers).key.keysym);
}

}  // namespace

TEST(VirtualKeys, AreUpperCaseCharactersForLettersAndDigits) {
    EXPECT_EQ(KeyOf(SDLK_a), 'A');
    EXPECT_EQ(KeyOf(SDLK_s), 83);
    EXPECT_EQ(KeyOf(SDLK_p), 80);
    EXPECT_EQ(KeyOf(SDLK_z), 'Z');
    EXPECT_EQ(KeyOf(SDLK_0), '0');
    EXPECT_EQ(KeyOf(SDLK_9), '9');
}

TEST(VirtualKeys, AreTheSameForLeftAndRightModifiers) {
    EXPECT_EQ(KeyOf(SDLK_LCTRL), 17);
    EXPECT_EQ(KeyOf(SDLK_RCTRL), 17);
    EXPECT_EQ(KeyOf(SDLK_LSHIFT), 16);
    EXPECT_EQ(KeyOf(SDLK_RSHIFT), 16);
}

TEST(VirtualKeys, CoverTheKeysThatTheEditorReadsBy) {
    EXPECT_EQ(KeyOf(SDLK_BACKSPACE), 8);
    EXPECT_EQ(KeyOf(SDLK_RETURN), 13);
    EXPECT_EQ(KeyOf(SDLK_KP_ENTER), 13);
    EXPECT_EQ(KeyOf(SDLK_ESCAPE), 27);
    EXPECT_EQ(KeyOf(SDLK_SPACE), 32);
    EXPECT_EQ(KeyOf(SDLK_HOME), 36);
    EXPECT_EQ(KeyOf(SDLK_LEFT), 37);
    EXPECT_EQ(KeyOf(SDLK_DOWN), 40);
    EXPECT_EQ(KeyOf(SDLK_DELETE), 46);
    EXPECT_EQ(KeyOf(SDLK_F1), 112);
    EXPECT_EQ(KeyOf(SDLK_F12), 123);
    EXPECT_EQ(KeyOf(SDLK_F13), 124);
    EXPECT_EQ(KeyOf(SDLK_F24), 135);
    EXPECT_EQ(KeyOf(SDLK_PERIOD), 190);
}

TEST(VirtualKeys, OfTheNumberPadFollowTheNumberLock) {
    EXPECT_EQ(KeyOf(SDLK_KP_7, KMOD_NUM), 103);
    EXPECT_EQ(KeyOf(SDLK_KP_7), kKeyHome);
    EXPECT_EQ(KeyOf(SDLK_KP_PERIOD), kKeyDelete);
}

TEST(VirtualKeys, OfTheDigitRowAreDigitsInEveryLayout) {
    SDL_Keysym ampersand = {};
    ampersand.sym = SDLK_AMPERSAND;
    ampersand.scancode = SDL_SCANCODE_1;
    EXPECT_EQ(VirtualKeyOf(ampersand), '1');
}

TEST(VirtualKeys, AreZeroForUnknownKeys) {
    EXPECT_EQ(KeyOf(SDLK_CALCULATOR), 0);
}

TEST(WindowMessages, TellKeysWithTheMousePlace) {
    EXPECT_THAT(Translate({Motion(30, 40), Key(SDL_KEYDOWN, SDLK_s), Key(SDL_KEYUP, SDLK_s)}),
                ElementsAre(WindowMessage{512, 0, 30, 40}, WindowMessage{256, 83, 30, 40},
                            WindowMessage{257, 83, 30, 40}));
    EXPECT_THAT(Translate({Key(SDL_KEYDOWN, SDLK_CALCULATOR)}), IsEmpty());
}

TEST(WindowMessages, TellTheRepeatsOfAHeldKeyFromItsPress) {
    MessageTranslator translator;
    SDL_Event held = Key(SDL_KEYDOWN, SDLK_s);
    translator.translate(held, {});
    held.key.repeat = 1;
    translator.translate(held, {});
    translator.translate(Key(SDL_KEYUP, SDLK_s), {});
    WindowMessage press, repeat, release;
    ASSERT_TRUE(translator.take(press) && translator.take(repeat) && translator.take(release));
    EXPECT_FALSE(press.repeat);
    EXPECT_TRUE(repeat.repeat);
    EXPECT_FALSE(release.repeat);
}

TEST(WindowMessages, LeaveKeysWithAltToTheDesktopButTellTheirRelease) {
    EXPECT_THAT(Translate({Key(SDL_KEYDOWN, SDLK_s, KMOD_LALT)}), IsEmpty());
    EXPECT_THAT(Translate({Key(SDL_KEYUP, SDLK_s, KMOD_LALT)}),
                ElementsAre(WindowMessage{257, 83, 0, 0}));
}

TEST(WindowMessages, TellOneCharacterForEachCodePoint) {
    EXPECT_THAT(Translate({Text("aZ"), Text("\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8E\xB5")}),
                ElementsAre(WindowMessage{258, 'a', 0, 0}, WindowMessage{258, 'Z', 0, 0},
                            WindowMessage{258, 0xE4, 0, 0}, WindowMessage{258, 0x20AC, 0, 0},
                            WindowMessage{258, 0x1F3B5, 0, 0}));
}

TEST(WindowMessages, TellBrokenTextByteByByte) {
    EXPECT_THAT(Translate({Text("\xC3"), Text("\xE2\x82")}),
                ElementsAre(WindowMessage{258, 0xC3, 0, 0}, WindowMessage{258, 0xE2, 0, 0},
                            WindowMessage{258, 0x82, 0, 0}));
}

TEST(WindowMessages, TellTheThreeButtons) {
    std::vector<std::uint32_t> numbers;
    for (const Uint8 button : {SDL_BUTTON_LEFT, SDL_BUTTON_RIGHT, SDL_BUTTON_MIDDLE}) {
        for (const Uint32 type : {SDL_MOUSEBUTTONDOWN, SDL_MOUSEBUTTONUP}) {
            for (const WindowMessage& m : Translate({Button(type, button, 5, 6)})) {
                EXPECT_EQ(m.x, 5);
                EXPECT_EQ(m.y, 6);
                numbers.push_back(m.message);
            }
        }
    }
    EXPECT_THAT(numbers, ElementsAre(513, 514, 516, 517, 519, 520));
    EXPECT_THAT(Translate({Button(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_X1, 0, 0)}), IsEmpty());
}

TEST(WindowMessages, TellEverySecondQuickClickAsADoubleClick) {
    std::vector<std::uint32_t> numbers;
    for (const Uint8 clicks : {1, 2, 3, 4}) {
        for (const WindowMessage& m :
             Translate({Button(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_LEFT, 0, 0, clicks),
                        Button(SDL_MOUSEBUTTONUP, SDL_BUTTON_LEFT, 0, 0, clicks)})) {
            numbers.push_back(m.message);
        }
    }
    EXPECT_THAT(numbers, ElementsAre(513, 514, 515, 514, 513, 514, 515, 514));
}

TEST(WindowMessages, TellTheWheelInPartsOfANotchAtTheLastMousePlace) {
    EXPECT_THAT(Translate({Motion(7, 8), Wheel(1), Wheel(-2), Wheel(0.25f), Wheel(0)}),
                ElementsAre(WindowMessage{512, 0, 7, 8}, WindowMessage{522, 120, 7, 8},
                            WindowMessage{522, -240, 7, 8}, WindowMessage{522, 30, 7, 8}));
    EXPECT_THAT(Translate({Wheel(1e9f)}), ElementsAre(WindowMessage{522, 30000, 0, 0}));
}

TEST(WindowMessages, TellThatTheWindowIsToClose) {
    SDL_Event quit = {};
    quit.type = SDL_QUIT;
    EXPECT_THAT(Translate({quit}), ElementsAre(WindowMessage{16, 0, 0, 0}));
}

TEST(WindowMessages, SayNothingOfWindowEvents) {
    SDL_Event resized = {};
    resized.type = SDL_WINDOWEVENT;
    resized.window.event = SDL_WINDOWEVENT_SIZE_CHANGED;
    EXPECT_THAT(Translate({resized}), IsEmpty());
}

TEST(PicturePlaces, AreThoseOfTheWindowAtFullSize) {
    const PicturePlace place = ToPicturePlace(kFullSize, 1919, 1079);
    EXPECT_EQ(place.x, 1919);
    EXPECT_EQ(place.y, 1079);
}

TEST(PicturePlaces, ScaleWithTheWindow) {
    const PicturePlace place = ToPicturePlace({960, 540, 960, 540}, 480, 270);
    EXPECT_EQ(place.x, 960);
    EXPECT_EQ(place.y, 540);
}

TEST(PicturePlaces, CountFromThePictureAndNotFromTheBars) {
    // 1000 by 1000: the picture is 1000 by 562, and the bars above and below are 219 high.
    const WindowSizes square = {1000, 1000, 1000, 1000};
    EXPECT_EQ(ToPicturePlace(square, 0, 219).y, 0);
    EXPECT_EQ(ToPicturePlace(square, 0, 219 + 281).y, 540);
    EXPECT_LT(ToPicturePlace(square, 0, 218).y, 0);
    EXPECT_GE(ToPicturePlace(square, 0, 219 + 562).y, 1080);
    // 2000 by 540: bars of 520 at the sides.
    const WindowSizes wide = {2000, 540, 2000, 540};
    EXPECT_EQ(ToPicturePlace(wide, 520, 0).x, 0);
    EXPECT_EQ(ToPicturePlace(wide, 520 + 480, 0).x, 960);
    EXPECT_LT(ToPicturePlace(wide, 519, 0).x, 0);
}

TEST(PicturePlaces, HoldWhereTheDisplayIsScaled) {
    const PicturePlace place = ToPicturePlace({960, 540, 1920, 1080}, 100, 50);
    EXPECT_EQ(place.x, 200);
    EXPECT_EQ(place.y, 100);
}

TEST(PicturePlaces, StayWithinSixteenBits) {
    const PicturePlace place = ToPicturePlace({16, 9, 16, 9}, 1 << 30, -(1 << 30));
    EXPECT_EQ(place.x, 32767);
    EXPECT_EQ(place.y, -32768);
    EXPECT_EQ(ToPicturePlace({}, 5, 5).x, 0);
}

TEST(LetterboxArea, FillsADrawableOfTheSameShape) {
    const PictureArea area = LetterboxArea(1280, 720);
    EXPECT_EQ(area.x, 0);
    EXPECT_EQ(area.y, 0);
    EXPECT_EQ(area.width, 1280);
    EXPECT_EQ(area.height, 720);
}

TEST(LetterboxArea, IsCentredInOtherShapes) {
    const PictureArea tall = LetterboxArea(1280, 800);
    EXPECT_EQ(tall.width, 1280);
    EXPECT_EQ(tall.height, 720);
    EXPECT_EQ(tall.y, 40);
    EXPECT_EQ(tall.x, 0);
    const PictureArea wide = LetterboxArea(2560, 1080);
    EXPECT_EQ(wide.width, 1920);
    EXPECT_EQ(wide.height, 1080);
    EXPECT_EQ(wide.x, 320);
    EXPECT_EQ(wide.y, 0);
}

TEST(LetterboxArea, IsNeverOutsideOfTheDrawable) {
    for (const auto& [width, height] :
         {std::pair{1, 1}, {1, 5000}, {5000, 1}, {17, 9}, {1 << 30, 1 << 30}}) {
        const PictureArea area = LetterboxArea(width, height);
        EXPECT_GE(area.width, 1);
        EXPECT_GE(area.height, 1);
        EXPECT_GE(area.x, 0);
        EXPECT_GE(area.y, 0);
        EXPECT_LE(area.x + area.width, width);
        EXPECT_LE(area.y + area.height, height);
    }
    EXPECT_EQ(LetterboxArea(0, 100).width, 0);
    EXPECT_EQ(LetterboxArea(100, -1).height, 0);
}
