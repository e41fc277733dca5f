#include "platform/link_clock.h"

#ifdef MARLUNE_LINK

#include <ableton/Link.hpp>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <optional>

namespace marlune {

namespace {

using Micros = std::chrono::microseconds;

constexpr double kQuantum = 4;
constexpr double kPeriodsPerBeat = 24;
constexpr double kStartTempo = 120;

// A start that all shall hear together is this far ahead at least: the others have to learn of it.
constexpr std::int64_t kAnnounceNs = 150'000'000;

// How far back a start of the session may lie to be joined as if from its beginning.
constexpr std::int64_t kJoinNs = 1'000'000'000;

// The library's clock against ours: between two looks no more than this is lost, and a larger distance that
// lasts for some looks is true.
constexpr double kDrift = 500e-6;
constexpr std::int64_t kTearNs = 2'000'000;
constexpr int kTornLooks = 8;

class Session final : public LinkClock {
  public:
    void enable(bool on, bool shareStart, double tempo) override {
        if (on && !link_.isEnabled()) setTempo(tempo);
        link_.enableStartStopSync(shareStart);
        share_ = shareStart;
        link_.enable(on);
    }

    void setTempo(double tempo) override {
        auto state = link_.captureAppSessionState();
        state.setTempo(tempo, link_.clock().micros());
        link_.commitAppSessionState(state);
    }

    void look(std::int64_t now) noexcept override {
        joinClocks(now);
        state_.emplace(link_.captureAudioSessionState());
        const bool playing = share_ && state_->isPlaying();
        if (playing != playing_ && playing != running_)
            wish_ = {playing ? ClockWish::start : ClockWish::stop, kWhereItStands};
        playing_ = playing;
        tempo_.store(state_->tempo(), std::memory_order_relaxed);
    }

    std::int64_t restNs() const noexcept override { return 5'000'000; }

    void place(std::int64_t n, std::int64_t ns) noexcept override {
        if (!state_) return;
        const double beat = static_cast<double>(n) / kPeriodsPerBeat;
        const bool alone = link_.numPeers() == 0;
        if (n == 0 && playing_ && ns - ours(state_->timeForIsPlaying()) < kJoinNs) {
            const double began = state_->beatAtTime(state_->timeForIsPlaying(), kQuantum);
            base_ = std::ceil((began - 0.1) / kQuantum) * kQuantum;
        } else if (alone) {
            state_->forceBeatAtTime(beat, theirs(ns), kQuantum);
            base_ = 0;
            link_.commitAudioSessionState(*state_);
        } else {
            const double now = state_->beatAtTime(theirs(n == 0 && share_ ? ns + kAnnounceNs : ns), kQuantum);
            const double inBar = std::fmod(beat, kQuantum);
            base_ = inBar + std::ceil((now - inBar) / kQuantum) * kQuantum - beat;
        }
        if (n == 0 && share_ && !playing_) {
            state_->setIsPlaying(true, state_->timeAtBeat(base_, kQuantum));
            link_.commitAudioSessionState(*state_);
            playing_ = true;
        }
    }

    std::int64_t timeOf(std::int64_t n) const noexcept override {
        if (!state_) return kNever;
        return ours(state_->timeAtBeat(base_ + static_cast<double>(n) / kPeriodsPerBeat, kQuantum));
    }

    void runs(bool on) noexcept override {
        running_ = on;
        if (on || !share_ || !state_ || !state_->isPlaying()) return;
        state_->setIsPlaying(false, link_.clock().micros());
        link_.commitAudioSessionState(*state_);
        playing_ = false;
    }

    ClockWish takeWish() noexcept override { return std::exchange(wish_, {}); }

    ClockSight sight() const noexcept override {
        return {tempo_.load(std::memory_order_relaxed), link_.isEnabled(),
                static_cast<int>(link_.numPeers())};
    }

  private:
    // Both clocks are read one after the other: what comes between makes theirs late, never early.
    void joinClocks(std::int64_t now) noexcept {
        const std::int64_t fresh = now - link_.clock().micros().count() * 1000;
        const auto kept = offset_ - static_cast<std::int64_t>(static_cast<double>(now - looked_) * kDrift);
        torn_ = kept - fresh > kTearNs ? torn_ + 1 : 0;
        offset_ = looked_ == 0 || torn_ > kTornLooks ? fresh : std::max(fresh, kept);
        looked_ = now;
    }
    Micros theirs(std::int64_t ns) const noexcept { return Micros((ns - offset_) / 1000); }
    std::int64_t ours(Micros time) const noexcept { return time.count() * 1000 + offset_; }

    mutable ableton::Link link_{kStartTempo};
    std::atomic<bool> share_{false};
    std::atomic<double> tempo_{kStartTempo};

    // Engine thread.
    std::optional<ableton::Link::SessionState> state_;
    std::int64_t offset_ = 0; // our clock minus theirs, ns
    std::int64_t looked_ = 0;
    int torn_ = 0;
    double base_ = 0; // beat of the run's period 0
    bool playing_ = false, running_ = false;
    ClockWish wish_;
};

} // namespace

std::unique_ptr<LinkClock> makeLinkClock() {
    return std::make_unique<Session>();
}

} // namespace marlune

#else

std::unique_ptr<marlune::LinkClock> marlune::makeLinkClock() {
    return nullptr;
}

#endif
