// Who tells the time of the timer's periods. The internal clock and MIDI clock are in engine/, what needs
// this machine in platform/; tests make theirs up.
#pragma once

#include <cstdint>
#include <limits>

#include "boundary/midi_ports.h"

namespace marlune {

enum class ClockKind : std::uint8_t { internal, link, midi, jack };
inline constexpr int kClockKinds = 4;
constexpr int indexOf(ClockKind kind) {
    return static_cast<int>(kind);
}

inline constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();
inline constexpr std::int64_t kClocksPerBar = 96; // 24 to the quarter note

inline constexpr int kWhereItStands = -1;

// What a source asks the program for. tick: song tick of a bar line, of a start and a locate, or
// kWhereItStands.
struct ClockWish {
    enum Kind : std::int32_t { none, start, stop, locate };
    Kind kind = none;
    std::int32_t tick = 0;
};

// What there is to show of a source.
struct ClockSight {
    double tempo = 0; // beats a minute; 0: not known
    bool locked = false;
    int peers = 0;
};

// Engine thread, except sight(): nothing here allocates, waits or logs. Times are those of PlayClock, ns.
// Periods are counted from the start of a run; the first of each 96 belongs onto a bar line of the source.
class ClockSource {
  public:
    virtual ~ClockSource() = default;

    // Takes in what has come since the last look; the answers of timeOf() change with it and with place()
    // only.
    virtual void look(std::int64_t /*now*/) noexcept {}

    // How long the thread may sleep before the next look; kNever: until somebody wakes it.
    virtual std::int64_t restNs() const noexcept { return kNever; }

    // Puts period n at the first fitting place at or after ns; the others of the run follow from it. A run
    // that begins because the source asked for it begins where the source meant it, even if that is over
    // already.
    virtual void place(std::int64_t n, std::int64_t ns) noexcept = 0;

    // Time of period n; kNever while the source stands, or doesn't know yet.
    virtual std::int64_t timeOf(std::int64_t n) const noexcept = 0;

    // A run of the program has begun, or is over.
    virtual void runs(bool /*on*/) noexcept {}

    // The oldest wish not yet taken.
    virtual ClockWish takeWish() noexcept { return {}; }

    // Any thread.
    virtual ClockSight sight() const noexcept { return {}; }
};

// Takes the messages of a clock stream as they arrive on a link, on the thread of that link; real-time safe.
class ClockTap {
  public:
    // when: on the play clock; kArrivesNow where the link can't tell.
    virtual void heard(int link, const MidiMessage& message, std::int64_t when) noexcept = 0;

  protected:
    ~ClockTap() = default;
};

inline constexpr int kMostClockOffsetMs = 100;

// What the user chose; kept in clock.cfg.
struct ClockSettings {
    ClockKind kind = ClockKind::internal;
    int offsetMs = 0;       // > 0 plays later; -100..100
    bool shareStart = true; // Link: start and stop with the others
    bool followJack = true; // JACK: start, stop and place as the others wish
    bool leadJack = false;  // JACK: they do as we wish, and get bar, beat and tick from us
    bool operator==(const ClockSettings&) const = default;
};

// The sources of this machine as the user interface sees them. User-interface thread.
class ClockRoom {
  public:
    virtual ~ClockRoom() = default;
    virtual bool offers(ClockKind kind) = 0; // whether the choice can work here at all
    virtual ClockSight sight(ClockKind kind) = 0;
    virtual void choose(const ClockSettings& settings, double tempo) = 0;
    virtual void setTempo(double tempo) = 0;                // what the user sets, where the source shares it
    virtual void transport(bool running, int songTick) = 0; // the program has started or stopped there
};

// The one in use; null for none.
void setClockRoom(ClockRoom* room);
ClockRoom* clockRoom();

} // namespace marlune
