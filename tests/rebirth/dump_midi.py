"""Prints the events of MIDI files as mido reads them, a line each: track, time from the start, bytes."""
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
            if message.type == "track_name":
                print(number, "name", message.name)
            elif message.type == "copyright":
                print(number, "text", message.text)
            elif message.type != "end_of_track":
                print(number, now, *message.bytes())
