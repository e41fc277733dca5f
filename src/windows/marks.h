// Small signs that both windows share, and the colours that only they use.
#pragma once

#include <QPainterPath>
#include <QRectF>
#include <array>
#include <string>

#include "picture/ink.h"

namespace marlune {

namespace palette {

inline constexpr std::array<QRgb, 3> kOctaveUp{rgb(0xC9F6EE), rgb(0xE4E0FF), rgb(0xFFE6C2)};
inline constexpr std::array<QRgb, 3> kOctaveDown{rgb(0x2FA596), rgb(0x7469D8), rgb(0xD8892A)};
inline constexpr std::array<QRgb, 3> kAsleepUp{rgb(0x94CFC6), rgb(0xBDB7E6), rgb(0xE2C091)};
inline constexpr std::array<QRgb, 3> kAsleepDown{rgb(0x2A8277), rgb(0x625AB0), rgb(0xA86E28)};
inline constexpr std::array<QRgb, 3> kCell{rgb(0xD7F6F2), rgb(0xEBE9FF), rgb(0xFFF0D2)}; // by its opacity
inline constexpr QRgb kQuietText = rgb(0x929CA7);
inline constexpr QRgb kSlotGlass = rgb(0x080B0F);
inline constexpr QRgb kPastLoop = rgb(0x06080B); // at 58 %
inline constexpr QRgb kPadGround = rgb(0x15110D);
inline constexpr QRgb kPadLip = rgb(0x5A3A10);
inline constexpr QRgb kPadRim = rgb(0xFFF4DE);
inline constexpr std::array<Fade, 3> kCapSleeping{Fade{rgb(0x2F4046), rgb(0x212F35)},
                                                  Fade{rgb(0x373B54), rgb(0x272B41)},
                                                  Fade{rgb(0x413932), rgb(0x302924)}};
inline constexpr double kColumnLight = 0.13;

} // namespace palette

QRgb dimmed(QRgb colour, double factor);  // towards black
QRgb mixed(QRgb a, QRgb b, double share); // share of b, 0..1

// A triangle with the line it points away from; height about 6 x size.
void octaveArrow(const Ink& ink, QPointF centre, bool up, double size, QRgb colour);
void accentSign(const Ink& ink, QPointF centre, double size, QRgb colour);
void cueArrow(const Ink& ink, QPointF tail, double width, double height, QRgb colour, bool edged = false);

// A cap lit by its module, with the lip of a darker light.
void litFace(const Ink& ink, const QRectF& box, double radius, QRgb colour, bool down);
void hollowCap(const Ink& ink, const QRectF& box, double radius); // asleep
void caption(const Ink& ink, QPointF baseline, const char* text, QRgb colour = palette::kCaption);

// The dots of a pattern in a picture of any size: a dot per sounding step, of the drums one per row. dots: a
// character per step, the height above the lowest note from 1 to heights, or the rows of the drums as bits.
QPainterPath patternDots(const std::string& dots, int heights, const QRectF& picture, bool drums);

void thinLine(const Ink& ink, QPointF from, QPointF to, QRgb colour, double width);

} // namespace marlune
