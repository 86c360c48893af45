#!/usr/bin/env bash
# Installs what building and testing need on Debian 12, as far as it is missing. Needs root or sudo.
set -euo pipefail

packages=(
  build-essential ca-certificates clang clang-format clang-tidy cmake cups-client cups-daemon fonts-dejavu-core
  fonts-liberation fonts-lohit-deva fonts-lohit-gujr git libbenchmark-dev libcairo2-dev libclang-rt-14-dev libfontconfig-dev
  libfreetype-dev libgtest-dev libharfbuzz-dev libqt6svg6-dev libsqlite3-dev libutf8proc-dev ninja-build
  pkg-config poppler-utils python3 qt6-base-dev rapidjson-dev time xdotool xvfb
)

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
