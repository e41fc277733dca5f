#include "score/saved_patterns.h"

#include <array>
#include <cstring>

#include "project/run_state.h"

namespace marlune {

namespace {

struct Saved {
    std::array<decltype(BassModule::patterns), kBassModules> bass{};
    decltype(DrumModule::patterns) drum{};
};

Saved& saved() {
    static Saved instance;
    return instance;
}

template <typename Pattern>
bool differ(const Pattern& a, const Pattern& b) {
    return std::memcmp(&a, &b, sizeof a) != 0;
}

} // namespace

void noteSavedPatterns() {
    if (editingState->projectDirty) return;
    for (int m = 0; m < kBassModules; ++m) saved().bass[m] = project.bass[m].patterns;
    saved().drum = project.drum.patterns;
}

bool patternChanged(int module, int bank, int pattern) {
    if (module == kDrumModule)
        return differ(project.drum.patterns[bank][pattern], saved().drum[bank][pattern]);
    return differ(project.bass[module].patterns[bank][pattern], saved().bass[module][bank][pattern]);
}

} // namespace marlune
