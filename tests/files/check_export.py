#!/usr/bin/python3
"""Plays a project file by the rules of the export and compares an exported MIDI file with it.

check_export.py PROJECT.mlp OUT.mid FIRST_BAR BARS: reads both files on its own (the MIDI file through mido) and
prints the first differences, track by track; exit status 1 when there are any.
"""
import struct
import sys

import mido

CHANNELS = [0, 1, 9]
CONTROLLERS = [0, 13, 14, 15, 16, 17, -1, 13, 14, 15, 16, 17, 20, 21, 22, 23, 24, 25, 26, 27]
FIRST_STEPS = [3, 7, 11]
BASE_NOTE, VELOCITY = 36, 100
NAMES = ["", "103A Bassline", "103A Bassline Control", "103B Bassline", "103B Bassline Control", "109 Drummer",
         "109 Drummer Control"]


class Project:
    def __init__(self, data):
        self.d = data
        i16 = lambda at: struct.unpack_from("<h", data, at)[0]
        self.bass, self.last_patch, self.stored = [], [], []
        for m in range(2):
            base = 45 + 6288 * m
            patterns = []
            for p in range(32):
                at = base + 196 * p
                steps = [[i16(at + 12 * s + 2 * f) for f in range(6)] for s in range(16)]
                patterns.append((steps, i16(at + 192), i16(at + 194)))
            self.bass.append(patterns)
            self.stored.append(data[base + 6274])
            self.last_patch.append(i16(base + 6286))
        self.drum = []
        for p in range(32):
            at = 12621 + 148 * p
            self.drum.append(([data[at + 8 * s:at + 8 * s + 8] for s in range(16)],
                              [i16(at + 128 + 2 * d) for d in range(8)], i16(at + 144)))
        self.last_drum = list(data[12621 + 4739:12621 + 4747])
        at = [45 + 6278, 45 + 6288 + 6278, 12621 + 4749]
        self.current = [8 * data[a] + data[a + 1] for a in at]
        self.tempo = i16(17436)
        count = struct.unpack_from("<i", data, 19232)[0]
        entries = [struct.unpack_from("<iB", data, 19236 + 8 * i) for i in range(count)]
        self.bars = [[8 * b + p for b, p in entries[1000 * m:1000 * m + 1000]] for m in range(3)]
        self.knobs = [bytearray(16000) for _ in range(20)]
        changes = dict(entries[3000:])
        for k in range(20):
            value = 0
            for t in range(16000):
                value = changes.get(16000 * k + t, value)
                self.knobs[k][t] = value


def expected(project, first_bar, bars):
    tracks = [[] for _ in range(7)]
    last = [16 * first_bar] * 7
    tick = 16 * first_bar

    def event(track, *message):
        tracks[track].append(((tick - last[track]) * 30, *message))
        last[track] = tick

    def knob(k):
        if CONTROLLERS[k] > 0:
            module = min(k // 6, 2)
            event(2 + 2 * module, 0xB0 + CHANNELS[module], CONTROLLERS[k], value[k])

    value = [project.knobs[k][tick] for k in range(20)]
    current, cue = list(project.current), list(project.current)
    step, active, pitch = list(FIRST_STEPS), [False, False], [0, 0]
    sounding, last_drum, last_patch = set(), list(project.last_drum), list(project.last_patch)
    for k in range(20):
        knob(k)
    for tick in range(16 * first_bar, 16 * (first_bar + bars)):
        for m in range(2):
            if active[m]:
                event(1 + 2 * m, 0x90 + CHANNELS[m], pitch[m], 0)
        for k in range(20):
            if project.knobs[k][tick] != value[k]:
                value[k] = project.knobs[k][tick]
                knob(k)
        if tick % 16 == 0:
            for m in range(3):
                if current[m] != project.bars[m][tick // 16]:
                    current[m] = cue[m] = project.bars[m][tick // 16]
                    step[m] = 0
        hits, notes, _ = project.drum[current[2]]
        if step[2] == 0:
            for d in sorted(sounding):
                event(5, 0x99, last_drum[d], 0)
            sounding.clear()
        for d in range(7):
            if hits[step[2]][d]:
                event(5, 0x99, last_drum[d], 0)
                event(5, 0x99, notes[d], value[19] if hits[step[2]][7] else value[12 + d])
                last_drum[d] = notes[d]
                sounding.add(d)
        for m in range(2):
            steps, _, patch = project.bass[m][current[m]]
            note, on, up, down, _, accent = steps[step[m]]
            pitch[m] = min(max(min(max(note, 0), 12) + BASE_NOTE + 12 * (up != 0) - 12 * (down != 0), 0), 127)
            if step[m] == 0 and patch not in (-1, last_patch[m]):
                event(1 + 2 * m, 0xC0 + project.stored[m], patch)
                last_patch[m] = patch
                for k in range(6 * m, 6 * m + 6):
                    knob(k)
            velocity = value[6 * m + 5] if accent else VELOCITY
            active[m] = bool(on and velocity)
            if active[m]:
                event(1 + 2 * m, 0x90 + CHANNELS[m], pitch[m], velocity)
        for m in range(3):
            end = (project.drum if m == 2 else project.bass[m])[current[m]][2 if m == 2 else 1]
            step[m] += 1
            if step[m] > end:
                step[m] = 0
                current[m] = cue[m]
    return tracks


def decoded(path):
    file = mido.MidiFile(path)
    assert (file.type, file.ticks_per_beat, len(file.tracks)) == (1, 120, 7), "header"
    tracks = []
    for number, track in enumerate(file.tracks):
        assert track[0].type == "track_name" and track[0].name == NAMES[number], "name of track %d" % number
        assert track[-1].type == "end_of_track", "end of track %d" % number
        tracks.append([(m.time, *m.bytes()) for m in track if not m.is_meta])
    return file, tracks


def main():
    project = Project(open(sys.argv[1], "rb").read())
    file, got = decoded(sys.argv[2])
    first_bar, bars = int(sys.argv[3]), int(sys.argv[4])
    meta = [m.type for m in file.tracks[0]]
    assert meta == ["track_name", "copyright", "time_signature", "set_tempo", "end_of_track"], meta
    assert file.tracks[0][3].tempo == 60000000 // project.tempo, "tempo"
    bad = 0
    for number, (want, have) in enumerate(zip(expected(project, first_bar, bars), got)):
        for at, (w, h) in enumerate(zip(want + [None] * len(have), have + [None] * len(want))):
            if w != h:
                print("track %d event %d: expected %s, found %s" % (number, at, w, h))
                bad += 1
                break
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
