"""Prints the events of MIDI files, read by mido: track, absolute time and bytes, a line each."""
import sys

try:
    import mido
except ImportError:
    sys.exit(77)

for name in sys.argv[1:]:
    song = mido.MidiFile(name)
    print("file", song.type, song.ticks_per_beat, len(song.tracks))
    for number, track in enumerate(song.tracks):
        now = 0
        for message in track:
            now += message.time
            print(number, now, message.hex())
