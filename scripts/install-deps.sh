#!/usr/bin/env bash
# Installs the Debian packages that building and testing bristel need; does nothing when
# they are all present.  Quiet on success.
set -euo pipefail

packages=(
    cmake ninja-build g++ pkg-config
    qt6-base-dev qt6-5compat-dev libqt6sql6-psql qt6-l10n-tools
    libgtest-dev libbenchmark-dev
    postgresql
    clang clang-format libclang-rt-14-dev git
    hyperfine xvfb xauth time valgrind
    qt6-svg-dev xfonts-terminus fonts-dejavu-core poppler-utils
    cups-daemon cups-client cups libcups2-dev
    abigail-tools file ccache lintian
    libpappl-dev cups-ipp-utils cups-filters systemd
    libzint-dev zbar-tools
    chromium chromium-driver python3-selenium
)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
echo "Installing: ${missing[*]}"
log=$(mktemp)
if ! { $sudo apt-get update -qq && DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    cat "$log"
    echo "install-deps: apt-get failed" >&2
    exit 1
fi
rm -f "$log"
