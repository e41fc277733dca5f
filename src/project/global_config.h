// The settings of the studio: MIDI maps, channels, devices. The record of marlune.cfg, 518 bytes.
//
// User-interface thread only. Any content is carried through load and save as it is; the functions below
// limit it where it is used, so that no content indexes outside a table or sends an illegal byte.
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "project/project_record.h"

namespace marlune {

inline constexpr int kFirstMappedKey = 48; // key codes 48..90 of the computer keyboard
inline constexpr int kMappedKeys = 43;

struct KeyMapEntry {
    Le16 module;  // 0..2, -1 for no function
    Le16 pattern; // 0..7, -1 likewise
};

struct GlobalConfig {
    std::array<Le8, kDrums> drumNoteDefault; // note of each drum in a fresh pattern
    Le16 selectBase;                         // lowest key note of remote control, 1..115
    Le16 stepBase;                           // lowest step note, 0..111
    Le16 reservedNote0, reservedNote1, reservedNote2;
    std::array<KeyMapEntry, kMappedKeys> keyMap;
    std::array<Le16, 128> controllerMap;       // incoming controller -> knob 0..19, -1 for none
    Le8 controlChannel;                        // of incoming controllers, 0-based
    Le8 phraseChannel;                         // of memorizer notes, 0-based
    std::array<Le16, kKnobs> outputController; // controller number per knob, -1 for none
    std::array<Le8, kModules> moduleChannel;   // 0-based
    std::array<Le8, kBassModules> moduleVelocity;
    std::array<Le8, kBassModules> moduleBaseNote;
    Le16 midiInDevice, midiOutDevice;        // index into the device lists, negative for none
    std::array<Flag16, kDrums> drumSounding; // run-time state of the export; means nothing in the file
    Flag16 statusBarVisible;
    Le16 syncOutDevice;
    Le16 syncOffset; // -4..+4 timer periods
};

static_assert(sizeof(GlobalConfig) == 518 && alignof(GlobalConfig) == 1);
static_assert(offsetof(GlobalConfig, keyMap) == 17 && offsetof(GlobalConfig, controllerMap) == 189);
static_assert(offsetof(GlobalConfig, controlChannel) == 445 && offsetof(GlobalConfig, moduleChannel) == 487);
static_assert(offsetof(GlobalConfig, midiInDevice) == 494 && offsetof(GlobalConfig, syncOutDevice) == 514);

extern GlobalConfig config;
extern std::array<std::string, kKnobs> knobLabel; // captions of the knobs, kept in labels.cfg

void resetGlobalConfig(); // all zero but the devices, -1; no captions

// Limited readings.
int channelOf(int module);        // 0..15
int controlChannelNumber();       // 0..15
int phraseChannelNumber();        // 0..15
int knobOfController(int number); // 0..19, -1 for none; number 0..127
int controllerOfKnob(int knob);   // 0..127, -1 for none
int baseNoteOf(int module);       // 0..127; module 0 or 1
int velocityOf(int module);       // 0..127
int drumNoteDefaultOf(int drum);  // 0..127
// What a key code selects; module -1 where the entry or one of its halves is out of range.
struct MappedKey {
    int module, pattern;
};
MappedKey mappedKey(int code);

extern const std::array<const char*, kKnobs> kDefaultLabels;

} // namespace marlune
