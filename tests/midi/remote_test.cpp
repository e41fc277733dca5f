#include <sys/eventfd.h>
#include <unistd.h>

#include "boundary/midi_bytes.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using InputQueue = ProgramTest;
using Memorizer = ProgramTest;

TEST_F(InputQueue, IsThrownAwayWhenTheReaderChanges) {
    for (int i = 0; i < 100; ++i) program.devices.input->received({3, {0xB0, 12, 9}});
    program.shell.after(0, midiArrived); // the wake of those
    program.shell.after(0, [this] { program.devices.input->received({3, {0xB0, 12, 8}}); });
    MidiMsgEnable(true);
    program.shell.waitForEvents(1);
    EXPECT_EQ(MIDIIn1.MessageCount(), 0);
    EXPECT_EQ(project.knobValue[0], 0);
    program.midi(0xB0, 12, 9);
    EXPECT_EQ(project.knobValue[0], 9);
}

TEST_F(InputQueue, FloodedOverTwoLinksAtOnceLosesNoNoteAndKeepsTheLatest) {
    MIDIIn1.setMessageEvents(false);
    MIDIIn1.BlockStatus(kControlChange + 1, false);
    constexpr int kNotes = 200; // of each link
    std::vector<std::thread> floods;
    floods.reserve(kInputLinks);
    for (int link = 0; link < kInputLinks; ++link)
        floods.emplace_back([sink = program.devices.inputs[link], link] {
            for (int i = 0; i < 60000; ++i) {
                sink->received(midiBytes(kControlChange + link, i / 4 >> 7, i / 4 & 127));
                if (i % 300 == 0) sink->received(noteOn(link, i / 300 % 128, 1));
            }
        });
    int notes[kInputLinks] = {};
    int controller[kInputLinks] = {-1, -1};
    int controllers = 0;
    const auto read = [&] {
        while (MIDIIn1.MessageCount() > 0) {
            const MidiMessage message = MIDIIn1.oldest();
            MIDIIn1.removeOldest();
            const int link = channelOfStatus(message.bytes[0]);
            if (statusKind(message.bytes[0]) == kNoteOn) {
                ASSERT_EQ(message.bytes[1], notes[link]++ % 128); // in order
                continue;
            }
            const int value = message.bytes[1] << 7 | message.bytes[2];
            ASSERT_GE(value, controller[link]);
            controller[link] = value;
            ++controllers;
        }
    };
    for (int turn = 0; turn < 50; ++turn) read();
    for (std::thread& flood : floods) flood.join();
    EXPECT_LE(MIDIIn1.MessageCount(), static_cast<int>(MidiInput::kQueueSize));
    read();
    EXPECT_EQ(notes[0] + notes[1], kInputLinks * kNotes);
    EXPECT_EQ(std::max(controller[0], controller[1]), 59999 / 4); // the last one counts
    EXPECT_EQ(MIDIIn1.takeDropped(), kInputLinks * 60000 - controllers);
}

TEST_F(InputQueue, WakesOnceForAllThatCameBeforeItIsRead) {
    const int wake = eventfd(0, EFD_CLOEXEC); // a read waits for the wake-up
    MIDIIn1.attach(&program.devices, wake);
    MIDIIn1.DeviceID = 0;
    MIDIIn1.open();
    const auto arrive = [&](int count) {
        for (int i = 0; i < count; ++i) program.devices.input->received(noteOn(0, i, 1));
    };
    const auto woken = [&] {
        std::uint64_t times = 0;
        return read(wake, &times, sizeof times) == sizeof times ? static_cast<int>(times) : -1;
    };
    for (const int count : {100, 1, 5}) {
        arrive(count);
        EXPECT_EQ(woken(), 1);
        EXPECT_EQ(MIDIIn1.MessageCount(), count);
        while (MIDIIn1.MessageCount() > 0) MIDIIn1.removeOldest();
    }
    arrive(1); // heard by nobody in polled mode, and no reason to be deaf afterwards
    EXPECT_EQ(woken(), 1);
    MIDIIn1.setMessageEvents(false);
    arrive(1);
    MIDIIn1.setMessageEvents(true);
    arrive(1);
    EXPECT_EQ(woken(), 1);
    MIDIIn1.attach(nullptr, -1);
    close(wake);
}

TEST_F(InputQueue, MalformedMessagesNeverEnter) {
    const MidiMessage bad[] = {
        {0, {}}, {3, {0xB0, 0x90, 1}}, {2, {0xB0, 1, 0}}, {3, {0x40, 1, 1}}, {3, {0xF0, 1, 1}}};
    for (const MidiMessage& message : bad) program.devices.input->received(message);
    EXPECT_EQ(MIDIIn1.MessageCount(), 0);
}

TEST_F(InputQueue, GivesUpTheOldestNotesWhereNothingElseIsLeft) {
    MIDIIn1.setMessageEvents(false);
    constexpr int kRoom = MidiInput::kQueueSize;
    for (int i = 0; i < 300; ++i)
        program.devices.input->received(midiBytes(kControlChange, i / 128, i % 128));
    for (int i = 0; i < kRoom - 100; ++i) program.devices.input->received(noteOn(0, i / 128, i % 128));
    EXPECT_EQ(MIDIIn1.MessageCount(), kRoom);
    EXPECT_EQ(MIDIIn1.takeDropped(), 200);
    EXPECT_EQ(MIDIIn1.oldest().bytes[1] * 128 + MIDIIn1.oldest().bytes[2], 200);
    while (MIDIIn1.MessageCount() > 0) MIDIIn1.removeOldest();
    for (int i = 0; i < kRoom + 50; ++i) program.devices.input->received(noteOn(0, i / 128, i % 128));
    EXPECT_EQ(MIDIIn1.MessageCount(), kRoom);
    EXPECT_EQ(MIDIIn1.takeDropped(), 50);
    EXPECT_EQ(MIDIIn1.oldest().bytes[1] * 128 + MIDIIn1.oldest().bytes[2], 50);
}

TEST_F(InputQueue, TellsOfAFloodInTheStatusLine) {
    MIDIIn1.setMessageEvents(false);
    for (int i = 0; i < 9000; ++i) program.midi(0xB0, 12, 1);
    MidiMsgEnable(false); // what nobody was to read is no news
    MIDIIn1_Message();
    EXPECT_EQ(program.shell.status, "");
    for (int i = 0; i < 9000; ++i) program.midi(0xB0, 12, 1);
    MIDIIn1.setMessageEvents(true);
    MIDIIn1_Message();
    EXPECT_EQ(test::joined(program.shell.passing), "MIDI input is flooded: 808 messages were dropped.");
}

TEST_F(Memorizer, PhrasesSwitchTheirModulesAndLeaveTheOthers) {
    config.phraseChannel = 2;
    NoteMapEntry& entry = project.noteMap[50];
    entry.mapBank[1] = 3;
    entry.mapPatt[1] = 6;
    entry.mapUsed = true;
    remoteNoteSnapShot(50, 1); // not the phrase channel
    EXPECT_EQ(project.bass[1].currPatt, 0);
    project.learnMode = true; // as only a file brings it: without its dialog it has no effect
    remoteNoteSnapShot(50, 2);
    EXPECT_EQ(project.bass[1].currBank * 8 + project.bass[1].currPatt, 30);
    EXPECT_EQ(project.bass[0].currPatt + project.drum.currPatt, 0);
    Check1_Click();
    recButton_Click();
    remoteNoteSnapShot(50, 2);
    EXPECT_TRUE(recordingState->barRecording[1] && !recordingState->barRecording[0]);
}

} // namespace
} // namespace marlune
