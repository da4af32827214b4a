#!/usr/bin/env python3
"""How fast the keyer hands a WinKey its next character after the chip's echo.

On the WinKey route the keyer keeps one character ahead of the chip: each
echo or status byte from the chip makes it hand over the next character. If
that reaction took longer than the character the chip is keying, the chip's
buffer would run dry and the Morse would stutter. This runs winkey-sim (a
chip on a pseudo-terminal, logging every byte with its time) and
`vantrel-sim --real-time --quiet` against it, then reads from the chip's own
log the time from each byte the chip sent to the keyer's next text byte.

  python3 bench/winkey/echo_pacing.py [--runs 3] [--wpm 40] [--write docs/performance.md]
"""
import argparse
import datetime
import os
import platform
import re
import statistics
import subprocess
import sys
import tempfile
import time

REPO = os.path.abspath(os.path.join(os.path.dirname(__file__), '..', '..'))
sys.path.insert(0, os.path.join(REPO, 'bench'))
import report  # noqa: E402
SECTION = 'winkey echo pacing'
# A text of every letter and digit, so that short and long characters alternate.
TEXT = 'CQ TEST DE W1AW THE QUICK BROWN FOX JUMPS OVER THE LAZY DOG 0123456789 5NN TU'


def run_once(a, wpm):
    folder = tempfile.mkdtemp(prefix='winkey-pacing-')
    chip = subprocess.Popen([a.winkey_sim, '--link', os.path.join(folder, 'com3')],
                            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    chip.stdout.readline()  # the terminal's path: the link is in place
    script = '0 send %s\n10 wait\n' % TEXT
    subprocess.run([a.sim, '--real-time', '--quiet', '--dir', folder,
                    '--set', 'Keyer to Use=WinKey', '--set', 'WinKey Port=3',
                    '--set', 'WinKey Speed=%d' % wpm, '-'],
                   input=script, text=True, check=True, timeout=600)
    time.sleep(1)  # the last echoes come after the keyer has closed the run
    chip.stdin.close()
    chip.terminate()
    log = chip.stdout.read()
    chip.wait()
    return reactions(log)


def reactions(log):
    """Milliseconds from each byte the chip sent to the keyer's next text byte.

    The first handover of a run is left out: the chip's first status byte
    comes while the keyer is still finishing its start-up.
    """
    delays, pending, started = [], None, False
    for line in log.splitlines():
        m = re.match(r'\s*([\d.]+) ([<>]) (.*)', line)
        if not m:
            continue
        at, direction, data = float(m.group(1)), m.group(2), [int(b, 16) for b in m.group(3).split()]
        if direction == '>':
            if started and pending is None:
                pending = at
            continue
        text = len(data) == 1 and 0x20 <= data[0] < 0x7F
        if text and pending is not None:
            delays.append(at - pending)
        elif text:
            started = True
        pending = None
    return delays


def section(a, wpm, per_run):
    everything = [d for run in per_run for d in run]
    medians = [statistics.median(run) for run in per_run]
    p99s = [sorted(run)[int(0.99 * (len(run) - 1))] for run in per_run]
    dot = 1200.0 / wpm
    shortest = 4 * dot  # E and the letter gap after it
    now = datetime.datetime.now(datetime.timezone.utc).strftime('%Y-%m-%d %H:%M UTC')
    return '\n'.join([
        '## Handing a WinKey its next character',
        '',
        'Made by `python3 bench/winkey/echo_pacing.py --runs %d --wpm %d --write docs/performance.md` '
        'on %s, %d CPUs, kernel %s.' % (a.runs, wpm, now, os.cpu_count(), platform.release()),
        '',
        '`vantrel-sim --real-time --quiet` sends a %d-character text to `winkey-sim` on a '
        'pseudo-terminal. From the chip\'s own byte log: the time from each byte the chip sent '
        '(echo or status) to the next character the keyer handed over. That covers the pty both '
        'ways, the wake-up of the keyer\'s event loop, one `WinKeyStep` and the write. The chip '
        'keys one character while the next is handed over, so the reaction must stay well under '
        'the shortest character: an E with its letter gap, %.0f ms at %d WPM.' % (
            len(TEXT), shortest, wpm),
        '',
        '| | median | p99 | max | handovers |',
        '|---|---:|---:|---:|---:|',
        '| echo to next character, ms (median of %d runs) | %.3f | %.3f | %.3f | %d |' % (
            a.runs, statistics.median(medians), statistics.median(p99s), max(everything),
            len(everything)),
        '',
        'Headroom: the shortest character is %.0fx the median reaction and %.0fx the worst one seen.' % (
            shortest / statistics.median(medians), shortest / max(everything)),
        ])



def main():
    p = argparse.ArgumentParser(description=__doc__.split('\n')[0])
    p.add_argument('--sim', default=os.path.join(REPO, 'build/tools/sim/vantrel-sim'))
    p.add_argument('--winkey-sim', default=os.path.join(REPO, 'build/tools/winkey-sim/winkey-sim'))
    p.add_argument('--runs', type=int, default=3)
    p.add_argument('--wpm', type=int, default=40)
    p.add_argument('--write', metavar='FILE', help='put the table into FILE between its markers')
    a = p.parse_args()
    for program in (a.sim, a.winkey_sim):
        if not os.path.exists(program):
            sys.exit('no %s: build first (cmake --build build)' % program)
    per_run = [run_once(a, a.wpm) for _ in range(a.runs)]
    if not all(per_run):
        sys.exit('a run handed nothing over: is the chip answering?')
    text = section(a, a.wpm, per_run)
    report.publish(SECTION, text, a.write)


if __name__ == '__main__':
    main()
