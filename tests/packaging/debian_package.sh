#!/usr/bin/env bash
# debian_package.sh BUILD-FOLDER VERSION: packs for Debian, and checks the package.
# Debian packages: dpkg-dev, lintian.
set -euo pipefail
source "$(dirname "$0")/checks.sh"
build=$1 version=$2
need dpkg-shlibdeps dpkg-deb lintian
in_scratch_folder

# As a user packs whose files no other user may read.
umask 077
package=$build/packages/tavinor_${version}_$(dpkg --print-architecture).deb
rm -f "$package"
(cd "$build" && cpack >"$scratch/log" 2>&1) || fail "$(<"$scratch/log")"
[[ -f $package ]] || fail "no $package: $(<"$scratch/log")"

field() { dpkg-deb --field "$package" "$1"; }
same "the version" "$(field Version)" "$version"
same "the section" "$(field Section)" education
dependencies=$(field Depends | tr ',' '\n' | sed 's/^ *//; s/ .*//')
for dependency in fonts-dejavu-core libqt6gui6 libqt6network6 libqt6svg6 libqt6widgets6; do
  grep -qx "$dependency" <<<"$dependencies" || fail "it does not depend on $dependency"
done
grep -E -- '-(dev|l10n)$' <<<"$dependencies" && fail "it depends on what only the build needs"

listing=$(dpkg-deb --contents "$package")
same "who can read" "$(awk '{ print $1 }' <<<"$listing" | sort -u)" "$(printf '%s\n' -rw-r--r-- -rwxr-xr-x drwxr-xr-x)"
for path in bin/tavinor share/applications/tavinor.desktop share/tavinor/ejemplos/01-suma.HEX \
  share/icons/hicolor/48x48/apps/tavinor.png share/man/es/man1/tavinor.1.gz; do
  grep -qF " ./usr/$path" <<<"$listing" || fail "it lacks $path"
done

# No licence has been chosen yet, so there is none to state.
lintian --allow-root --fail-on error,warning --suppress-tags no-copyright-file "$package" >&2 || fail "lintian"
