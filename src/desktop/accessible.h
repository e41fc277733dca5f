// Names and values of the panel's controls for assistive tools.
#pragma once

namespace marlune {

// Once, before the panel is shown. A panel tells its controls from then on.
void installPanelAccessibility();

} // namespace marlune
