#include "music_arrangement.h"

#include <array>

#include "music_oscillator.h"

namespace music {

namespace {

constexpr std::string_view kFourOnTheFloor = "X...X...X...X...";
constexpr std::string_view kBackbeat = "....X.......X...";
constexpr std::string_view kOffbeat = "..x...x...x...x.";
constexpr std::string_view kSixteenths = "x-o-x-o-x-o-x-oo";
constexpr std::string_view kShakerGroove = "x-oxx-oxx-oxx-ox";
constexpr std::string_view kDownbeat = "X";

bool isFirst(const BarWriter& bar) {
    return bar.place().barInSection == 0;
}

bool isLast(const BarWriter& bar) {
    return bar.place().barInSection == bar.place().sectionBars - 1;
}

bool isHalfway(const BarWriter& bar) {
    return bar.place().barInSection * 2 == bar.place().sectionBars;
}

// A level whose brightness climbs (or falls) over the section.
Level sweep(const BarWriter& bar, float velocity, float from, float to) {
    return {velocity, lerp(from, to, bar.place().progress()),
            lerp(from, to, bar.place().endProgress())};
}

// Crash, boom and falling noise: the landing after a build-up.
void drop(BarWriter& bar, float strength) {
    bar.drum(Instrument::Crash, kDownbeat, strength);
    bar.impact(0.9f * strength);
    bar.downlifter(2, 0.5f * strength);
}

void mainDrums(BarWriter& bar, std::string_view hats) {
    const bool fill = isLast(bar) || bar.place().barInSection % 8 == 7;
    bar.drum(Instrument::Kick, fill ? "X...X...X....x.." : kFourOnTheFloor);
    bar.drum(Instrument::Clap, fill ? "....X..o....X.x." : kBackbeat);
    bar.drum(Instrument::Snare, kBackbeat, 0.6f);
    bar.drum(Instrument::OpenHat, kOffbeat, 0.8f, 0.1f);
    bar.drum(Instrument::ClosedHat, hats, 0.75f, -0.25f);
    if (fill) bar.tomFill(2);
}

void writeIntro(BarWriter& bar) {
    const int index = bar.place().barInSection;
    if (isFirst(bar)) {
        bar.impact(0.8f);
        bar.drum(Instrument::Crash, kDownbeat, 0.5f);
    }
    bar.wind(0.30f, bar.place().progress());
    bar.pad(sweep(bar, 0.6f, 0.25f, 0.55f), true);
    bar.sparseBells(0.6f);
    if (index >= 2) bar.arpeggio(sweep(bar, lerp(0.3f, 0.7f, bar.place().progress()), 0.2f, 0.5f));
    if (index >= 4) {
        bar.drum(Instrument::Shaker, kShakerGroove, 0.6f, 0.3f);
        bar.drum(Instrument::Kick, "X.........o.....", 0.6f);
        bar.subBass(0.6f);
    }
    if (index == 4) bar.riser(4, 0.25f);
    if (isLast(bar)) bar.reverseCymbal(4, 0.5f);
}

void writeFirstBuild(BarWriter& bar) {
    const int index = bar.place().barInSection;
    if (isFirst(bar)) bar.drum(Instrument::Crash, kDownbeat, 0.7f);
    bar.pad(sweep(bar, 0.85f, 0.4f, 0.75f));
    bar.arpeggio(sweep(bar, 0.8f, 0.42f, 0.72f));
    bar.drum(Instrument::Kick, isLast(bar) ? "X...X..." : kFourOnTheFloor, 0.9f);
    bar.drum(Instrument::Shaker, kShakerGroove, 0.7f, 0.3f);
    if (index < 4) bar.sparseBells(0.5f);
    if (index >= 2) bar.drum(Instrument::ClosedHat, kOffbeat, 0.9f, -0.2f);
    if (index >= 4) {
        bar.offbeatBass(sweep(bar, 0.85f, 0.2f, 0.5f));
        bar.drum(Instrument::Clap, kBackbeat, 0.6f);
    }
    if (index == 4) bar.riser(4, 0.7f);
    if (index == 6) bar.snareRoll(0.3f, 0.5f);
    if (isLast(bar)) {
        bar.snareRoll(0.5f, 1.0f);
        bar.reverseCymbal(4, 0.6f);
    }
}

void writeMainA(BarWriter& bar) {
    const bool secondTime = bar.place().barInSection >= 8;
    if (isFirst(bar)) drop(bar, 1.0f);
    if (isHalfway(bar)) bar.drum(Instrument::Crash, kDownbeat, 0.9f);
    mainDrums(bar, kSixteenths);
    bar.offbeatBass(Level::steady(1.0f, 0.5f));
    bar.pad(Level::steady(0.75f, 0.6f));
    bar.arpeggio(Level::steady(0.6f, 0.55f));
    bar.melody(Instrument::Lead, mainTheme(), Level::steady(0.9f, secondTime ? 0.74f : 0.66f));
    if (secondTime) {
        bar.melody(Instrument::Lead, mainTheme(), Level::steady(0.35f, 0.6f), -2, -0.5f);
        bar.stabs("...x..x.....x...", Level::steady(0.4f, 0.6f));
        bar.drum(Instrument::Shaker, kShakerGroove, 0.6f, 0.3f);
    }
}

void writeBreak(BarWriter& bar) {
    const int index = bar.place().barInSection;
    if (isFirst(bar)) {
        bar.impact(0.9f);
        bar.downlifter(4, 0.7f);
    }
    bar.wind(0.2f, 0.3f + 0.5f * bar.place().progress());
    bar.pad(sweep(bar, 0.7f, 0.35f, 0.7f), true);
    bar.choir(0.55f);
    bar.subBass(0.75f);
    bar.melody(Instrument::Bell, breakTheme(), Level::steady(0.75f, 0.55f));
    bar.melody(Instrument::Keys, breakTheme(), Level::steady(0.5f, 0.5f), -7);
    if (index >= 2) bar.arpeggio(sweep(bar, 0.5f, 0.25f, 0.7f));
    if (index >= 4) {
        bar.drum(Instrument::Shaker, kShakerGroove, 0.6f, 0.3f);
        bar.drum(Instrument::ClosedHat, kOffbeat, 0.6f, -0.2f);
    }
    if (index == 4) bar.riser(4, 0.7f);
    if (index == 6) bar.snareRoll(0.1f, 0.5f);
    if (isLast(bar)) {
        bar.snareRoll(0.5f, 1.0f);
        bar.reverseCymbal(4, 0.7f);
    }
}

void writeMainB(BarWriter& bar) {
    const bool secondTime = bar.place().barInSection >= 8;
    if (isFirst(bar)) drop(bar, 1.0f);
    if (isHalfway(bar)) bar.drum(Instrument::Crash, kDownbeat, 0.9f);
    mainDrums(bar, "xoxoxoxoxoxoxoxo");
    bar.drum(Instrument::Shaker, kShakerGroove, 0.7f, 0.35f);
    bar.rollingBass(Level::steady(1.0f, 0.54f));
    bar.pad(Level::steady(0.6f, 0.55f));
    bar.stabs(secondTime ? "x..x..x...x..x.." : "..x...x...x..x..", Level::steady(0.5f, 0.58f));
    bar.melody(Instrument::Lead, secondTheme(), Level::steady(0.85f, secondTime ? 0.75f : 0.68f));
    if (secondTime) {
        bar.arpeggio(Level::steady(0.45f, 0.6f), 4);
        bar.melody(Instrument::Bell, secondTheme(), Level::steady(0.4f, 0.4f), 7);
        bar.drum(Instrument::Ride, "x...x...x...x...", 0.6f, 0.4f);
    }
}

void writeBridge(BarWriter& bar) {
    const int index = bar.place().barInSection;
    if (isFirst(bar)) {
        bar.impact(1.0f);
        bar.drum(Instrument::Crash, kDownbeat, 0.7f);
        bar.downlifter(4, 0.6f);
    }
    bar.wind(0.25f, 0.2f + 0.4f * bar.place().progress());
    bar.pad(sweep(bar, 0.7f, 0.3f, 0.45f), true);
    bar.melody(Instrument::Keys, bridgeTheme(), Level::steady(1.0f, 0.7f));
    if (index < 4) {
        bar.subBass(0.8f);
        return;
    }
    // Half time: the snare falls once a bar.
    bar.drum(Instrument::Kick, index % 2 == 0 ? "X.........x....." : "X......o..x.....");
    bar.drum(Instrument::Snare, "........X.......", 0.9f);
    bar.drum(Instrument::Clap, "........X.......", 0.6f);
    bar.drum(Instrument::ClosedHat, "x.o.x-o.x.o.x-oo", 0.6f, -0.3f);
    bar.drum(Instrument::Shaker, "..x...x...x...x.", 0.6f, 0.4f);
    bar.longBass(sweep(bar, 0.95f, 0.3f, 0.55f));
    if (index >= 8) {
        bar.choir(0.6f);
        bar.arpeggio(sweep(bar, 0.4f, 0.2f, 0.5f), 4);
        bar.melody(Instrument::Bell, bridgeTheme(), Level::steady(0.4f, 0.4f), 7, 0.3f);
    }
    if (isHalfway(bar)) bar.drum(Instrument::Crash, kDownbeat, 0.6f);
    if (isLast(bar)) bar.tomFill(1);
}

void writeSecondBuild(BarWriter& bar) {
    const int index = bar.place().barInSection;
    if (isFirst(bar)) bar.drum(Instrument::Crash, kDownbeat, 0.7f);
    bar.pad(sweep(bar, 0.85f, 0.4f, 0.85f));
    bar.choir(lerp(0.3f, 0.7f, bar.place().progress()));
    bar.arpeggio(sweep(bar, 0.75f, 0.35f, 0.8f));
    constexpr std::array<std::string_view, 8> kKicks = {
        "X...X...X...X...", "X...X...X...X...", "X...X...X...X...", "X...X...X...X...",
        "X...X...X...X...", "X...X...X...X...", "X.x.X.x.X.x.X.x.", "X.x.X.x."};
    bar.drum(Instrument::Kick, kKicks[static_cast<std::size_t>(index)], 0.9f);
    bar.snareRoll(bar.place().progress(), bar.place().endProgress());
    bar.drum(Instrument::ClosedHat, kOffbeat, 0.8f, -0.2f);
    if (index < 6) bar.offbeatBass(sweep(bar, 0.85f, 0.25f, 0.6f));
    if (index % 4 == 0) bar.riser(4, index == 0 ? 0.45f : 0.8f);
    if (index >= 4) bar.stabs("x...x...x...x...", sweep(bar, 0.4f, 0.3f, 0.75f));
    if (isLast(bar)) bar.reverseCymbal(4, 0.8f);
}

// What climax and finale have in common: everything but the melody.
void fullBand(BarWriter& bar) {
    mainDrums(bar, "XoxoXoxoXoxoXoxo");
    bar.drum(Instrument::Shaker, kShakerGroove, 0.7f, 0.35f);
    bar.drum(Instrument::Ride, "x.o.x.o.x.o.x.o.", 0.55f, 0.4f);
    bar.rollingBass(Level::steady(1.0f, 0.58f));
    bar.pad(Level::steady(0.75f, 0.7f));
    bar.choir(0.5f);
}

void writeClimax(BarWriter& bar) {
    if (isFirst(bar)) drop(bar, 1.0f);
    if (bar.place().barInSection % 4 == 0) bar.drum(Instrument::Crash, kDownbeat, 0.9f);
    fullBand(bar);
    const bool secondTime = bar.place().barInSection >= 8;
    if (secondTime) {
        bar.melody(Instrument::Lead, secondTheme(), Level::steady(0.9f, 0.78f));
        bar.melody(Instrument::Lead, secondTheme(), Level::steady(0.4f, 0.65f), -7, 0.4f);
        bar.stabs("x..x..x...x..x..", Level::steady(0.5f, 0.64f));
    } else {
        bar.melody(Instrument::Lead, mainTheme(), Level::steady(0.95f, 0.78f));
        bar.melody(Instrument::Lead, mainTheme(), Level::steady(0.4f, 0.65f), -7, 0.4f);
        bar.stabs("...x..x.....x..x", Level::steady(0.5f, 0.64f));
    }
    bar.arpeggio(Level::steady(0.5f, 0.64f), 4);
}

void writeFinale(BarWriter& bar) {
    if (isFirst(bar)) bar.impact(0.9f);
    if (bar.place().barInSection % 2 == 0) bar.drum(Instrument::Crash, kDownbeat, 0.85f);
    fullBand(bar);
    bar.arpeggio(Level::steady(0.55f, 0.68f), 3);
    bar.stabs("x..x..x.x..x..x.", Level::steady(0.45f, 0.66f));
    bar.melody(Instrument::Lead, mainTheme(), Level::steady(0.9f, 0.82f));
    bar.melody(Instrument::Lead, mainTheme(), Level::steady(0.5f, 0.7f), -2, -0.5f);
    bar.melody(Instrument::Lead, mainTheme(), Level::steady(0.4f, 0.65f), -7, 0.5f);
    bar.melody(Instrument::Bell, mainTheme(), Level::steady(0.5f, 0.5f), 7);
}

void writeOutro(BarWriter& bar) {
    const int index = bar.place().barInSection;
    if (isFirst(bar)) drop(bar, 0.8f);
    bar.wind(0.25f, 0.7f - 0.5f * bar.place().progress());
    bar.pad(sweep(bar, 0.65f, 0.62f, 0.35f), true);
    bar.sparseBells(0.7f);
    bar.arpeggio(sweep(bar, lerp(0.65f, 0.3f, bar.place().progress()), 0.58f, 0.22f));
    if (index < 4) {
        bar.drum(Instrument::Kick, kFourOnTheFloor, 0.9f);
        bar.drum(Instrument::Clap, kBackbeat, 0.5f);
        bar.drum(Instrument::ClosedHat, kOffbeat, 0.7f, -0.2f);
        bar.offbeatBass(sweep(bar, 0.85f, 0.45f, 0.05f));
    } else {
        bar.drum(Instrument::Kick, "X.........o.....", 0.7f);
        bar.subBass(0.7f);
        bar.choir(0.45f);
    }
    if (index < 6) bar.drum(Instrument::Shaker, kShakerGroove, 0.6f, 0.3f);
    if (isLast(bar)) bar.reverseCymbal(4, 0.6f);
}

// The last chord, struck once and left to ring.
void writeEnding(BarWriter& bar) {
    bar.pad(sweep(bar, 0.85f, 0.5f, 0.2f), true);
    bar.choir(0.4f);
    if (!isFirst(bar)) return;
    bar.impact(1.0f);
    bar.drum(Instrument::Crash, kDownbeat, 0.8f);
    bar.drum(Instrument::Kick, kDownbeat, 0.9f);
    bar.subBass(0.8f);
    bar.sparseBells(0.8f);
}

constexpr std::array<int, 1> kLastChord = {0};

constexpr std::array<SectionPlan, 11> kSong = {{
    {"Intro", 0, 8, 0.2f, kSlowChords, 0, writeIntro},
    {"Build", 8, 8, 0.5f, kPedalChords, 0, writeFirstBuild},
    {"Main A", 16, 16, 0.8f, kThemeChords, 0, writeMainA},
    {"Break", 32, 8, 0.35f, kBreakChords, 0, writeBreak},
    {"Main B", 40, 16, 0.85f, kLiftChords, 0, writeMainB},
    {"Bridge", 56, 16, 0.4f, kBridgeChords, 0, writeBridge},
    {"Second build", 72, 8, 0.65f, kPivotChords, 0, writeSecondBuild},
    {"Climax", 80, 16, 1.0f, kThemeChords, kHighKeyTranspose, writeClimax},
    {"Finale", 96, 8, 0.95f, kThemeChords, kHighKeyTranspose, writeFinale},
    {"Outro", 104, 8, 0.4f, kSlowChords, kHighKeyTranspose, writeOutro},
    {"Ending", 112, 3, 0.15f, kLastChord, kHighKeyTranspose, writeEnding},
}};

static_assert(kSong.back().firstBar + kSong.back().bars == kSongBars);

const SectionPlan& sectionOfBar(int bar) {
    const SectionPlan* found = &kSong.front();
    for (const SectionPlan& section : kSong)
        if (section.firstBar <= bar) found = &section;
    return *found;
}

BarPlace placeOfBar(const SectionPlan& section, int bar) {
    BarPlace place;
    place.bar = bar;
    place.barInSection = bar - section.firstBar;
    place.sectionBars = section.bars;
    place.transpose = section.transpose;
    std::span<const int> chords = section.chords;
    const bool climaxSecondHalf = section.writeBar == writeClimax && place.barInSection >= 8;
    if (climaxSecondHalf) chords = kLiftChords;
    // The second build reaches the high key halfway, over a chord that both keys have.
    const bool pivoted = section.writeBar == writeSecondBuild && place.barInSection >= 4;
    if (pivoted) place.transpose = kHighKeyTranspose;
    place.chordRoot = chords[static_cast<std::size_t>(place.barInSection) % chords.size()];
    return place;
}

}  // namespace

std::span<const SectionPlan> songPlan() {
    return kSong;
}

std::vector<Note> notesOfBar(int bar) {
    std::vector<Note> notes;
    if (bar < 0 || bar >= kSongBars) return notes;
    const SectionPlan& section = sectionOfBar(bar);
    BarWriter writer(placeOfBar(section, bar), notes);
    section.writeBar(writer);
    return notes;
}

MixSweep mixSweepOfBar(int bar) {
    constexpr float kOpenHertz = 22.0f;  // only takes DC and rumble away
    constexpr float kThinHertz = 260.0f;
    constexpr int kSweepBars = 2;
    const SectionPlan& section = sectionOfBar(bar);
    const int barsLeft = section.firstBar + section.bars - bar;
    const bool leadsToDrop = section.writeBar == writeFirstBuild ||
                             section.writeBar == writeBreak || section.writeBar == writeSecondBuild;
    if (!leadsToDrop || barsLeft > kSweepBars) return {kOpenHertz, kOpenHertz};
    const float start = 1.0f - static_cast<float>(barsLeft) / kSweepBars;
    const float end = start + 1.0f / kSweepBars;
    return {lerp(kOpenHertz, kThinHertz, start), lerp(kOpenHertz, kThinHertz, end)};
}

}  // namespace music
