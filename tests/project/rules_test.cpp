// The plain rules of the record, the configuration and the song, each value against a table or a model.
#include "project/record_limits.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using Rules = ProgramTest;

constexpr int kValues[] = {-30000, -2, -1, 0, 3, 4, 7, 8, 15, 16, 39, 40, 127, 128, 240, 241, 30000};

TEST_F(Rules, LimitsOfTheRecord) {
    std::string text;
    for (const int wild : kValues) {
        const auto record = std::make_unique<ProjectRecord>();
        const auto set = [wild](auto&&... fields) { ((fields = wild), ...); };
        for (BassModule& bass : record->bass)
            set(bass.patterns[3][7].loopEnd, bass.patterns[3][7].patch, bass.storedChannel, bass.selStep);
        DrumPattern& drums = record->drum.patterns[3][7];
        set(drums.loopEnd, drums.drumNote[0], drums.drumNote[7], record->drum.selDrum);
        for (int m = 0; m < kModules; ++m) {
            const Selection at = selectionOf(*record, m);
            set(at.currBank, at.currPatt, at.nextBank, at.nextPatt);
        }
        NoteMapEntry& entry = record->noteMap[127];
        set(record->knobValue[0], record->knobValue[19], record->tempo, entry.mapBank[0], entry.mapBank[2],
            entry.mapPatt[0], entry.mapPatt[2]);
        limitRecord(*record);
        const auto tell = [&text](std::initializer_list<int> values) {
            for (const int value : values) text += " " + std::to_string(value);
            text += ",";
        };
        text += std::to_string(wild) + ":";
        for (const BassModule& bass : record->bass)
            tell({bass.patterns[3][7].loopEnd, bass.patterns[3][7].patch, bass.storedChannel, bass.selStep});
        tell({drums.loopEnd, drums.drumNote[0], drums.drumNote[7], record->drum.selDrum});
        for (int m = 0; m < kModules; ++m) {
            const Selection at = selectionOf(*record, m);
            tell({at.currBank, at.currPatt, at.nextBank, at.nextPatt});
        }
        tell({record->knobValue[0], record->knobValue[19], record->tempo});
        tell({entry.mapBank[0], entry.mapBank[2], entry.mapPatt[0], entry.mapPatt[2]});
        text += "\n";
    }
    expectKept(text);
}

TEST_F(Rules, WildSettings) {
    std::string text;
    for (const int wild : kValues) {
        const auto fill = [wild](auto&... arrays) {
            (
                [&] {
                    for (auto& each : arrays) each = wild;
                }(),
                ...);
        };
        fill(config.moduleChannel, config.moduleBaseNote, config.moduleVelocity, config.drumNoteDefault,
             config.outputController);
        config.controlChannel = wild;
        config.phraseChannel = wild;
        config.controllerMap[5] = wild;
        text += std::to_string(wild) + ":";
        for (const int value :
             {channelOf(0), channelOf(2), controlChannelNumber(), phraseChannelNumber(), baseNoteOf(1),
              velocityOf(1), drumNoteDefaultOf(6), controllerOfKnob(19), knobOfController(5)})
            text += " " + std::to_string(value);
        for (auto& knob : config.controllerMap) knob = 2;
        text += " " + std::to_string(knobOfController(wild));
        int mapped = 0;
        for (const bool module : {false, true}) {
            config.keyMap = {};
            for (KeyMapEntry& key : config.keyMap) {
                (module ? key.module : key.pattern) = wild;
                (module ? key.pattern : key.module) = 1;
            }
            for (int code = -300; code < 600; ++code) mapped += mappedKey(code).module >= 0 ? 1 : 0;
        }
        text += " " + std::to_string(mapped) + "\n";
    }
    expectKept(text);
}

// Counted on from the bar where the pattern began, one tick after the other.
TEST_F(Rules, StepsAcrossBars) {
    std::mt19937 random(5);
    for (int bar = 0; bar < kSongBars; ++bar)
        for (int m = 0; m < kModules; ++m)
            setBar(m, bar * kTicksPerBar, bar % 7 == 0 ? static_cast<int>(random() % kBanks) : 0,
                   static_cast<int>(random() % 2));
    for (const int length : {1, 7, 12, 16}) {
        for (int m = 0; m < kModules; ++m) {
            int step = 0;
            for (int tick = 0; tick < kSongTicks; ++tick) {
                if (tick > 0 && songBarAt(m, tick) != songBarAt(m, tick - 1)) step = 0;
                ASSERT_EQ(moduleStepAtTick(m, tick, length), step) << m << ' ' << tick;
                step = (step + 1) % length;
                ASSERT_EQ(nextSongTick(tick), tick == 15999 ? 0 : tick + 1);
                ASSERT_TRUE(nextSongBarAt(m, tick) == songBarAt(m, (tick / 16 + 1) % 1000 * 16));
            }
        }
    }
    setNextBar(0, 15983, 3, 7);
    setNextBar(1, 15984, 3, 7); // there is none
    EXPECT_EQ(barBank(0, 15999) * 10 + nextBarPatt(0, 15983) + nextBarBank(0, 15983), 40);
    EXPECT_LT(barBank(1, 0) * 10 + barPatt(1, 0), 37);
}

} // namespace
} // namespace marlune
