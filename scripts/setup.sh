#!/usr/bin/env bash
# Installs what building and testing need on Debian 12, as far as it is missing. Needs root or sudo.
set -euo pipefail

packages=(
  build-essential ca-certificates clang clang-format clang-tidy cmake cups-client cups-daemon fonts-dejavu-core
  fonts-liberation fonts-lohit-deva fonts-lohit-gujr git libbenchmark-dev libcairo2-dev libclang-rt-14-dev libfontconfig-dev
  libfreetype-dev libgtest-dev libharfbuzz-dev libqt6sql6-odbc libqt6sql6-psql libqt6sql6-sqlite
  libreoffice-calc-nogui libreoffice-writer-nogui libsqlite3-dev libsqliteodbc libutf8proc-dev libxlsxwriter-dev locales
  ninja-build odbc-postgresql odbcinst pkg-config poppler-utils postgresql python3 qt6-base-dev qt6-svg-dev rapidjson-dev time unixodbc xdg-utils
  xdotool xvfb
)

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
echo "Installing: ${missing[*]}"
if [[ " ${missing[*]} " == *" postgresql "* ]]; then
  # Tests start servers of their own; the package shall make none that runs on the machine.
  "${as_root[@]}" mkdir -p /etc/postgresql-common/createcluster.d
  echo "create_main_cluster = false" | "${as_root[@]}" tee /etc/postgresql-common/createcluster.d/no-main-cluster.conf >/dev/null
fi
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
