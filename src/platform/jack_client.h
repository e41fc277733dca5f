// The program's own client of the JACK server: MIDI ports whose events fall on their exact frames.
#pragma once

#include <jack/jack.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/audio_source.h"
#include "platform/awaited.h"
#include "platform/frame_time.h"
#include "platform/jack_transport.h"
#include "platform/message_ring.h"
#include "platform/play_clock.h"
#include "platform/port_system.h"

namespace marlune {

// Everything on the user-interface thread, except that send() of its links belongs to the engine thread and
// sinks are called on the server's. Never starts a server and prints nothing. While no server is there the
// lists are empty and links swallow what they get; poll() notices a server that came, at most one call later.
//
// An event sounds at its due time plus latencyNs(): a period of the server, because a cycle is written ahead
// of its time, and kLookAheadNs, the lateness that the sending thread may have without moving a single event.
class JackClient : public PortSystem {
  public:
    static constexpr std::int64_t kLookAheadNs = 4'000'000;

    // clock: follows the server's frames while one is there; must outlive the client.
    explicit JackClient(SystemPlayClock& clock);
    ~JackClient() override;
    JackClient(const JackClient&) = delete;
    JackClient& operator=(const JackClient&) = delete;

    std::vector<Port> outputs() override;
    std::vector<Port> inputs() override;
    std::unique_ptr<OutputLink> openOutput(const std::string& address) override;
    std::unique_ptr<InputLink> openInput(const std::string& address, InputSink& sink) override;
    OutputLink& virtualOutput() override;
    std::unique_ptr<InputLink> openVirtualInput(InputSink& sink) override;
    void poll() override;

    // Gives the source two audio ports, wired to the first pair of the sound card; null takes them away, and
    // the source is called no more once that has returned. Done with when the server dies. False without a
    // server. Audio has to share this client: the library does not bear two in one process when a server
    // dies.
    bool setAudio(AudioSource* source);

    JackTransport& transport() { return transport_; }

    bool online() const noexcept { return online_.load(); }

    // Whether every connection carries what it is given; a new one takes a tenth of a second.
    bool settled() const noexcept;

    // Frames a second; 0 while no server is there. A server may change it at any time.
    int sampleRate() const noexcept;
    std::int64_t latencyNs() const noexcept;

    // Events that came too late for their frame and went out at the start of the next cycle.
    std::uint32_t lateEvents() const noexcept { return late_.load(); }

  private:
    class Output;
    class Input;

    // What a port of ours and the server's cycle share. A lane without a port is left alone by the cycle.
    struct OutLane {
        std::atomic<jack_port_t*> port{nullptr};
        MessageRing ring;
        std::atomic<std::int64_t> settling{0}; // frames until a new connection is known to carry
        bool taken = false;
    };
    struct InLane {
        std::atomic<jack_port_t*> port{nullptr};
        std::atomic<InputSink*> sink{nullptr};
        bool taken = false;
    };

    bool open();
    void close();
    static void closeBounded(jack_client_t* client);
    void quiesce() noexcept;
    void drain(const OutLane& lane);
    std::vector<Port> list(unsigned long flags);
    OutLane* freeOutLane();
    jack_port_t* registerPort(const char* name, unsigned long flags);
    void releaseOutput(OutLane& lane, std::uint32_t session);
    void releaseInput(InLane& lane, std::uint32_t session, bool keepPort);
    bool connected(jack_port_t* port, const std::string& address, std::uint32_t session);

    // The server's thread: jack_cycle.cpp.
    static int onProcess(jack_nframes_t frames, void* self);
    static void onShutdown(void* self);
    static void onInfoShutdown(jack_status_t code, const char* reason, void* self);
    static int onSampleRate(jack_nframes_t rate, void* self);
    void process(jack_nframes_t frames) noexcept;
    std::int64_t followServer(jack_nframes_t frames) noexcept;
    void write(OutLane& lane, jack_nframes_t frames, std::int64_t cycle) noexcept;
    void playAudio(jack_nframes_t frames) noexcept;
    void read(InLane& lane, jack_nframes_t frames, std::int64_t cycle) noexcept;

    static constexpr int kLanes = 8; // 0 is the virtual port

    SystemPlayClock& clock_;
    static constexpr int kEagerPolls = 60; // after a server has left
    static constexpr int kLazyPolls = 5;   // otherwise one in so many looks
    int eagerPolls_ = 0;
    int lazyPolls_ = 0;
    Awaited<jack_client_t*> opening_; // a server that stands still holds its callers up for ever
    jack_client_t* client_ = nullptr;
    std::uint32_t session_ = 0; // counts the servers seen; a link of an earlier one is dead
    std::atomic<bool> online_{false};
    std::atomic<std::uint32_t> entered_{0}, left_{0}, late_{0};
    std::atomic<std::int64_t> period_{0};   // frames
    std::atomic<std::int64_t> rate_{48000}; // frames a second, as the server says
    std::array<std::unique_ptr<OutLane>, kLanes> outLanes_;
    std::array<std::atomic<OutLane*>, kLanes> outActive_{};
    std::array<InLane, 2> inLanes_;
    std::unique_ptr<Output> virtualOutput_;
    JackTransport transport_;
    std::array<jack_port_t*, 2> audioPorts_{};
    std::atomic<AudioSource*> audio_{nullptr}; // set only while the ports stand

    // The server's thread alone, while a session lasts.
    FrameTime time_;
    std::int64_t frame_ = 0;         // of the present cycle, without wrapping round
    jack_nframes_t serverFrame_ = 0; // the same as the server counts it
    bool first_ = true;
    std::int64_t clockOffset_ = 0; // monotonic clock minus the server's, ns
};

} // namespace marlune
