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
shim=${2:-build/tests/platform_linux/keyprobe.so}
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
LD_PRELOAD=$shim KEYPROBE_DEV=ttyUSB0 KEYPROBE_LOG="$work/key.log" \
  "$sim" --real-time --dir "$work/keyer" --set "Port=$port" --set "Port to Use=Serial" \
  --set "Dedicated Serial Port=Comm1" --set "Slow Typing=OFF" "$work/keyer/run.vsim" \
  >"$work/trace.txt" 2>"$work/sim.err" &
keyer_pid=$!

# Waits up to $2 seconds for the shell test $1 to hold.
wait_for() {
  local deadline=$((SECONDS + $2))
  until eval "$1"; do
    ((SECONDS < deadline)) || { echo "FAILED waiting for: $1"; tail -20 "$work/trace.txt"; exit 1; }
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

tmux -L "$tmux_socket" send-keys -t tlf F1
wait_for '(( $(ends) >= 1 ))' 30
tmux -L "$tmux_socket" send-keys -t tlf -l DL1ABC
tmux -L "$tmux_socket" send-keys -t tlf Enter
wait_for '(( $(ends) >= 2 ))' 30
tmux -L "$tmux_socket" send-keys -t tlf PageUp
wait_for 'grep -q "cwdaemon speed \"32\"" "$work/trace.txt"' 10
tmux -L "$tmux_socket" send-keys -t tlf F1
wait_for 'grep -q "cwdaemon text \"CQ TEST SM5XYZ\"" <(grep -A100000 "speed \"32\"" "$work/trace.txt")' 10
sleep 1
tmux -L "$tmux_socket" send-keys -t tlf Escape
wait_for '(( $(ends) >= 3 ))' 10
sleep 1

python3 - "$work/trace.txt" "$work/key.log" <<'PY'
import re, sys

MORSE = {"A": ".-", "B": "-...", "C": "-.-.", "D": "-..", "E": ".", "L": ".-..", "M": "--", "N": "-.",
         "Q": "--.-", "S": "...", "T": "-", "X": "-..-", "Y": "-.--", "Z": "--..", "1": ".----",
         "4": "....-", "5": ".....", " ": ""}
trace = [line.rstrip("\n") for line in open(sys.argv[1])]
edges = []  # (seconds, down) of the key line (DTR)
for line in open(sys.argv[2]):
    fields = line.split()
    if len(fields) == 3 and fields[1] == "DTR":
        edges.append((int(fields[0]) / 1e9, fields[2] == "1"))

def at(line):
    return float(line.split(" ", 1)[0]) / 1000

failures = []
def check(ok, what):
    print(("ok      " if ok else "FAILED  ") + what)
    if not ok:
        failures.append(what)

texts = [(at(l), re.search(r'cwdaemon text "(.*)"', l).group(1)) for l in trace if "cwdaemon text" in l]
ends = [at(l) for l in trace if l.endswith("post 900 0")]
starts = [at(l) for l in trace if l.endswith("post 900 1")]
check([t for _, t in texts][:3] == ["CQ TEST SM5XYZ", "DL1ABC ++5NN--14", "CQ TEST SM5XYZ"],
      "Tlf's texts arrive as sent: %s" % [t for _, t in texts])

# The key line's edges, counted per transmission on the trace's clock: the
# first edge is taken as the first transmission's start.
downs = [t for t, down in edges if down]
ups = [t for t, down in edges if not down]
origin = downs[0] - starts[0] if downs and starts else 0
def elements(start, end):
    return [(d - origin, u - origin) for d, u in zip(downs, ups) if start - 0.05 <= d - origin <= end + 0.05]
def count(text):
    return sum(len(MORSE[c]) for c in text if c in MORSE)

cq = elements(starts[0], ends[0])
check(len(cq) == count("CQ TEST SM5XYZ"), "CQ keyed whole: %d of %d elements" % (len(cq), count("CQ TEST SM5XYZ")))
dot30 = 1.2 / 30
first_dot = cq[1][1] - cq[1][0]  # C is -.-.
check(abs(first_dot - dot30) < 0.25 * dot30, "CQ at Tlf's 30 WPM: a dot of %.1f ms" % (first_dot * 1000))

exchange = elements(starts[1], ends[1])
check(len(exchange) == count("DL1ABC 5NN14"), "exchange keyed whole: %d elements" % len(exchange))
statuses = [re.search(r"= (\d+) WPM", l).group(1) for l in trace
            if "Keying speed" in l and starts[1] <= at(l) <= ends[1]]
check("32" in statuses and statuses[-1] == "30", "++ and -- step 30 to 32 and back: %s" % statuses)

check(any('cwdaemon speed "32"' in l for l in trace), "PgUp in Tlf sets 32 WPM")
aborts = [at(l) for l in trace if "cwdaemon abort" in l]
third = elements(starts[2], ends[2])
check(bool(aborts) and ends[2] - aborts[-1] < 0.3 and len(third) < count("CQ TEST SM5XYZ"),
      "Esc in Tlf aborts: %d of %d elements sent" % (len(third), count("CQ TEST SM5XYZ")))
sys.exit(1 if failures else 0)
PY
