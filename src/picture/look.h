// The look of one piece of the panel: all that its picture depends on. Equal looks share one picture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace marlune {

class Ink;
struct PanelRect;

enum class Art : std::uint8_t {
    ground,
    channel,
    arrow,
    halo,
    rail,
    bracket,
    lamp,
    keys,
    stepCap,
    bankCap,
    octaveCap,
    drumCap,
    pad,
    knob,
    patternField,
    numberField,
    noteField,
    tempoField,
    barField,
    pill,
    modeSwitch,
    startStop,
    transport,
    slideLamp,
    muteLamp,
    title,
    knobRing, // the two layers of a knob, kept one by one
    knobCap,
};

// Marks of a look.
enum Mark : std::uint16_t {
    kHover = 1,
    kDown = 2,   // held by the pointer
    kAsleep = 4, // can not be changed now
    kEdit = 8,   // in the module under edit
    kLit = 16,
    kBeyond = 32, // past the loop
    kArmed = 64,  // recording
    kSong = 128,
    kCued = 256, // differs from what plays now
};

inline constexpr int kModuleCap = 2; // variant of a knob: its cap has the colour of its module

// The frame of a step cap: its note + 1 in the low four bits (0: no mark), and these.
inline constexpr int kMarkNote = 15;
inline constexpr int kMarkSounds = 16;
inline constexpr int kMarkUp = 32;
inline constexpr int kMarkDown = 64;
inline constexpr int kMarkAccent = 128;

struct Look {
    Art art = Art::ground;
    std::uint8_t module = 0;
    std::uint8_t variant = 0;
    std::uint16_t marks = 0;
    std::int16_t frame = 0;
    std::int16_t width = 0, height = 0; // panel pixels
    std::string text;                   // of a tempo field: tempo, badge, swing

    [[nodiscard]] bool is(Mark mark) const { return (marks & mark) != 0; }
    bool operator==(const Look&) const = default;
};

std::size_t hashOf(const Look& look);

// Draws the look with its box at the origin. Light may reach beyond the box.
void paintLook(const Ink& ink, const Look& look, double width, double height);

// What of the plates, and of all that is printed on them, may show in a tile; in panel coordinates. marks:
// kEdit << module, kSong, kArmed.
inline constexpr int kGroundEdit = 8; // bits 8, 16, 32: module 0, 1, 2 under edit
void paintGround(const Ink& ink, const PanelRect& tile, std::uint16_t marks);

} // namespace marlune
