// The sources of time of this machine, put together.
#pragma once

#include <memory>

#include "boundary/clock_source.h"
#include "platform/jack_client.h"
#include "platform/link_clock.h"

namespace marlune {

// User-interface thread. jack: may be null.
class Clocks final : public ClockRoom {
  public:
    explicit Clocks(JackClient* jack) : jack_(jack), link_(makeLinkClock()) {}

    // The MIDI clock is the engine's own.
    void offerMidi(const ClockSource& midi) { midi_ = &midi; }
    // Null where there is none. The session of Link rests until it is chosen.
    ClockSource* linkSource() { return link_.get(); }
    ClockSource* jackSource() { return jack_ != nullptr ? &jack_->transport() : nullptr; }

    bool offers(ClockKind kind) override;
    ClockSight sight(ClockKind kind) override;
    void choose(const ClockSettings& settings, double tempo) override;
    void setTempo(double tempo) override;
    void transport(bool running, int songTick) override;

  private:
    JackClient* jack_;
    const ClockSource* midi_ = nullptr;
    std::unique_ptr<LinkClock> link_;
    ClockKind kind_ = ClockKind::internal;
};

} // namespace marlune
