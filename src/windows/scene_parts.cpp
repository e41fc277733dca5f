#include "windows/scene_parts.h"

#include <utility>

#include "windows/arts.h"

namespace marlune {

namespace {

constexpr int kGlow = 2;

} // namespace

void addDigits(Scene& scene, const Box& box, const TileLook& look) {
    TileLook glass = look;
    glass.text.clear();
    scene.push_back({artDigits, box, kGlow, std::move(glass)});
    for (std::size_t place = 0; place < look.text.size(); ++place) {
        TileLook lit = look;
        lit.text = look.text[place] + std::string(look.text.size() - 1 - place, ' ');
        scene.push_back({artLitPlace, box, kGlow, std::move(lit), -1, true});
    }
}

std::int16_t lettersKept(const std::string& right) {
    constexpr std::size_t kSteps = 8;
    return static_cast<std::int16_t>((right.size() + kSteps - 1) / kSteps * kSteps);
}

} // namespace marlune
