// What the panel's controls are called: names and values for assistive tools, tips that tell the key.
#pragma once

#include <QString>
#include <optional>

#include "picture/panel_state.h"

namespace marlune {

QString controlName(const PlacedControl& control, const PanelState& state); // "103A Cutoff knob"
QString controlValue(const PlacedControl& control,
                     const PanelState& state); // "47 %", "A3", "on"; may be empty
// What a control that is turned stands at, for tools that speak and set numbers. perUnit: notches of the
// wheel.
struct ControlRange {
    double value, minimum, maximum, perUnit;
};
std::optional<ControlRange> controlRange(const PlacedControl& control, const PanelState& state);
QString controlTip(const PlacedControl& control);

// Controls that carry a number which a drag, the wheel or Up and Down change.
bool isTurned(Control control);
// Controls that the keyboard reaches: every interactive one except those that repeat another.
bool isTabStop(const PlacedControl& control);
// Displays that are read and never touched.
bool isReadOnly(const PlacedControl& control);

} // namespace marlune
