#include "engine/engine_core.h"

#include <algorithm>
#include <utility>

#include "project/groove.h"

namespace marlune {

namespace {

constexpr int kTopTempo = 1000;    // far above anything playable
constexpr int kTopPeriodMs = 1000; // far below
constexpr int kMostCounted = 1024; // steps that a caller may be behind, 64 bars

constexpr std::size_t indexOf(Role role) {
    return static_cast<std::size_t>(role);
}

constexpr std::int64_t kMicrosecondNs = 1000;
constexpr int kMostOffsetUs = 500'000;
constexpr std::int64_t kLongestPeriodNs = 250'000'000;

} // namespace

void EngineCore::apply(const EngineCall& call, std::int64_t nowNs) noexcept {
    time_ = nowNs;
    const int argument = call.arguments[0];
    if (placing_.open && call.entry != Entry::EndPlacing32 && placing_.count < kMostPlaced) {
        placing_.calls[placing_.count++] = call;
        return;
    }
    switch (call.entry) {
        case Entry::BeginPlacing32:
            placing_.open = true;
            placing_.ticksTaken = argument;
            placing_.number = call.arguments[1];
            placing_.count = 0;
            break;
        case Entry::EndPlacing32: endPlacing(); break;
        case Entry::SetMarluneTempo32: tempo_ = std::clamp(argument, 0, kTopTempo); break;
        case Entry::HoldTicks32: hold(argument != 0); break;
        case Entry::StartMarluneTimer32: start(argument); break;
        case Entry::SetMarluneTimerInterval32: takeRate(argument); break;
        case Entry::StopMarluneTimer32: stop(); break;
        case Entry::SetClock32: setClock(argument); break;
        case Entry::SetClockOffset32:
            offset_ = std::clamp(argument, -kMostOffsetUs, kMostOffsetUs) * kMicrosecondNs;
            break;
        default: sequencer_.apply(call, sinks()); break;
    }
}

void EngineCore::endPlacing() noexcept {
    if (!placing_.open) return;
    placing_.open = false;
    placing_.carriedOut = placing_.number;
    for (int i = 0; i < placing_.count; ++i) sequencer_.apply(placing_.calls[i], sinks());
    if (state_ != State::playing) return;
    const int since =
        std::clamp(sequencer_.stepsPlayed() - std::max(placing_.ticksTaken, 0), 0, kMostCounted);
    sequencer_.skipSteps(since, sinks());
}

void EngineCore::takeRate(int periodMs) noexcept {
    if (tempo_ > 0) {
        clock_.setTempo(tempo_, next_);
    } else {
        clock_.setPeriod(std::clamp(periodMs, 1, kTopPeriodMs), next_);
    }
    tempo_ = 0;
}

void EngineCore::start(int periodMs) noexcept {
    if (state_ != State::standing) stop();
    next_ = 0;
    takeRate(periodMs);
    sequencer_.start();
    state_ = State::waiting;
    firstStep_ = kNever;
    if (!held_) placeFirstPeriod();
}

void EngineCore::stop() noexcept {
    if (source_ != nullptr && running()) source_->runs(false);
    sequencer_.stop(sinks());
    swung_ = kNever;
    state_ = State::standing;
}

void EngineCore::hold(bool on) noexcept {
    if (on == held_) return;
    held_ = on;
    if (state_ != State::waiting) return;
    firstStep_ = kNever;
    if (!on) placeFirstPeriod();
}

void EngineCore::placeFirstPeriod() noexcept {
    expected_ = kNever;
    played_ = 0;
    if (source_ != nullptr) {
        lead_ = leadNs();
        source_->runs(true);
        source_->place(0, time_ + lead_);
        return; // the first step's time is known when it comes
    }
    clock_.place(0, time_ + kStartDelayNs);
    firstStep_ = clock_.timeOf(sequencer_.sync().periodsToFirstStep());
}

// What leaves through a port that places events exactly arrives when the source means it.
std::int64_t EngineCore::leadNs() const noexcept {
    const OutputPort* port = ports_[indexOf(Role::seq)];
    return (port != nullptr ? port->latencyNs() : 0) - offset_;
}

void EngineCore::setClock(int kind) noexcept {
    ClockSource* const chosen = kind >= 0 && kind < kClockKinds ? offered_[kind] : nullptr;
    if (chosen == source_) return;
    const std::int64_t next = due() && nextPeriod() != kNever ? nextPeriod() : time_;
    if (source_ != nullptr && running()) source_->runs(false);
    source_ = chosen;
    expected_ = kNever;
    lead_ = chosen != nullptr ? leadNs() : 0;
    if (chosen == nullptr) {
        if (due()) clock_.place(next_, next);
        return;
    }
    chosen->look(time_);
    if (running()) chosen->runs(true);
    if (due()) chosen->place(next_, next + lead_);
}

void EngineCore::look(std::int64_t nowNs) noexcept {
    if (source_ == nullptr) return;
    source_->look(nowNs);
    for (ClockWish wish = source_->takeWish(); wish.kind != ClockWish::none; wish = source_->takeWish())
        messages_.post({kClockMessage, wish.kind, wish.tick, 0});
    if (!due()) return;
    lead_ = leadNs();
    std::int64_t told = source_->timeOf(next_);
    if (told != kNever && expected_ != kNever && std::abs(told - expected_) > kMaxCatchUpNs) {
        source_->place(next_, expected_);
        told = source_->timeOf(next_);
    }
    expected_ = told;
}

std::int64_t EngineCore::deadline() const noexcept {
    return due() ? std::min(swung_, nextPeriod()) : kNever;
}

std::int64_t EngineCore::nextPeriod() const noexcept {
    if (source_ == nullptr) return clock_.timeOf(next_);
    const std::int64_t told = source_->timeOf(next_);
    return told == kNever ? kNever : std::max(told - lead_, played_);
}

void EngineCore::period(std::int64_t nowNs) noexcept {
    if (nowNs - deadline() > kMaxCatchUpNs) {
        stalled(nowNs);
        if (deadline() > nowNs) return;
    }
    if (swung_ < nextPeriod()) {
        playSwung();
        return;
    }
    const std::int64_t before = played_;
    beginPeriod();
    if (sequencer_.period(sinks())) swung_ = time_ + swingNs(before);
    endPeriod();
}

// A swung step comes between two periods.
void EngineCore::playSwung() noexcept {
    time_ = played_ = std::exchange(swung_, kNever);
    sequencer_.playDelayed(sinks());
}

// before: time of the last period. Where the next ones are known, so is the length of the sixteenth.
std::int64_t EngineCore::swingNs(std::int64_t before) const noexcept {
    const std::int64_t sixteenth =
        source_ == nullptr ? clock_.timeOf(next_ + kPeriodsPerStep) - clock_.timeOf(next_)
                           : kPeriodsPerStep * std::clamp<std::int64_t>(time_ - before, 0, kLongestPeriodNs);
    return sixteenth * sequencer_.swing() / kStraight;
}

void EngineCore::stalled(std::int64_t nowNs) noexcept {
    const std::int64_t late = nowNs - nextPeriod();
    time_ = nowNs;
    // A source goes on meanwhile: what it has begun without us is joined, not begun later.
    if ((state_ == State::waiting && source_ == nullptr) || late > kMaxSkipNs) {
        clock_.shift(late);
        if (swung_ != kNever) swung_ = nowNs;
        if (source_ != nullptr) source_->place(next_, nowNs + lead_);
        expected_ = kNever;
        if (firstStep_ != kNever)
            firstStep_ += late; // before anything is logged: its time runs on from there
        sequencer_.releaseAll(sinks());
        return;
    }
    sequencer_.interrupt(sinks());
    if (swung_ != kNever) {
        swung_ = kNever;
        sequencer_.skipDelayed(sinks());
    }
    while (nextPeriod() < nowNs) {
        beginPeriod();
        time_ = nowNs; // of what goes out nevertheless
        sequencer_.skipPeriod(sinks());
        endPeriod();
    }
}

void EngineCore::beginPeriod() noexcept {
    time_ = played_ = nextPeriod();
    // A change of rate in the periods before it moves the first step.
    if (sequencer_.sync().periodsToFirstStep() == 0) firstStep_ = time_;
}

void EngineCore::endPeriod() noexcept {
    ++next_;
    expected_ = kNever;
    state_ = limit_ > 0 && sequencer_.sync().stepsCompleted() >= limit_ ? State::halted : State::playing;
}

void EngineCore::setPort(Role role, OutputPort* port, std::int64_t nowNs) noexcept {
    time_ = nowNs;
    if (role == Role::seq) sequencer_.releaseAll(sinks());
    ports_[indexOf(role)] = port;
}

void EngineCore::post(const EngineMessage& message) noexcept {
    EngineMessage numbered = message;
    numbered.placing = placing_.carriedOut;
    messages_.post(numbered);
}

void EngineCore::midi(Role role, const MidiMessage& message) noexcept {
    OutputPort* const seqPort = ports_[indexOf(Role::seq)];
    const bool oneDevice = seqPort != nullptr && seqPort == ports_[indexOf(Role::sync)];
    send(role, message);
    log(role, message);
    if (role != Role::sync) return;
    if (!oneDevice) send(Role::seq, message);
    log(Role::seq, message); // the log doesn't depend on the devices
}

void EngineCore::send(Role role, const MidiMessage& message) noexcept {
    OutputPort* const port = ports_[indexOf(role)];
    if (port != nullptr) port->send(message, time_);
}

void EngineCore::log(Role role, const MidiMessage& message) noexcept {
    if (log_ != nullptr)
        log_->sent(firstStep_ == kNever ? -kStartDelayNs : time_ - firstStep_, role, message);
}

} // namespace marlune
