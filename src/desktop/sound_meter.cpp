#include "desktop/sound_meter.h"

#include <QPainter>
#include <QToolButton>
#include <algorithm>
#include <cmath>

#include "picture/palette.h"

namespace marlune {

namespace {

constexpr int kWidth = 214, kHeight = 22;
constexpr QRectF kBar(78, 8, 108, 6);
constexpr QRectF kLamp(194, 6, 10, 10);
constexpr double kFallPerMs = 0.03; // dB
constexpr double kLoud = -6;        // from here on the bar is yellow

double decibels(float peak) {
    return std::max(SoundMeter::kSilence, 20 * std::log10(std::max(1e-9, double{peak})));
}

// 0..1 along the bar.
double along(double level) {
    return std::clamp(1 - level / SoundMeter::kSilence, 0.0, 1.0);
}

} // namespace

SoundMeter::SoundMeter(const SoundSource& source) : source_(source), mute_(new QToolButton(this)) {
    setAccessibleName(QStringLiteral("Level of the built-in synthesizer"));
    mute_->setCheckable(true);
    mute_->setFocusPolicy(Qt::TabFocus); // the pointer leaves the keys with the panel
    mute_->setAccessibleName(QStringLiteral("Mute the built-in synthesizer"));
    mute_->setStyleSheet(QStringLiteral(
        "QToolButton { color: #C2CBD5; background: #262D37; border: 1px solid #07090C; border-radius: 4px;"
        " font-size: 11px; font-weight: 600; padding: 0px 6px; }"
        "QToolButton:hover { background: #33404C; } QToolButton:focus { border: 1px solid #EDF1F5; }"
        "QToolButton:checked { color: #0E1216; background: #F3E9CF; }"));
    connect(mute_, &QToolButton::toggled, this, &SoundMeter::mute);
    mute(false);
    tell();
    connect(&timer_, &QTimer::timeout, this, [this] { look(kLookMs); });
    timer_.start(kLookMs);
}

QSize SoundMeter::sizeHint() const {
    return {kWidth, kHeight};
}

void SoundMeter::resizeEvent(QResizeEvent* /*event*/) {
    mute_->setGeometry(4, 2, 66, height() - 4);
}

void SoundMeter::mute(bool on) {
    mute_->setText(on ? QStringLiteral("Muted") : QStringLiteral("Mute"));
    mute_->setToolTip(on ? QStringLiteral("The built-in synthesizer is muted: click to hear it")
                         : QStringLiteral("Mute the built-in synthesizer"));
    source_.mute(on);
    update();
}

void SoundMeter::tell() {
    setToolTip(sounding_
                   ? QStringLiteral("Level of the built-in synthesizer. The lamp tells of an overload: turn "
                                    "down accents or drum levels.")
                   : QStringLiteral("The built-in synthesizer has no audio device, or is not in use."));
}

void SoundMeter::look(int ms) {
    const float peak = source_.peak();
    const double level = std::max(decibels(peak), std::max(kSilence, level_ - kFallPerMs * ms));
    const int lampMs = peak > 1 ? kLampMs : std::max(0, lampMs_ - ms);
    const bool sounding = source_.sounding();
    const bool changed = level != level_ || (lampMs > 0) != (lampMs_ > 0) || sounding != sounding_;
    level_ = level;
    lampMs_ = lampMs;
    if (sounding != sounding_) {
        sounding_ = sounding;
        tell();
    }
    if (changed) update();
}

void SoundMeter::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const auto box = [&painter](const QRectF& at, QRgb colour, double radius) {
        painter.setBrush(QColor::fromRgba(colour));
        painter.drawRoundedRect(at, radius, radius);
    };
    box(kBar.adjusted(-1, -1, 1, 1), palette::kRail, 4);
    const auto filled = [](double from, double to) {
        return QRectF(kBar.left() + kBar.width() * from, kBar.top(), kBar.width() * (to - from),
                      kBar.height());
    };
    const double end = along(level_), loud = along(kLoud);
    const double opacity = mute_->isChecked() ? 0.35 : 1;
    if (end > 0) box(filled(0, std::min(end, loud)), withAlpha(palette::kPlay, opacity), 2);
    if (end > loud) box(filled(loud, end), withAlpha(palette::kMoonlight, opacity), 2);
    box(kLamp, overloaded() ? palette::kRecord : sounding_ ? rgb(0x3A2426) : rgb(0x20262D), 5);
}

} // namespace marlune
