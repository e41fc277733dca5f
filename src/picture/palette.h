// Colours of the front panel: dark matte plates and three coloured lights.
#pragma once

#include <QRgb>
#include <array>

namespace marlune {

// A vertical fade over the box it fills, or one flat colour. Colours carry their opacity (0xAARRGGBB).
struct Fade {
    struct Stop {
        double at = 0;
        QRgb colour = 0;
    };
    std::array<Stop, 4> stops{};
    int count = 0;

    constexpr Fade(QRgb flat) : stops{{{0, flat}}}, count(1) {} // NOLINT(google-explicit-constructor)
    constexpr Fade(QRgb top, QRgb bottom) : stops{{{0, top}, {1, bottom}}}, count(2) {}
    constexpr Fade(QRgb top, double at, QRgb middle, QRgb bottom)
        : stops{{{0, top}, {at, middle}, {1, bottom}}}, count(3) {}
    constexpr Fade(Stop a, Stop b, Stop c, Stop d) : stops{{a, b, c, d}}, count(4) {}
};

constexpr QRgb rgb(QRgb value) {
    return 0xFF000000U | value;
}
constexpr QRgb withAlpha(QRgb colour, double alpha) {
    const double opacity = alpha * 255;
    const auto whole = static_cast<QRgb>(opacity);
    return (colour & 0x00FFFFFFU) | ((opacity - whole < 0.5 ? whole : whole + 1) << 24U);
}
constexpr QRgb white(double alpha) {
    return withAlpha(0xFFFFFF, alpha);
}
constexpr QRgb black(double alpha) {
    return withAlpha(0x000000, alpha);
}

namespace palette {

inline constexpr QRgb kText = rgb(0xEDF1F5);
inline constexpr QRgb kCaption = rgb(0xC2CBD5);
inline constexpr QRgb kCaptionOff = rgb(0x929CA7); // the song box in pattern mode
inline constexpr QRgb kSymbolOff = rgb(0x7F8A96);
inline constexpr QRgb kAsleepText = rgb(0xB0BAC4);
inline constexpr QRgb kBeyondText = rgb(0xA9B3BE); // steps past the loop
inline constexpr QRgb kInk = rgb(0x0E1216);
inline constexpr QRgb kMoonlight = rgb(0xF3E9CF);
inline constexpr QRgb kPlay = rgb(0x7FE3A0);
inline constexpr QRgb kRecord = rgb(0xFF6B66);
inline constexpr QRgb kBarGround = rgb(0x161B21); // menu and status bar
inline constexpr QRgb kDigitOff = rgb(0x98A2AD);
inline constexpr QRgb kCapGround = rgb(0x0B0E12);
inline constexpr QRgb kRail = rgb(0x0A0D11);

inline constexpr Fade kBed{rgb(0x12171D), rgb(0x0A0D11)};
inline constexpr Fade kPlateEdge{{0, white(0.17)}, {0.12, white(0.05)}, {0.9, white(0.03)}, {1, black(0.35)}};
inline constexpr Fade kGlass{rgb(0x040609), 0.25, rgb(0x080B0F), rgb(0x11161C)};
inline constexpr Fade kSheen{white(0.06), white(0.01)};
inline constexpr Fade kFaceHigh{rgb(0x5B6672), rgb(0x3F4853)};
inline constexpr Fade kFaceDown{rgb(0x232A32), rgb(0x38414C)};
inline constexpr Fade kEdge{white(0.24), 0.35, white(0.06), white(0)};
inline constexpr Fade kLitSheen{white(0.42), 0.45, white(0.06), black(0.12)};
inline constexpr Fade kKeyLit{white(0.05), 0.6, white(0.3), black(0.1)};
inline constexpr Fade kIvory{rgb(0xC2C9CF), 0.25, rgb(0xDBE0E4), rgb(0xEEF1F3)};
inline constexpr Fade kIvoryAsleep{rgb(0x7A7F85), 0.25, rgb(0x878C91), rgb(0x94989C)};
inline constexpr Fade kEbony{rgb(0x20262D), 0.85, rgb(0x343C46), rgb(0x4B5561)};
inline constexpr Fade kKeyShade{black(0.65), black(0)};
inline constexpr Fade kPad{rgb(0x544940), rgb(0x3C342D)};
inline constexpr Fade kPadBetween{rgb(0x483F37), rgb(0x332C26)};
inline constexpr Fade kSkirt{rgb(0x4A535E), rgb(0x14181D)};
inline constexpr Fade kRim{white(0.32), 0.5, white(0.04), black(0.3)};
inline constexpr Fade kCapRim{white(0.38), 0.5, white(0.05), black(0.25)};
inline constexpr Fade kKnobDark{rgb(0x3D4651), rgb(0x262D36)};
inline constexpr Fade kKnobPale{rgb(0xF1F3F5), rgb(0xA9B2BB)};

struct ModuleColours {
    Fade plate, cap, capBetween, capAsleep; // capBetween: steps off the beat
    Fade knobCap;
    QRgb light, lightAsleep, lampOff, lampCore;
};

// 103A, 103B, 109 and the strip.
inline constexpr ModuleColours kModules[] = {
    {{rgb(0x22343A), rgb(0x19272D)},
     {rgb(0x4A5D63), rgb(0x33434A)},
     {rgb(0x3A4A50), rgb(0x28353B)},
     {rgb(0x33434A), rgb(0x28353B)},
     {rgb(0x5FDCCB), rgb(0x2FA596)},
     rgb(0x5FDCCB),
     rgb(0x4EB4A6),
     rgb(0x23504F),
     rgb(0xD9FFF8)},
    {{rgb(0x2C3049), rgb(0x212439)},
     {rgb(0x50556F), rgb(0x393D55)},
     {rgb(0x40445D), rgb(0x2C3047)},
     {rgb(0x393D55), rgb(0x2C3047)},
     {rgb(0xAFA6FF), rgb(0x7469D8)},
     rgb(0xAFA6FF),
     rgb(0x9189D4),
     rgb(0x3B3A6B),
     rgb(0xEFECFF)},
    {{rgb(0x37302A), rgb(0x29231F)},
     {rgb(0x5B5048), rgb(0x433A33)},
     {rgb(0x4A4139), rgb(0x352E28)},
     {rgb(0x433A33), rgb(0x352E28)},
     {rgb(0xFFBD66), rgb(0xD8892A)},
     rgb(0xFFBD66),
     rgb(0xD79A4C),
     rgb(0x5F4526),
     rgb(0xFFF0D2)},
    {{rgb(0x262D37), rgb(0x1B2129)},
     {rgb(0x4B5561), rgb(0x333B45)},
     {rgb(0x3A434E), rgb(0x29303A)},
     {rgb(0x333B45), rgb(0x29303A)},
     {rgb(0xFFFFFF), rgb(0xC9BFA6)},
     kMoonlight,
     kMoonlight,
     rgb(0x5B574E),
     rgb(0xFFFFFF)},
};

} // namespace palette

} // namespace marlune
