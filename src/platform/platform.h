// Everything of this machine that makes or takes MIDI, in one object.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "boundary/midi_ports.h"
#include "platform/clocks.h"

namespace marlune {

struct PlatformOptions {
    std::string stateFile;   // what is remembered of the devices; "" keeps nothing
    bool systemPorts = true; // false: neither JACK nor ALSA, only the built-in devices
    bool sound = true;       // false: the built-in synthesizer opens no audio device and swallows its events
    bool room = true;        // a little reverb around the built-in instruments
};

// User-interface thread, except for what the interfaces allow elsewhere. Works with and without a MIDI
// server, an audio device, a sound font; prints nothing.
class Platform {
  public:
    explicit Platform(const PlatformOptions& options);
    ~Platform(); // every port has to be closed before
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;

    PlayClock& clock();
    OutputDevices& outputs();
    InputDevices& inputs();
    Clocks& clocks();

    // About once a second; mostly done within a millisecond, 5 ms while there is no JACK server. Notices
    // servers and devices that came or went and connects open ones again. Returns lines for the status line,
    // mostly none.
    std::vector<std::string> poll();

    // Whether what is sent now goes out at its time on every open connection: a new one needs a moment.
    bool settled() const;

    // The audio driver of the built-in synthesizer, "" while it has none.
    std::string soundDriver() const;

    // The loudest value of the built-in synthesizer since the last call; 1 is full scale, beyond is overload.
    float soundPeak();
    void muteSound(bool on);

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace marlune
