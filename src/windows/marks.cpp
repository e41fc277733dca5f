#include "windows/marks.h"

#include <algorithm>
#include <cmath>

#include "project/project_record.h"

namespace marlune {

namespace {

double channel(QRgb colour, int shift) {
    return (colour >> shift) & 0xFFU;
}

} // namespace

QRgb mixed(QRgb a, QRgb b, double share) {
    const auto part = [&](int shift) {
        const double value = channel(a, shift) * (1 - share) + channel(b, shift) * share;
        return static_cast<QRgb>(std::lround(value)) << shift;
    };
    return rgb(part(0) | part(8) | part(16));
}

QRgb dimmed(QRgb colour, double factor) {
    return mixed(0, colour, factor);
}

void octaveArrow(const Ink& ink, QPointF c, bool up, double size, QRgb colour) {
    const double half = 3.6 * size;
    const double turn = up ? -1 : 1;
    const double base = c.y() - turn * 1.25 * size;
    QPainterPath arrow(QPointF(c.x() - half, base));
    arrow.lineTo(c.x() + half, base);
    arrow.lineTo(c.x(), base + turn * 4 * size);
    arrow.closeSubpath();
    ink.shape(arrow, colour);
    const double line = 1.3 * size;
    const double far = base - turn * 2.3 * size;
    ink.box(QRectF(c.x() - half, up ? far - line : far, 2 * half, line), 0, colour);
}

void accentSign(const Ink& ink, QPointF c, double size, QRgb colour) {
    QPainterPath path(QPointF(c.x() - 3.2 * size, c.y() - 3.6 * size));
    path.lineTo(c.x() + 3.4 * size, c.y());
    path.lineTo(c.x() - 3.2 * size, c.y() + 3.6 * size);
    ink.stroke(path, colour, 1.7 * size);
}

void cueArrow(const Ink& ink, QPointF tail, double width, double height, QRgb colour, bool edged) {
    QPainterPath path(QPointF(tail.x(), tail.y() - height / 2));
    path.lineTo(tail.x(), tail.y() + height / 2);
    path.lineTo(tail.x() + width, tail.y());
    path.closeSubpath();
    if (edged) ink.stroke(path, palette::kInk, 1.6);
    ink.shape(path, colour);
}

void litFace(const Ink& ink, const QRectF& area, double radius, QRgb colour, bool down) {
    const QRectF box = ink.snapped(area);
    ink.box(box, radius, dimmed(colour, 0.45));
    const double sink = down ? ink.hair() : 0;
    const QRectF top = box.adjusted(0, sink, 0, -ink.snap(1.5) + sink);
    ink.box(top, radius, colour);
    ink.box(top, radius, palette::kLitSheen);
}

void hollowCap(const Ink& ink, const QRectF& area, double radius) {
    const QRectF box = ink.snapped(area).adjusted(0, 0, 0, -ink.hair());
    ink.box(box, radius, white(0.04));
    ink.frame(box, radius, white(0.12));
}

void caption(const Ink& ink, QPointF baseline, const char* text, QRgb colour) {
    ink.text(baseline, QString::fromLatin1(text), {10, 600, 0.9}, colour);
}

void thinLine(const Ink& ink, QPointF from, QPointF to, QRgb colour, double width) {
    QPainterPath path(from);
    path.lineTo(to);
    ink.stroke(path, colour, width);
}

QPainterPath patternDots(const std::string& dots, int heights, const QRectF& picture, bool drums) {
    QPainterPath path;
    const double pitch = (picture.width() + picture.width() / 100) / kSteps;
    const double width = pitch * (drums ? 0.8 : 0.86);
    const double height = drums ? picture.height() / kDrumRows * 0.8 : std::max(1.4, picture.height() / 7.5);
    for (int step = 0; step < kSteps && step < static_cast<int>(dots.size()); ++step) {
        const auto value = static_cast<unsigned char>(dots[static_cast<std::size_t>(step)]);
        const double x = picture.left() + step * pitch;
        if (drums) {
            for (int row = 0; row < kDrumRows; ++row)
                if ((value >> row & 1) != 0)
                    path.addRect(
                        QRectF(x, picture.top() + row * picture.height() / kDrumRows, width, height));
        } else if (value > 0) {
            const double share = heights > 1 ? 1.0 * (heights - value) / (heights - 1) : 0.5;
            path.addRect(QRectF(x, picture.top() + share * (picture.height() - height), width, height));
        }
    }
    return path;
}

} // namespace marlune
