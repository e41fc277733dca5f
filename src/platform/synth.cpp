#include "platform/synth.h"

#include <algorithm>
#include <cstdlib>

namespace marlune {

namespace {

// How late the engine thread may be without moving an event.
constexpr std::int64_t kLookAheadNs = 5'000'000;

// A distance between the audio device's time and ours beyond which the two are joined anew.
constexpr std::int64_t kTearNs = 40'000'000;

// How slowly the device's time follows ours, in callbacks.
constexpr std::int64_t kSlowness = 2000;

constexpr int kIdlePolls = 5;
constexpr int kStalledPolls = 4;

} // namespace

Synth::Synth(PlayClock& clock, JackClient* jack, const SynthOptions& options)
    : clock_(clock), jack_(jack), options_(options) {
    silenceFluidSynth();
}

Synth::~Synth() {
    stop();
}

void Synth::addUser() {
    ++users_;
    idlePolls_ = 0;
    if (!running_ && !driver_.opening()) start(); // a port is often closed to be opened again at once
}

void Synth::removeUser() {
    users_ = std::max(0, users_ - 1);
}

const char* Synth::driverName() {
    return onJack_ ? "jack" : driver_.name();
}

void Synth::poll() {
    if (users_ == 0) {
        if (running_ && ++idlePolls_ > kIdlePolls) stop();
        return;
    }
    const std::uint32_t callbacks = callbacks_.load();
    stalledPolls_ = running_ && callbacks != seenCallbacks_ ? 0 : stalledPolls_ + 1;
    seenCallbacks_ = callbacks;
    const bool online = jack_ != nullptr && jack_->online();
    const bool serverLeft = onJack_ && (!online || jack_->sampleRate() != time_.rate);
    const bool serverCame = !running_ && online;
    if (driver_.opening()) stalledPolls_ = 0;
    if (!serverLeft && !serverCame && stalledPolls_ < kStalledPolls) return;
    stop();
    start();
}

std::string Synth::complaint() {
    std::string now;
    if (driver_.opening()) return now;
    if (users_ > 0 && options_.sound && !running_)
        now =
            "No sound device was found: connect one or start a sound server, the synthesizer takes it at "
            "once.";
    else if (users_ > 0 && running_ && !core_->hasFont())
        now = "No sound font was found, patches are silent: install timgm6mb-soundfont and start again.";
    if (now == complained_) return "";
    complained_ = now;
    return now;
}

void Synth::start() {
    stalledPolls_ = 0;
    if (!options_.sound || startJack()) return;
    prepare(SoundDriver::kRate);
    running_ = false; // until the driver asks for its first frames
    driver_.open(*this);
}

void Synth::stop() {
    if (onJack_) jack_->setAudio(nullptr);
    onJack_ = false;
    driver_.close();
    running_ = false;
    ring_.clear();
}

void Synth::prepare(int sampleRate) {
    core_ = std::make_unique<SynthCore>(
        SynthSettings{sampleRate, options_.room}); // a fresh one: nothing sounds on from before
    time_.rate = sampleRate;
    frame_ = -1;
    latency_ = 0;
    taken_ = SynthCore::kBlock;
    ring_.clear();
    running_ = true;
}

bool Synth::startJack() {
    if (jack_ == nullptr || !jack_->online()) return false;
    prepare(jack_->sampleRate());
    onJack_ = jack_->setAudio(this);
    if (!onJack_) stop();
    return onJack_;
}

void Synth::send(const MidiMessage& message, std::int64_t due) noexcept {
    if (running_.load(std::memory_order_relaxed)) ring_.push({due, message});
}

// --- Audio thread ---

void Synth::fill(int frames, float* left, float* right) noexcept {
    callbacks_.fetch_add(1, std::memory_order_relaxed);
    if (!core_) return;
    running_.store(true, std::memory_order_relaxed);
    // Devices ask in bursts, and their clocks drift: the frames' time follows ours slowly, so that the
    // distances between events stay even.
    const std::int64_t now = clock_.nowNs();
    const std::int64_t apart = frame_ < 0 ? 0 : now - time_.nsAt(frame_);
    if (frame_ < 0 || std::abs(apart) > kTearNs) {
        frame_ = 0;
        time_.base = now;
    } else {
        time_.base += apart / kSlowness;
    }
    // How far the device runs ahead of the events: the rest of a burst, a callback, a block.
    const std::int64_t ahead = std::max<std::int64_t>(0, time_.nsAt(frame_) - now) + kLookAheadNs;
    latency_ = std::max(latency_, frames + 2 * SynthCore::kBlock + ahead * time_.rate / FrameTime::kSecond);
    latencyNs_.store(latency_ * FrameTime::kSecond / time_.rate, std::memory_order_relaxed);
    for (int done = 0; done < frames;) {
        if (taken_ == SynthCore::kBlock) nextBlock();
        const int count = std::min(frames - done, SynthCore::kBlock - taken_);
        std::copy_n(left_.data() + taken_, count, left + done);
        std::copy_n(right_.data() + taken_, count, right + done);
        taken_ += count;
        done += count;
        frame_ += count;
    }
}

// The events of a block are needed one block before its sound, see SynthCore::play().
void Synth::nextBlock() noexcept {
    const std::int64_t start = frame_ + SynthCore::kBlock;
    while (const StampedMessage* next = ring_.front()) {
        std::int64_t offset = time_.frameAt(next->due) + latency_ - start;
        if (offset > time_.rate) offset = 0; // nobody plans a second ahead: a stray stamp
        if (offset >= SynthCore::kBlock) break;
        core_->play(next->message, static_cast<int>(std::max<std::int64_t>(0, offset)));
        ring_.pop();
    }
    core_->render(left_.data(), right_.data());
    taken_ = 0;
    fade();
    if (core_->peak() > peak_.load(std::memory_order_relaxed))
        peak_.store(core_->peak(), std::memory_order_relaxed);
}

void Synth::fade() noexcept {
    constexpr float kStep = 1.0F / 256;
    const float goal = muted_.load(std::memory_order_relaxed) ? 0 : 1;
    if (open_ == 1 && goal == 1) return;
    for (int i = 0; i < SynthCore::kBlock; ++i) {
        open_ = std::clamp(open_ + (goal > open_ ? kStep : -kStep), 0.0F, 1.0F);
        left_[i] *= open_;
        right_[i] *= open_;
    }
}

} // namespace marlune
