#!/bin/sh
# Installs the independent assembler that ours is compared with (npm package asm80, MIT licence) into the
# directory given, unless it is there. Needs Node.js and npm.
set -eu
directory=$1
packages="asm80@1.11.14 atob@2.1.2 btoa@1.2.1 commander@2.20.3"
if [ "$(cat "$directory/installed" 2>/dev/null)" = "$packages" ]; then exit 0; fi
mkdir -p "$directory"
# shellcheck disable=SC2086 # one argument a package
npm install --prefix "$directory" --no-save --no-package-lock --ignore-scripts --no-audit --no-fund \
    --loglevel=error $packages
echo "$packages" >"$directory/installed"
