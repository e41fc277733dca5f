#include "picture/look.h"

#include <array>
#include <functional>

#include "picture/arts.h"

namespace marlune {

namespace {

// In the order of Art; the ground has no box of its own.
constexpr std::array<ArtPainter, 28> kPainters{
    nullptr,       paintChannel, paintArrow,        paintHalo,        paintRail,      paintBracket,
    paintLamp,     paintKeys,    paintStepCap,      paintBankCap,     paintOctaveCap, paintDrumCap,
    paintPad,      paintKnob,    paintPatternField, paintNumberField, paintNoteField, paintTempoField,
    paintBarField, paintPill,    paintModeSwitch,   paintStartStop,   paintTransport, paintSlideLamp,
    paintMuteLamp, paintTitle,   paintKnobRing,     paintKnobCap,
};
static_assert(kPainters.size() == static_cast<std::size_t>(Art::knobCap) + 1);

} // namespace

std::size_t hashOf(const Look& look) {
    std::size_t hash = std::hash<std::string>()(look.text);
    for (const int part :
         {static_cast<int>(look.art), static_cast<int>(look.module), static_cast<int>(look.variant),
          static_cast<int>(look.marks), static_cast<int>(look.frame), static_cast<int>(look.width),
          static_cast<int>(look.height)})
        hash = hash * 31 + static_cast<std::size_t>(part);
    return hash;
}

void paintLook(const Ink& ink, const Look& look, double width, double height) {
    kPainters[static_cast<std::size_t>(look.art)](ink, look, QRectF(0, 0, width, height));
}

} // namespace marlune
