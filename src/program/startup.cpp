#include "program/startup.h"

#include "boundary/app_shell.h"
#include "boundary/engine_component.h"
#include "edit/clipboard.h"
#include "edit/randomizers.h"
#include "edit/song_tools.h"
#include "files/export_driver.h"
#include "files/project_file.h"
#include "panel/editing.h"
#include "panel/refresh.h"
#include "panel/scaling.h"
#include "panel/shown_state.h"
#include "program/default_project.h"
#include "program/open_project.h"
#include "program/recovery.h"
#include "program/starter.h"
#include "project/clipboard_state.h"
#include "project/global_config.h"
#include "project/run_state.h"
#include "project/song_track.h"
#include "setup/config_file.h"
#include "setup/memorizer.h"
#include "setup/midi_devices.h"
#include "song/song_reset.h"
#include "transport/engine_link.h"
#include "transport/navigation.h"
#include "transport/timer_control.h"
#include "transport/transport.h"
#include "transport/waits.h"
#include "util/whole_file.h"

namespace marlune {

namespace {

// The main window's first touch.
void MDIForm_Load(const StartupHooks& hooks) {
    SetMarluneHwnd32(hooks.windowHandle);
    hookEngineMessages(true);
    setRandomSource(seededRandom(hooks.randomSeed));
    nameProject(kUntitled);
}

// False at a first start: there is no configuration yet.
bool loadPanel() {
    std::array<int, kKnobs> startValues{};
    for (int k = 0; k < kKnobs; ++k) startValues[k] = k < kFirstDrumKnob ? 0 : kFreshDrumLevel;
    config.midiInDevice = config.midiOutDevice = -1;
    ClearKeyMap();
    init309();
    const bool configured = loadGlobalConfig();
    takeClockSettings();
    for (int k = 0; k < kKnobs; ++k) showText(Control::UserTitle, k, knobLabel[k]);
    initKnobTrack(startValues);
    ClearCopyBuffer();
    return configured;
}

// Opens the devices. A first start is told that none are chosen, as ever, and then that the built-in ones
// are.
void openDevices(bool helped) {
    listMidiDevices();
    if (MidiInit(helped ? kFirstStartNext : "") || !helped) return;
    takeStarterConfig();
    listMidiDevices();
    MidiInit();
}

// What every control shows before anything has happened.
void showFirstState() {
    refreshTransport();
    for (const Control sprite : {Control::Check1, Control::ResetButton, Control::prevButton,
                                 Control::nextButton, Control::RwdStep, Control::FwdStep}) {
        showFrame(sprite, 0, 0);
    }
    showEnabled(Control::timeDisplay, 0, false);
    showEnabled(Control::microDisplay, 0, false);
    showNumber(Control::timeDisplay, 0, 1);
    showText(Control::microDisplay, 0, "");
    for (int drum = 0; drum < kDrumRows; ++drum) showFrame(Control::sel109, drum, 0);
    for (int m = 0; m < kModules; ++m) {
        refreshCurrBankPatt(m);
        refreshNextBankPatt(m);
        refreshStepLamp(m);
    }
}

} // namespace

bool startupMain(const std::string& commandLine, const StartupHooks& hooks) {
    const auto splash = [&hooks](bool visible) {
        if (hooks.showSplash) hooks.showSplash(visible);
    };
    if (hooks.anotherInstanceRuns && hooks.anotherInstanceRuns()) {
        shell().messageBox(
            "Error:  Marlune200q is already running.\nYou may run only one instance of Marlune at a time.",
            BoxIcon::critical, BoxButtons::ok);
        return false;
    }
    QuenTimer(0);
    exportForm.exportBars = kDefaultExportBars;
    shell().showPointer(Pointer::hourglass);
    MDIForm_Load(hooks);
    if (hooks.showMainWindow) hooks.showMainWindow();
    shell().letPaintRun();
    splash(true);
    shell().showPanel(false);
    resetMenus();
    GraphicModeAdjust();
    loadKnobs();
    setExamplesFolder(hooks.examplesFolder);
    const bool helped = !loadPanel() && canHelpFirstStart();
    resetSongState();
    showFirstState();
    shell().showPanel(true);
    shell().letPaintRun();
    if (hooks.configured) hooks.configured();
    if (hooks.openDevices) {
        openDevices(helped);
    } else {
        sendPanelState();
    }
    splash(false);
    shell().showPointer(Pointer::normal);
    forgetUnsavedChanges();
    startRecovery(hooks.recoveryFolder);
    if (offerRecovery()) return true;
    if (FileExists(commandLine)) {
        OpenOnLoad(commandLine);
        if (!editingState->saveAsks) shell().noteRecentFile(commandLine, true);
    } else if (helped) {
        offerDemo();
    }
    return true;
}

bool MDIForm_QueryUnload() {
    if (wannaSaveYourWorkCancel()) return false;
    if (transportState->transportRunning) playButton();
    contentIsSaved(); // or given up
    if (!saveGlobalConfig())
        shell().messageBox("The settings can't be written.\nThey stay as they were.", BoxIcon::exclamation,
                           BoxButtons::ok);
    shell().showPanel(false);
    return true;
}

void MDIForm_Unload() {
    endWaits();
    StopPlay(); // where nobody was asked: a signal
    closeMidiDevices();
    saveGlobalConfig();
    hookEngineMessages(false);
    for (Form* form : {static_cast<Form*>(&memorizer), static_cast<Form*>(&songRandomizer),
                       static_cast<Form*>(&patternCopyForm), static_cast<Form*>(&midiSetupForm)}) {
        form->unload();
    }
}

void mnuFileExit_Click() {
    releaseCtrl();
    shell().closeWindow();
}

} // namespace marlune
