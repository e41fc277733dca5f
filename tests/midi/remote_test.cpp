#include "support/program_test.h"

namespace marlune {
namespace {

TEST(RemoteNotes, PressThePanelAsMapped) {
    TestProgram program;
    program.midi(0x90, 36 + 5, 100); // step 6 of 103A
    program.midi(0x90, 60 + 7, 100); // key 7
    const BassStep& step = project.bass[0].patterns[0][0].steps[5];
    EXPECT_EQ(step.note, 7);
    program.midi(0x90, 67, 100); // the same key again: a rest
    EXPECT_FALSE(step.noteOn);
    program.midi(0x90, 74, 1);
    program.midi(0x90, 73, 1);
    EXPECT_TRUE(step.accent && step.up);
    program.midi(0x90, 59, 1); // down with up set: the middle
    EXPECT_FALSE(step.up || step.down);
    program.midi(0x90, 74, 0);  // velocity 0 does nothing
    program.midi(0x90, 58, 90); // matches no row
    EXPECT_TRUE(step.accent);
    program.midi(0x99, 62, 90); // drum row 2
    program.midi(0x99, 38, 90); // step 2
    EXPECT_EQ(project.drum.selDrum, 2);
    EXPECT_EQ(project.drum.patterns[0][0].drumOn[2][2], 255);
    program.midi(0x95, 40, 90); // a channel of nobody
    EXPECT_EQ(project.bass[1].selStep, 0);
    EXPECT_EQ(program.copyDifference(), "");
}

TEST(RemoteNotes, OverlappingBasesAndSharedChannelsTakeTheFirstMatch) {
    TestProgram program;
    config.selectBase = 45; // keys 45..57 overlap steps 36..51
    program.midi(0x90, 47, 100);
    EXPECT_EQ(project.bass[0].selStep, 11);
    program.midi(0x90, 53, 100);
    EXPECT_EQ(project.bass[0].patterns[0][0].steps[11].note, 8);
    config.moduleChannel = {3, 3, 3};
    openMidiDevices();
    program.midi(0x93, 40, 100);
    EXPECT_EQ(project.drum.patterns[0][0].drumOn[4][0], 255); // 109 before 103A
    config.moduleChannel[2] = 9;
    program.midi(0x93, 41, 100);
    EXPECT_EQ(project.bass[0].selStep, 5);
    EXPECT_EQ(project.bass[1].selStep, 0);
}

TEST(RemoteKnobs, FollowTheModeAndTheRecording) {
    TestProgram program;
    program.calls();
    program.midi(0xB0, 12, 100);
    EXPECT_EQ(program.calls(), "SetController32(0,100)");
    EXPECT_EQ(shownFrame(Control::knobSprite, 0), 42);
    program.midi(0xB0, 74, 5); // no knob
    program.midi(0xB1, 12, 5); // another channel
    EXPECT_EQ(project.knobValue[0], 100);
    Check1_Click();
    program.midi(0xB0, 12, 50);
    EXPECT_EQ(project.knobValue[0], 0); // the track's value stands
    recButton_Click();
    songTick = 7;
    program.midi(0xB0, 12, 60);
    EXPECT_EQ(knobTrack[0][7], 60);
    EXPECT_TRUE(knobRecording[0]);
}

TEST(RemoteKnobs, WhileRunningABurstIsOneCallPerTick) {
    TestProgram program;
    playButton();
    program.play(1);
    program.calls();
    for (int value = 0; value < 100; ++value) program.midi(0xB0, 13, value);
    EXPECT_EQ(program.calls(), "");
    program.play(1);
    EXPECT_EQ(program.calls(), "PrepareController32(1,99)");
    playButton();
    Check1_Click();
    playButton();
    program.midi(0xB0, 13, 5); // song playback without recording: blocked and ignored
    program.midi(0x90, 40, 99);
    program.play(2);
    program.midi(0xB0, 13, 5);
    program.play(2);
    EXPECT_EQ(project.knobValue[1], 0);
    EXPECT_EQ(project.bass[0].selStep, 0);
    StopPlay();
}

TEST(InputQueue, IsThrownAwayWhenTheReaderChanges) {
    TestProgram program;
    for (int i = 0; i < 100; ++i) program.devices.input->received({3, {0xB0, 12, 9}});
    program.shell.after(0, midiArrived); // the wake of those
    MidiMsgEnable(true);
    program.shell.waitForEvents(1);
    EXPECT_EQ(MIDIIn1.MessageCount(), 0);
    EXPECT_EQ(project.knobValue[0], 0);
    program.midi(0xB0, 12, 9);
    EXPECT_EQ(project.knobValue[0], 9);
}

TEST(InputQueue, FloodedFromAnotherThreadLosesNoNote) {
    TestProgram program;
    MIDIIn1.setMessageEvents(false);
    constexpr int kNotes = 200;
    std::thread flood([&] {
        for (int i = 0; i < 60000; ++i) {
            program.devices.input->received({3, {0xB0, 12, static_cast<std::uint8_t>(i % 128)}});
            if (i % 300 == 0)
                program.devices.input->received({3, {0x91, static_cast<std::uint8_t>(i / 300 % 128), 1}});
        }
    });
    flood.join();
    int notes = 0;
    int last = -1;
    EXPECT_EQ(MIDIIn1.MessageCount(), static_cast<int>(MidiInput::kQueueSize));
    while (MIDIIn1.MessageCount() > 0) {
        const MidiMessage message = MIDIIn1.oldest();
        MIDIIn1.removeOldest();
        if ((message.bytes[0] & 0xF0) != 0x90) continue;
        EXPECT_EQ(message.bytes[1], (last + 1) % 128); // in order
        last = message.bytes[1];
        ++notes;
    }
    EXPECT_EQ(notes, kNotes);
    EXPECT_EQ(MIDIIn1.takeDropped(), 60000 + kNotes - static_cast<int>(MidiInput::kQueueSize));
}

TEST(InputQueue, MalformedMessagesNeverEnter) {
    TestProgram program;
    const MidiMessage bad[] = {
        {0, {}}, {3, {0xB0, 0x90, 1}}, {2, {0xB0, 1, 0}}, {3, {0x40, 1, 1}}, {3, {0xF0, 1, 1}}};
    for (const MidiMessage& message : bad) program.devices.input->received(message);
    EXPECT_EQ(MIDIIn1.MessageCount(), 0);
}

TEST(InputQueue, TellsOfAFloodInTheStatusLine) {
    TestProgram program;
    MIDIIn1.setMessageEvents(false);
    for (int i = 0; i < 9000; ++i) program.midi(0xB0, 12, 1);
    MidiMsgEnable(false); // what nobody was to read is no news
    MIDIIn1_Message();
    EXPECT_EQ(program.shell.status, "");
    for (int i = 0; i < 9000; ++i) program.midi(0xB0, 12, 1);
    MIDIIn1.setMessageEvents(true);
    MIDIIn1_Message();
    EXPECT_EQ(program.shell.status, "MIDI input is flooded: 808 messages were dropped.");
}

} // namespace
} // namespace marlune
