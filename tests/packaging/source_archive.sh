#!/usr/bin/env bash
# source_archive.sh BUILD-FOLDER VERSION: the archive of the sources holds what is committed, and can be built from.
set -euo pipefail
source "$(dirname "$0")/checks.sh"
build=$1 version=$2
need git
[[ $(git -C "$source_folder" rev-parse --show-toplevel 2>/dev/null) == "$source_folder" ]] || skip "this is no checkout"
in_scratch_folder

name=tavinor-$version
(cd "$build" && cpack --config CPackSourceConfig.cmake -B "$scratch/packages" >"$scratch/log") ||
  fail "$(<"$scratch/log")"
tar -xf "$scratch/packages/$name.tar.gz" -C "$scratch"
same "the content" "$(cd "$scratch/$name" && find . ! -type d | sed 's,^\./,,' | LC_ALL=C sort)" \
  "$(git -C "$source_folder" -c core.quotePath=off ls-tree -r --name-only HEAD | LC_ALL=C sort)"

# A dry run of the build misses every source that is not there.
cd "$scratch/$name"
cmake --preset release >"$scratch/log" 2>&1 || fail "$(<"$scratch/log")"
cmake --build --preset release -- -n >"$scratch/log" 2>&1 || fail "$(<"$scratch/log")"
