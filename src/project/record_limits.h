// Makes what enters from outside safe, once, so that no routine behind the door needs a range check.
#pragma once

#include "project/project_record.h"

namespace marlune {

// Limits banks, patterns, loop points, steps, rows, knob values, patches, drum notes, channels, the tempo and
// the note map to their ranges. Notes, drum cells, flags and everything without a meaning stay as they are.
void limitRecord(ProjectRecord& record);

} // namespace marlune
