#include "project/global_config.h"

#include <algorithm>

#include "boundary/midi_bytes.h"

namespace marlune {

GlobalConfig config;
std::array<std::string, kKnobs> knobLabel;

const std::array<const char*, kKnobs> kDefaultLabels = {
    "Cutoff", "Res",    "Env.Amt", "Decay", "Ctrl.1", "Accent", "Cutoff", "Res",   "Env.Amt", "Decay",
    "Ctrl.1", "Accent", "BDrum",   "Snare", "Clap",   "ClHt1",  "ClHt2",  "OpHat", "Loop",    "Accent"};

namespace {

int channel(int value) {
    return std::clamp(value, 0, 15);
}

} // namespace

void resetGlobalConfig() {
    config = {};
    knobLabel = {};
    config.midiInDevice = config.midiOutDevice = -1;
}

int channelOf(int module) {
    return channel(config.moduleChannel[module]);
}

int controlChannelNumber() {
    return channel(config.controlChannel);
}

int phraseChannelNumber() {
    return channel(config.phraseChannel);
}

int knobOfController(int number) {
    const int knob = number >= 0 && number <= kTopValue ? int{config.controllerMap[number]} : -1;
    return knob >= 0 && knob < kKnobs ? knob : -1;
}

int controllerOfKnob(int knob) {
    const int number = config.outputController[knob];
    return number >= 0 && number <= kTopValue ? number : -1;
}

int baseNoteOf(int module) {
    return limitedData(config.moduleBaseNote[module]);
}

int velocityOf(int module) {
    return limitedData(config.moduleVelocity[module]);
}

int drumNoteDefaultOf(int drum) {
    return limitedData(config.drumNoteDefault[drum]);
}

MappedKey mappedKey(int code) {
    if (code < kFirstMappedKey || code >= kFirstMappedKey + kMappedKeys) return {-1, -1};
    const KeyMapEntry& entry = config.keyMap[code - kFirstMappedKey];
    const bool used =
        entry.module >= 0 && entry.module < kModules && entry.pattern >= 0 && entry.pattern < kPatterns;
    return used ? MappedKey{entry.module, entry.pattern} : MappedKey{-1, -1};
}

} // namespace marlune
