#!/usr/bin/env bash
# with_display.sh command [arguments...]: runs a command on a screen of its own, with a window manager, and an
# empty home. Debian packages: openbox, xauth, xvfb. Exits as the command does.
set -euo pipefail
source "$(dirname "$0")/../../scripts/virtual-display.sh"

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

start_display "$folder"

# The window manager's own files go elsewhere: the home is the program's. It tells that it is ready.
mkfifo "$folder/ready"
HOME="$folder" openbox --startup "sh -c 'echo ready >$folder/ready'" >/dev/null 2>&1 &
manager=$!
read -r _ <"$folder/ready"

status=0
"$@" || status=$?
exit "$status"
