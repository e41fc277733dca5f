// Windows beside the panel for assistive tools: groups of cells with names, actions and focus.
//
// User-interface thread only.
#pragma once

class QAccessibleInterface;
class QObject;

namespace marlune {

// A factory for QAccessible; null for anything but a ScoreWindow.
QAccessibleInterface* scoreAccessible(QObject* object);

} // namespace marlune
