#include "music.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <string>
#include <vector>

#include "music_arrangement.h"
#include "music_harmony.h"

namespace {

double decibels(std::span<const float> samples) {
    double energy = 0.0;
    for (const float sample : samples) energy += static_cast<double>(sample) * sample;
    return 10.0 * std::log10(energy / static_cast<double>(samples.size()) + 1e-20);
}

bool isDrumOrNoise(music::Instrument instrument) {
    using music::Instrument;
    return instrument <= Instrument::Tom || instrument >= Instrument::Riser;
}

}  // namespace

TEST(Music, SectionsStartAtZeroAndFollowEachOtherOnBars) {
    const std::vector<MusicSection> sections = musicSections();
    ASSERT_GE(sections.size(), 9u);
    EXPECT_EQ(sections.front().startSeconds, 0.0f);
    for (std::size_t i = 1; i < sections.size(); ++i) {
        EXPECT_GT(sections[i].startSeconds, sections[i - 1].startSeconds);
        EXPECT_EQ(std::fmod(sections[i].startSeconds, 2.0f), 0.0f) << sections[i].name;
    }
    EXPECT_LT(sections.back().startSeconds, kMusicSeconds);
}

TEST(Music, SectionsOfThePlanLeaveNoGapAndFillTheSong) {
    int bar = 0;
    for (const music::SectionPlan& section : music::songPlan()) {
        EXPECT_EQ(section.firstBar, bar) << section.name;
        EXPECT_GE(section.intensity, 0.0f);
        EXPECT_LE(section.intensity, 1.0f);
        bar += section.bars;
    }
    EXPECT_EQ(bar, music::kSongBars);
}

TEST(Music, SameStretchGivesTheSameSamples) {
    const std::vector<float> first = renderMusic(33.0, 2.0);
    ASSERT_EQ(first.size(), 2u * 2u * kMusicSampleRate);
    EXPECT_TRUE(first == renderMusic(33.0, 2.0));
}

TEST(Music, StretchBeginsWhereItIsAskedTo) {
    const std::vector<float> whole = renderMusic(0.0, 3.0);
    const std::vector<float> part = renderMusic(1.5, 1.0);
    const std::size_t offset = 2 * 3 * static_cast<std::size_t>(kMusicSampleRate) / 2;
    ASSERT_EQ(part.size(), 2u * kMusicSampleRate);
    EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.begin() + offset));
}

TEST(Music, CutsOffWhatLiesOutsideTheSong) {
    EXPECT_EQ(renderMusic(229.0, 5.0).size(), 2u * kMusicSampleRate);
    EXPECT_TRUE(renderMusic(230.0, 1.0).empty());
}

TEST(Music, EverySectionIsAudibleFiniteAndBelowFullScale) {
    for (const MusicSection& section : musicSections()) {
        const std::vector<float> samples = renderMusic(section.startSeconds, 2.0);
        EXPECT_GT(decibels(samples), -40.0) << section.name;
        for (const float sample : samples) {
            ASSERT_TRUE(std::isfinite(sample)) << section.name;
            ASSERT_LT(std::fabs(sample), 1.0f) << section.name;
        }
    }
}

TEST(Music, ClimaxIsLouderThanIntroAndBreak) {
    const double climax = decibels(renderMusic(164.0, 2.0));
    EXPECT_GT(climax, decibels(renderMusic(4.0, 2.0)));
    EXPECT_GT(climax, decibels(renderMusic(66.0, 2.0)));
}

TEST(Music, EndsInExactSilence) {
    const std::vector<float> samples = renderMusic(229.95, 0.05);
    for (const float sample : samples) ASSERT_EQ(sample, 0.0f);
}

TEST(Music, EveryPitchedNoteIsInTheKeyOfItsBar) {
    for (int bar = 0; bar < music::kSongBars; ++bar) {
        // The key goes up a whole tone halfway through the second build, at bar 76.
        const int root = music::kBassRootPitch + (bar >= 76 ? music::kHighKeyTranspose : 0);
        for (const music::Note& note : music::notesOfBar(bar)) {
            if (isDrumOrNoise(note.instrument)) continue;
            const int semitone = (static_cast<int>(note.pitch) - root + 120) % 12;
            const auto& scale = music::kScaleSemitones;
            EXPECT_NE(std::find(scale.begin(), scale.end(), semitone), scale.end())
                << "bar " << bar << " pitch " << note.pitch;
        }
    }
}

TEST(Music, ReportsAFileThatCannotBeWritten) {
    std::string error;
    EXPECT_FALSE(SynthesiseMusic("/no/such/folder/song.ogg", error));
    EXPECT_NE(error.find("/no/such/folder/song.ogg"), std::string::npos);
}

TEST(MusicHarmony, DegreesBelowTheRootFallAnOctaveDown) {
    EXPECT_EQ(music::pitchOfDegree(0, 0, 0), 29.0f);
    EXPECT_EQ(music::pitchOfDegree(-1, 1, 0), 39.0f);
    EXPECT_EQ(music::pitchOfDegree(7, 0, 2), 43.0f);
}

TEST(MusicHarmony, FoldedDegreesKeepTheirNameWithinAnOctave) {
    for (int degree = -10; degree < 20; ++degree) {
        const int folded = music::foldDegree(degree, -2);
        EXPECT_GE(folded, -2);
        EXPECT_LT(folded, 5);
        EXPECT_EQ((folded - degree) % 7, 0);
    }
}
