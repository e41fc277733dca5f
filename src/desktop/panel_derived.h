// The small pictures on the panel that follow from the record. User-interface thread only.
#pragma once

namespace marlune {

class PanelWidget;

void showDerived(PanelWidget& panel); // from the patterns in view

} // namespace marlune
