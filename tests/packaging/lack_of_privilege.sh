#!/usr/bin/env bash
# lack_of_privilege.sh: the test in a clean root says which privilege keeps it from running.
set -euo pipefail
source "$(dirname "$0")/checks.sh"
need debootstrap setpriv
((EUID == 0)) || skip "the privilege of root is missing, of which a part could be taken away"
in_scratch_folder

status=0
said=$(setpriv --bounding-set -sys_admin "$(dirname "$0")/clean_root.sh" "$scratch" 2>&1) || status=$?
same "the status" "$status" 77
grep -q '^SKIPPED: .*privilege.* CAP_SYS_ADMIN' <<<"$said" || fail "it does not name the privilege: $said"
