#!/usr/bin/env bash
# Installs the build into a temporary DESTDIR and checks that a desktop finds
# what it looks for: the programs, a valid menu entry, its icon in every size
# and the manual pages.
set -euo pipefail
build=$1
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
failures=0
fail() {
  echo "FAIL: $*"
  failures=$((failures + 1))
}

DESTDIR="$root" cmake --install "$build" --prefix /usr >/dev/null
usr="$root/usr"

for program in vantrel vantrel-sim vantrel-logger winkey-sim; do
  if [[ ! -x "$usr/bin/$program" ]]; then
    fail "no program $program"
  elif ! env -i "$usr/bin/$program" --version | grep -qx "$program [0-9.]*"; then
    fail "$program --version from the installed tree"
  fi
done

entry="$usr/share/applications/vantrel.desktop"
if [[ ! -f "$entry" ]]; then
  fail "no desktop entry"
else
  command -v desktop-file-validate >/dev/null || fail "desktop-file-validate is missing (scripts/install-deps.sh)"
  report=$(desktop-file-validate "$entry" 2>&1) || fail "desktop entry: $report"
  [[ -z "$report" ]] || fail "desktop entry has hints: $report"
  exec_name=$(sed -n 's/^Exec=\([^ ]*\).*/\1/p' "$entry")
  [[ -x "$usr/bin/$exec_name" ]] || fail "the entry starts $exec_name, which is not installed"
  icon=$(sed -n 's/^Icon=//p' "$entry")
  hicolor="$usr/share/icons/hicolor"
  grep -q "<svg" "$hicolor/scalable/apps/$icon.svg" 2>/dev/null || fail "no scalable icon $icon.svg"
  for size in 16 24 32 48 64 128 256; do
    png="$hicolor/${size}x${size}/apps/$icon.png"
    if [[ ! -f "$png" ]]; then
      fail "no ${size}x${size} icon"
      continue
    fi
    # A PNG's width and height are the big-endian words at bytes 16 and 20.
    read -r width height < <(od -An -tu1 -j16 -N8 "$png" |
      awk '{print $1*16777216+$2*65536+$3*256+$4, $5*16777216+$6*65536+$7*256+$8}')
    [[ "$width $height" == "$size $size" ]] || fail "$png is $width by $height"
  done
fi

for page in vantrel vantrel-sim; do
  man="$usr/share/man/man1/$page.1.gz"
  if [[ ! -f "$man" ]]; then
    fail "no manual page $page.1"
  else
    gzip -dc "$man" | grep -q "^\.TH ${page^^} 1 .*Vantrel [0-9]" || fail "$page.1 lacks its title line"
    gzip -dc "$man" | grep -q "^\.SH SYNOPSIS" || fail "$page.1 lacks a synopsis"
  fi
done

if ((failures)); then
  exit 1
fi
echo "installed tree complete"
