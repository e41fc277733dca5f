#include "platform/gm_sampler.h"

#include "boundary/midi_bytes.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace marlune {

namespace {

constexpr int kBassChannels = 2;
constexpr int kPolyphony = 96;
constexpr int kBassProgram = 38; // Synth Bass 1; the second bass has Synth Bass 2
constexpr int kResetControllers = 121;
constexpr int kQuietBlocks = 8;

// Loud enough for a bass alone, with room for two basses and drums at full velocity.
constexpr double kGain = 0.8 * 5.6;

// What the library takes from a sound at full resonance, tenths of a decibel: it is held back where there is
// none, and the gain makes up for it.
constexpr double kResonanceLoss = 150;

struct Modulation {
    int controller;
    int flags;
    int generator;
    double amount;
};

constexpr int kRising = FLUID_MOD_CC | FLUID_MOD_LINEAR | FLUID_MOD_UNIPOLAR | FLUID_MOD_POSITIVE;
constexpr int kFalling = FLUID_MOD_CC | FLUID_MOD_LINEAR | FLUID_MOD_UNIPOLAR | FLUID_MOD_NEGATIVE;

// Falling ones change nothing at 127, rising ones nothing at 0: that is how the other channels stay plain.
// Filter in cents, resonance and sustain in tenths of a decibel, decay in timecents.
constexpr std::array<Modulation, 7> kModulations = {{
    {12, kFalling, GEN_FILTERFC, -4200},
    {13, kRising, GEN_FILTERQ, 240},
    {13, kFalling, GEN_ATTENUATION, kResonanceLoss},
    {14, kRising, GEN_MODENVTOFILTERFC, 4800},
    {15, kFalling, GEN_VOLENVSUSTAIN, 960},
    {15, kFalling, GEN_VOLENVDECAY, -3600},
    {15, kFalling, GEN_MODENVDECAY, -3600},
}};

struct ControllerValue {
    int controller, bass, plain;
};

constexpr std::array<ControllerValue, 4> kStartValues = {
    {{12, 64, 127}, {13, 32, 0}, {14, 48, 0}, {15, 80, 127}}};

struct Setting {
    int generator;
    float value;
};

// What a bass starts from whichever sound is chosen, so that the four controllers always have their whole
// way: the filter where it is widest open, its envelope falling from full to nothing, a tone that holds.
constexpr std::array<Setting, 8> kBassVoice = {{
    {GEN_FILTERFC, 10000},
    {GEN_FILTERQ, 10},
    {GEN_MODENVTOFILTERFC, 0},
    {GEN_MODENVATTACK, -12000},
    {GEN_MODENVDECAY, 1200},
    {GEN_MODENVSUSTAIN, 1000},
    {GEN_VOLENVDECAY, 2400},
    {GEN_VOLENVSUSTAIN, 0},
}};

} // namespace

void silenceFluidSynth() noexcept {
    for (const int level : {FLUID_PANIC, FLUID_ERR, FLUID_WARN, FLUID_INFO, FLUID_DBG})
        fluid_set_log_function(
            level, [](int, const char*, void*) {}, nullptr);
}

std::string findSoundFont() {
    for (const char* path : {"/usr/share/sounds/sf2/TimGM6mb.sf2", "/usr/share/soundfonts/TimGM6mb.sf2",
                             "/usr/share/sounds/sf2/default-GM.sf2", "/usr/share/soundfonts/default.sf2",
                             "/usr/share/sounds/sf2/FluidR3_GM.sf2", "/usr/share/soundfonts/FluidR3_GM.sf2"})
        if (access(path, R_OK) == 0) return path;
    return "";
}

GmSampler::GmSampler(int sampleRate) {
    silenceFluidSynth();
    settings_.reset(new_fluid_settings());
    fluid_settings_t* settings = settings_.get();
    fluid_settings_setnum(settings, "synth.sample-rate", sampleRate);
    fluid_settings_setnum(settings, "synth.gain", kGain);
    for (const auto& [name, value] : {std::pair{"synth.reverb.active", 0},
                                      {"synth.chorus.active", 0},
                                      {"synth.cpu-cores", 1},
                                      {"synth.polyphony", kPolyphony},
                                      {"synth.threadsafe-api", 0},
                                      {"synth.audio-channels", kChannels},
                                      {"synth.audio-groups", kChannels}})
        fluid_settings_setint(settings, name, value);
    synth_.reset(new_fluid_synth(settings));
    if (!synth_) return;

    addModulations();
    const std::string font = findSoundFont();
    ready_ = !font.empty() && fluid_synth_sfload(synth_.get(), font.c_str(), 1) != FLUID_FAILED;
    for (int channel = 0; channel < kChannels; ++channel) setControllers(channel);
    for (int bass = 0; bass < kBassChannels; ++bass)
        fluid_synth_program_change(synth_.get(), bass, kBassProgram + bass);
}

void GmSampler::addModulations() noexcept {
    std::unique_ptr<fluid_mod_t, Deleter<delete_fluid_mod>> mod(new_fluid_mod());
    for (const Modulation& row : kModulations) {
        fluid_mod_set_source1(mod.get(), row.controller, row.flags);
        fluid_mod_set_source2(mod.get(), FLUID_MOD_NONE, 0);
        fluid_mod_set_dest(mod.get(), row.generator);
        fluid_mod_set_amount(mod.get(), row.amount);
        fluid_synth_add_default_mod(synth_.get(), mod.get(), FLUID_SYNTH_ADD);
    }
}

void GmSampler::setControllers(int channel) noexcept {
    const bool bass = channel < kBassChannels;
    for (const ControllerValue& row : kStartValues)
        fluid_synth_cc(synth_.get(), channel, row.controller, bass ? row.bass : row.plain);
}

// Before its first sample: gives a bass note's voices their common start.
void GmSampler::shapeBass(int channel, int key) noexcept {
    std::array<fluid_voice_t*, kPolyphony + 1> voices{};
    fluid_synth_get_voicelist(synth_.get(), voices.data(), static_cast<int>(voices.size()), -1);
    for (fluid_voice_t* voice : voices) {
        if (voice == nullptr) break;
        if (fluid_voice_get_channel(voice) != channel || fluid_voice_get_key(voice) != key ||
            fluid_voice_is_on(voice) == 0)
            continue;
        for (const Setting& row : kBassVoice) {
            fluid_voice_gen_set(voice, row.generator, row.value);
            fluid_voice_update_param(voice, row.generator);
        }
    }
    // Changes to a voice reach its sound at the end of the next call only, whichever that is.
    fluid_synth_get_gain(synth_.get());
}

void GmSampler::play(const MidiMessage& message, int offset) noexcept {
    if (!synth_ || message.size == 0 || message.bytes[0] >= kSystem) return;
    fluid_synth_t* synth = synth_.get();
    const int channel = message.bytes[0] & 0x0F;
    const int a = message.bytes[1] & 0x7F, b = message.bytes[2] & 0x7F;
    switch (statusKind(message.bytes[0])) {
        case kNoteOff: fluid_synth_noteoff(synth, channel, a); break;
        case kNoteOn:
            if (b > 0) shifts_[channel].noteAt(offset);
            fluid_synth_noteon(synth, channel, a, b); // velocity 0 releases
            if (b > 0 && channel < kBassChannels) shapeBass(channel, a);
            break;
        case 0xA0: fluid_synth_key_pressure(synth, channel, a, b); break;
        case kControlChange:
            fluid_synth_cc(synth, channel, a, b);
            if (a == kResetControllers) setControllers(channel);
            break;
        case kProgramChange: fluid_synth_program_change(synth, channel, a); break;
        case 0xD0: fluid_synth_channel_pressure(synth, channel, a); break;
        case 0xE0: fluid_synth_pitch_bend(synth, channel, a | b << 7); break;
        default: break;
    }
}

void GmSampler::mix(float* left, float* right) noexcept {
    if (!ready_) return;
    // Nothing sounds, and what the shifts held back has gone out: the library need not be asked.
    quietBlocks_ = fluid_synth_get_active_voice_count(synth_.get()) > 0 ? 0 : quietBlocks_ + 1;
    if (quietBlocks_ > kQuietBlocks) return;
    float sound[2 * kChannels][kBlock] = {};
    float* buffers[2 * kChannels];
    std::copy(std::begin(sound), std::end(sound), std::begin(buffers));
    fluid_synth_process(synth_.get(), kBlock, 0, nullptr, 2 * kChannels, buffers);
    float* const* pair = buffers;
    for (SampleShift& shift : shifts_) {
        shift.pass(pair[0], pair[1], left, right);
        pair += 2;
    }
}

} // namespace marlune
