#include "platform/sound_system.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include "platform/debug_output.h"
#include "support/sound_files.h"
#include "support/temp_folder.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using namespace std::chrono_literals;

namespace {

void WaitForDecode(SoundSystem& system) {
    for (int i = 0; i < 10000 && system.loading(); ++i) {
        std::this_thread::sleep_for(2ms);
        system.update();
    }
}

}  // namespace

// The tests run on OpenAL's null device.
class SoundSystems : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(
            MakeSoundFile("tone.wav", SoundKind::Wav, 1, 44100, ToneSamples(440, 2.0, 44100)));
    }

    TempFolder folder_;
    WorkingFolder inside_{folder_.path()};
    std::unique_ptr<SoundSystem> system_ = MakeSoundSystem(true);
    DebugCapture capture_;  // after the system, which may say that there is no device
};

TEST_F(SoundSystems, LoadInTheBackground) {
    EXPECT_FALSE(system_->loaded());
    system_->load("TONE.wav");
    EXPECT_TRUE(system_->loading());
    EXPECT_FALSE(system_->loaded());
    WaitForDecode(*system_);
    EXPECT_FALSE(system_->loading());
    EXPECT_TRUE(system_->loaded());
    EXPECT_FALSE(system_->playing());
    EXPECT_EQ(system_->positionMilliseconds(), 0u);
    system_->unload();
    EXPECT_FALSE(system_->loaded());
    EXPECT_THAT(capture_.messages(), IsEmpty());
}

TEST_F(SoundSystems, KeepThePositionWhilePaused) {
    system_->load("tone.wav");
    WaitForDecode(*system_);
    for (const std::uint32_t ms : {0u, 1u, 777u, 1500u, 1999u, 5000u, 4000000000u}) {
        system_->setPositionMilliseconds(ms);
        system_->update();
        EXPECT_EQ(system_->positionMilliseconds(), ms);
    }
}

TEST_F(SoundSystems, MoveOnWhilePlayingAndStandStillWhilePaused) {
    system_->load("tone.wav");
    WaitForDecode(*system_);
    system_->setPositionMilliseconds(500);
    system_->play();
    EXPECT_TRUE(system_->playing());
    std::uint32_t played = 0;
    for (int i = 0; i < 1000 && played < 700; ++i) {  // a busy machine's device may come late
        std::this_thread::sleep_for(10ms);
        system_->update();
        played = system_->positionMilliseconds();
    }
    EXPECT_GE(played, 700u);
    system_->pause();
    EXPECT_FALSE(system_->playing());
    const std::uint32_t paused = system_->positionMilliseconds();
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(system_->positionMilliseconds(), paused);
    EXPECT_GE(paused, played);
}

TEST_F(SoundSystems, FallInWhereTheSoundWouldBeAfterDecoding) {
    system_->load("tone.wav");
    system_->setPositionMilliseconds(1000);
    system_->play();
    EXPECT_TRUE(system_->playing());
    std::this_thread::sleep_for(200ms);  // by now it is decoded, but not yet taken up
    WaitForDecode(*system_);
    ASSERT_TRUE(system_->loaded());
    EXPECT_GE(system_->positionMilliseconds(), 1195u);  // clocks may tick in milliseconds
}

TEST_F(SoundSystems, GoOnPastTheEndInSilenceAndComeBack) {
    system_->load("tone.wav");
    WaitForDecode(*system_);
    system_->play();
    system_->setPositionMilliseconds(3000);
    std::this_thread::sleep_for(20ms);
    system_->update();
    EXPECT_TRUE(system_->playing());
    EXPECT_GE(system_->positionMilliseconds(), 3000u);
    system_->setPositionMilliseconds(100);
    system_->update();
    EXPECT_GE(system_->positionMilliseconds(), 99u);
    EXPECT_LT(system_->positionMilliseconds(), 2000u);
}

TEST_F(SoundSystems, PlayASoundOfOneFrame) {
    ASSERT_TRUE(MakeSoundFile("one.wav", SoundKind::Wav, 2, 44100, {5, -6}));
    system_->load("one.wav");
    WaitForDecode(*system_);
    ASSERT_TRUE(system_->loaded());
    system_->play();
    system_->setPositionMilliseconds(0);
    std::this_thread::sleep_for(100ms);
    system_->update();
    EXPECT_GE(system_->positionMilliseconds(), 95u);  // clocks may tick in milliseconds
    system_->pause();
    system_->play();
    EXPECT_TRUE(system_->playing());
}

TEST_F(SoundSystems, TellOfAFileThatIsNoSoundInOneLine) {
    folder_.write("bad.mp3", "no sound at all, whatever the name says of it");
    const std::size_t before = BadFileCount();
    system_->load("bad.mp3");
    system_->play();
    WaitForDecode(*system_);
    EXPECT_FALSE(system_->loaded());
    EXPECT_THAT(capture_.messages(), ElementsAre(HasSubstr("bad.mp3: ")));
    EXPECT_EQ(BadFileCount(), before + 1);
}

TEST_F(SoundSystems, KeepSilentWithoutAWordWhereNoFileIsChosen) {
    const std::size_t before = BadFileCount();
    system_->load(".\\data\\");
    WaitForDecode(*system_);
    EXPECT_FALSE(system_->loaded());
    EXPECT_THAT(capture_.messages(), IsEmpty());
    EXPECT_EQ(BadFileCount(), before);
}

TEST_F(SoundSystems, SayNothingOfAFileThatWasGivenUp) {
    system_->load("missing.wav");
    system_->load("tone.wav");
    WaitForDecode(*system_);
    EXPECT_TRUE(system_->loaded());
    EXPECT_THAT(capture_.messages(), IsEmpty());
}

TEST_F(SoundSystems, EndWhileDecoding) {
    ASSERT_TRUE(
        MakeSoundFile("long.flac", SoundKind::Flac, 1, 8000, ToneSamples(440, 600.0, 8000)));
    system_->load("long.flac");
    system_->play();
    system_.reset();
}

TEST_F(SoundSystems, ForgetTheSoundBeforeOnLoading) {
    system_->load("tone.wav");
    WaitForDecode(*system_);
    system_->setPositionMilliseconds(700);
    system_->play();
    system_->load("tone.wav");
    EXPECT_FALSE(system_->loaded());
    EXPECT_FALSE(system_->playing());
    EXPECT_EQ(system_->positionMilliseconds(), 0u);
}

TEST_F(SoundSystems, KeepAPositionWhenTheyAreDisabled) {
    system_ = MakeSoundSystem(false);
    system_->load("tone.wav");
    system_->setPositionMilliseconds(250);
    EXPECT_EQ(system_->positionMilliseconds(), 250u);
    system_->play();
    EXPECT_TRUE(system_->playing());
    EXPECT_FALSE(system_->loading());
    system_->update();
    EXPECT_THAT(capture_.messages(), IsEmpty());
    system_->load("missing.wav");
    EXPECT_THAT(capture_.messages(), ElementsAre(HasSubstr("missing.wav: ")));
}
