#!/bin/sh
# with_display.sh command [arguments...]: runs a command on a screen of its own, with a window manager, and an
# empty home. Debian packages: xvfb, openbox. Exits as the command does.
set -eu

folder=$(mktemp -d)
export HOME="$folder/home" XDG_RUNTIME_DIR="$folder/runtime" QT_QPA_PLATFORM=xcb
unset XDG_CONFIG_HOME XDG_CACHE_HOME XDG_DATA_HOME XDG_STATE_HOME WAYLAND_DISPLAY
mkdir -m 700 "$HOME" "$XDG_RUNTIME_DIR"
server=
manager=
finish() {
    [ -z "$manager" ] || kill "$manager" 2>/dev/null || true
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    wait
    rm -rf "$folder"
}
trap finish EXIT
trap 'exit 143' INT TERM

# The server chooses a free number and writes it once it accepts clients.
mkfifo "$folder/number"
Xvfb -displayfd 3 -screen 0 1366x768x24 -nolisten tcp 3>"$folder/number" >/dev/null 2>&1 &
server=$!
read -r number <"$folder/number"
export DISPLAY=":$number"

# The window manager's own files go elsewhere: the home is the program's. It tells that it is ready.
mkfifo "$folder/ready"
HOME="$folder" openbox --startup "sh -c 'echo ready >$folder/ready'" >/dev/null 2>&1 &
manager=$!
read -r _ <"$folder/ready"

status=0
"$@" || status=$?
exit "$status"
