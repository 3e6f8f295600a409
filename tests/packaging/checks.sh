# What the tests of the packages share. To be sourced.
source_folder=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

# skip REASON...: ends the test as one that cannot run here.
skip() {
  echo "SKIPPED: $*" >&2
  exit 77
}

# need COMMAND...: skips the test where a command is not installed.
need() {
  local command
  for command in "$@"; do
    command -v "$command" >/dev/null || skip "$command is not installed"
  done
}

# same WHAT SHOWN EXPECTED: fails with the differences of two texts.
same() {
  diff <(echo "$2") <(echo "$3") >&2 || fail "$1 (< as it is, > as it should be)"
}

# in_scratch_folder: makes a folder for the rest of the test, `scratch`.
in_scratch_folder() {
  scratch=$(mktemp -d)
  trap 'rm -rf "$scratch"' EXIT
  trap 'exit 143' INT TERM
}
