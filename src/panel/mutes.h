// What is silent while it plays on: modules and drums, muted or beside others that play solo. Not part of the
// project. User-interface thread; the owner's routines of GrooveState.
#pragma once

#include "project/project_record.h"

namespace marlune {

enum class Silencing { mute, solo };

// Takes effect at once, or with the next bar line while playing.
void toggleModule(int module, Silencing how, bool atBarLine); // 0..2
void toggleDrum(int drum, Silencing how, bool atBarLine);     // 0..6

// What comes of mutes and solos: a bit for each module, and for each drum.
unsigned silentModules();
unsigned silentDrums();

// For an export: asks whether what is silent shall be left out, where anything is. Then leaveOutSilent()
// takes those notes out of a record.
bool wantsSilentLeftOut();
void leaveOutSilent(ProjectRecord& record);

} // namespace marlune
