#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/debug_output.h"
#include "platform/files.h"
#include "platform/sound_decoder.h"
#include "platform/sound_output.h"
#include "platform/sound_system.h"

namespace {

using Clock = std::chrono::steady_clock;

// Where the sound is by the clock: what counts while it is being decoded, past its end, and where
// there is no device.
class PositionClock {
  public:
    double seconds() const {
        if (!running_) return baseSeconds_;
        return baseSeconds_ + std::chrono::duration<double>(Clock::now() - since_).count();
    }
    void set(double seconds) {
        baseSeconds_ = seconds;
        since_ = Clock::now();
    }
    void run(bool running) {
        set(seconds());
        running_ = running;
    }

  private:
    double baseSeconds_ = 0;
    Clock::time_point since_ = Clock::now();
    bool running_ = false;
};

// Names that stand for "no file chosen", the default among them: nothing, or a folder. They are
// silence without a word.
bool NamesNoFile(std::string_view name) {
    return name.empty() || name.back() == '\\' || name.back() == '/';
}

void ReportSound(const std::string& name, const std::string& reason) {
    if (!NamesNoFile(name)) ReportBadFile(name, reason);
}

// One file on its way: decoded on a thread of its own, which ends soon when this is destroyed.
class DecodeJob {
  public:
    explicit DecodeJob(std::string_view name) : name_(name), thread_([this] { run(); }) {}
    ~DecodeJob() {
        cancelled_ = true;
        thread_.join();
    }
    DecodeJob(const DecodeJob&) = delete;
    DecodeJob& operator=(const DecodeJob&) = delete;

    bool finished() const { return finished_; }
    // The following only once it has finished.
    bool decoded() const { return decoded_; }
    DecodedSound& sound() { return sound_; }
    const std::string& name() const { return name_; }
    const std::string& reason() const { return reason_; }

  private:
    void run() {
        try {
            decoded_ = DecodeSoundFile(name_, cancelled_, sound_, reason_);
            if (decoded_ && sound_.channels == 1) makeStereo();
        } catch (const std::bad_alloc&) {
            decoded_ = false;
            reason_ = "not enough memory";
        }
        finished_ = true;
    }

    // Both speakers get a mono sound in full.
    void makeStereo() {
        std::vector<std::int16_t> stereo;
        stereo.reserve(sound_.samples.size() * 2);
        for (const std::int16_t sample : sound_.samples) {
            stereo.push_back(sample);
            stereo.push_back(sample);
        }
        sound_.samples = std::move(stereo);
        sound_.channels = 2;
    }

    std::string name_;
    std::string reason_;
    DecodedSound sound_;
    bool decoded_ = false;
    std::atomic<bool> cancelled_ = false;
    std::atomic<bool> finished_ = false;
    std::thread thread_;  // last: it uses all of the above
};

class OpenAlSoundSystem final : public SoundSystem {
  public:
    OpenAlSoundSystem() : output_(SoundOutput::open()) {}

    void load(std::string_view windowsName) override {
        unload();
        name_ = windowsName;
        job_ = std::make_unique<DecodeJob>(windowsName);
    }

    void unload() override {
        job_.reset();
        name_.clear();
        framesPerSecond_ = 0;
        playing_ = false;
        clock_.run(false);
        clock_.set(0);
        if (output_) output_->clearSound();
    }

    bool loaded() const override { return framesPerSecond_ != 0; }
    bool loading() const override { return job_ != nullptr; }
    bool playing() const override { return playing_; }

    void play() override {
        if (playing_) return;
        playing_ = true;
        // The sound first: where it starts is not to depend on how long this takes.
        if (output_ && loaded() && !output_->resume()) playFrom(clock_.seconds());
        clock_.run(true);
    }

    void pause() override {
        if (!playing_) return;
        playing_ = false;
        if (output_) output_->pause();
        clock_.set(seconds());
        clock_.run(false);
    }

    void setPositionMilliseconds(std::uint32_t positionMs) override {
        const double position = positionMs / 1000.0;
        clock_.set(position);
        if (!output_ || !loaded()) return;
        // A paused sound starts anew when it is played again.
        if (playing_) {
            playFrom(position);
        } else {
            output_->stop();
        }
    }

    std::uint32_t positionMilliseconds() const override {
        constexpr double kHighest = 4294967295.0;
        const double rounded = std::clamp(seconds() * 1000.0 + 0.5, 0.0, kHighest);
        return static_cast<std::uint32_t>(rounded);
    }

    void update() override {
        if (output_ && !output_->connected()) reopen();
        if (job_ && job_->finished()) takeUp(*std::exchange(job_, nullptr));
    }

  private:
    double seconds() const {
        if (output_ && loaded()) {
            if (const auto frame = output_->frame()) {
                return static_cast<double>(*frame) / framesPerSecond_;
            }
        }
        return clock_.seconds();
    }

    void playFrom(double seconds) {
        // Positions are whole milliseconds, so that half a microsecond only mends rounding.
        constexpr double kRounding = 0.5e-6;
        const double frame = (seconds + kRounding) * framesPerSecond_;
        output_->playFrom(static_cast<std::uint64_t>(frame));
    }

    void takeUp(DecodeJob& job) {
        if (!job.decoded()) {
            ReportSound(job.name(), job.reason());
            return;
        }
        const DecodedSound& sound = job.sound();
        if (output_ && !output_->setSound(sound.samples, sound.framesPerSecond)) {
            ReportSound(job.name(), "the sound is too long for OpenAL");
            return;
        }
        framesPerSecond_ = sound.framesPerSecond;
        if (output_ && playing_) playFrom(clock_.seconds());
    }

    // The device has gone: go on, on the one that is the default now. The sound was the old one's,
    // and is decoded again; it falls in where it would be.
    void reopen() {
        clock_.set(seconds());
        output_.reset();
        output_ = SoundOutput::open();
        if (!loaded()) return;
        framesPerSecond_ = 0;
        job_ = std::make_unique<DecodeJob>(name_);
    }

    std::unique_ptr<SoundOutput> output_;
    std::unique_ptr<DecodeJob> job_;
    std::string name_;
    std::uint32_t framesPerSecond_ = 0;  // 0: nothing is loaded
    bool playing_ = false;
    PositionClock clock_;
};

// Keeps the position and no more. A missing file is told all the same.
class SilentSoundSystem final : public SoundSystem {
  public:
    void load(std::string_view windowsName) override;
    void unload() override {
        playing_ = false;
        clock_.run(false);
        clock_.set(0);
    }
    bool loaded() const override { return false; }
    bool loading() const override { return false; }
    void play() override {
        playing_ = true;
        clock_.run(true);
    }
    void pause() override {
        playing_ = false;
        clock_.run(false);
    }
    bool playing() const override { return playing_; }
    void setPositionMilliseconds(std::uint32_t positionMs) override {
        clock_.set(positionMs / 1000.0);
    }
    std::uint32_t positionMilliseconds() const override {
        return static_cast<std::uint32_t>(clock_.seconds() * 1000.0 + 0.5);
    }
    void update() override {}

  private:
    bool playing_ = false;
    PositionClock clock_;
};

void SilentSoundSystem::load(std::string_view windowsName) {
    unload();
    std::error_code error;
    if (!std::filesystem::is_regular_file(ResolvePath(windowsName), error)) {
        ReportSound(std::string(windowsName), "the file cannot be read");
    }
}

}  // namespace

std::unique_ptr<SoundSystem> MakeSoundSystem(bool enabled) {
    if (enabled) return std::make_unique<OpenAlSoundSystem>();
    return std::make_unique<SilentSoundSystem>();
}
