# A bare Debian in a folder, like this machine's own and from where this machine gets its packages. To be sourced.
# Debian packages: debootstrap, zstd.

codename=$(source /etc/os-release 2>/dev/null && echo "${VERSION_CODENAME:-}" || true)

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

# missing_privilege: prints which privilege this process lacks to make a Debian of its own and use it, if it lacks one.
# Root of a container often has less than root has.
missing_privilege() {
  ((EUID == 0)) || { echo "the privilege of root is missing"; return; }
  local effective pair lacks=() refused
  effective=$(sed -n 's/^CapEff:\s*//p' /proc/self/status)
  for pair in 18:CAP_SYS_CHROOT 21:CAP_SYS_ADMIN 27:CAP_MKNOD; do
    (((0x$effective >> ${pair%:*}) & 1)) || lacks+=("${pair#*:}")
  done
  if ((${#lacks[@]})); then
    echo "the privilege ${lacks[*]} is missing"
  elif ! refused=$(unshare --mount --pid --fork mount -t tmpfs tmpfs /boot 2>&1); then
    echo "the privilege to mount file systems is missing: $refused"
  fi
}

# lacking_mirror LOG: prints why there is no mirror of Debian, if there is none.
lacking_mirror() {
  [[ -n $codename ]] && command -v apt-get >/dev/null || { echo "this is no Debian"; return; }
  [[ -n $(debian_sources) ]] || apt-get update -qq
  [[ -n $(mirror) ]] || { echo "apt knows no mirror of Debian $codename"; return; }
  /usr/lib/apt/apt-helper download-file "$(mirror)dists/$codename/Release" "$1.Release" &>"$1" ||
    echo "the mirror of Debian does not answer: $(<"$1")"
}

# unpack_bare_debian ROOT KEPT: unpacks a bare Debian, which is fetched once and kept in the folder KEPT.
unpack_bare_debian() {
  local root=$1 kept=$2 archive=$2/$codename.tar.zst
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

# use_network_of_machine ROOT: lets a root find its packages as this machine finds its own.
use_network_of_machine() {
  local root=$1
  cp /etc/resolv.conf /etc/hosts "$root/etc/"
  cp -rT /usr/local/share/ca-certificates "$root/usr/local/share/ca-certificates" 2>/dev/null || true
  debian_sources >"$root/etc/apt/sources.list"
  apt-config dump Acquire::http Acquire::https Acquire::Check-Valid-Until Acquire::Check-Date \
    >"$root/etc/apt/apt.conf.d/90machine"
}
