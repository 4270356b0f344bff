#!/usr/bin/env bash
# Installs those of the named Debian packages that are missing, as root or through sudo.
set -euo pipefail
missing=()
for package in "$@"; do
  dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
done
[[ ${#missing[@]} -gt 0 ]] || exit 0

sudo=()
if [[ $EUID -ne 0 ]]; then
  if ! command -v sudo >/dev/null; then
    echo "Please install these packages as root: ${missing[*]}" >&2
    exit 1
  fi
  sudo=(sudo)
fi
echo "installing missing packages: ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -q >&2
"${sudo[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}" >&2
