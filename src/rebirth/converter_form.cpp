#include "rebirth/converter_form.h"

#include <algorithm>

#include "boundary/app_shell.h"
#include "files/project_file.h"
#include "rebirth/error_form.h"
#include "util/text_number.h"
#include "util/whole_file.h"

namespace marlune {

Rebirth_to_MIDI rebirthToMidiForm;

namespace {

using F = Rebirth_to_MIDI;

// A field of a bassline unit, on the form once for each.
struct UnitField {
    const char* label;
    TextBox F::*boxes[2]; // top, middle
    int UnitOptions::*option;
    OptionLimits limits;
    bool required;
};
constexpr UnitField kUnitFields[] = {
    {"Base Note Offset",
     {&F::TOP_303_Base_Note, &F::MID_303_Base_Note},
     &UnitOptions::baseNote,
     kDataByteLimits,
     true},
    {"MIDI Channel",
     {&F::TOP_303_MIDI_Channel, &F::MID_303_MIDI_Channel},
     &UnitOptions::channel,
     kChannelLimits,
     true},
    {"Note Velocity",
     {&F::TOP_303_Note_Velocity, &F::MID_303_Note_Velocity},
     &UnitOptions::velocity,
     kDataByteLimits,
     true},
    {"Cutoff", {&F::TOP_303_Cutoff, &F::MID_303_Cutoff}, &UnitOptions::cutoff, kDataByteLimits, false},
    {"Reso", {&F::TOP_303_Reso, &F::MID_303_Reso}, &UnitOptions::reso, kDataByteLimits, false},
    {"Env.Mod", {&F::TOP_303_EnvMod, &F::MID_303_EnvMod}, &UnitOptions::envMod, kDataByteLimits, false},
    {"Decay", {&F::TOP_303_Decay, &F::MID_303_Decay}, &UnitOptions::decay, kDataByteLimits, false},
    {"Accent", {&F::TOP_303_Accent, &F::MID_303_Accent}, &UnitOptions::accent, kDataByteLimits, false},
};
constexpr int kFirstControllerField = 3;
constexpr const char* kUnitNames[] = {"Top 303", "Mid 303"};
const Label kControllers{"Map Knob to Controller"};

struct UnitChecks {
    CheckBox F::*slide;
    CheckBox F::*accent;
    CheckBox F::*knobs;
};
constexpr UnitChecks kChecks[] = {
    {&F::TOP_303_Convert_Slide, &F::TOP_303_Convert_Accent, &F::TOP_303_convert_Knobs},
    {&F::MID_303_Convert_Slide, &F::MID_303_Convert_Accent, &F::MID_303_convert_Knobs},
};

UnitOptions& unitOf(ConverterOptions& options, int unit) {
    return unit == 0 ? options.top : options.mid;
}

int limitedEntry(const TextBox& box, const OptionLimits& limits) {
    return std::clamp(leadingInteger(box.text), limits.lowest, limits.highest);
}

constexpr const char* kProgress = "Conversion Progress";
constexpr int kDrumsFrom = 66; // per cent

} // namespace

void mnuFileConvert_Click() {
    rebirthToMidiForm.RebirthFileOpen();
}

Rebirth_to_MIDI::Rebirth_to_MIDI() {
    caption = "ReBirth(tm) Rbs to MIDI file Converter ";
    for (const UnitChecks& unit : kChecks) {
        (this->*unit.slide).caption = "Convert Slide";
        (this->*unit.accent).caption = "Convert Accent";
        (this->*unit.knobs).caption = "Convert Knobs";
    }
    DRUMS_Convert_Tune.caption = "Convert Tune/Tone";
    Check2.caption = "Convert Decay/Snappy";
    OK_Button.caption = "OK";
    Cancel_Button.caption = "Cancel";
}

void Rebirth_to_MIDI::describe(FormBuilder& builder) {
    for (int unit = 0; unit < 2; ++unit) {
        const auto fields = [&](int first, int last) {
            builder.beginRow();
            for (int i = first; i < last; ++i) {
                builder.digitsBox(kUnitFields[i].label, this->*kUnitFields[i].boxes[unit], 4);
            }
            builder.endRow();
        };
        builder.beginFrame(kUnitNames[unit]);
        fields(0, kFirstControllerField);
        builder.label(kControllers);
        fields(kFirstControllerField, static_cast<int>(std::size(kUnitFields)));
        builder.beginRow();
        builder.checkBox(this->*kChecks[unit].slide);
        builder.checkBox(this->*kChecks[unit].accent);
        builder.checkBox(this->*kChecks[unit].knobs);
        builder.endRow();
        builder.endFrame();
    }
    builder.beginFrame("808");
    builder.beginRow();
    builder.digitsBox("MIDI Channel", DRUMS_MIDI_Channel, 4);
    builder.checkBox(DRUMS_Convert_Tune);
    builder.checkBox(Check2);
    builder.endRow();
    builder.endFrame();
    builder.beginFrame(Progress);
    builder.progressBar(ProgressBar1);
    builder.endFrame();
    builder.beginRow();
    builder.button(OK_Button, FormBuilder::Role::accept, [this] { OK_Button_Click(); });
    builder.button(Cancel_Button, FormBuilder::Role::reject, [this] { Cancel_Button_Click(); });
    builder.endRow();
}

void Rebirth_to_MIDI::Form_Load() {
    options = {};
    for (int unit = 0; unit < 2; ++unit) {
        for (const UnitField& field : kUnitFields) {
            (this->*field.boxes[unit]).text = std::to_string(unitOf(options, unit).*field.option);
        }
        (this->*kChecks[unit].slide).checked = false;
        (this->*kChecks[unit].accent).checked = false;
        (this->*kChecks[unit].knobs).checked = true;
    }
    DRUMS_MIDI_Channel.text = std::to_string(options.drumsChannel);
    DRUMS_Convert_Tune.checked = Check2.checked = false;
    Progress.text = kProgress;
    ProgressBar1.value = 0;
}

void Rebirth_to_MIDI::RebirthFileOpen() {
    FileDialog dialog;
    dialog.title = "Select ReBirth Song for conversion";
    dialog.filter = "ReBirth Song (*.RBS)|*.RBS";
    dialog.defaultExtension = "rbs";
    inputFileName = shell().fileDialog(dialog);
    if (!inputFileName.empty()) showModal();
    unload(); // it lives for one conversion, however it was left
}

bool Rebirth_to_MIDI::validateOptions() {
    for (int unit = 0; unit < 2; ++unit) {
        for (const UnitField& field : kUnitFields) {
            if (field.required && (this->*field.boxes[unit]).text.empty()) return true;
        }
    }
    if (DRUMS_MIDI_Channel.text.empty()) return true;
    for (int unit = 0; unit < 2; ++unit) {
        unitOf(options, unit).slides = (this->*kChecks[unit].slide).checked;
        unitOf(options, unit).accents = (this->*kChecks[unit].accent).checked;
        unitOf(options, unit).knobs = (this->*kChecks[unit].knobs).checked;
        for (const UnitField& field : kUnitFields) {
            unitOf(options, unit).*field.option = limitedEntry(this->*field.boxes[unit], field.limits);
        }
    }
    options.drumsChannel = limitedEntry(DRUMS_MIDI_Channel, kChannelLimits);
    return false;
}

void Rebirth_to_MIDI::OK_Button_Click() {
    if (!validateOptions()) {
        askOutputFileName();
        if (!outputFileName.empty()) convertFile();
    }
    unload();
}

// Asks again while the answer names a file that is to stay; empty when the dialog was left.
void Rebirth_to_MIDI::askOutputFileName() {
    FileDialog dialog;
    dialog.save = true;
    dialog.title = "Output MIDI File to ";
    dialog.filter = "MIDI song (*.MID) | *.mid";
    dialog.defaultExtension = "mid";
    dialog.fileName = withoutExtension(inputFileName);
    do {
        outputFileName = shell().fileDialog(dialog);
    } while (!outputFileName.empty() && wannaOverwrite(outputFileName) != 1);
}

void Rebirth_to_MIDI::convertFile() {
    const auto showProgress = [this](int percent) {
        ProgressBar1.value = percent;
        // The drums come last and count themselves in the title.
        Progress.text = percent > kDrumsFrom ? std::to_string(percent - kDrumsFrom) : kProgress;
        shell().formChanged(*this);
    };
    showProgress(0);
    shell().letPaintRun();
    if (!loaded()) return; // closed meanwhile
    const RebirthResult result = convertRebirthFile(inputFileName, outputFileName, options, showProgress);
    if (result == RebirthResult::notWritten) {
        shell().messageBox(
            "Can't write " + extractFileName(outputFileName) + ".\nThe file on disk is as it was.",
            BoxIcon::exclamation, BoxButtons::ok);
    } else if (result != RebirthResult::done) {
        showCorruptRebirthFile();
    }
}

} // namespace marlune
