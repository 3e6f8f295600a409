#!/usr/bin/env bash
# installed_files.sh BUILD-FOLDER VERSION: installs into a folder of its own, and checks what came there.
# Debian packages: appstream, desktop-file-utils, imagemagick, librsvg2-bin.
set -euo pipefail
source "$(dirname "$0")/checks.sh"
build=$1 version=$2
need appstreamcli desktop-file-validate compare identify rsvg-convert
in_scratch_folder

# Staged, and under an unusual prefix.
DESTDIR=$scratch/stage cmake --install "$build" --prefix /somewhere/else >/dev/null
prefix=$scratch/stage/somewhere/else
same "what lies beside the prefix" "$(find "$scratch/stage" -mindepth 3 -maxdepth 3 | sort)" \
  "$(printf '%s\n' "$prefix"/{bin,share})"
strays=$(find "$prefix" -name '.*') && [[ -z $strays ]] || fail "hidden files: $strays"
grep -rlF -e "$source_folder" -e "$build" "$prefix" && fail "these files name the build's folders"
[[ -x $prefix/bin/tavinor ]] || fail "no program"

# The desktop finds it.
entry=$prefix/share/applications/tavinor.desktop
said=$(desktop-file-validate --warn-kde "$entry" 2>&1) && [[ -z $said ]] || fail "desktop entry: $said"
value() { sed -n "s/^$1=//p" "$entry"; }
same "the command" "$(value Exec)" tavinor
for name in Name GenericName Comment Keywords; do
  [[ -n $(value "$name") && -n $(value "$name\[es\]") ]] || fail "$name is not there in both languages"
done

icons=$prefix/share/icons/hicolor
cmp "$icons/scalable/apps/tavinor.svg" "$source_folder/ui/common/icons/tavinor.svg"
sizes="16 24 32 48 64 128 256 512"
for size in $sizes; do
  icon=$icons/${size}x$size/apps/$(value Icon).png
  same "the size of an icon" "$(identify -format %wx%h "$icon")" "${size}x$size"
  rsvg-convert -w "$size" -h "$size" -o "$scratch/icon.png" "$icons/scalable/apps/tavinor.svg"
  # Renderers may differ by a shade; a changed drawing differs by much more.
  difference=$(compare -metric RMSE "$icon" "$scratch/icon.png" null: 2>&1 || true)
  awk -F'[()]' '{ exit !($2 <= 0.01) }' <<<"$difference" ||
    fail "the icon of $size pixels does not show the drawing ($difference): packaging/make-icons draws it anew"
done
same "the icons" "$(find "$icons" -type f | wc -l)" "$(($(wc -w <<<"$sizes") + 1))"

# So do software catalogues.
metainfo=("$prefix"/share/metainfo/*.metainfo.xml)
said=$(appstreamcli validate --no-net --pedantic --no-color "${metainfo[0]}") || fail "metainfo: $said"
grep -E '^ *[EW]:' <<<"$said" && fail "metainfo"
element() { sed -n "s/.*<$1>\(.*\)<.*/\1/p" "${metainfo[0]}"; }
same "the file's name" "$(basename "${metainfo[0]}" .metainfo.xml)" "$(element id)"
same "what it starts" "$(element 'launchable type="desktop-id"')" "$(basename "$entry")"
grep -qF "<release version=\"$version\"" "${metainfo[0]}" || fail "the metainfo has no release $version"

# And the student finds the examples.
same "the examples" "$(ls "$prefix/share/tavinor/ejemplos")" \
  "$(cd "$source_folder/examples" && ls ./*.asm ./*.HEX ./*.md | sed 's,^\./,,' | sort)"
