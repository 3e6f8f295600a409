#!/usr/bin/env bash
# clean_root.sh BUILD-FOLDER: installs the Debian package into a bare Debian of its own, and uses the program there.
# That Debian lives in memory and in namespaces of its own, so nothing of it outlives this test, however it ends; what
# was downloaded for it is kept in the build folder. Needs root, or sudo without a password.
# Debian packages: debootstrap, zstd, and those of tests/e2e/desktop.py.
set -euo pipefail
source "$(dirname "$0")/checks.sh"
source "$source_folder/scripts/bare-debian.sh"
build=$1
root=/boot  # covered in the test's own namespace alone; no checkout lies there
kept=$build/clean-root

outside() {
  mkdir -p "$kept"
  if ((EUID != 0)) && sudo -n true 2>/dev/null; then
    exec sudo -n setpriv --pdeathsig KILL "$0" "$build"
  fi
  PATH=$PATH:/usr/sbin
  need debootstrap zstd unshare setpriv Xvfb xauth openbox xdotool dbus-run-session
  local lack
  lack=$(missing_privilege)
  [[ -z $lack ]] || skip "$lack"
  lack=$(lacking_mirror "$kept/log")
  [[ -z $lack ]] || skip "$lack"

  setpriv --pdeathsig KILL unshare --mount --pid --ipc --fork --kill-child --mount-proc "$0" "$build" --inside &
  trap "kill -KILL $! 2>/dev/null || true" EXIT
  trap 'exit 143' INT TERM HUP
  wait $!
}

# Installs the package with what it depends on and no more, from where this machine gets its own packages.
install_package() {
  local archives=$root/var/cache/apt/archives
  mount -t proc proc "$root/proc"
  use_network_of_machine "$root"
  cp "$build"/packages/tavinor_*.deb "$root/tavinor.deb"
  find "$kept" -name '*.deb' -exec cp -t "$archives" {} +
  chroot "$root" apt-get update -qq
  chroot "$root" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends /tavinor.deb >"$kept/log" 2>&1 || fail "$(tail "$kept/log")"
  chroot "$root" apt-get autoclean -qq
  rm -f "$kept"/*.deb
  find "$archives" -name '*.deb' -exec mv -t "$kept" {} +
}

# The screen is this machine's, the program is the root's; they meet in a common /tmp. Nobody is root there.
use_program() {
  [[ -z $(find "$root/usr" -name 'qt*_es.qm') ]] || fail "the root has Qt's own translations"
  mount -t tmpfs -o mode=1777 tmpfs "$root/tmp"
  mkdir "$root/tmp/tests" "$root/tmp/scripts"
  cp -r "$source_folder"/tests/{e2e,packaging,support} "$root/tmp/tests"
  cp "$source_folder/scripts/virtual-display.sh" "$root/tmp/scripts"
  chmod -R a+rX "$root/tmp"
  mkdir -m 1777 "$root/tmp/.X11-unix"
  mount --bind "$root/tmp" /tmp
  cd /tmp
  unset TMPDIR
  local nobody
  nobody=$(id -u nobody)
  unshare --net setpriv --reuid "$nobody" --regid "$nobody" --clear-groups \
    --inh-caps +sys_chroot --ambient-caps +sys_chroot \
    tests/support/with_display.sh dbus-run-session -- \
    /usr/bin/python3 -B tests/packaging/installed_program.py "$root"
}

if [[ ${2:-} != --inside ]]; then
  outside
else
  trap 'exit 143' INT TERM
  umask 022
  mount -t tmpfs -o mode=755 tmpfs "$root"
  unpack_bare_debian "$root" "$kept"
  install_package
  use_program
fi
