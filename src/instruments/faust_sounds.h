// The sounds that the .dsp files describe, as objects that compute samples.
#pragma once

#include <memory>

class dsp; // of Faust

namespace marlune {

enum class Timbre { bass, kick, snare, clap, closedHat, pedalHat, openHat, tom, room };

// sampleRate: 8000..96000. Any thread.
std::unique_ptr<dsp> makeSound(Timbre timbre, int sampleRate);

} // namespace marlune
