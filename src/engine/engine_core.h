// The playback component without a thread: the sequencer, the timer's state and the open ports.
//
// Both engines are this with a time of their own around it. One thread at a time; never allocates.
#pragma once

#include "engine/period_clock.h"
#include "engine/sequencer.h"

namespace marlune {

inline constexpr std::int64_t kStartDelayNs = 25'000'000; // from the start to the first period
inline constexpr std::int64_t kMaxCatchUpNs = 50'000'000;
// One bar at the highest tempo: at most one bar line is skipped, and what comes behind it is cued already.
inline constexpr std::int64_t kMaxSkipNs = 1'000'000'000;

class EngineCore final : private MidiSink, private MessageSink {
  public:
    // log: may be null.
    EngineCore(MessageSink& messages, WireLog* log) : messages_(messages), log_(log) {}

    // A source that SetClock32 can choose from now on; outlives the core.
    void offerClock(ClockKind kind, ClockSource* source) noexcept { offered_[indexOf(kind)] = source; }

    // Before deadline() is asked: takes in what the source that is followed has heard, and posts its wishes.
    // A source whose time has jumped by more than kMaxCatchUpNs (another session, another place) gets the run
    // put onto its new grid: the next period waits for its place, so that no step is lost or doubled.
    void look(std::int64_t nowNs) noexcept;

    // How long nobody has to look, as far as the source is concerned.
    std::int64_t restNs() const noexcept { return source_ != nullptr ? source_->restNs() : kNever; }

    // Carries out any entry point but those of window and ports. nowNs: time of the call on the clock that
    // deadline() speaks of.
    void apply(const EngineCall& call, std::int64_t nowNs) noexcept;

    // Time of the next period; kNever while the timer stands, waits for a release of the hold, or is halted.
    std::int64_t deadline() const noexcept;

    // Plays the period that deadline() names, with its ideal time on every message. Lateness up to
    // kMaxCatchUpNs is caught up, period by period. What a longer stall has missed is not sent in a burst:
    // what sounds is released, and then
    //  - up to kMaxSkipNs the missed periods are skipped (see Sequencer::skipPeriod()): the grid of time, the
    //    position and the user interface go on as if they had been heard; who follows the clock gets Stop,
    //    and position and Continue with the next step;
    //  - after a longer one, or before the first period of a run, time moves on instead: the timer goes on
    //  now
    //    with the period it was to play, and who follows the clock has waited as well.
    void period(std::int64_t nowNs) noexcept;

    // Opens (port) or closes (null) a role. What sounds is released before the sequencer port changes.
    void setPort(Role role, OutputPort* port, std::int64_t nowNs) noexcept;

    // After steps complete steps the timer halts by itself, as if the clock stood still, until it is stopped
    // or started again; 0 for no limit.
    void limitSteps(int steps) noexcept { limit_ = steps; }
    bool halted() const noexcept { return state_ == State::halted; }

    // Whether the timer runs: from a start to the stop, in a hold and at the limit as well.
    bool running() const noexcept { return state_ != State::standing; }

    const PatternStore& patterns() const noexcept { return sequencer_.patterns(); }

  private:
    enum class State : std::uint8_t { standing, waiting, playing, halted };

    void midi(Role role, const MidiMessage& message) noexcept override;
    void post(const EngineMessage& message) noexcept override;
    void send(Role role, const MidiMessage& message) noexcept;
    void log(Role role, const MidiMessage& message) noexcept;
    Sinks sinks() noexcept { return {*this, *this}; }
    void takeRate(int periodMs) noexcept;
    void start(int periodMs) noexcept;
    void stop() noexcept;
    void hold(bool on) noexcept;
    void placeFirstPeriod() noexcept;
    void setClock(int kind) noexcept;
    std::int64_t leadNs() const noexcept;
    bool due() const noexcept { return state_ == State::playing || (state_ == State::waiting && !held_); }
    void stalled(std::int64_t nowNs) noexcept;
    void playSwung() noexcept;
    std::int64_t swingNs(std::int64_t before) const noexcept;
    std::int64_t nextPeriod() const noexcept;
    void beginPeriod() noexcept;
    void endPeriod() noexcept;
    void endPlacing() noexcept;

    // A placing on its way: what belongs to it waits here until it is whole.
    static constexpr int kMostPlaced = 64; // a placing of all modules takes 26
    struct Placing {
        bool open = false;
        int ticksTaken = 0;
        int number = 0;
        int carriedOut = 0; // number of the last one
        int count = 0;
        std::array<EngineCall, kMostPlaced> calls;
    };

    Sequencer sequencer_;
    Placing placing_;
    PeriodClock clock_;
    std::array<ClockSource*, kClockKinds> offered_{};
    ClockSource* source_ = nullptr;  // followed; null: clock_ rules
    std::int64_t next_ = 0;          // period of the run that comes
    std::int64_t lead_ = 0;          // how much earlier than the source's time a period is played
    std::int64_t offset_ = 0;        // what the user wants of it
    std::int64_t expected_ = kNever; // what the source said last of the next period
    std::int64_t swung_ = kNever;    // time of a step that is late on purpose
    std::int64_t played_ = 0;        // time of the last period: none comes before it
    MessageSink& messages_;
    WireLog* log_;
    std::array<OutputPort*, kRoles> ports_{};
    State state_ = State::standing;
    bool held_ = false;
    int tempo_ = 0; // waits for the next start or change of rate; 0: none
    int limit_ = 0;
    std::int64_t time_ = 0;           // of what is being carried out
    std::int64_t firstStep_ = kNever; // ideal time of the run's first step; kNever: not in sight
};

} // namespace marlune
