// Prints the table of what each knob of a bass does to its sound, for docs/performance.md: tools/knob_table.
#include <algorithm>
#include <cstdio>

#include "boundary/midi_bytes.h"
#include "platform/synth_renderer.h"
#include "support/sound_measures.h"

namespace marlune {

namespace {

using namespace test;

constexpr int kSteps = 16;
constexpr double kStep = 0.125, kLength = kSteps * kStep;
constexpr int kVelocity = 100;

struct Knob {
    const char* name;
    int controller;
};
constexpr Knob kRows[] = {{"Cutoff", 12}, {"Res", 13}, {"Env.Amt", 14}, {"Decay", 15}, {"Ctrl.1", 16}};
constexpr int kUsual[] = {40, 64, 72, 56, 0}; // of the same knobs, while another one is turned
constexpr int kValues[] = {0, 32, 64, 96, 127};

Sound phrase(int channel, const int (&knobs)[5], int velocity, int accent) {
    SynthRenderer renderer;
    for (int k = 0; k < 5; ++k)
        renderer.send(midiBytes(kControlChange + channel, kRows[k].controller, knobs[k]), 0);
    renderer.send(midiBytes(kControlChange + channel, 17, accent), 0);
    for (int s = 0; s < kSteps; ++s) {
        const auto at = static_cast<std::int64_t>(s * kStep * 1e9);
        const int note = 36 + (s % 4 == 3 ? 12 : 0);
        if (s > 0) renderer.send(release(channel, 36 + ((s - 1) % 4 == 3 ? 12 : 0)), at);
        renderer.send(noteOn(channel, note, velocity), at);
    }
    return renderer.render(static_cast<int>(kLength * SynthRenderer::kSampleRate));
}

void row(const char* name, const auto& soundAt) {
    std::printf("| %s |", name);
    for (const int value : kValues) {
        const Sound sound = soundAt(value);
        std::printf(" %.1f dB, %.0f Hz |", levelOf(sound, SynthRenderer::kSampleRate, 0, kLength),
                    spectralCentre(sound, SynthRenderer::kSampleRate, 0, kLength));
    }
    std::puts("");
}

} // namespace

} // namespace marlune

int main() {
    using namespace marlune;
    using test::levelOf;
    std::puts("| Knob | 0 | 32 | 64 | 96 | 127 |\n|---|---|---|---|---|---|");
    for (int k = 0; k < 5; ++k)
        row(kRows[k].name, [k](int value) {
            int knobs[5];
            std::copy(std::begin(kUsual), std::end(kUsual), knobs);
            knobs[k] = value;
            return phrase(0, knobs, kVelocity, 0);
        });
    const auto played = [](int value, int accent) { return phrase(0, kUsual, std::max(1, value), accent); };
    row("Accent (0: 1)", [&](int value) { return played(value, std::max(1, value)); });
    row("Velocity of a plain step (0: 1)", [&](int value) { return played(value, 0); });
    std::printf("\nA plain step of the usual velocity, 100, at any value of Accent: %.1f dB.\n",
                levelOf(played(kVelocity, 64), SynthRenderer::kSampleRate, 0, kLength));
    return 0;
}
