// The transport of the JACK server as a source of time, and the program as its leader.
//
// Where a timebase master tells bar, beat and tick, those count; else the frames of the transport at the
// tempo of the program. Six periods are a sixteenth, four beats a bar.
#pragma once

#include <jack/jack.h>

#include <atomic>

#include "boundary/clock_source.h"

namespace marlune {

class JackTransport final : public ClockSource {
  public:
    // User-interface thread. client: activated, or null when it goes.
    void attach(jack_client_t* client);
    // follow: the wishes of the transport are passed on. lead: we are the timebase master, as long as there
    // is none yet, and command() moves the transport.
    void choose(bool wanted, bool follow, bool lead);
    void setTempo(double tempo) { tempo_.store(tempo, std::memory_order_relaxed); }
    void command(bool running, int songTick);

    // The server's thread, once a cycle. ns: play time of its first frame.
    void cycle(std::int64_t ns, std::int64_t rate) noexcept;

    // Engine thread.
    void look(std::int64_t now) noexcept override;
    std::int64_t restNs() const noexcept override { return 5'000'000; }
    void place(std::int64_t n, std::int64_t ns) noexcept override;
    std::int64_t timeOf(std::int64_t n) const noexcept override;
    ClockWish takeWish() noexcept override;
    // Any thread. Locked while the server is there.
    ClockSight sight() const noexcept override;

  private:
    // Where the transport is: at time ns it has come to that many periods from the song's beginning.
    struct Place {
        std::int64_t ns = 0;
        double periods = 0;
        double tempo = 0;
        std::int64_t epoch = 0; // counts the moves; 0: nothing was seen yet
        jack_transport_state_t state =
            JackTransportStopped; // starting: it waits for slow clients, or was moved
    };

    static void onTimebase(jack_transport_state_t state, jack_nframes_t frames, jack_position_t* position,
                           int isNew, void* self);
    double periodsAt(std::int64_t frame) const noexcept;
    void anchor(std::int64_t frame, double periods, double tempo) noexcept;
    bool read(Place& place) const noexcept;
    void write(const Place& place) noexcept;
    double lengthNs() const noexcept { return 2.5e9 / seen_.tempo; }
    void enter() noexcept;
    void wish(int slot, ClockWish::Kind kind) noexcept;

    // User-interface thread.
    jack_client_t* client_ = nullptr;
    bool wanted_ = false;

    std::atomic<jack_client_t*> active_{nullptr};
    std::atomic<double> tempo_{120};
    std::atomic<bool> follow_{false}, lead_{false}, commanded_{false};

    // The server's thread: a straight line from frames to periods.
    std::int64_t anchorFrame_ = 0, nextFrame_ = -1, epoch_ = 0, rate_ = 48000;
    double anchorPeriods_ = 0, anchorTempo_ = 120;

    // The place, written whole: odd while it is being written.
    std::atomic<std::uint32_t> turn_{0};
    std::atomic<std::int64_t> ns_{0}, epochs_{0};
    std::atomic<double> periods_{0}, shownTempo_{0};
    std::atomic<int> state_{JackTransportStopped};

    // Engine thread.
    Place seen_;
    std::int64_t movedAt_ = 0; // epoch of the last place that was not on its way
    bool running_ = false;
    double base_ = 0;           // periods from the song's beginning to the run's
    std::int64_t waiting_ = -1; // a period that begins with the transport
    double entry_ = -1;         // where a run begins that the transport has asked for
    ClockWish wishes_[2];
};

} // namespace marlune
