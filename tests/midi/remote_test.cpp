#include <sys/eventfd.h>
#include <unistd.h>

#include "boundary/midi_bytes.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using RemoteNotes = ProgramTest;
using RemoteKnobs = ProgramTest;
using InputQueue = ProgramTest;
using Memorizer = ProgramTest;

TEST_F(RemoteNotes, OverlappingBasesAndSharedChannelsTakeTheFirstMatch) {
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

TEST_F(RemoteKnobs, WhileRunningABurstIsOneCallPerTick) {
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
}

TEST_F(InputQueue, IsThrownAwayWhenTheReaderChanges) {
    for (int i = 0; i < 100; ++i) program.devices.input->received({3, {0xB0, 12, 9}});
    program.shell.after(0, midiArrived); // the wake of those
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

std::string memorizerState() {
    const marluneSnapShot& form = memorizer;
    std::string text = form.currMidiMessageText.text;
    for (int m = 0; m < kModules; ++m) {
        text += std::string(" ") + (form.pattMap[m].enabled ? "" : "-") +
                (form.pattMap[m].checked ? "x" : "o") + form.currMapped[m].text;
    }
    return text + (form.StoreButton.enabled ? " store" : "") + (form.EditButton.enabled ? " edit" : "") +
           (MIDIIn1.isOpen() ? "" : " closed");
}

TEST_F(Memorizer, GoesThroughItsFourStates) {
    selPatt(1, 3);
    bankClick(2, 2);
    program.shell.modal = {[&](Form&) {
        EXPECT_TRUE(project.learnMode);
        EXPECT_EQ(memorizerState(), "NONE -oNONE -oNONE -oNONE");
        memorizer.Form_KeyDown('1'); // disabled: flips the box, and the click does nothing
        EXPECT_EQ(memorizer.currMapped[0].text, "NONE");
        program.midi(0x90, 60, 64);
        EXPECT_EQ(memorizerState(), "60(1) oNONE oNONE oNONE store");
        memorizer.Form_KeyDown('2');
        memorizer.Form_KeyDown('3');
        EXPECT_EQ(memorizerState(), "60(1) oNONE x1 - 4 x3 - 1 store");
        memorizer.Form_KeyDown('S');
        EXPECT_EQ(memorizerState(), "60(1) -oNONE -x1 - 4 -x3 - 1 edit");
        memorizer.Form_KeyDown('E');
        EXPECT_EQ(memorizerState(), "NONE oNONE xNONE xNONE store closed");
        memorizer.Form_KeyDown('2');
        memorizer.Form_KeyDown('3');
        memorizer.Form_KeyDown('S'); // no box: the note is unmapped
        EXPECT_EQ(memorizerState(), "60(1) oNONE oNONE oNONE store");
        program.midi(0x90, 0, 64); // note 0 is a note
        memorizer.Form_KeyDown('2');
        memorizer.Form_KeyDown('S');
        memorizer.EditButton_Click(); // and closes while editing
        memorizer.Form_KeyDown(27);
        EXPECT_FALSE(memorizer.visible());
    }};
    mnuToolsLearn_Click();
    EXPECT_FALSE(project.learnMode);
    EXPECT_TRUE(MIDIIn1.isOpen());
    EXPECT_FALSE(project.noteMap[60].mapUsed);
    EXPECT_TRUE(project.noteMap[0].mapUsed);
}

TEST_F(Memorizer, OpenedWhilePlayingHearsAtOnceAndLeavesTheInputAsItWas) {
    playButton();
    program.play(3);
    program.shell.modal = {[&](Form&) {
        program.midi(0x90, 61, 64);
        EXPECT_EQ(memorizerState(), "61(1) oNONE oNONE oNONE store");
    }};
    mnuToolsLearn_Click();
    EXPECT_FALSE(transportState->transportRunning);
    EXPECT_TRUE(MIDIIn1.isOpen() && MIDIIn1.MessageEvents);
    closeMidiDevices();
    program.shell.modal = {[&](Form&) { memorizer.Form_KeyDown('E'); }}; // without effect: no note is known
    mnuToolsLearn_Click();
    EXPECT_FALSE(MIDIIn1.isOpen());
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
