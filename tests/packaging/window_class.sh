#!/usr/bin/env bash
# window_class.sh PROGRAM: docks find the program's name and icon by the class of its windows, and show the icon
# that the windows carry. Debian packages: openbox, x11-utils, xauth, xdotool, xvfb.
set -euo pipefail
source "$(dirname "$0")/checks.sh"
need Xvfb xauth openbox xdotool xprop
if [[ ${2:-} != --on-display ]]; then
  exec "$source_folder/tests/support/with_display.sh" "$0" "$1" --on-display
fi

"$1" &
program=$!
trap 'kill $program' EXIT
window=$(timeout 30 xdotool search --sync --onlyvisible --pid "$program" --name Tavinor | head -1)

entry=$source_folder/packaging/tavinor.desktop
class=$(sed -n 's/^StartupWMClass=//p' "$entry")
same "the class" "$(xprop -id "$window" WM_CLASS)" "WM_CLASS(STRING) = \"$(basename "$entry" .desktop)\", \"$class\""
shown=$(xprop -id "$window" _NET_WM_ICON | sed -n 's/.*Icon (\([0-9]*\) x .*/\1/p')
for size in 16 32 48 64 128; do
  grep -qx "$size" <<<"$shown" || fail "the window carries no icon of $size pixels: $shown"
done
