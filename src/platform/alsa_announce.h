// What the ALSA sequencer announces of clients and ports that left.
#pragma once

#include <cstdint>
#include <map>
#include <utility>

using snd_seq_t = struct _snd_seq;

namespace marlune {

// A list of names can't tell that a client died and came back under its old number: who is connected to a
// port remembers departures() of that moment, and is alone again once it has grown. User-interface thread.
class AlsaAnnounce {
  public:
    AlsaAnnounce();
    ~AlsaAnnounce();
    AlsaAnnounce(const AlsaAnnounce&) = delete;
    AlsaAnnounce& operator=(const AlsaAnnounce&) = delete;

    // Takes in what was announced since the last time; never waits.
    void poll();

    // How often a port has left so far, as of the last poll. Announcements that were lost count for all.
    std::uint32_t departures(int client, int port) const;

  private:
    snd_seq_t* sequencer_ = nullptr; // null: nothing is ever announced
    std::map<std::pair<int, int>, std::uint32_t> left_;
    std::map<int, std::uint32_t> clientsLeft_;
    std::uint32_t missed_ = 0;
};

} // namespace marlune
