# Installs the Debian packages that a script needs. To be sourced.

build_packages=(
  cmake fonts-dejavu-core g++ ninja-build pkg-config python3-markdown
  qt6-base-dev qt6-l10n-tools qt6-svg-dev qt6-tools-dev qt6-translations-l10n
)

# What shows a window where there is no screen.
display_packages=(openbox x11vnc xauth xvfb)

# What the tests need.
test_packages=(
  at-spi2-core binutils clang-14 clang-format-14 clang-tidy-14 dbus git imagemagick libclang-rt-14-dev libgtest-dev
  mold openssl python3-pyatspi srecord wamerican wspanish x11-utils xdotool
  # What is packed, and what looks into the packages.
  appstream debootstrap desktop-file-utils dpkg-dev librsvg2-bin lintian zstd
)

# missing_packages PACKAGE...: prints those that are not installed.
missing_packages() {
  local installed package
  installed=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "$@" 2>/dev/null |
    sed -n 's/ installed$//p' || true)
  for package in "$@"; do
    grep -qxF "$package" <<<"$installed" || echo "$package"
  done
}

# require_packages PACKAGE...: installs what is missing, or says what is needed and ends the script.
require_packages() {
  if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    echo "This script sets up Debian 12 systems. Elsewhere, install the like of these packages by hand and" >&2
    echo "build with CMake (see README.md): $*" >&2
    exit 1
  fi
  local missing
  mapfile -t missing < <(missing_packages "$@")
  ((${#missing[@]} == 0)) && return
  local as_root=()
  if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
      echo "Needed, but neither root nor sudo is here to install them: ${missing[*]}" >&2
      exit 1
    fi
    as_root=(sudo)
  fi
  echo "Installing: ${missing[*]}"
  if ! { "${as_root[@]}" apt-get update -qq &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
      "${missing[@]}" >/dev/null; }; then
    echo "Could not install: ${missing[*]}" >&2
    exit 1
  fi
}

# configure PRESET: configures a build folder once, and when the presets or the installed packages have changed, so that
# nothing counts as missing that has been installed since; CMake itself notices all other changes.
configure() {
  local made=build/$1/build.ninja
  [[ $made -nt CMakePresets.json && $made -nt /var/lib/dpkg/status ]] || cmake --preset "$1" >/dev/null
}
