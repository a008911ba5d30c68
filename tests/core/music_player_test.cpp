#include "core/music_player.h"

#include <gmock/gmock.h>

#include <limits>

#include "support/core_nodes.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class MusicPlayerTest : public ::testing::Test {
  protected:
    FakeSoundSystem::Notes notes_;
    FakeSoundSystem sound_{notes_};
    MusicPlayer player_{&sound_};
};

TEST_F(MusicPlayerTest, LoadsOnlyAFileOfAnotherName) {
    EXPECT_FALSE(player_.setFile(""));
    EXPECT_TRUE(player_.setFile("a.ogg"));
    EXPECT_FALSE(player_.setFile("a.ogg"));
    EXPECT_TRUE(player_.setFile("b.ogg"));
    EXPECT_EQ(player_.fileName, "b.ogg");
    EXPECT_THAT(notes_.calls, ElementsAre("load a.ogg", "load b.ogg"));
}

TEST_F(MusicPlayerTest, HasALiveChannelFromPlayUntilANewFile) {
    player_.setFile("a.ogg");
    EXPECT_FALSE(player_.channelLive);
    player_.play();
    EXPECT_TRUE(player_.channelLive);
    player_.setFile("a.ogg");
    EXPECT_TRUE(player_.channelLive);
    player_.setFile("b.ogg");
    EXPECT_FALSE(player_.channelLive);
}

TEST_F(MusicPlayerTest, NeitherPausesNorSeeksAChannelThatIsNotLive) {
    player_.setFile("a.ogg");
    player_.pause();
    player_.seek(3);
    EXPECT_THAT(notes_.calls, ElementsAre("load a.ogg"));
}

TEST_F(MusicPlayerTest, SeeksInWholeMilliseconds) {
    player_.play();
    notes_.calls.clear();
    player_.seek(1.2345);
    player_.seek(0);
    player_.seek(-7);
    player_.seek(std::numeric_limits<double>::quiet_NaN());
    player_.seek(1e300);
    EXPECT_THAT(notes_.calls, ElementsAre("position 1234", "position 0", "position 0", "position 0",
                                          "position 4294967295"));
}

TEST_F(MusicPlayerTest, PausesAndGoesOn) {
    player_.play();
    player_.pause();
    EXPECT_TRUE(player_.channelLive);
    player_.play();
    EXPECT_THAT(notes_.calls, ElementsAre("play", "pause", "play"));
}

TEST_F(MusicPlayerTest, UpdatesTheSystemAlsoWhilePaused) {
    player_.play();
    player_.pause();
    player_.update();
    player_.update();
    EXPECT_EQ(notes_.updates, 2);
}

TEST_F(MusicPlayerTest, IsSilentWithoutASystem) {
    MusicPlayer silent(nullptr);
    EXPECT_TRUE(silent.setFile("a.ogg"));
    silent.play();
    silent.seek(3);
    silent.pause();
    silent.update();
    EXPECT_THAT(notes_.calls, IsEmpty());
}

}  // namespace
