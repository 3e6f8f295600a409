#!/usr/bin/env bash
# late_tools.sh BUILD-FOLDER VERSION: a build folder that was configured when only what building needs was installed, as
# `./run` does it, packs the sources once the tests' tools are there, as `./test` does it.
set -euo pipefail
source "$(dirname "$0")/checks.sh"
source "$source_folder/scripts/packages.sh"
build=$1 version=$2
need git dpkg
in_scratch_folder

# All commands but those that come with the tools. The compiler brings the ones of binutils.
tools=$(dpkg -L "${test_packages[@]}" 2>/dev/null | grep -E '^/(usr/)?s?bin/' | sed 's,.*/,,' |
  grep -vxFf <(dpkg -L binutils | sed 's,.*/,,'))
mapfile -td: folders <<<"$PATH:/usr/sbin:/sbin:"
unset 'folders[-1]'  # the line end
mkdir "$scratch/commands"
for folder in "${folders[@]}"; do
  find "$folder/" -maxdepth 1 ! -type d -exec ln -s -t "$scratch/commands" {} + 2>/dev/null || true
done
(cd "$scratch/commands" && xargs rm -f <<<"$tools")
[[ ! -e $scratch/commands/git ]] || fail "git is not hidden"

ignored=$(IFS=';' && echo "${folders[*]}")
(cd "$source_folder" && PATH=$scratch/commands cmake --preset release -B "$scratch/build" \
  -DCMAKE_IGNORE_PATH="$ignored" >"$scratch/log" 2>&1) || fail "$(<"$scratch/log")"
missing() { sed -n 's/:.*-NOTFOUND$//p' "$1/CMakeCache.txt" | sort; }
same "what was not found" "$(missing "$scratch/build")" "$(missing "$build")"
"$(dirname "$0")/source_archive.sh" "$scratch/build" "$version"
