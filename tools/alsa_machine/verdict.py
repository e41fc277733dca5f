#!/usr/bin/env python3
"""Reads what the emulated machine left behind and says PASS or FAIL to each property."""
import difflib, os, sys
os.chdir(sys.argv[1])
failed = 0
def verdict(good, text):
    global failed
    failed += not good
    print('PASS' if good else 'FAIL', text)
def text(name): return open(name).read() if os.path.exists(name) else ''
def size(name): return os.path.getsize(name) if os.path.exists(name) else 0
def lines(name, kind):
    parts = [l.split() for l in text(name).splitlines()]
    return [(int(p[0]), ' '.join(p[2:]).lower()) for p in parts if len(p) > 2 and p[1] == kind]
def compare(name, log, wire):
    log, wire = lines(log, 'seq'), lines(wire, 'wire')
    a, b = [m for _, m in log], [m for _, m in wire]
    blocks = difflib.SequenceMatcher(None, a, b, autojunk=False).get_matching_blocks()
    pairs = [(log[i + k][0], wire[j + k][0]) for i, j, n in blocks for k in range(n) if log[i + k][0] >= 0]
    whole = sum(n for _, _, n in blocks)
    late = sorted(w - l for l, w in pairs) or [0]
    late = [x - late[len(late) // 2] for x in late]
    verdict(0 < len(a) == whole, f'{name}: {whole} of {len(a)} messages on the wire; against the median '
            f'p5 {late[len(late) // 20]} p95 {late[len(late) * 19 // 20]} max {late[-1]} us')
    verdict(len(b) < len(a) + 20 and b[-1:] == a[-1:], f'{name}: the log ends with the wire ({len(b)} heard)')
verdict('Midi Through Port-0' in text('ports.txt') and 'Virtual Raw MIDI 1-0:VirMIDI 1-0' in text('ports.txt'),
        'devices have their ALSA names')
compare('to a program', 'client.log', 'client.wire')
virtual = lines('virtual.wire', 'wire')
verdict(len(virtual) > 500, f'virtual output: {len(virtual)} messages heard by one who subscribed')
verdict('b0 0c 7f' in text('input.log') and 'b0 0c 05' in text('input.log'), 'virtual input: a controller turns a knob')
heard = [n for n in range(1, 9) if f'b0 0c 2{n}' in text('input_blink.log')]
verdict(heard[:2] == [1, 2], 'input from a device')
verdict(any(n > 4 for n in heard), f'the same after it was away for a moment (heard {heard})')
verdict('is gone' in text('gone_long.err') and 'is back' in text('gone_long.err') and size('gone_long.raw') > 200,
        f'output device away for 3 s: told, and played again ({size("gone_long.raw")} bytes)')
verdict(size('gone_blink.raw') > 200, f'output device away for a moment: played again ({size("gone_blink.raw")} bytes)')
verdict(len(lines('return2.wire', 'wire')) > 100,
        f'receiving program started anew at once: played again ({len(lines("return2.wire", "wire"))} messages)')
verdict(size('second_at_once.log') > 0 and not text('second_at_once.err').strip() and not text('two.err').strip(),
        'two command lines at once')
sound = open('sound.raw', 'rb').read() if os.path.exists('sound.raw') else b''
verdict(len(sound) > 100000 and len(set(sound)) > 50, f'synthesizer sounds through ALSA ({len(sound)} bytes recorded, '
        f'{" ".join(text("pcm.txt").split()[:6])})')
verdict(size('end') > 0, f'came to the end after {text("end").strip()} s of the guest')
sys.exit(failed > 0)
