#!/usr/bin/env bash
# Installs the Debian packages a build or the tests need and the machine lacks.
#   tools/install-deps.sh build   what `make run` needs: a compiler and CMake
#   tools/install-deps.sh test    what `make test` needs: the above, GoogleTest,
#                                 libcsv, and what the tests of rule-show and the
#                                 README's recipes run (chromium, pandas, R)
# As root the missing packages are installed with apt-get, without questions;
# otherwise one line names them and the status is 1. Nothing missing: silent,
# status 0. SKIP_DEPS=1 skips the check (the tests then skip what is absent).
set -euo pipefail
mode=${1:-test}
[ "${SKIP_DEPS:-0}" = 1 ] && exit 0

missing=()
need_command() { command -v "$1" >/dev/null 2>&1 || missing+=("$2"); }
need_file() { [ -e "$1" ] || missing+=("$2"); }

need_command cmake cmake
need_command g++ g++
need_command make make
if [ "$mode" = test ]; then
  need_file /usr/include/gtest/gtest.h libgtest-dev
  need_file /usr/include/csv.h libcsv-dev
  need_command python3 python3
  need_command awk mawk
  # rule-show's HTML report in a headless browser; the README's pandas and R
  # recipes (r-base-core is about 26 MB to fetch).
  need_file /usr/bin/chromium chromium
  /usr/bin/python3 -c 'import pandas' >/dev/null 2>&1 || missing+=(python3-pandas)
  need_command Rscript r-base-core
elif [ "$mode" != build ]; then
  echo "usage: tools/install-deps.sh build|test" >&2
  exit 2
fi

[ ${#missing[@]} -eq 0 ] && exit 0
if [ "$(id -u)" != 0 ]; then
  echo "missing Debian packages: ${missing[*]} (as root: apt-get install ${missing[*]})" >&2
  exit 1
fi
echo "installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
apt-get update -q
apt-get install -y -q --no-install-recommends "${missing[@]}"
