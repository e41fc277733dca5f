#include "instruments/faust_sounds.h"

#include <faust/dsp/dsp.h>
#include <faust/gui/UI.h>
#include <faust/gui/meta.h>

#include <faust_voices/Bass.h>
#include <faust_voices/Clap.h>
#include <faust_voices/Closed.h>
#include <faust_voices/Kick.h>
#include <faust_voices/Open.h>
#include <faust_voices/Pedal.h>
#include <faust_voices/Room.h>
#include <faust_voices/Snare.h>
#include <faust_voices/Tom.h>

namespace marlune {

namespace {

template <class T>
std::unique_ptr<dsp> made(int sampleRate) {
    // The wave tables are one for all objects: filled once, as another object may be sounding.
    static const bool tables = (T::classInit(sampleRate), true);
    auto sound = std::make_unique<T>();
    if (tables) sound->instanceInit(sampleRate);
    return sound;
}

} // namespace

std::unique_ptr<dsp> makeSound(Timbre timbre, int sampleRate) {
    switch (timbre) {
        case Timbre::bass: return made<FaustBass>(sampleRate);
        case Timbre::kick: return made<FaustKick>(sampleRate);
        case Timbre::snare: return made<FaustSnare>(sampleRate);
        case Timbre::clap: return made<FaustClap>(sampleRate);
        case Timbre::closedHat: return made<FaustClosed>(sampleRate);
        case Timbre::pedalHat: return made<FaustPedal>(sampleRate);
        case Timbre::openHat: return made<FaustOpen>(sampleRate);
        case Timbre::tom: return made<FaustTom>(sampleRate);
        case Timbre::room: break;
    }
    return made<FaustRoom>(sampleRate);
}

} // namespace marlune
