// The log of everything that leaves the playback component, one line per message:
// <microseconds since the first step> <seq|sync> <hex bytes>
// What went out before a first step was in sight carries the time of what came first behind it.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "boundary/wire_log.h"
#include "util/spsc_ring.h"

namespace marlune {

// sent() comes from the engine's thread and neither allocates nor waits; the rest belongs to the thread that
// writes the file.
class WireFile final : public WireLog {
  public:
    void sent(std::int64_t ns, Role role, const MidiMessage& message) noexcept override;

    void begin() { recording_ = true; } // before this nothing is kept
    void collect();                     // takes what was sent; at least once in about 10000 messages
    [[nodiscard]] const std::string& text() const { return text_; } // lines in the order of their times
    [[nodiscard]] bool complete() const { return lost_ == 0; }

  private:
    struct Sent {
        std::int64_t ns;
        Role role;
        MidiMessage message;
    };
    SpscRing<Sent, 16384> ring_;
    std::atomic<bool> recording_{false};
    std::atomic<int> lost_{0};
    void add(const Sent& entry, std::int64_t ns);

    std::vector<Sent> early_; // sent while no first step was in sight
    bool inSight_ = false;
    std::string text_;
};

} // namespace marlune
