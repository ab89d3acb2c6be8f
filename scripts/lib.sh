# shellcheck shell=bash
# What the scripts share: strict mode, the repository's root as working directory, messages, and the
# compiler cache. Sourced, never run.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

# A second clone in another folder finds what the first compiled; precompiled headers are compared by their
# content.
use_compiler_cache() {
  command -v ccache >/dev/null || return 0
  export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
  export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1 CCACHE_SLOPPINESS=pch_defines,time_macros
}
use_compiler_cache

# Tells on standard error what is going on.
say() { printf '%s\n' "$*" >&2; }

# die MESSAGE [STATUS]: ends the script; 1 the work failed, 2 wrong use.
die() {
  say "${0##*/}: $1"
  exit "${2:-1}"
}

# no_arguments "$@": for the scripts that take none.
no_arguments() { [ $# -eq 0 ] || die "expected no argument, got \"$*\"" 2; }

# Installs what is missing, once for a script and those that it runs.
bootstrap() {
  [ -n "${PROJECT_BOOTSTRAPPED-}" ] || scripts/bootstrap
  export PROJECT_BOOTSTRAPPED=1
  use_compiler_cache
}

# build PRESET [TARGET...]: configures and builds a preset.
build() {
  local preset=$1
  shift
  cmake --preset "$preset" --log-level=WARNING >&2 &&
    cmake --build --preset "$preset" ${1+--target "$@"} >&2
}

# Tracked C and C++ files.
tracked_sources() { git ls-files -- '*.c' '*.h' '*.cpp'; }

# Tracked shell scripts, known by their first line.
tracked_shell_scripts() {
  git grep -nIE '^(#!.*\b(ba|da)?sh\b|# shellcheck shell=)' | sed -n 's/:1:.*//p'
}
