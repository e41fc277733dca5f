#include "desktop/theme.h"

#include <QApplication>
#include <QFont>
#include <QIcon>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QProxyStyle>
#include <QStyleOption>

#include "picture/arts.h"
#include "picture/palette.h"

namespace marlune {

namespace {

constexpr const char* kSheet = R"(
QMainWindow, QDialog, QMessageBox { background: #161B21; }
QMenuBar { background: #161B21; color: #EDF1F5; font-size: 13px;
           border-bottom: 1px solid #000000; spacing: 0px; padding-left: 2px; }
QMenuBar::item { padding: 4px 12px 5px 12px; background: transparent; border-radius: 4px; }
QMenuBar::item:selected { background: #2A323C; }
QMenu { background: #1B2129; color: #EDF1F5; border: 1px solid #07090C; padding: 5px; font-size: 13px; }
QMenu::item { padding: 5px 34px 5px 26px; border-radius: 4px; }
QMenu::indicator { left: 8px; }
QMenu::item:selected { background: #33404C; }
QMenu::item:disabled { color: #7F8A96; }
QMenu::separator { height: 1px; background: #2F3741; margin: 5px 8px; }
QStatusBar { background: #161B21; color: #C2CBD5; font-size: 12px;
             border-top: 1px solid #262B31; min-height: 23px; max-height: 23px; }
QStatusBar::item { border: none; }
QStatusBar QLabel { color: #C2CBD5; font-size: 12px; padding-left: 9px; }
QToolTip { background: #262D37; color: #EDF1F5; border: 1px solid #0A0D11; padding: 4px 6px; font-size: 12px; }
QDialog QLabel, QMessageBox QLabel { color: #EDF1F5; }
QDialog QLabel#caption { color: #C2CBD5; font-size: 12px; }
QGroupBox { color: #C2CBD5; border: 1px solid #2F3741; border-radius: 8px; margin-top: 8px; padding: 8px 0 0 0;
            font-weight: 600; }
QGroupBox::title { subcontrol-origin: margin; left: 12px; padding: 0 4px; font-weight: 600; }
QLineEdit { background: #0A0E12; color: #F3E9CF; border: 1px solid #07090C; border-radius: 5px;
                       padding: 4px 7px; selection-background-color: #3F5966; }
QLineEdit:focus { border: 1px solid #EDF1F5; }
QLineEdit:disabled { color: #7F8A96; }
QComboBox QAbstractItemView { background: #1B2129; color: #EDF1F5; selection-background-color: #33404C; }
QCheckBox { color: #EDF1F5; spacing: 7px; }
QCheckBox:focus { color: #F3E9CF; }
QCheckBox:disabled { color: #7F8A96; }
QPushButton { color: #EDF1F5; border: 1px solid #0B0E12; border-bottom: 2px solid #0B0E12; border-radius: 6px;
              padding: 6px 16px; min-width: 64px; font-weight: 600;
              background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 #4B5561, stop:1 #333B45); }
QPushButton:hover { background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 #5B6672, stop:1 #3F4853); }
QPushButton:pressed { background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 #232A32, stop:1 #38414C); }
QPushButton:focus { border: 1px solid #EDF1F5; border-bottom: 2px solid #EDF1F5; }
QPushButton:disabled { color: #7F8A96; }
QProgressBar { background: #0A0E12; border: 1px solid #07090C; border-radius: 5px; color: #EDF1F5;
               text-align: center; min-height: 16px; }
QProgressBar::chunk { background: #23504F; border-radius: 4px; }
QTextBrowser { background: #12171D; color: #EDF1F5; border: none; selection-background-color: #3F5966; }
QScrollBar:vertical { background: #12171D; width: 12px; }
QScrollBar::handle:vertical { background: #3A434E; border-radius: 5px; min-height: 30px; margin: 1px; }
QScrollBar::add-line, QScrollBar::sub-line { height: 0; }
)";

constexpr int kBoxIcon = 40;
constexpr int kDialogMargin = 16;

// The sign of a message box: a disc of light with an ink sign.
QIcon boxIcon(QRgb light, const QString& sign) {
    QIcon icon;
    for (const int ratio : {1, 2, 3}) {
        QPixmap pixmap(kBoxIcon * ratio, kBoxIcon * ratio);
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgb(light));
        painter.drawEllipse(QRectF(2, 2, kBoxIcon - 4, kBoxIcon - 4));
        QFont font = QApplication::font();
        font.setPixelSize(24);
        font.setWeight(QFont::Bold);
        painter.setFont(font);
        painter.setPen(QColor::fromRgb(palette::kInk));
        painter.drawText(QRectF(0, 0, kBoxIcon, kBoxIcon), Qt::AlignCenter, sign);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

QIcon windowIcon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        paintLogo(Ink(painter, 1), QPointF(size / 2.0, size / 2.0), size / 2.0);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

// Boxes that can be seen on a dark ground, with a tick in moonlight; quiet message boxes.
class NightStyle final : public QProxyStyle {
  public:
    NightStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override {
        if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
        return QProxyStyle::styleHint(hint, option, widget, returned);
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        switch (metric) {
            case PM_LayoutLeftMargin:
            case PM_LayoutTopMargin:
            case PM_LayoutRightMargin:
            case PM_LayoutBottomMargin: return kDialogMargin;
            case PM_MessageBoxIconSize: return kBoxIcon;
            default: return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }

    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                       const QWidget* widget) const override {
        switch (icon) {
            case SP_MessageBoxWarning: return boxIcon(palette::kMoonlight, QStringLiteral("!"));
            case SP_MessageBoxCritical: return boxIcon(palette::kRecord, QStringLiteral("!"));
            case SP_MessageBoxInformation: return boxIcon(palette::kModules[0].light, QStringLiteral("i"));
            default: return QProxyStyle::standardIcon(icon, option, widget);
        }
    }

    // Lists look like the fields beside them, with a chevron.
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override {
        if (control != CC_ComboBox) return QProxyStyle::drawComplexControl(control, option, painter, widget);
        const bool awake = option->state.testFlag(State_Enabled);
        const bool focused = option->state.testFlag(State_HasFocus);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QColor::fromRgb(focused ? palette::kText : rgb(0x07090C)));
        painter->setBrush(QColor(0x0A0E12));
        painter->drawRoundedRect(QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5), 5, 5);
        painter->setPen(QPen(QColor::fromRgb(awake ? palette::kCaption : palette::kSymbolOff), 1.6,
                             Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const QPointF c(option->rect.right() - 13, option->rect.center().y() + 0.5);
        painter->drawPolyline(
            QPolygonF{{c.x() - 4, c.y() - 2}, {c.x(), c.y() + 2.4}, {c.x() + 4, c.y() - 2}});
        painter->restore();
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
        if (element != CE_ComboBoxLabel || combo == nullptr)
            return QProxyStyle::drawControl(element, option, painter, widget);
        QStyleOptionComboBox lit(*combo);
        if (option->state.testFlag(State_Enabled))
            lit.palette.setColor(QPalette::ButtonText, QColor::fromRgb(palette::kMoonlight));
        QProxyStyle::drawControl(element, &lit, painter, widget);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        if (element != PE_IndicatorCheckBox)
            return QProxyStyle::drawPrimitive(element, option, painter, widget);
        const bool awake = option->state.testFlag(State_Enabled);
        const bool focused = option->state.testFlag(State_HasFocus);
        const QRectF box = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QColor::fromRgb(focused ? palette::kText : awake ? rgb(0x5B6672) : rgb(0x333B45)));
        painter->setBrush(QColor(0x0A0E12));
        painter->drawRoundedRect(box, 3, 3);
        if (option->state.testFlag(State_On)) {
            painter->setPen(QPen(QColor::fromRgb(awake ? palette::kMoonlight : palette::kSymbolOff), 2,
                                 Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            const QPointF c = box.center();
            painter->drawPolyline(
                QPolygonF{{c.x() - 3.5, c.y()}, {c.x() - 1, c.y() + 3}, {c.x() + 3.8, c.y() - 3.4}});
        }
        painter->restore();
    }
};

QPalette darkPalette() {
    const QColor text = QColor::fromRgb(palette::kText);
    const QColor ground = QColor::fromRgb(palette::kBarGround);
    QPalette colours;
    colours.setColor(QPalette::Window, ground);
    colours.setColor(QPalette::Base, QColor(0x12171D));
    colours.setColor(QPalette::AlternateBase, ground);
    colours.setColor(QPalette::Button, QColor(0x333B45));
    colours.setColor(QPalette::Highlight, QColor(0x3F5966));
    colours.setColor(QPalette::HighlightedText, text);
    colours.setColor(QPalette::Link, QColor::fromRgb(palette::kModules[0].light));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        colours.setColor(role, text);
    colours.setColor(QPalette::Disabled, QPalette::WindowText, QColor::fromRgb(palette::kSymbolOff));
    return colours;
}

} // namespace

void applyTheme(QApplication& app) {
    QApplication::setStyle(new NightStyle);
    QApplication::setPalette(darkPalette());
    QFont font;
    font.setFamilies({QStringLiteral("Inter"), QStringLiteral("DejaVu Sans")});
    font.setPixelSize(13);
    font.setHintingPreference(QFont::PreferNoHinting);
    QApplication::setFont(font);
    app.setStyleSheet(QString::fromLatin1(kSheet));
    QApplication::setWindowIcon(windowIcon());
    QGuiApplication::setDesktopFileName(QStringLiteral("marlune200q"));
}

} // namespace marlune
