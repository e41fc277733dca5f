// What arrives at the input does what the panel does: each note of a keyboard on each channel, as whole
// sessions.
#include "midi/midi_output.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using MidiSession = ProgramTest;

TEST_F(MidiSession, PhrasesAndTheOtherStates) {
    config.phraseChannel = 4;
    openMidiDevices();
    for (int note = 1; note < 5; ++note) project.noteMap[note].mapUsed = note != 4;
    project.noteMap[1].mapBank = {2, -1, 0};
    project.noteMap[1].mapPatt = {5, -1, 0};
    project.noteMap[2].mapBank = {-1, 1, 3};
    project.noteMap[2].mapPatt = {1, -1, 7};
    project.noteMap[3].mapBank = {0, 0, 0};
    project.noteMap[3].mapPatt = {0, 0, 0};
    program.calls();
    expectSession(program);
}

// The channels of which a controller is heard, at rest and while playing.
TEST_F(MidiSession, ControllersOnEachChannel) {
    std::string text;
    for (int control = 0; control < 16; ++control) {
        config.controlChannel = control;
        openMidiDevices();
        for (const bool playing : {false, true}) {
            if (playing) playButton();
            text += playing ? ", playing" : std::to_string(control) + ":";
            for (int channel = 0; channel < 16; ++channel) {
                project.knobValue[0] = 0;
                program.midi(0xB0 + channel, 12, channel + 1);
                if (playing) program.play(1);
                if (project.knobValue[0] != 0) text += " " + std::to_string(channel);
            }
            if (playing) playButton();
        }
        text += "\n";
    }
    expectKept(text);
}

TEST_F(MidiSession, SingleMessagesKeepWithinTheirBytes) {
    program.calls();
    midiNoteOn(17, 128, 200);
    midiNoteOn(2, -1, -1);
    midiNoteOn(9, 127, 0);
    midiProgramChange(1, -1);
    midiProgramChange(18, 0);
    midiProgramChange(3, 130);
    EXPECT_EQ(program.calls(),
              "SendShortMessage32(145,127,127) SendShortMessage32(146,0,0) SendShortMessage32(153,127,0) "
              "SendShortMessage32(194,0,0) SendShortMessage32(195,127,0)");
    for (int m = 0; m < kModules; ++m) config.moduleChannel[m] = 3 + m;
    for (int m = 0; m < kBassModules; ++m) config.moduleVelocity[m] = 60 + m;
    for (int m = 0; m < kBassModules; ++m) config.moduleBaseNote[m] = 40 + m;
    for (int k = 0; k < kKnobs; ++k) config.outputController[k] = 90 + k;
    pushOutputAssignment();
    const std::string calls = program.calls();
    EXPECT_TRUE(
        calls.starts_with("Set103Vel32(0,60) Set103Vel32(1,61) Set103NoteOffset32(0,40) "
                          "Set103NoteOffset32(1,41) Set103Chan32(0,3) "
                          "Set103Chan32(1,4) Set109Chan32(2,5) DefineController32(0,90) "))
        << calls;
    EXPECT_TRUE(calls.ends_with("DefineController32(18,108) DefineController32(19,109)")) << calls;
}

} // namespace
} // namespace marlune
