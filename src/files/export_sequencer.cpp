#include "files/export_sequencer.h"

#include "boundary/midi_bytes.h"
#include "project/global_config.h"
#include "project/groove.h"
#include "project/song_track.h"
#include "project/step_rules.h"

namespace marlune {

namespace {

struct ExportRun {
    MidiFileWriter* writer = nullptr;
    int songTick = 0;                               // the tick that comes
    std::array<int, kModules> step{};               // and the step of each module
    int track = 0;                                  // destination of the next event
    std::array<int, kExportTracks> lastEventTime{}; // file ticks of the last event of each track
    int swing = 0;                                  // file ticks that an even sixteenth is late
    std::array<int, kBassModules> slidFrom{};       // note that a slide releases; -1: none
    std::array<bool, kBassModules> noteActive{};    // a note awaits its release
};
ExportRun run;

constexpr int noteTrack(int module) {
    return module == 0 ? kBassATrack : module == 1 ? kBassBTrack : kDrumTrack;
}
constexpr int controlTrack(int module) {
    return noteTrack(module) + 1;
}

void chooseTrack(int track) {
    run.track = track;
    run.writer->chooseTrack(track);
}

void writeEvent(int status, int data1, int data2) {
    int& last = run.lastEventTime[run.track];
    const int time = run.songTick * kFileTicksPerStep + (run.songTick % 2 == 1 ? run.swing : 0);
    run.writer->event(time - last, status, data1, data2);
    last = time;
}

void SendNoteMIDExp(int channel, int note, int velocity) {
    writeEvent(kNoteOn + channel, note, velocity);
}

void SendPatchChangeMIDExp(int channel, int patch) {
    if (patch >= 0) writeEvent(kProgramChange + channel, patch, 0);
}

int velocityOfStep(int module, const BassStep& step) {
    const int accentKnob = project.knobValue[kBassKnobs * module + kBassKnobs - 1];
    return bassVelocity(step, velocityOf(module), accentKnob);
}

// A step that slides begins first.
bool slidesFrom(int module, int note) {
    const BassStep& step = currentBass(module).steps[run.step[module]];
    return playsSlides(project) && step.slide && step.noteOn && velocityOfStep(module, step) > 0 &&
           pitchOfStep(step, baseNoteOf(module)) != note;
}

void releaseBassNotes() {
    for (int m = 0; m < kBassModules; ++m) {
        run.slidFrom[m] = -1;
        if (!run.noteActive[m]) continue;
        if (slidesFrom(m, project.bass[m].lastNote)) {
            run.slidFrom[m] = project.bass[m].lastNote;
            continue;
        }
        chooseTrack(noteTrack(m));
        SendNoteMIDExp(channelOf(m), project.bass[m].lastNote, 0);
    }
}

void songKnobTickMIDExp() {
    for (int knob = 0; knob < kKnobs; ++knob) {
        if (knobTrack[knob][run.songTick] == project.knobValue[knob]) continue;
        project.knobValue[knob] = knobTrack[knob][run.songTick];
        midiKnobUpdateMIDExp(knob);
    }
}

// A module whose bar holds another pattern than it plays takes it and begins anew.
void takeBars() {
    if (!isBarLine(run.songTick)) return;
    for (int m = 0; m < kModules; ++m) {
        const int bank = barBank(m, run.songTick);
        const int patt = barPatt(m, run.songTick);
        const Selection at = selectionOf(project, m);
        if (at.currBank == bank && at.currPatt == patt) continue;
        at.currBank = at.nextBank = bank;
        at.currPatt = at.nextPatt = patt;
        run.step[m] = 0;
    }
}

void Play103NoteMIDExp(int module, int stepIndex) {
    const BassStep& step = currentBass(module).steps[stepIndex];
    const int velocity = velocityOfStep(module, step);
    run.noteActive[module] = step.noteOn && velocity > 0;
    if (run.noteActive[module]) SendNoteMIDExp(channelOf(module), project.bass[module].lastNote, velocity);
    if (run.slidFrom[module] >= 0) SendNoteMIDExp(channelOf(module), run.slidFrom[module], 0);
}

void Play109AllMIDExp(int step) {
    const int channel = channelOf(kDrumModule);
    DrumModule& drum = project.drum;
    const DrumPattern& pattern = currentDrum();
    for (int d = 0; step == 0 && d < kDrums; ++d) {
        if (!config.drumSounding[d]) continue;
        SendNoteMIDExp(channel, drum.lastDrumNote[d], 0);
        config.drumSounding[d] = false;
    }
    for (int d = 0; d < kDrums; ++d) {
        if (!isDrumHit(pattern, step, d)) continue;
        SendNoteMIDExp(channel, drum.lastDrumNote[d], 0);
        SendNoteMIDExp(channel, pattern.drumNote[d],
                       drumVelocity(pattern, step, project.knobValue[kFirstDrumKnob + d],
                                    project.knobValue[kAccentKnobOfDrums]));
        drum.lastDrumNote[d] = int{pattern.drumNote[d]};
        config.drumSounding[d] = true;
    }
}

// A pattern that begins with another program sends it, and the panel's controllers for it.
void changePatch(int module) {
    BassModule& bass = project.bass[module];
    const int patch = currentBass(module).patch;
    if (run.step[module] != 0 || patch == bass.lastPatch || patch == kNoPatch) return;
    chooseTrack(noteTrack(module));
    SendPatchChangeMIDExp(bass.storedChannel, patch);
    bass.lastPatch = patch;
    for (int k = 0; k < kBassKnobs; ++k) midiKnobUpdateMIDExp(kBassKnobs * module + k);
}

void advanceSteps() {
    for (int m = 0; m < kModules; ++m) {
        const StepAdvance advance = nextStep(run.step[m], currentLoopEnd(m));
        run.step[m] = advance.step;
        if (!advance.wrapped) continue;
        const Selection at = selectionOf(project, m);
        at.currBank = int{at.nextBank};
        at.currPatt = int{at.nextPatt};
    }
}

} // namespace

void beginExportRun(MidiFileWriter& writer, int startTick) {
    run = {};
    run.writer = &writer;
    run.songTick = startTick;
    for (int m = 0; m < kModules; ++m) run.step[m] = songPosition->moduleStep[m] % kSteps;
    run.lastEventTime.fill(startTick * kFileTicksPerStep);
    run.swing = (kFileTicksPerStep * (swingOf(project) - kStraight) + kStraight / 2) / kStraight;
    config.drumSounding = {};
}

void midiKnobUpdateMIDExp(int knob) {
    const int controller = controllerOfKnob(knob);
    if (controller <= 0) return;
    const int module = moduleOfKnob(knob);
    chooseTrack(controlTrack(module));
    writeEvent(kControlChange + channelOf(module), controller, project.knobValue[knob]);
}

void ExportToMIDProcessTick() {
    takeBars();
    releaseBassNotes();
    songKnobTickMIDExp();
    for (int m = kBassModules - 1; m >= 0; --m) {
        project.bass[m].lastNote = pitchOfStep(currentBass(m).steps[run.step[m]], baseNoteOf(m));
    }
    chooseTrack(kDrumTrack);
    Play109AllMIDExp(run.step[kDrumModule]);
    for (int m = 0; m < kBassModules; ++m) {
        changePatch(m);
        chooseTrack(noteTrack(m));
        Play103NoteMIDExp(m, run.step[m]);
    }
    run.songTick = nextSongTick(run.songTick);
    advanceSteps();
}

int exportTick() {
    return run.songTick;
}

std::array<int, kModules> exportSteps() {
    return run.step;
}

} // namespace marlune
