#!/usr/bin/env python3
"""Key edges of vantrel-sim --real-time and of cwdaemon, measured the same way.

Both keyers key PARIS x WORDS on the dedicated serial port (DTR the key, RTS
the PTT) of a stand-in /dev/ttyUSB0: the keyprobe shim answers the port's
ioctls and stamps every line change with CLOCK_MONOTONIC, outside the keyer.
Runs alternate keyer by keyer, speed by speed, so both see the same machine.

  python3 bench/keyprobe/compare_keyers.py [--runs 3] [--write docs/performance.md]

Needs cwdaemon (apt-get install cwdaemon) and the keyprobe tools (analyse.py,
drive.py) of the shared tools folder; the shim itself is built from
third_party/keyprobe.
"""
import argparse
import datetime
import json
import os
import platform
import statistics
import subprocess
import sys
import tempfile
import time

REPO = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(REPO, 'bench'))
import report  # noqa: E402
SECTION = 'keyprobe comparison'


def build_shim(out_dir):
    shim = os.path.join(out_dir, 'keyprobe.so')
    subprocess.run(['gcc', '-O2', '-w', '-shared', '-fPIC', '-o', shim,
                    os.path.join(REPO, 'third_party/keyprobe/keyprobe.c'), '-ldl', '-lpthread'],
                   check=True)
    return shim


def run_vantrel(a, shim, wpm, text, log):
    """One transmission of `text` by vantrel-sim on the stand-in port; the record drive.py writes."""
    folder = tempfile.mkdtemp(prefix='vantrel-keyprobe-')
    ideal_s = sum(d for _, d in analyse.ideal_intervals(text, *analyse.model_durations(wpm))) / 1e6
    send_ms = 1000
    script = '%d send %s\n%d close\n' % (send_ms, text, send_ms + int(ideal_s * 1000 * 1.5) + 2000)
    settings = {'Port to Use': 'Serial', 'Dedicated Serial Port': 'Comm1', 'WPM': str(wpm),
                'PTT': 'ON', 'PTT Delay': str(a.ptt_delay), 'Slow Typing': 'OFF'}
    cmd = [a.sim, '--real-time', '--quiet', '--dir', folder]
    for key, value in settings.items():
        cmd += ['--set', '%s=%s' % (key, value)]
    cmd.append('-')
    # A pty behind the stand-in reads like a serial port: readable only when a
    # byte has come. The default /dev/null is readable at its end for ever, and
    # the keyer, which watches its port for a chip's bytes, would spin on it.
    env = dict(os.environ, LD_PRELOAD=shim, KEYPROBE_DEV='ttyUSB0', KEYPROBE_LOG=log,
               KEYPROBE_BACKING='pty')
    proc = subprocess.Popen(cmd, env=env, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL,
                            stderr=subprocess.PIPE)
    proc.stdin.write(script.encode())
    proc.stdin.close()
    # Start-up and the port's opening are over well before the send.
    time.sleep(send_ms / 1000 * 0.6)
    c0, w0 = drive.cpu_ns(proc.pid), time.monotonic_ns()
    n_marks = sum(1 for k, _ in analyse.ideal_intervals(text, 1, 3, 1, 3, 7) if k in ('dot', 'dash'))
    deadline = time.time() + send_ms / 1000 + ideal_s * 1.5 + 5
    while len(drive.key_edges_after(log, 'DTR', None, False, w0)) < 2 * n_marks \
            and time.time() < deadline:
        time.sleep(0.05)
    time.sleep(0.3)  # let PTT drop
    c1, w1 = drive.cpu_ns(proc.pid), time.monotonic_ns()
    proc.wait(timeout=ideal_s * 2 + 30)
    rec = dict(keyer='vantrel', dev='ttyUSB0', wpm=wpm, cpu_frac=(c1 - c0) / max(1, w1 - w0))
    try:
        rec.update(analyse.analyse(log, wpm, text, 'DTR', None, False, after_ns=w0,
                                   ptt=('RTS', None, False)))
    except ValueError as e:
        rec['error'] = '%s (%s)' % (e, proc.stderr.read().decode().strip())
    return rec


def run_peer(a, shim, wpm, log, out):
    subprocess.run([sys.executable, os.path.join(a.keyprobe, 'drive.py'), 'run', '--shim', shim,
                    '--dev', 'ttyUSB0', '--wpm', str(wpm), '--words', str(a.words),
                    '--ptt-delay', str(a.ptt_delay), '--log', log, '--out', out],
                   check=True, stdout=subprocess.DEVNULL)
    with open(out) as f:
        rec = json.loads(f.readlines()[-1])
    rec['keyer'] = 'cwdaemon'
    return rec


def median(values):
    return statistics.median(values) if values else float('nan')


def rows(records, keyers, speeds):
    """One row per keyer and speed: the median over runs of each run's own figure."""
    out = []
    for keyer, stats in keyers:
        for wpm in speeds:
            runs = [r for r in records if r['keyer'] == keyer and r['wpm'] == wpm and stats in r]
            if not runs:
                continue
            pick = lambda f: median([f(r[stats]) for r in runs])  # noqa: E731
            out.append(dict(
                keyer=keyer, against='ideal' if stats == 'ideal' else 'its own spacing',
                wpm=wpm, runs=len(runs), edges=int(pick(lambda s: s['edges'])),
                median=pick(lambda s: s['edge_err_us']['median']),
                p99=pick(lambda s: s['edge_err_us']['p99']),
                max=pick(lambda s: s['edge_err_us']['max']),
                length_p99=pick(lambda s: s['interval_err_us']['p99']),
                ratio=pick(lambda s: s['duration_ratio']),
                cpu=median([100 * r['cpu_frac'] for r in runs])))
    return out


def table(a, records, speeds):
    lines = ['| keyer | against | WPM | runs | edges | edge median µs | edge p99 µs | edge max µs '
             '| length p99 µs | duration ratio | CPU % |',
             '|---|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|']
    body = rows(records, [('vantrel', 'ideal'), ('cwdaemon', 'ideal'),
                          ('cwdaemon', 'peer_model')], speeds)
    for r in body:
        lines.append('| %s | %s | %d | %d | %d | %.0f | %.0f | %.0f | %.0f | %.5f | %.2f |' % (
            r['keyer'], r['against'], r['wpm'], r['runs'], r['edges'], r['median'], r['p99'],
            r['max'], r['length_p99'], r['ratio'], r['cpu']))
    lines += ['', 'cwdaemon\'s figure over vantrel\'s (vantrel always against ideal timing):', '',
              '| WPM | edge p99, cwdaemon against ideal | edge p99, cwdaemon against its own '
              'spacing | length p99, cwdaemon against its own spacing |',
              '|---:|---:|---:|---:|']
    for wpm in speeds:
        ours = [r for r in body if r['keyer'] == 'vantrel' and r['wpm'] == wpm]
        peer = [r for r in body if r['keyer'] == 'cwdaemon' and r['against'] == 'ideal'
                and r['wpm'] == wpm]
        own = [r for r in body if r['keyer'] == 'cwdaemon' and r['against'] != 'ideal'
               and r['wpm'] == wpm]
        if ours and peer and own:
            lines.append('| %d | %.1f | %.2f | %.1f |' % (
                wpm, peer[0]['p99'] / ours[0]['p99'], own[0]['p99'] / ours[0]['p99'],
                own[0]['length_p99'] / ours[0]['length_p99']))
    return '\n'.join(lines)


def section(a, records, speeds):
    now = datetime.datetime.now(datetime.timezone.utc).strftime('%Y-%m-%d %H:%M UTC')
    peer = subprocess.run(['dpkg-query', '-W', '-f=${Version}', 'cwdaemon'],
                          capture_output=True, text=True).stdout
    return '\n'.join([
        '## Key edges from outside the process, beside cwdaemon',
        '',
        'Made by `python3 bench/keyprobe/compare_keyers.py --runs %d --write docs/performance.md` '
        'on %s, %d CPUs, kernel %s; cwdaemon %s from Debian.' % (
            a.runs, now, os.cpu_count(), platform.release(), peer),
        '',
        'Each keyer keys "PARIS" x %d at each speed on the dedicated serial port of a stand-in '
        '/dev/ttyUSB0 (DTR the key, RTS the PTT, PTT delay %d ms): the keyprobe shim answers the '
        "port's ioctls and stamps every line change at the ioctl, outside the keyer; a pty stands "
        'behind the port, so that it reads as a serial port does. vantrel is '
        '`vantrel-sim --real-time --quiet` (sleeping waits, real-time priority, no trace); cwdaemon is driven over '
        "UDP by keyprobe's drive.py. The keyers take turns, run by run. Edge errors are |edge - "
        'ideal| with the first key-down as zero, so a late edge moves every edge after it; length '
        'p99 holds each element and space against its own ideal length. cwdaemon spaces words by '
        '10 units rather than 7, so it is shown against ideal timing and against its own spacing '
        '(its precision). CPU is the keyer\'s process time over the wall time of the sending. '
        'Figures are medians over the runs of each run\'s own.' % (a.words, a.ptt_delay),
        '',
        table(a, records, speeds),
        ])



def main():
    p = argparse.ArgumentParser(description=__doc__.split('\n')[0])
    p.add_argument('--sim', default=os.path.join(REPO, 'build/tools/sim/vantrel-sim'))
    p.add_argument('--keyprobe', default=os.path.join(REPO, '../shared/keyprobe'))
    p.add_argument('--runs', type=int, default=3)
    p.add_argument('--words', type=int, default=10)
    p.add_argument('--speeds', type=int, nargs='+', default=[20, 40])
    p.add_argument('--ptt-delay', type=int, default=10)
    p.add_argument('--write', metavar='FILE', help='put the table into FILE between its markers')
    p.add_argument('--records', metavar='JSONL', help='tabulate the records of an earlier run')
    a = p.parse_args()
    if a.records:
        with open(a.records) as f:
            records = [json.loads(line) for line in f if line.strip()]
        finish(a, records, sorted({r['wpm'] for r in records}))
        return
    if not os.path.exists(a.sim):
        sys.exit('no %s: build first (cmake --build build)' % a.sim)
    if subprocess.run(['which', 'cwdaemon'], capture_output=True).returncode != 0:
        sys.exit('cwdaemon is not installed: apt-get install cwdaemon')
    sys.path.insert(0, os.path.abspath(a.keyprobe))
    global analyse, drive
    import analyse  # noqa: E402
    import drive  # noqa: E402

    out_dir = tempfile.mkdtemp(prefix='keyprobe-compare-')
    shim = build_shim(out_dir)
    text = ' '.join(['PARIS'] * a.words)
    records = []
    for run in range(1, a.runs + 1):
        for wpm in a.speeds:
            for keyer in ('vantrel', 'cwdaemon'):
                log = os.path.join(out_dir, '%s-%d-r%d.log' % (keyer, wpm, run))
                if keyer == 'vantrel':
                    rec = run_vantrel(a, shim, wpm, text, log)
                else:
                    rec = run_peer(a, shim, wpm, log, os.path.join(out_dir, 'peer.jsonl'))
                records.append(rec)
                r = rec.get('ideal')
                print('%-8s %d WPM run %d: %s' % (
                    keyer, wpm, run, rec.get('error') or 'edge p99 %.0f us, max %.0f us, ratio %.5f, '
                    'cpu %.2f %%' % (r['edge_err_us']['p99'], r['edge_err_us']['max'],
                                     r['duration_ratio'], 100 * rec['cpu_frac'])), flush=True)
    with open(os.path.join(out_dir, 'records.jsonl'), 'w') as f:
        f.writelines(json.dumps(r) + '\n' for r in records)
    finish(a, records, a.speeds)
    print('logs and records.jsonl in %s' % out_dir)


def finish(a, records, speeds):
    text = section(a, records, speeds)
    report.publish(SECTION, text, a.write)


if __name__ == '__main__':
    main()
