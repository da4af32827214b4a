#!/usr/bin/env bash
# A real cwdaemon client keys Vantrel: Tlf under tmux sends its CQ (F1), an
# exchange with ++ and -- in it, a speed change (PgUp) and Esc to
# vantrel-sim on the real clock, whose key line is the keyprobe shim's
# stand-in serial port. Checks the texts, the speeds and the abort from the
# trace and the key line's log. Exit 0 passed, 1 failed, 77 skipped.
#
#   scripts/tlf-drives-vantrel.sh [VANTREL_SIM [KEYPROBE_SO]]
set -uo pipefail

sim=${1:-build/tools/sim/vantrel-sim}
shim=${2:-build/tests/platform_linux/libkeyprobe.so}
for tool in tlf tmux python3; do
  command -v "$tool" >/dev/null || { echo "skipped: $tool is not installed (scripts/install-deps.sh installs it)"; exit 77; }
done
[[ -x $sim && -f $shim ]] || { echo "skipped: build vantrel-sim and keyprobe first ($sim, $shim)"; exit 77; }
sim=$(realpath "$sim")
shim=$(realpath "$shim")

work=$(mktemp -d)
tmux_socket="vantrel-tlf-$$"
keyer_pid=
cleanup() {
  tmux -L "$tmux_socket" kill-server 2>/dev/null
  [[ -n $keyer_pid ]] && kill "$keyer_pid" 2>/dev/null && wait "$keyer_pid" 2>/dev/null
  rm -rf "$work"
}
trap cleanup EXIT

port=$((20000 + RANDOM % 30000))
mkdir -p "$work/tlf/rules" "$work/keyer"
cat >"$work/tlf/logcfg.dat" <<CONF
CALL=SM5XYZ
NETKEYER
NETKEYERHOST=127.0.0.1
NETKEYERPORT=$port
RULES=vantrel
NOB4
CONF
cat >"$work/tlf/rules/vantrel" <<'RULES'
CONTEST_MODE
LOGFILE=vantrel.log
F1=CQ TEST %
F3=@ ++5NN--14
F12=CQ TEST %
CQ_TU_MSG=TU %
RULES

# The keyer listens for as long as the script may take; it is stopped at the end.
printf '300000 wait\n' >"$work/keyer/run.vsim"
# The stand-in port leaves DTR as it was on open, so that every DTR rise it logs is the keyer's.
# A sanitized keyer takes the shim before its runtime only when told so.
ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD=$shim KEYPROBE_DEV=ttyUSB0 KEYPROBE_OPEN_RAISE=0 KEYPROBE_LOG="$work/key.log" \
  "$sim" --real-time --dir "$work/keyer" --set "Port=$port" --set "Port to Use=Serial" \
  --set "Dedicated Serial Port=Comm1" --set "Slow Typing=OFF" "$work/keyer/run.vsim" \
  >"$work/trace.txt" 2>"$work/sim.err" &
keyer_pid=$!

# Waits up to $2 seconds for the shell test $1 to hold.
wait_for() {
  local deadline=$((SECONDS + $2))
  until eval "$1"; do
    ((SECONDS < deadline)) || { echo "FAILED waiting for: $1"; grep cwdaemon "$work/trace.txt"; screen; exit 1; }
    sleep 0.2
  done
}
ends() { grep -c 'post 900 0' "$work/trace.txt"; }
screen() { tmux -L "$tmux_socket" capture-pane -p -t tlf; }

wait_for 'grep -q "cwdaemon listening" "$work/trace.txt"' 20
tmux -L "$tmux_socket" new-session -d -s tlf -x 100 -y 30 -c "$work/tlf" "tlf -f logcfg.dat"
wait_for 'screen | grep -q "Press any key"' 30
tmux -L "$tmux_socket" send-keys -t tlf Space
wait_for 'grep -q "cwdaemon speed" "$work/trace.txt"' 20
sleep 1

# Each step waits for the transmission it starts to end.
base=$(ends)
tmux -L "$tmux_socket" send-keys -t tlf F1
wait_for '(( $(ends) > base ))' 30
base=$(ends)
tmux -L "$tmux_socket" send-keys -t tlf -l DL1ABC
tmux -L "$tmux_socket" send-keys -t tlf Enter
wait_for '(( $(ends) > base ))' 30
tmux -L "$tmux_socket" send-keys -t tlf PageUp
wait_for 'grep -q "cwdaemon speed \"32\"" "$work/trace.txt"' 10
# F1 again (from the exchange field Tlf sends its own call), and Esc while it goes out.
base=$(ends)
tmux -L "$tmux_socket" send-keys -t tlf F1
wait_for '(( $(grep -c "cwdaemon text" "$work/trace.txt") >= 3 ))' 10
sleep 0.5
tmux -L "$tmux_socket" send-keys -t tlf Escape
wait_for '(( $(ends) > base ))' 10
sleep 1

python3 - "$work/trace.txt" "$work/key.log" <<'PY'
import re, sys

MORSE = {"A": ".-", "B": "-...", "C": "-.-.", "D": "-..", "E": ".", "L": ".-..", "M": "--", "N": "-.",
         "Q": "--.-", "S": "...", "T": "-", "U": "..-", "X": "-..-", "Y": "-.--", "Z": "--..",
         "1": ".----", "4": "....-", "5": "....."}
trace = [line.rstrip("\n") for line in open(sys.argv[1])]
port_downs = sum(1 for line in open(sys.argv[2]) if line.split()[1:] == ["DTR", "1"])

def at(line):
    return float(line.split(" ", 1)[0])

def times(event):
    return [at(l) for l in trace if l.split(" ", 1)[1] == event]

failures = []
def check(ok, what):
    print(("ok      " if ok else "FAILED  ") + what)
    if not ok:
        failures.append(what)

def count(text):
    return sum(len(MORSE.get(c, "")) for c in text.upper())

texts = [(at(l), re.search(r'cwdaemon text "(.*)"', l).group(1)) for l in trace if "cwdaemon text" in l]
starts, ends = times("post 900 1"), times("post 900 0")
downs, ups = times("keybox green"), times("keybox red")
sent = []  # per text: its transmission's (start, end) and its key-down lengths
for arrived, text in texts:
    start = min(t for t in starts if t >= arrived)
    end = min(t for t in ends if t > start)
    sent.append([u - d for d, u in zip(downs, ups[-len(downs):]) if start <= d <= end])

check([t for _, t in texts][:2] == ["CQ TEST SM5XYZ", "DL1ABC ++5NN--14"] and len(texts) == 3,
      "Tlf's texts arrive as sent: %s" % [t for _, t in texts])
check(port_downs == len(downs), "the port keyed every element: %d at the port, %d in the trace" % (port_downs, len(downs)))

check(len(sent[0]) == count("CQ TEST SM5XYZ"), "F1's CQ keyed whole: %d of %d elements" % (len(sent[0]), count("CQ TEST SM5XYZ")))
dot30 = 1200 / 30
check(abs(sent[0][1] - dot30) < 0.25 * dot30, "CQ at Tlf's 30 WPM: the dot of C lasts %.1f ms" % sent[0][1])

check(len(sent[1]) == count("DL1ABC 5NN14"), "the exchange keyed whole: %d elements" % len(sent[1]))
start, end = texts[1][0], min(t for t in ends if t > texts[1][0])
speeds = [re.search(r"= (\d+) WPM", l).group(1) for l in trace if "Keying speed" in l and start <= at(l) <= end]
check(speeds[:4] == ["32", "34", "32", "30"], "++ and -- take it from 30 to 34 WPM and back: %s" % speeds)
five = sent[1][22]  # the first dot of 5, after D L 1 A B C
check(abs(five - 1200 / 34) < 0.25 * 1200 / 34, "5NN at 34 WPM: a dot of %.1f ms" % five)

check(any('cwdaemon speed "32"' in l for l in trace) and 'Keying speed = 32 WPM' in trace[-1] + "".join(trace[-40:]),
      "PgUp in Tlf sets Vantrel to 32 WPM")
aborts = times("cwdaemon abort")
third = texts[2][1]
check(bool(aborts) and len(sent[2]) < count(third),
      "Esc in Tlf aborts %r: %d of %d elements sent" % (third, len(sent[2]), count(third)))
sys.exit(1 if failures else 0)
PY
