// The three MIDI endpoints: sequencer output, sync output and input; their choice, opening and closing.
//
// User-interface thread. A device is an index into the lists of the port layer, which keeps them stable.
#pragma once

#include <string>

#include "boundary/clock_source.h"
#include "boundary/form.h"
#include "boundary/midi_ports.h"

namespace marlune {

// The devices offered as outputs; null for none. The component opens them by index.
void setOutputDevices(OutputDevices* devices);

void takeClockSettings(); // what clock.cfg says counts from now on

void listMidiDevices(); // fills the lists of the dialog and fits the chosen indices to them
// All three; true when the outputs and the input are open, else warns. next: what the warning says beyond
// itself.
bool openMidiDevices(const std::string& next = "");
void closeMidiDevices();

// About once a second: a chosen device that was away when it was to be opened is opened when it has come.
void openMissingDevices();

// Closes the input for a while, and opens it again if it was closed so.
void restInput();
void wakeInput();

// Close, open (twice when it went well: then true), then the state of the panel goes out.
bool MidiInit(const std::string& next = "");

void sendPanelState(); // shows the patterns and the tempo, sends all knobs

void mnuOptionsMidiSetup_Click();

struct MIDISetupForm final : Form {
    MIDISetupForm();
    ComboBox ComboMidiIn, ComboMidiOut, ComboSyncOut, clock;
    TextBox syncOffsetCheck, clockOffset;
    CheckBox shareStart, followJack, leadJack;
    Button CmdOk, CmdCancel;

    void describe(FormBuilder& builder) override;
    void Form_Activate() override;
    void cmdOK_Click();
    void cmdCancel_Click();

  private:
    void fillClock();
    [[nodiscard]] ClockSettings enteredClock() const;
    std::vector<ClockKind> offered; // in the order of the list
};
extern MIDISetupForm midiSetupForm;

} // namespace marlune
