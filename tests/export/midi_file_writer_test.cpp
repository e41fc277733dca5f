#include "export/midi_file_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>

namespace marlune {
namespace {

std::string hex(const std::vector<std::uint8_t>& bytes) {
    std::string text;
    for (const int byte : bytes) {
        char digits[8];
        std::snprintf(digits, sizeof digits, "%02X ", byte);
        text += digits;
    }
    return text;
}

TEST(MidiFile, IsWrittenToTheByte) {
    MemoryMidiFile file;
    file.event(0, 0x90, 1, 1); // no track yet
    file.addTrack();
    file.text(kMetaTrackName, "A");
    file.timeSignature({4, 2, 30, 8});
    file.tempo(500000);
    file.addTrack();
    file.event(0, 0x90, 36, 100);
    file.chooseTrack(0);
    file.event(127, 0xB1, 7, 300);
    file.chooseTrack(2); // there is none
    file.chooseTrack(1);
    file.event(128, 0xC2, 5, 9);
    file.event(0x0FFFFFFF, 0x80, 36, 0);
    file.event(-1, 0xF0, 1, 2); // not a channel message
    EXPECT_EQ(hex(file.bytes()),
              "4D 54 68 64 00 00 00 06 00 01 00 02 00 78 "
              "4D 54 72 6B 00 00 00 1C 00 FF 03 01 41 00 FF 58 04 04 02 1E 08 00 FF 51 03 07 A1 20 "
              "7F B1 07 2C 00 FF 2F 00 "
              "4D 54 72 6B 00 00 00 13 00 90 24 64 81 00 C2 05 FF FF FF 7F 80 24 00 00 FF 2F 00 ");
}

TEST(MidiFile, AWholeSongOfMovingKnobsTakesMilliseconds) {
    const auto start = std::chrono::steady_clock::now();
    MemoryMidiFile file;
    for (int knob = 0; knob < 20; ++knob) {
        file.addTrack();
        for (int tick = 0; tick < 16000; ++tick) file.event(30, 0xB0, knob, tick);
    }
    EXPECT_EQ(file.bytes().size(), 14U + 20 * (8 + 4 * 16000 + 4));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
    EXPECT_FALSE(file.finish("/no/such/folder/x.mid"));
}

} // namespace
} // namespace marlune
