#!/usr/bin/env bash
# clean_root.sh BUILD-FOLDER: installs the Debian package into a bare Debian of its own, and uses the program there.
# That Debian lives in memory and in namespaces of its own, so nothing of it outlives this test, however it ends; what
# was downloaded for it is kept in the build folder. Needs root, or sudo without a password.
# Debian packages: debootstrap, zstd, and those of tests/e2e/desktop.py.
set -euo pipefail
source "$(dirname "$0")/checks.sh"
build=$1
root=/boot  # covered in the test's own namespace alone; no checkout lies there
kept=$build/clean-root

# Where this machine's Debian comes from, as lines of a sources.list; `trusted` if its signatures do not count.
debian_sources() {
  local options=
  ! grep -rsqiE '^[^#]*trusted *[=:] *yes' /etc/apt/sources.list /etc/apt/sources.list.d || options='[trusted=yes] '
  apt-get indextargets --format "\$(ORIGIN) deb $options\$(REPO_URI) \$(CODENAME) \$(COMPONENT)" 'Created-By: Packages' |
    sed -nE "s,^Debian (deb .*http[^ ]* $codename(-updates|-security)? main\$),\1,p" | sort -u
}

# The mirror that the root itself comes from.
mirror() {
  debian_sources | sed -nE "s,.* (http[^ ]*) $codename main\$,\1,p" | head -1
}

outside() {
  [[ -f /etc/os-release && $(source /etc/os-release && echo "$ID") == debian ]] || skip "this is no Debian"
  mkdir -p "$kept"
  if ((EUID != 0)); then
    sudo -n true 2>/dev/null || skip "neither root nor sudo without a password"
    exec sudo -n setpriv --pdeathsig KILL "$0" "$build"
  fi
  PATH=$PATH:/usr/sbin
  need debootstrap zstd unshare setpriv Xvfb xauth openbox xdotool dbus-run-session
  unshare --mount --pid --fork mount -t tmpfs tmpfs "$root" 2>/dev/null || skip "no file systems may be mounted here"
  [[ -n $(debian_sources) ]] || apt-get update -qq
  [[ -n $(mirror) ]] || skip "apt knows no mirror of Debian"
  /usr/lib/apt/apt-helper download-file "$(mirror)dists/$codename/Release" "$kept/Release" &>"$kept/log" ||
    skip "the mirror of Debian does not answer: $(<"$kept/log")"

  setpriv --pdeathsig KILL unshare --mount --pid --ipc --fork --kill-child --mount-proc "$0" "$build" --inside &
  trap "kill -KILL $! 2>/dev/null || true" EXIT
  trap 'exit 143' INT TERM HUP
  wait $!
}

# Unpacks a bare Debian, fetched once.
unpack_root() {
  local archive=$kept/$codename.tar.zst
  mount -t tmpfs -o mode=755 tmpfs "$root"
  if [[ ! -f $archive ]]; then
    local options=(--variant=minbase) proxy
    [[ $(mirror) != https:* ]] || options+=(--include=ca-certificates)
    ! debian_sources | grep -qF trusted=yes || options+=(--no-check-gpg)
    proxy=$(apt-config dump --format '%v' Acquire::http::Proxy)
    [[ -z $proxy ]] || export http_proxy=$proxy
    debootstrap "${options[@]}" "$codename" "$root" "$(mirror)" >"$kept/log" || fail "$(tail "$kept/log")"
    chroot "$root" apt-get clean
    tar -C "$root" --one-file-system -cf "$archive.part" -I 'zstd -3 -T2' .
    mv "$archive.part" "$archive"
  else
    tar -C "$root" -xf "$archive"
  fi
}

# Installs the package with what it depends on and no more, from where this machine gets its own packages.
install_package() {
  local archives=$root/var/cache/apt/archives
  mount -t proc proc "$root/proc"
  cp /etc/resolv.conf /etc/hosts "$root/etc/"
  debian_sources >"$root/etc/apt/sources.list"
  apt-config dump Acquire::http Acquire::https Acquire::Check-Valid-Until Acquire::Check-Date \
    >"$root/etc/apt/apt.conf.d/90machine"
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
  [[ -z $(find "$root/usr" -name 'qt*_es.qm') ]] || fail "the root has the toolkit's own translations"
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

codename=$(source /etc/os-release && echo "${VERSION_CODENAME:-}")
if [[ ${2:-} != --inside ]]; then
  outside
else
  trap 'exit 143' INT TERM
  umask 022
  unpack_root
  install_package
  use_program
fi
