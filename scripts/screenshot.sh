#!/usr/bin/env bash
# Builds the keyer and photographs its window, and the dialog that Config,
# Keyer setup opens for each keyer, into docs/: on a virtual X server of
# 96 dpi at Qt's scale 1, so that the pictures show what an operator's
# ordinary screen shows.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build --target vantrel

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
screen="-screen 0 1280x1024x24 -dpi 96"
export QT_SCALE_FACTOR=1 QT_ENABLE_HIGHDPI_SCALING=0 QT_FONT_DPI=96

# A settings file as an operator's after a first evening: captioned macros,
# and the logger's serial port for the key, which opens nothing at start-up,
# so that the box is clean.
settings() {
  local keyer=$1
  printf '[frmVantrel Settings]\r\nKeyer to Use=%s\r\nPort to Use=Shared Serial\r\n' "$keyer"
  local n=1 caption text
  while IFS='|' read -r caption text; do
    printf 'Macro Caption #%d=%s\r\nMacro #%d=%s\r\n' "$n" "$caption" "$n" "$text"
    n=$((n + 1))
  done <<'MACROS'
&CQ|CQ TEST $mycall$ $mycall$ TEST
&Exch|$call$ 5NN $serialnum$
&TU|TU $mycall$
&Me|$mycall$
&His|$call$
&Nr|$serialnum$ $serialnum$
&Agn|AGN?
Nr&?|NR?
&QRZ|QRZ?
&Log|$log$
QR&L|QRL?
&73|73 TU
&DX|CQ DX $mycall$ $mycall$ DX
&Slow|$cwspeeddn$
&Fast|$cwspeedup$
&Nm|$name$
&5NN|5NN
&R|R
?|?
&Call?|CL?
&QSY|QSY?
&UP|UP
&Loop|CQ $mycall$ $loop$
&Clr|$clear$
&Bk|$bookmark$
Ro&t|$rotor$
&Sent|$serialnum-1$
TE&ST|TEST
&K|K
&BK|BK
&QTH|QTH
&Rig|RIG
&Ant|ANT
&Wx|WX
&Hi|HI
&GL|GL
MACROS
}

# The main window with a clean box and the macros captioned.
rm -rf "${home:?}"/*
settings Software >"$home/Vantrel.INI"
VANTREL_HOME="$home" xvfb-run -a -s "$screen" ./build/src/app/vantrel --screenshot docs/screenshot.png

# Each dialog on a settings file that chooses its keyer; a chip on no port
# starts without looking for it.
shoot() {
  local keyer=$1 file=$2
  rm -rf "${home:?}"/*
  settings "$keyer" >"$home/Vantrel.INI"
  VANTREL_HOME="$home" xvfb-run -a -s "$screen" ./build/src/app/vantrel --screenshot-setup "$file"
}
shoot Software docs/keyer-setup.png
shoot WinKey docs/winkey-config.png
shoot WinKey2 docs/winkey2-config.png
echo "docs/screenshot.png docs/keyer-setup.png docs/winkey-config.png docs/winkey2-config.png"
