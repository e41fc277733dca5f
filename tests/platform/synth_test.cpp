// The sound of the built-in synthesizer, measured.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>

#include "boundary/midi_bytes.h"
#include "platform/synth.h"
#include "platform/synth_renderer.h"
#include "support/test_program.h"

namespace marlune {
namespace {

constexpr int kRate = SynthRenderer::kSampleRate;
using Sound = std::vector<float>;
using Row = std::array<std::uint8_t, 4>; // controllers 12..15

Sound bass(int channel, Row controllers, int note = 36) {
    SynthRenderer renderer;
    for (int i = 0; i < 4; ++i) renderer.send(midiBytes(kControlChange + channel, 12 + i, controllers[i]), 0);
    renderer.send(noteOn(channel, note, 100), 0);
    return renderer.render(kRate / 2);
}

double level(const Sound& sound, double from, double to) {
    double energy = 0;
    const auto first = static_cast<std::size_t>(2 * from * kRate),
               last = static_cast<std::size_t>(2 * to * kRate);
    for (std::size_t i = first; i < last; ++i) energy += double{sound[i]} * sound[i];
    return 10 * std::log10(energy / static_cast<double>(last - first) + 1e-20);
}

// Of the left channel's spectrum, 20 Hz to 8 kHz.
double centroid(const Sound& sound, double from = 0) {
    constexpr int kFrames = kRate / 10;
    const auto first = static_cast<std::size_t>(2 * from * kRate);
    double weighted = 0, total = 0;
    for (int hertz = 20; hertz <= 8000; hertz += 20) {
        const auto turn = std::polar(1.0, -2 * std::numbers::pi * hertz / kRate);
        std::complex<double> sum = 0, phase = 1;
        for (int i = 0; i < kFrames; ++i, phase *= turn)
            sum += phase * double{sound[first + 2U * static_cast<std::size_t>(i)]} *
                   (0.5 - 0.5 * std::cos(2 * std::numbers::pi * i / kFrames));
        weighted += hertz * std::abs(sum);
        total += std::abs(sum);
    }
    return weighted / total;
}

class SynthSound : public testing::Test {
  protected:
    void SetUp() override {
        if (findSoundFont().empty()) GTEST_SKIP() << "no sound font on this machine";
    }
};

TEST_F(SynthSound, EveryControllerOfTheBassesMovesIt) {
    const std::tuple<Row, Row, double> rows[] = {{{0, 0, 0, 127}, {127, 0, 0, 127}, 2},
                                                 {{64, 0, 0, 127}, {64, 127, 0, 127}, 1.2},
                                                 {{0, 0, 0, 127}, {0, 0, 127, 100}, 1.5}};
    for (const int channel : {0, 1}) {
        for (const auto& [darker, brighter, ratio] : rows)
            EXPECT_GE(centroid(bass(channel, brighter)), ratio * centroid(bass(channel, darker))) << ratio;
        const Sound swept = bass(channel, {0, 0, 127, 100});
        EXPECT_GE(centroid(swept), 1.05 * centroid(swept, 0.3));
        EXPECT_GE(level(bass(channel, {64, 0, 0, 127}), 0.3, 0.4),
                  level(bass(channel, {64, 0, 0, 0}), 0.3, 0.4) + 12);
    }
}

TEST_F(SynthSound, ControllersAtZeroAreClearlyAudible) {
    for (const int channel : {0, 1})
        for (const int note : {24, 36, 48, 60})
            EXPECT_GT(level(bass(channel, {0, 0, 0, 0}, note), 0, 0.1), -32) << note;
    SynthRenderer reset; // neither a drum nor another channel is dulled by the controllers' start
    for (const int status : {0xB0, 0xB9}) reset.send(midiBytes(status, 121, 0), 0);
    reset.send(noteOn(9, 42, 100), 0);
    EXPECT_GT(centroid(reset.render(kRate / 2)), 3000);
}

TEST_F(SynthSound, IsTheSameOnEveryRunWhateverPiecesAreAskedFor) {
    SynthRenderer one, two;
    for (SynthRenderer* each : {&one, &two})
        for (int i = 0; i < 64; ++i) {
            const std::int64_t due = i * std::int64_t{107'142'857};
            each->send(release(i % 2, 36 + (i + 14) * 7 % 24), due);
            each->send(noteOn(i % 2, 36 + i * 7 % 24, 100), due);
            each->send(noteOn(9, 36 + i % 11, 100), due);
        }
    const Sound sound = one.render(7 * kRate);
    Sound pieces;
    for (int frames = 1; pieces.size() < sound.size(); frames = frames % 5000 + 333) {
        const Sound piece = two.render(std::min(frames, 7 * kRate - static_cast<int>(pieces.size() / 2)));
        pieces.insert(pieces.end(), piece.begin(), piece.end());
    }
    EXPECT_TRUE(toInt16(sound) == toInt16(pieces));
}

// The frame at which `sound` begins to differ from one without the note.
int onset(const Sound& sound, const Sound& without) {
    for (std::size_t i = 0; i < sound.size(); ++i)
        if (std::abs(sound[i] - without[i]) > 1e-6F) return static_cast<int>(i / 2);
    return -1;
}

TEST_F(SynthSound, ANoteFallsOnItsSample) {
    SynthRenderer plain;
    plain.send(noteOn(9, 42, 100), 0);
    const int lag = onset(plain.render(2000), Sound(4000)); // the drum's own attack
    for (const int frame : {1, 63, 64, 1000, 4444, 9999}) {
        SynthRenderer renderer;
        renderer.send(noteOn(9, 42, 100), FrameTime{0, kRate}.nsAt(frame));
        EXPECT_EQ(onset(renderer.render(12000), Sound(24000)), frame + lag);
    }
    // Also while an earlier note still sounds with another shift; beside the fade nothing but the new note
    // changes.
    for (const int frame : {8000, 8017, 8031, 8060}) {
        SynthRenderer with, without;
        for (SynthRenderer* each : {&with, &without})
            each->send(noteOn(0, 40, 100), FrameTime{0, kRate}.nsAt(70));
        with.send(noteOn(0, 76, 127), FrameTime{0, kRate}.nsAt(frame));
        EXPECT_NEAR(onset(with.render(12000), without.render(12000)), frame - 16, 80);
    }
}

// A clock that the test turns.
struct HandClock : PlayClock {
    std::int64_t nowNs() noexcept override { return now; }
    std::int64_t now = 7'000'000'000;
};

TEST_F(SynthSound, LiveEventsKeepTheirDistanceWhateverTheCallbacksDo) {
    HandClock clock;
    Synth synth(clock, nullptr, false);
    synth.send(noteOn(9, 37, 127), 0); // no device yet: swallowed
    synth.prepare(48000);
    constexpr std::int64_t kGap = 119'000'000; // 5712 frames
    const std::int64_t start = clock.now + 50'000'000;
    constexpr int kCallbacks = 420;
    std::vector<float> left(kCallbacks * 256), right(256);
    int sent = 0;
    for (int callback = 0; callback < kCallbacks; ++callback) {
        if (callback % 3 == 0) clock.now += 16'000'000; // three at a time, as devices like to ask
        for (; sent < 15 && start + sent * kGap <= clock.now; ++sent)
            synth.send(noteOn(9, 37, 127), start + sent * kGap);
        synth.fill(256, &left[callback * 256], right.data());
    }
    std::vector<int> onsets;
    for (int i = 0; i < kCallbacks * 256; ++i)
        if (std::abs(left[i]) > 0.01F && (onsets.empty() || i - onsets.back() > 4000)) onsets.push_back(i);
    ASSERT_EQ(onsets.size(), 15U);
    for (std::size_t i = 1; i < onsets.size(); ++i) EXPECT_NEAR(onsets[i] - onsets[i - 1], 5712, 12);
}

TEST(Wav, IsWrittenWholeOrNotAtAll) {
    const test::TemporaryFolder folder;
    ASSERT_TRUE(writeWav(folder.file("a.wav"), toInt16({0.0F, 1.0F, -2.0F, 0.5F})));
    const auto bytes = test::readBytes(folder.file("a.wav"));
    EXPECT_EQ(
        std::string(bytes.begin(), bytes.end()),
        std::string("RIFF\x2c\0\0\0WAVEfmt \x10\0\0\0\1\0\2\0\x44\xac\0\0\x10\xb1\2\0\4\0\x10\0data\x8\0\0\0"
                    "\0\0\xff\x7f\x01\x80\0\x40",
                    52));
    EXPECT_FALSE(writeWav("/nowhere/sound.wav", {}));
}

} // namespace
} // namespace marlune
