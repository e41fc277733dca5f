// The painters of the panel's pieces, one for each Art. box has its left top corner at the origin.
#pragma once

#include <QRectF>

#include "picture/ink.h"
#include "picture/look.h"

namespace marlune {

using ArtPainter = void (*)(const Ink& ink, const Look& look, const QRectF& box);

// art_ground.cpp
void paintChannel(const Ink& ink, const Look& look, const QRectF& box);
void paintArrow(const Ink& ink, const Look& look, const QRectF& box);
void paintLogo(const Ink& ink, QPointF centre, double radius);
// art_caps.cpp
void paintHalo(const Ink& ink, const Look& look, const QRectF& box);
void paintStepCap(const Ink& ink, const Look& look, const QRectF& box);
void paintBankCap(const Ink& ink, const Look& look, const QRectF& box);
void paintOctaveCap(const Ink& ink, const Look& look, const QRectF& box);
void paintDrumCap(const Ink& ink, const Look& look, const QRectF& box);
void paintPad(const Ink& ink, const Look& look, const QRectF& box);
void paintPill(const Ink& ink, const Look& look, const QRectF& box);
// art_lamps.cpp
void paintRail(const Ink& ink, const Look& look, const QRectF& box);
void paintBracket(const Ink& ink, const Look& look, const QRectF& box);
void paintSlideLamp(const Ink& ink, const Look& look, const QRectF& box);
void paintMuteLamp(const Ink& ink, const Look& look, const QRectF& box);
void paintLamp(const Ink& ink, const Look& look, const QRectF& box);
// art_keys.cpp, art_knob.cpp
void paintKeys(const Ink& ink, const Look& look, const QRectF& box);
void paintKnob(const Ink& ink, const Look& look, const QRectF& box); // both layers
void paintKnobRing(const Ink& ink, const Look& look, const QRectF& box);
void paintKnobCap(const Ink& ink, const Look& look, const QRectF& box);
// art_fields.cpp
void paintPatternField(const Ink& ink, const Look& look, const QRectF& box);
void paintNumberField(const Ink& ink, const Look& look, const QRectF& box);
void paintNoteField(const Ink& ink, const Look& look, const QRectF& box);
void paintTempoField(const Ink& ink, const Look& look, const QRectF& box);
void paintBarField(const Ink& ink, const Look& look, const QRectF& box);
void paintTitle(const Ink& ink, const Look& look, const QRectF& box);
// art_strip.cpp
void paintModeSwitch(const Ink& ink, const Look& look, const QRectF& box);
void paintStartStop(const Ink& ink, const Look& look, const QRectF& box);
void paintTransport(const Ink& ink, const Look& look, const QRectF& box);

inline constexpr double kHoverLight = 0.08;

} // namespace marlune
