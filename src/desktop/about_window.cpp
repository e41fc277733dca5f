#include "desktop/about_window.h"

#include <QPainter>
#include <QPushButton>
#include <QScreen>

#include "picture/arts.h"

#ifndef MARLUNE_VERSION
#define MARLUNE_VERSION "1.0"
#endif

namespace marlune {

namespace {

constexpr int kWidth = 460;
constexpr int kHeight = 250;

} // namespace

AboutWindow::AboutWindow(QWidget* parent, bool splash) : QDialog(parent), splash_(splash) {
    setWindowTitle(QStringLiteral("About Marlune 200Q"));
    setFixedSize(kWidth, kHeight);
    if (splash) setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
    move(screen()->availableGeometry().center() - QPoint(kWidth / 2, kHeight / 2));
    if (splash) return;
    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setDefault(true);
    ok->adjustSize();
    ok->move(kWidth - ok->width() - 22, kHeight - ok->height() - 20);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
}

void AboutWindow::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const Ink ink(painter, devicePixelRatioF());
    const QRectF all(0, 0, kWidth, kHeight);
    ink.box(all, 0, palette::kModules[3].plate);
    ink.frame(all, 0, palette::kPlateEdge);
    paintLogo(ink, {96, 104}, 62);
    ink.text({182, 98}, QStringLiteral("Marlune"), {44, 600, -0.4}, palette::kText);
    ink.text({185, 136}, QStringLiteral("200Q"), {26, 600, 2.4}, palette::kMoonlight);
    ink.text({186, 168}, QStringLiteral("103A / 103B / 109 Performance Sequencer"), {12, 500},
             palette::kCaption);
    ink.text({24, kHeight - 26}, QStringLiteral("Version " MARLUNE_VERSION), {12, 500}, palette::kCaption);
    for (int module = 0; module < 3; ++module)
        ink.box(QRectF(186 + 62 * module, 184, 54, 4), 2, palette::kModules[module].light);
}

void AboutWindow::mousePressEvent(QMouseEvent* event) {
    if (!splash_) QDialog::mousePressEvent(event);
}

} // namespace marlune
