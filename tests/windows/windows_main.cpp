#include <gtest/gtest.h>

#include <QApplication>

#include "desktop/accessible.h"
#include "desktop/theme.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    marlune::applyTheme(app);
    marlune::installPanelAccessibility(); // before the first window
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
