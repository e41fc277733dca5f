// The sound of the built-in synthesizer, measured.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <complex>
#include <numbers>

#include "platform/play_clock.h"
#include "platform/synth.h"
#include "platform/synth_renderer.h"
#include "util/files.h"

namespace marlune {
namespace {

constexpr int kRate = SynthRenderer::kSampleRate;
using Sound = std::vector<float>;
using Row = std::array<std::uint8_t, 4>; // controllers 12..15

MidiMessage message(int status, int a, int b) {
    return {3,
            {static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(a), static_cast<std::uint8_t>(b)}};
}

Sound bass(int channel, Row controllers, int note = 36) {
    SynthRenderer renderer;
    for (int i = 0; i < 4; ++i) renderer.send(message(0xB0 + channel, 12 + i, controllers[i]), 0);
    renderer.send(message(0x90 + channel, note, 100), 0);
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
    struct Pair {
        Row darker, brighter;
        double ratio;
    };
    for (const int channel : {0, 1}) {
        for (const auto& [darker, brighter, ratio] :
             {Pair{{0, 0, 0, 127}, {127, 0, 0, 127}, 2}, Pair{{64, 0, 0, 127}, {64, 127, 0, 127}, 1.2},
              Pair{{0, 0, 0, 127}, {0, 0, 127, 100}, 1.5}})
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
    for (const int status : {0xB0, 0xB9}) reset.send(message(status, 121, 0), 0);
    reset.send(message(0x99, 42, 100), 0);
    EXPECT_GT(centroid(reset.render(kRate / 2)), 3000);
}

// Two basses and drums for eight bars.
void demo(SynthRenderer& renderer, bool zero) {
    constexpr std::int64_t kStep = 107'142'857;
    if (zero)
        for (const int channel : {0, 1})
            for (int c = 12; c < 18; ++c) renderer.send(message(0xB0 + channel, c, 0), 0);
    for (int i = 0; i < 128; ++i) {
        for (const int channel : {0, 1}) {
            renderer.send(message(0x90 + channel, 36 + ((i + 15) * 7 + channel * 12) % 24, 0), i * kStep);
            renderer.send(message(0x90 + channel, 36 + (i * 7 + channel * 12) % 24, 100), i * kStep);
        }
        for (const auto& [every, at, drum] :
             {std::array{4, 0, 36}, {8, 4, 38}, {8, 4, 39}, {1, 0, 42}, {4, 2, 46}})
            if (i % every == at) renderer.send(message(0x99, drum, 100), i * kStep);
    }
}

TEST_F(SynthSound, ADemoHasItsLevelAndIsTheSameOnEveryRun) {
    for (const bool zero : {false, true}) {
        SynthRenderer one, two;
        demo(one, zero);
        demo(two, zero);
        const Sound sound = one.render(13 * kRate);
        Sound pieces;
        for (int frames = 1; pieces.size() < sound.size(); frames = frames % 5000 + 333) {
            const Sound piece =
                two.render(std::min(frames, 13 * kRate - static_cast<int>(pieces.size() / 2)));
            pieces.insert(pieces.end(), piece.begin(), piece.end());
        }
        EXPECT_TRUE(toInt16(sound) == toInt16(pieces));
        EXPECT_LT(*std::max_element(sound.begin(), sound.end()), 0.98F);
        EXPECT_GT(level(sound, 0, 13), -30);
        EXPECT_LT(level(sound, 0, 13), -6);
    }
}

// The frame at which `sound` begins to differ from one without the note.
int onset(const Sound& sound, const Sound& without) {
    for (std::size_t i = 0; i < sound.size(); ++i)
        if (std::abs(sound[i] - without[i]) > 1e-6F) return static_cast<int>(i / 2);
    return -1;
}

TEST_F(SynthSound, ANoteFallsOnItsSample) {
    SynthRenderer plain;
    plain.send(message(0x99, 42, 100), 0);
    const int lag = onset(plain.render(2000), Sound(4000)); // the drum's own attack
    for (const int frame : {1, 63, 64, 1000, 4444, 9999}) {
        SynthRenderer renderer;
        renderer.send(message(0x99, 42, 100), FrameTime{0, kRate}.nsAt(frame));
        EXPECT_EQ(onset(renderer.render(12000), Sound(24000)), frame + lag);
    }
    // Also while an earlier note still sounds with another shift; beside the fade nothing but the new note
    // changes.
    for (const int frame : {8000, 8017, 8031, 8060}) {
        SynthRenderer with, without;
        for (SynthRenderer* each : {&with, &without})
            each->send(message(0x90, 40, 100), FrameTime{0, kRate}.nsAt(70));
        with.send(message(0x90, 76, 127), FrameTime{0, kRate}.nsAt(frame));
        const int at = onset(with.render(12000), without.render(12000));
        EXPECT_GE(at, frame - 96);
        EXPECT_LE(at, frame + 64);
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
    synth.send(message(0x99, 37, 127), 0); // no device yet: swallowed
    synth.prepare(48000);
    constexpr std::int64_t kGap = 119'000'000; // 5712 frames
    const std::int64_t start = clock.now + 50'000'000;
    std::vector<float> left, right(256), buffer(256);
    int sent = 0;
    for (int callback = 0; callback < 420; ++callback) {
        if (callback % 3 == 0) clock.now += 16'000'000; // three at a time, as devices like to ask
        for (; sent < 15 && start + sent * kGap <= clock.now; ++sent)
            synth.send(message(0x99, 37, 127), start + sent * kGap);
        std::fill(buffer.begin(), buffer.end(), 0.0F);
        synth.fill(256, buffer.data(), right.data());
        left.insert(left.end(), buffer.begin(), buffer.end());
    }
    std::vector<int> onsets;
    for (int i = 0; i < static_cast<int>(left.size()); ++i)
        if (std::abs(left[i]) > 0.01F && (onsets.empty() || i - onsets.back() > 4000)) onsets.push_back(i);
    ASSERT_EQ(onsets.size(), 15U);
    for (std::size_t i = 1; i < onsets.size(); ++i) EXPECT_NEAR(onsets[i] - onsets[i - 1], 5712, 12);
}

TEST(Wav, IsWrittenWholeOrNotAtAll) {
    const std::string path = testing::TempDir() + "sound-" + std::to_string(getpid()) + ".wav";
    ASSERT_TRUE(writeWav(path, toInt16({0.0F, 1.0F, -2.0F, 0.5F})));
    const FileBytes file = readFileStart(path, 100);
    EXPECT_EQ(
        std::string(file.bytes.begin(), file.bytes.end()),
        std::string("RIFF\x2c\0\0\0WAVEfmt \x10\0\0\0\1\0\2\0\x44\xac\0\0\x10\xb1\2\0\4\0\x10\0data\x8\0\0\0"
                    "\0\0\xff\x7f\x01\x80\0\x40",
                    52));
    unlink(path.c_str());
    EXPECT_FALSE(writeWav("/nowhere/sound.wav", {}));
}

} // namespace
} // namespace marlune
