// The audio device of the built-in synthesizer where no JACK server is: a sound server's or the sound card's.
#pragma once

#include <fluidsynth.h>

#include <atomic>
#include <chrono>
#include <memory>

#include "platform/audio_source.h"
#include "platform/awaited.h"

namespace marlune {

// User-interface thread. The device is opened and closed on threads of its own, as a sound server that
// accepts and never answers holds them up for ever; a driver that doesn't come back is left behind, and no
// other is opened until it has.
class SoundDriver {
  public:
    static constexpr int kRate = 48000;                    // frames a second
    static constexpr std::chrono::seconds kPatience{5};    // for the opening
    static constexpr std::chrono::seconds kEndPatience{1}; // for the end

    SoundDriver();
    ~SoundDriver() { close(); }
    SoundDriver(const SoundDriver&) = delete;
    SoundDriver& operator=(const SoundDriver&) = delete;

    // Tries the servers that may be there, then the card. source: called from the driver's thread as soon as
    // there is one, until close() has returned.
    void open(AudioSource& source);
    void close();

    // Whether the opening is under way still; over as well once it has taken longer than kPatience.
    bool opening();

    // The name of the driver in use, "" where there is none.
    const char* name();

  private:
    // What the threads of a driver share with this side, for as long as the last of them lives.
    struct Sound {
        std::atomic<AudioSource*> source{nullptr};
        std::atomic<bool> inside{false};
        fluid_settings_t* settings = nullptr;
        fluid_audio_driver_t* driver = nullptr;
        const char* name = "";
        ~Sound();
    };
    static std::shared_ptr<Sound> make(const std::shared_ptr<Sound>& sound);
    static int onAudio(void* self, int frames, int effects, float** effect, int outputs, float** output);
    void look();

    Awaited<std::shared_ptr<Sound>> awaited_;
    std::chrono::steady_clock::time_point since_;
    std::shared_ptr<Sound> sound_; // null: none was asked for
    bool opened_ = false;
    std::weak_ptr<Sound> last_; // not expired while its threads are about
};

} // namespace marlune
