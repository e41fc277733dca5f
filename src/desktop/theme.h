// The look of everything around the panel: menu and status bar, dialogs.
#pragma once

class QApplication;

namespace marlune {

void applyTheme(QApplication& app);

} // namespace marlune
