#include "boundary/clock_source.h"

namespace marlune {

namespace {

ClockRoom* current = nullptr;

} // namespace

void setClockRoom(ClockRoom* room) {
    current = room;
}

ClockRoom* clockRoom() {
    return current;
}

} // namespace marlune
