#!/usr/bin/env bash
# memory_limit.sh PROGRAM: the program under a limit on its memory that falls. Debian packages: as desktop.py.
set -euo pipefail
source "$(dirname "$0")/checks.sh"
need Xvfb xauth openbox xdotool dbus-run-session
exec "$source_folder/tests/support/with_display.sh" dbus-run-session -- \
  /usr/bin/python3 -B "$(dirname "$0")/memory_limit.py" "$1"
