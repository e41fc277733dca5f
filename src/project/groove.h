// Swing and slides of a project. They stand in six bytes of the record that others give no meaning: where the
// mark is missing, the bytes are carried as they are, the project is straight and its slides are not played.
// User-interface thread.
#pragma once

#include "project/project_record.h"

namespace marlune {

inline constexpr int kStraight = 50; // percent of a pair of sixteenths that the first one takes
inline constexpr int kMostSwing = 75;

int swingOf(const ProjectRecord& record);          // 50..75
void setSwing(ProjectRecord& record, int percent); // limited; writes the mark

bool playsSlides(const ProjectRecord& record);
void playSlides(ProjectRecord& record); // from now on; writes the mark

// A new project: straight, and without the slides that were set here.
void clearGroove(ProjectRecord& record);

} // namespace marlune
