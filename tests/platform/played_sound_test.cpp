// What reaches the sound device: a process of its own plays through OpenAL's wave writer, and the
// file that it leaves is taken apart.
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "platform/sound_decoder.h"
#include "platform/sound_system.h"
#include "support/sound_files.h"
#include "support/temp_folder.h"

using namespace std::chrono_literals;

namespace {

constexpr int kRate = 44100;
constexpr int kFrames = 2 * kRate;
constexpr int kRampFrames = 20000;

// Each frame of the test sound tells its own number: the left channel counts up from 1 again and
// again, the right one counts the turns downward from -1.
std::vector<std::int16_t> NumberedFrames() {
    std::vector<std::int16_t> samples;
    for (int i = 0; i < kFrames; ++i) {
        samples.push_back(static_cast<std::int16_t>(i % kRampFrames + 1));
        samples.push_back(static_cast<std::int16_t>(-(i / kRampFrames) - 1));
    }
    return samples;
}

constexpr int kSilence = -1;
constexpr int kNeither = -2;  // part of a fade

int NumberOf(std::int16_t left, std::int16_t right) {
    if (left == 0 && right == 0) return kSilence;
    if (left < 1 || left > kRampFrames || right > -1) return kNeither;
    return (left - 1) + kRampFrames * (-right - 1);
}

// A stretch of frames of the test sound, one after the other without a gap.
struct Stretch {
    int first = 0;
    int length = 0;
    int silenceBefore = 0;
    int fadeBefore = 0;  // frames between the silence and the first one
};

std::vector<Stretch> StretchesOf(const DecodedSound& sound) {
    constexpr int kShortest = 1000;  // fades can make short rows of numbers by chance
    std::vector<Stretch> runs;
    Stretch run;
    int silence = 0;
    int sinceSilence = 0;
    const auto finish = [&] {
        if (run.length >= kShortest) {
            runs.push_back(run);
            silence = 0;
        }
        if (run.length > 0) sinceSilence += run.length - 1;
        run = {};
    };
    for (std::size_t i = 0; i + 1 < sound.samples.size(); i += 2) {
        const int number = NumberOf(sound.samples[i], sound.samples[i + 1]);
        if (run.length > 0 && number == run.first + run.length) {
            ++run.length;
            continue;
        }
        finish();
        if (number == kSilence) {
            ++silence;
            sinceSilence = 0;
            continue;
        }
        if (number >= 0) {
            run = {
                .first = number, .length = 1, .silenceBefore = silence, .fadeBefore = sinceSilence};
        }
        ++sinceSilence;
    }
    finish();
    return runs;
}

std::vector<Stretch> PlayScene(const TempFolder& folder) {
    const std::string output = folder.file("played.wav");
    folder.write("alsoft.conf",
                 "[general]\ndrivers = wave\nchannels = stereo\n"
                 "sample-type = int16\nfrequency = 44100\ndither = false\n"
                 "[wave]\nfile = " +
                     output + "\n");
    if (!MakeSoundFile(folder.file("numbered.wav"), SoundKind::Wav, 2, kRate, NumberedFrames())) {
        return {};
    }
    setenv("ALSOFT_CONF", folder.file("alsoft.conf").c_str(), 1);
    setenv("VORN_TEST_SCENE", folder.path().c_str(), 1);
    const char* const driversBefore = getenv("ALSOFT_DRIVERS");
    const std::string drivers = driversBefore != nullptr ? driversBefore : "";
    setenv("ALSOFT_DRIVERS", "wave", 1);
    char program[] = "/proc/self/exe";
    char filter[] = "--gtest_filter=PlayedSound.DISABLED_Scene";
    char disabled[] = "--gtest_also_run_disabled_tests";
    char* arguments[] = {program, filter, disabled, nullptr};
    pid_t child = 0;
    int status = -1;
    if (posix_spawn(&child, program, nullptr, nullptr, arguments, environ) == 0) {
        waitpid(child, &status, 0);
    }
    unsetenv("ALSOFT_CONF");
    setenv("ALSOFT_DRIVERS", drivers.c_str(), 1);
    EXPECT_EQ(status, 0) << "the playing process failed";
    DecodedSound sound;
    std::string reason;
    EXPECT_TRUE(DecodeSoundFile(output, sound, reason)) << reason;
    return StretchesOf(sound);
}

void UpdateFor(SoundSystem& system, std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) {
        system.update();
        std::this_thread::sleep_for(5ms);
    }
}

}  // namespace

// Run only by the test below, in a process of its own.
TEST(PlayedSound, DISABLED_Scene) {
    const char* const folder = getenv("VORN_TEST_SCENE");
    ASSERT_NE(folder, nullptr);
    const std::unique_ptr<SoundSystem> system = MakeSoundSystem(true);
    system->load(std::string(folder) + "/numbered.wav");
    while (system->loading()) UpdateFor(*system, 5ms);
    ASSERT_TRUE(system->loaded());
    UpdateFor(*system, 200ms);  // nothing is heard before it is played
    system->play();
    UpdateFor(*system, 400ms);
    system->pause();
    UpdateFor(*system, 300ms);
    system->play();  // on from the same frame
    UpdateFor(*system, 300ms);
    system->pause();
    system->setPositionMilliseconds(1500);
    UpdateFor(*system, 200ms);
    system->play();
    UpdateFor(*system, 1200ms);  // the end comes after 500 ms
    system->setPositionMilliseconds(100);
    UpdateFor(*system, 300ms);
    system->setPositionMilliseconds(2500);  // past the end
    UpdateFor(*system, 300ms);
    system->setPositionMilliseconds(1001);
    UpdateFor(*system, 200ms);
}

TEST(PlayedSound, IsThatOfTheFileFromTheExactPlacesAndSilentElsewhere) {
    const TempFolder folder;
    const std::vector<Stretch> runs = PlayScene(folder);
    ASSERT_EQ(runs.size(), 5u);
    constexpr int kMs = kRate / 1000;
    // A sound that starts in its midst is faded in over an update of the mixer, at most this long.
    constexpr int kFade = 30 * kMs;
    const auto startOf = [](const Stretch& run) { return run.first - run.fadeBefore; };
    // Times of silence and sound are those of the sleeps, within what a busy machine makes of them.
    EXPECT_EQ(runs[0].first, 0);
    EXPECT_GT(runs[0].silenceBefore, 50 * kMs);
    EXPECT_GT(runs[0].length, 200 * kMs);
    // After a pause it goes on where it was; the fade-out at the pause is part of the sound.
    const int pausedAt = runs[0].first + runs[0].length;
    EXPECT_GE(runs[1].first, pausedAt);
    EXPECT_LE(runs[1].first, pausedAt + 2 * kFade);
    EXPECT_GT(runs[1].silenceBefore, 150 * kMs);
    // The first frames of a fade are too faint to tell from silence: exact to the millisecond.
    EXPECT_NEAR(startOf(runs[2]), 66150, kMs);
    EXPECT_LE(runs[2].fadeBefore, kFade);
    EXPECT_GT(runs[2].silenceBefore, 50 * kMs);
    EXPECT_EQ(runs[2].first + runs[2].length, kFrames) << "played up to the end";
    EXPECT_NEAR(startOf(runs[3]), 4410, kMs);
    EXPECT_LE(runs[3].fadeBefore, kFade);
    EXPECT_GT(runs[3].silenceBefore, 200 * kMs) << "silent past the end";
    EXPECT_NEAR(startOf(runs[4]), 44144, kMs);  // 1001 ms
    EXPECT_LE(runs[4].fadeBefore, kFade);
    EXPECT_GT(runs[4].silenceBefore, 150 * kMs) << "silent when set past the end";
}
