// The built-in synthesizer as a port that sounds on this machine's audio device.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/audio_source.h"
#include "platform/frame_time.h"
#include "platform/jack_client.h"
#include "platform/message_ring.h"
#include "platform/port_system.h"
#include "platform/sound_driver.h"
#include "platform/synth_core.h"

namespace marlune {

struct SynthOptions {
    bool sound = true; // false never opens an audio device
    bool room = true;
};

// What there was to hear since the last look.
struct SynthMeter {
    float peak = 0; // the largest value before the limiter; 1 is full scale, and beyond that is overload
};

// User-interface thread, except send(): engine thread. Events go through a ring into the audio callback,
// which places them at their sample with a fixed latency. Without any audio device it swallows what it gets,
// and looks for one again from time to time.
class Synth : public OutputLink, private AudioSource {
  public:
    // jack: to be preferred while it is online; may be null. Clock and client outlive the synthesizer.
    Synth(PlayClock& clock, JackClient* jack, const SynthOptions& options);
    ~Synth() override;
    Synth(const Synth&) = delete;
    Synth& operator=(const Synth&) = delete;

    // Users are counted. The device opens for the first one; it closes some seconds after the last one left,
    // as ports are often closed to be opened again at once.
    void addUser();
    void removeUser();
    void poll();

    // A line for the user about what keeps the synthesizer silent, once each time it comes to that; else "".
    std::string complaint();

    // Silence within some milliseconds, and back. What is played meanwhile sounds on when it comes back.
    void mute(bool on) { muted_.store(on, std::memory_order_relaxed); }
    SynthMeter takeMeter() { return {peak_.exchange(0, std::memory_order_relaxed)}; }

    void send(const MidiMessage& message, std::int64_t due) noexcept override;
    // Without that of the sound card.
    std::int64_t latencyNs() const noexcept override { return latencyNs_.load(std::memory_order_relaxed); }
    bool alive() noexcept override { return true; }

    // The name of the audio driver in use, "" where there is none.
    const char* driverName();

    // Whether a device is being opened, for at most some seconds: what is sent meanwhile is swallowed.
    bool opening() { return driver_.opening(); }

    // Audio thread, for the driver; public for tests. Writes the next frames.
    void fill(int frames, float* left, float* right) noexcept override;

    // Makes sample rate and sound ready as for a driver, without one; for tests.
    void prepare(int sampleRate);

  private:
    void start();
    void stop();
    bool startJack();
    void nextBlock() noexcept;
    void fade() noexcept;

    PlayClock& clock_;
    JackClient* jack_;
    SynthOptions options_;
    std::string complained_;
    int users_ = 0;
    int idlePolls_ = 0;
    int stalledPolls_ = 0;
    std::uint32_t seenCallbacks_ = 0;
    bool onJack_ = false;
    std::atomic<bool> running_{false};
    std::atomic<bool> muted_{false};
    std::atomic<float> peak_{0};
    std::atomic<std::uint32_t> callbacks_{0};
    std::atomic<std::int64_t> latencyNs_{0};
    MessageRing ring_;

    // Audio thread, while a driver runs.
    std::unique_ptr<SynthCore> core_;
    FrameTime time_;                // of the frames that fill() has handed out
    std::int64_t frame_ = -1;       // handed out so far; -1: none yet
    std::int64_t latency_ = 0;      // frames
    int taken_ = SynthCore::kBlock; // of the present block
    float open_ = 1;                // 0: muted
    std::array<float, SynthCore::kBlock> left_{}, right_{};

    SoundDriver driver_; // last: its thread ends before the rest
};

} // namespace marlune
