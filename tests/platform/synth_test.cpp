// The sound of the built-in synthesizer, measured.
#include <gtest/gtest.h>

#include <sndfile.h>

#include <cmath>
#include <filesystem>
#include <random>

#include "boundary/midi_bytes.h"
#include "platform/sound_file.h"
#include "platform/synth.h"
#include "platform/synth_renderer.h"
#include "support/sound_measures.h"
#include "support/test_program.h"

namespace marlune {
namespace {

using namespace test;

constexpr int kRate = SynthRenderer::kSampleRate;
constexpr SynthSettings kDry{kRate, false};
constexpr int kDrumChannel = 9;
using Row = std::array<int, 5>; // controllers 12..16

MidiMessage control(int channel, int controller, int value) {
    return midiBytes(kControlChange + channel, controller, value);
}

struct Step {
    int channel = 0;
    Row knobs{40, 64, 72, 56, 0};
    int note = 36, velocity = 100;
    int accent = 0;   // controller 17
    int program = -1; // -1: none
};

// Half a second of it, held for a quarter.
Sound play(const Step& step) {
    SynthRenderer renderer(kDry);
    if (step.program >= 0) renderer.send(midiBytes(kProgramChange + step.channel, step.program), 0);
    for (int i = 0; i < 5; ++i) renderer.send(control(step.channel, 12 + i, step.knobs[i]), 0);
    renderer.send(control(step.channel, 17, step.accent), 0);
    renderer.send(noteOn(step.channel, step.note, step.velocity), 0);
    renderer.send(release(step.channel, step.note), 250'000'000);
    return renderer.render(kRate / 2);
}

double loudness(const Sound& sound) {
    return levelOf(sound, kRate, 0, 0.25);
}

double centre(const Sound& sound) {
    return spectralCentre(sound, kRate, 0, 0.15);
}

class SynthSound : public testing::Test {
  protected:
    void SetUp() override {
        if (findSoundFont().empty()) GTEST_SKIP() << "no sound font on this machine";
    }
};

// knob, factor between the ends, the largest change of level on the way, dB
const std::tuple<int, double, double> kKnobRows[] = {{0, 4, 4}, {1, 2, 4}, {2, 4, 4}, {3, 2, 4}};

TEST(BassSound, EveryKnobIsHeardOverItsWholeWayAtTheSameLevel) {
    for (const int channel : {0, 1}) {
        for (const auto& [knob, factor, change] : kKnobRows) {
            Step step{channel};
            std::vector<double> centres, levels;
            for (const int value : {0, 32, 64, 96, 127}) {
                step.knobs[knob] = value;
                centres.push_back(centre(play(step)));
                levels.push_back(loudness(play(step)));
                if (value == 0) continue;
                EXPECT_GT(centres.back(), 1.05 * centres.end()[-2]) << knob << " " << value;
            }
            EXPECT_GT(centres.back(), factor * centres.front()) << knob;
            const auto [low, high] = std::minmax_element(levels.begin(), levels.end());
            EXPECT_LT(*high - *low, change) << knob;
        }
        Step shaped{channel};
        shaped.knobs[4] = 127;
        EXPECT_LT(centre(play(shaped)), 0.95 * centre(play({channel})));
    }
}

TEST(BassSound, AccentsStandOutAtEveryValueAndAHundredIsThePlainStep) {
    const double plain = loudness(play({}));
    double before = plain;
    for (const int value : {1, 32, 64, 99, 101, 127}) {
        const Step accented{.velocity = value, .accent = value};
        EXPECT_GT(loudness(play(accented)), before + 0.2) << value;
        before = loudness(play(accented)) - 0.2 * (value == 99);
    }
    EXPECT_GT(centre(play({.velocity = 127, .accent = 127})), 1.5 * centre(play({})));
    EXPECT_EQ(play({.velocity = 100, .accent = 100}), play({.velocity = 100, .accent = 0}));
    EXPECT_NEAR(loudness(play({.velocity = 50})), plain - 6, 0.5);
}

TEST(BassSound, OverlappingNotesSlideAndSeparateOnesDont) {
    const auto later = [](bool overlap) {
        SynthRenderer renderer(kDry);
        renderer.send(noteOn(0, 60, 100), 0);
        if (!overlap) renderer.send(release(0, 60), 200'000'000);
        renderer.send(noteOn(0, 36, 100), 200'000'000);
        if (overlap) renderer.send(release(0, 60), 200'000'001);
        return spectralCentre(renderer.render(kRate / 2), kRate, 0.2, 0.25);
    };
    EXPECT_GT(std::abs(later(true) / later(false) - 1), 0.1);
    SynthRenderer back(kDry); // the held note returns
    for (const auto& [message, ms] :
         {std::pair{noteOn(0, 36, 100), 0}, {noteOn(0, 48, 100), 100}, {release(0, 48), 200}})
        back.send(message, ms * std::int64_t{1'000'000});
    EXPECT_GT(levelOf(back.render(kRate), kRate, 0.7, 0.9), -40);
}

TEST(DrumSound, EveryNoteSoundsAtItsPlaceByItsVelocity) {
    for (const int note : {36, 38, 39, 42, 44, 46, 48}) {
        const Sound soft = play({.channel = kDrumChannel, .note = note, .velocity = 50}),
                    loud = play({.channel = kDrumChannel, .note = note, .velocity = 120});
        EXPECT_GT(loudness(soft), -50) << note;
        EXPECT_GT(loudness(loud), loudness(soft) + 6) << note;
        EXPECT_GT(centre(loud), centre(soft)) << note;
        Sound right;
        for (std::size_t i = 0; i < loud.size(); i += 2) right.insert(right.end(), 2, loud[i + 1]);
        const double balance = loudness(right) - loudness(loud); // 0 in the middle
        EXPECT_EQ(std::lround(std::copysign(std::abs(balance) > 0.1, balance)),
                  note == 36                               ? 0
                  : note == 38 || note == 44 || note == 48 ? -1
                                                           : 1)
            << note << " " << balance;
    }
    const auto openHat = [](int closing) {
        SynthRenderer renderer(kDry);
        renderer.send(noteOn(kDrumChannel, 46, 100), 0);
        if (closing > 0) renderer.send(noteOn(kDrumChannel, closing, 1), 100'000'000);
        return levelOf(renderer.render(kRate / 2), kRate, 0.15, 0.3);
    };
    for (const int closing : {42, 44}) EXPECT_LT(openHat(closing), openHat(0) - 20);
}

TEST_F(SynthSound, AProgramChangeTakesTheSamplerAndAResetReturns) {
    for (const int channel : {0, 1, kDrumChannel}) {
        const Step own{.channel = channel}, patched{.channel = channel, .program = 25};
        const Sound sampled = play(patched);
        EXPECT_GT(loudness(sampled), -45);
        EXPECT_NE(sampled, play(own));
        SynthRenderer renderer(kDry), fresh(kDry);
        renderer.send(midiBytes(kProgramChange + channel, 25), 0);
        renderer.send(control(channel, 121, 0), 0);
        for (SynthRenderer* each : {&renderer, &fresh}) each->send(noteOn(channel, 36, 100), 1'000'000);
        EXPECT_EQ(renderer.render(kRate / 4), fresh.render(kRate / 4));
    }
    for (const auto& [knob, factor] : {std::pair{0, 3.0}, {2, 3.0}}) { // the sampler's own filter
        Step step{.program = 38};
        step.knobs[knob] = 0;
        const double dark = centre(play(step));
        step.knobs[knob] = 96;
        const double middle = centre(play(step));
        step.knobs[knob] = 127;
        EXPECT_GT(centre(play(step)), 1.1 * middle) << knob;
        EXPECT_GT(centre(play(step)), factor * dark) << knob;
    }
    Step ringing{.program = 38}, flat = ringing;
    ringing.knobs[1] = 127;
    flat.knobs[1] = 0;
    EXPECT_GE(loudness(play(ringing)), loudness(play(flat)));
}

TEST(SynthEnd, IsSilentTwoSecondsAfterTheLastRelease) {
    SynthRenderer renderer;
    for (const int channel : {0, 1}) {
        for (const int controller : {12, 13, 14, 15}) renderer.send(control(channel, controller, 127), 0);
        renderer.send(noteOn(channel, 40, 127), 0);
        renderer.send(release(channel, 40), 500'000'000);
    }
    for (const int note : {36, 38, 39, 42, 44, 46, 48}) {
        renderer.send(noteOn(kDrumChannel, note, 127), 400'000'000);
        renderer.send(release(kDrumChannel, note), 500'000'000);
    }
    const Sound sound = renderer.render(4 * kRate);
    EXPECT_GT(levelOf(sound, kRate, 0, 0.5), -20);
    EXPECT_LT(levelOf(sound, kRate, 2.5, 4), -60);
}

TEST(SynthRange, NothingWildEverComesOutAndPiecesMakeTheWhole) {
    for (const int rate : {8000, 44100, 96000}) {
        std::mt19937 random(static_cast<unsigned>(rate));
        const auto upTo = [&random](int limit) { return static_cast<int>(random() % unsigned(limit)); };
        SynthRenderer one({rate, true}), two({rate, true});
        for (int i = 0; i < 4000; ++i) {
            const int channel = upTo(4) == 0 ? kDrumChannel : upTo(2);
            const int kinds[] = {kNoteOn, kNoteOn, kNoteOff, kControlChange, kControlChange, kPitchBend};
            const int kind = kinds[upTo(6)];
            const int first = kind == kControlChange && upTo(20) > 0 ? 12 + upTo(6) : upTo(128);
            const MidiMessage message = midiBytes(kind + channel, first, upTo(128));
            const auto due = static_cast<std::int64_t>(upTo(1'000'000'000)) * 3;
            for (SynthRenderer* each : {&one, &two}) each->send(message, due);
        }
        const Sound whole = one.render(3 * rate);
        Sound pieces;
        while (pieces.size() < whole.size()) {
            const Sound piece =
                two.render(std::min(1 + upTo(700), static_cast<int>((whole.size() - pieces.size()) / 2)));
            pieces.insert(pieces.end(), piece.begin(), piece.end());
        }
        EXPECT_TRUE(whole == pieces);
        for (const float x : whole) ASSERT_LE(std::abs(x), SynthCore::kCeiling); // not of a NaN either
        EXPECT_GT(levelOf(whole, rate, 0, 3), -40);
    }
}

// The frame at which `sound` begins to differ from one without the note.
int onset(const Sound& sound, const Sound& without) {
    for (std::size_t i = 0; i < sound.size(); ++i)
        if (std::abs(sound[i] - without[i]) > 1e-6F) return static_cast<int>(i / 2);
    return -1;
}

TEST_F(SynthSound, ANoteFallsOnItsSampleOnVoicesAndSamplerAlike) {
    for (const int program : {-1, 0}) {
        const auto hit = [program](int frame) {
            SynthRenderer renderer(kDry);
            if (program >= 0) renderer.send(midiBytes(kProgramChange + kDrumChannel, program), 0);
            renderer.send(noteOn(kDrumChannel, 42, 100), FrameTime{0, kRate}.nsAt(frame));
            return onset(renderer.render(12000), Sound(24000));
        };
        const int lag = hit(0); // the drum's own attack
        for (const int frame : {1, 63, 64, 1000, 4444, 9999}) EXPECT_EQ(hit(frame), frame + lag);
    }
    // Also while an earlier note still sounds with another shift; beside the fade nothing but the new note
    // changes.
    for (const int frame : {8000, 8017, 8031, 8060}) {
        SynthRenderer with(kDry), without(kDry);
        for (SynthRenderer* each : {&with, &without})
            each->send(noteOn(2, 40, 100), FrameTime{0, kRate}.nsAt(70));
        with.send(noteOn(2, 76, 127), FrameTime{0, kRate}.nsAt(frame));
        EXPECT_NEAR(onset(with.render(12000), without.render(12000)), frame - 16, 80);
    }
}

// A clock that the test turns.
struct HandClock : PlayClock {
    std::int64_t nowNs() noexcept override { return now; }
    std::int64_t now = 7'000'000'000;
};

// What a device gets that asks for callbacks of `frames`, so many of them at a time.
Sound capture(Synth& synth, HandClock& clock, int callbacks, int frames, int burst,
              const std::vector<std::pair<std::int64_t, MidiMessage>>& events) {
    Sound sound;
    std::vector<float> left(frames), right(frames);
    std::size_t sent = 0;
    for (int callback = 0; callback < callbacks; ++callback) {
        if (callback % burst == 0) clock.now += std::int64_t{burst} * frames * 1'000'000'000 / 48000;
        for (; sent < events.size() && events[sent].first <= clock.now; ++sent)
            synth.send(events[sent].second, events[sent].first);
        synth.fill(frames, left.data(), right.data());
        for (int i = 0; i < frames; ++i) {
            sound.push_back(left[i]);
            sound.push_back(right[i]);
        }
    }
    return sound;
}

int firstSound(const Sound& sound) {
    return onset(sound, Sound(sound.size()));
}

TEST(SynthLive, PlaysWhatARenderWrites) {
    for (const int frames : {48, 480}) {
        HandClock clock;
        Synth synth(clock, nullptr, {.sound = false});
        synth.send(noteOn(9, 37, 127), 0); // no device yet: swallowed
        synth.prepare(48000);
        std::vector<std::pair<std::int64_t, MidiMessage>> events;
        const std::int64_t start = clock.now + 50'000'000;
        for (int i = 0; i < 15; ++i) {
            const std::int64_t due = start + i * std::int64_t{119'000'000}; // 5712 frames
            events.emplace_back(due, control(i % 2, 12 + i % 6, 30 + 6 * i));
            events.emplace_back(due, noteOn(kDrumChannel, 36 + 2 * (i % 3), 100));
            if (i > 0) events.emplace_back(due, release((i - 1) % 2, 35 + i));
            events.emplace_back(due, noteOn(i % 2, 36 + i, 100));
        }
        const Sound live = capture(synth, clock, 96000 / frames, frames, 1, events);
        SynthRenderer renderer({48000, true});
        for (const auto& [due, message] : events) renderer.send(message, due - start);
        const Sound rendered = renderer.render(70000);
        const int lag = firstSound(live) - firstSound(rendered);
        ASSERT_GT(lag, 0);
        const auto begin = live.begin() + 2 * static_cast<std::ptrdiff_t>(lag);
        EXPECT_TRUE(std::equal(rendered.begin(), rendered.end(), begin)) << frames;
    }
}

TEST_F(SynthSound, LiveEventsKeepTheirDistanceWhateverTheCallbacksDo) {
    HandClock clock;
    Synth synth(clock, nullptr, {.sound = false, .room = false});
    synth.prepare(48000);
    std::vector<std::pair<std::int64_t, MidiMessage>> events;
    for (int i = 1; i <= 15; ++i) // 5712 frames apart
        events.emplace_back(clock.now + i * std::int64_t{119'000'000}, noteOn(kDrumChannel, 37, 127));
    const Sound live = capture(synth, clock, 420, 256, 3, events); // as devices like to ask
    std::vector<int> onsets;
    for (int i = 0; i < 420 * 256; ++i)
        if (std::abs(live[2 * i]) > 0.01F && (onsets.empty() || i - onsets.back() > 4000))
            onsets.push_back(i);
    ASSERT_EQ(onsets.size(), 15U);
    for (std::size_t i = 1; i < onsets.size(); ++i) EXPECT_NEAR(onsets[i] - onsets[i - 1], 5712, 12);
}

TEST(SynthLive, TellsItsPeakAndCanBeMuted) {
    HandClock clock;
    Synth synth(clock, nullptr, {.sound = false});
    synth.prepare(48000);
    const auto kicks = [&] {
        return capture(synth, clock, 300, 64, 1, {{clock.now, noteOn(kDrumChannel, 36, 127)}});
    };
    EXPECT_GT(levelOf(kicks(), 48000, 0, 0.4), -40);
    EXPECT_GT(synth.takeMeter().peak, 0.2F);
    EXPECT_EQ(synth.takeMeter().peak, 0);
    synth.mute(true);
    EXPECT_LT(levelOf(kicks(), 48000, 0.1, 0.4), -150);
    EXPECT_GT(synth.takeMeter().peak, 0.2F);
    synth.mute(false);
    EXPECT_GT(levelOf(kicks(), 48000, 0, 0.4), -40);
}

TEST(SoundFile, IsThereWholeOrNotAtAll) {
    const TemporaryFolder folder;
    const std::string name = folder.file("a.wav");
    for (const auto& [bits, subtype] : {std::pair{16, SF_FORMAT_PCM_16}, {24, SF_FORMAT_PCM_24}}) {
        SoundFile file(name, {48000, bits});
        ASSERT_TRUE(file.write({0.0F, 1.0F, -2.0F, 0.5F}));
        ASSERT_TRUE(file.finish());
        SF_INFO info{};
        SNDFILE* read = sf_open(name.c_str(), SFM_READ, &info);
        float samples[6] = {};
        EXPECT_EQ(sf_read_float(read, samples, 6), 4);
        sf_close(read);
        EXPECT_EQ(info.format, SF_FORMAT_WAV | subtype);
        EXPECT_EQ(info.samplerate, 48000);
        for (const auto& [got, wanted] :
             {std::pair{samples[1], 1.0F}, {samples[2], -1.0F}, {samples[3], 0.5F}})
            EXPECT_NEAR(got, wanted, 1e-4);
    }
    const auto before = readBytes(name);
    { EXPECT_TRUE(SoundFile(name, {}).write({0.5F, 0.5F})); } // given up
    EXPECT_EQ(readBytes(name), before);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 1);
    SoundFile nowhere("/nowhere/sound.wav", {});
    EXPECT_FALSE(nowhere.write({0.0F, 0.0F}) || nowhere.finish());
}

} // namespace
} // namespace marlune
