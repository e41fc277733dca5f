// Copies whole patterns from the record into the playback component. User-interface thread.
#pragma once

namespace marlune {

// Sends every field of project's pattern that the component plays; slide is not among them. Whoever replaces
// pattern data wholesale calls it.
void pushPatternToEngine(int module, int bank, int pattern);

// All 32 patterns of a bank after the other, each bank and pattern for the modules in the order given.
void pushAllPatterns(int first, int second, int third);

// The steps that slide, of all patterns, to a component that knows of none. Where the project plays slides,
// pushPatternToEngine() hands them over as well.
void pushAllSlides();

} // namespace marlune
