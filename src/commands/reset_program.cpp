#include "commands/reset_program.h"

#include "boundary/app_shell.h"
#include "boundary/menus.h"
#include "edit/calculator.h"
#include "edit/randomizers.h"
#include "edit/song_tools.h"
#include "edit/undo_history.h"
#include "files/export_driver.h"
#include "import/midi_form.h"
#include "panel/key_slider.h"
#include "panel/shown_state.h"
#include "program/starter.h"
#include "project/clipboard_state.h"
#include "project/global_config.h"
#include "project/run_state.h"
#include "project/song_track.h"
#include "rebirth/converter_form.h"
#include "rebirth/drum_choice.h"
#include "rebirth/error_form.h"
#include "render/wav_export.h"
#include "setup/config_file.h"
#include "setup/memorizer.h"
#include "setup/midi_devices.h"
#include "setup/setup_dialogs.h"
#include "transport/engine_link.h"
#include "transport/navigation.h"
#include "transport/timer_control.h"

namespace marlune {

namespace {

template <typename... Forms>
void renewAll(Forms&... forms) {
    (renew(forms), ...);
}

} // namespace

void resetProgram() {
    renewAll(memorizer, songRandomizer, patternCopyForm, exportForm, exportMeter, wavExportForm, wavMeter,
             calculator, midiSetupForm, midiOutputForm, midiInputForm, customizeForm, rebirthToMidiForm,
             errorForm, drumChoiceForm, midiImportForm);
    project = {};
    patternImage = {};
    resetRunState();
    clearSongTracks();
    resetClipboards();
    resetGlobalConfig();
    setConfigFolder("");
    setExamplesFolder("");
    setRenderProgram("");
    resetShownState();
    resetMenus();
    resetDrags();
    resetTimerControl();
    resetNavigation();
    resetUndoHistory();
    setRandomSource(nullptr);
    dlgCommonDialog = {};
    hookEngineMessages(false);
    previousWndProc = nullptr;
}

} // namespace marlune
