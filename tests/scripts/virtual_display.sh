#!/usr/bin/env bash
# virtual_display.sh: a program on the virtual screen can be seen and driven by the user who has started it, and by no
# other of the same machine. Debian packages: openbox, openssl, x11-utils, x11vnc, xauth, xvfb.
set -euo pipefail
source "$(dirname "$0")/../packaging/checks.sh"
need Xvfb openbox openssl x11vnc xauth xdpyinfo
in_scratch_folder
mkdir "$scratch/files"
export TMPDIR=$scratch/files

: >"$scratch/said"
"$source_folder/scripts/on-virtual-display" sleep 100 >"$scratch/said" 2>&1 &
script=$!
trap 'kill $script 2>/dev/null || true; wait; rm -rf "$scratch"' EXIT
until grep -q 'ends it' "$scratch/said"; do
  kill -0 $script 2>/dev/null || fail "$(<"$scratch/said")"
  sleep 0.1
done
said() { sed -nE "s/.*$1.*/\1/p" "$scratch/said"; }
DISPLAY=$(said 'DISPLAY=(\S+)') XAUTHORITY=$(said 'XAUTHORITY=(\S+)')
port=$(said 'open localhost:([0-9]+)') password=$(said 'password (\S+)')
export DISPLAY XAUTHORITY

# The screen: with the cookie alone, which no other user can read. Root can tell what another user meets.
xdpyinfo >/dev/null || fail "the user cannot reach the screen"
XAUTHORITY=/dev/null xdpyinfo &>/dev/null && fail "the screen asks for no cookie"
same "who reads the files" "$(stat -c %a "$(dirname "$XAUTHORITY")")" 700
if ((EUID == 0)); then
  chmod a+rx "$scratch" "$scratch/files"
  setpriv --reuid nobody --regid nogroup --clear-groups xdpyinfo &>/dev/null && fail "another user reaches the screen"
fi

# The viewer: with the password alone.
viewer() { /usr/bin/python3 -B "$(dirname "$0")/vnc_login.py" "$port" "$@"; }
same "the ways in" "$(viewer)" "password"
same "the password" "$(viewer "$password")" "welcome"
same "another password" "$(viewer "x${password:1:6}x")" "refused"
same "no password" "$(viewer "")" "refused"

# And it leaves nothing.
kill $script
wait $script || true
same "what is left" "$(ls "$scratch/files")" ""
