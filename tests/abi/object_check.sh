#!/usr/bin/env bash
# Reads a built object and holds one property of it. Needs the environment variables NM, OBJCOPY and
# READELF, the tools for the object's machine. Results of running the library are no matter of this file.
#
#   object_check.sh needed OBJECT                  depends on the C library alone
#   object_check.sh exports OBJECT OPERATIONS      exports what the list marks as built, nothing else
#   object_check.sh undefined OBJECT CALLS         imports the listed calls and the C library's names
#   object_check.sh runtime OBJECT|ARCHIVE         imports nothing of the C++ run-time library
#   object_check.sh namespace OBJECT|ARCHIVE NAME  defines no C++ name outside the namespace
#   object_check.sh state ARCHIVE VARIABLES        defines the listed variables, of the listed sizes
#   object_check.sh source_paths OBJECT ROOT       names sources as they lie under the root
#   object_check.sh build_paths OBJECT DIRECTORY   holds no path into the directory
#
# Exit status: 0 it holds, 1 it does not, with a line for each finding, 2 wrong use.
set -eu
export LC_ALL=C

die() {
  printf 'object_check.sh: %s\n' "$1" >&2
  exit 2
}

# report TEXT: prefixes each line of standard input with the object and the text; 1 when there was one.
report() { ! sed "s|^|${object##*/}: $1: |" | grep .; }

listed() { grep -vE '^(#|$)' "$1" | sort -u; }

# symbols FILE OPTION...: the symbols that nm lists, as "NAME TYPE"; an imported name keeps the version
# that its library gives it, as in "puts@GLIBC_2.0".
symbols() {
  "$NM" -P "${@:2}" "$object" >"$scratch/symbols" || die "$NM cannot read $object"
  awk 'NF > 1 {print $1, $2}' "$scratch/symbols" | sort -u >"$1"
  [ -s "$1" ] || die "$object has no symbol of the kind ${*:2}"
}

# constants FILE: what the object holds as data, a string a line.
constants() {
  "$OBJCOPY" -O binary -j '.rodata*' -j '.data*' "$object" "$scratch/image" ||
    die "$OBJCOPY cannot read $object"
  tr '\0' '\n' <"$scratch/image" >"$1"
}

check_needed() {
  local found
  found=$("$READELF" -Wd "$object" | sed -n 's/.*(NEEDED).*\[\(.*\)\]$/\1/p')
  [ "$found" = libc.so.6 ] ||
    printf '%s\n' "${found:-nothing}" | report "expected libc.so.6 alone, needs"
}

check_exports() {
  local status=0
  symbols "$scratch/exported" -D --defined-only
  cut -d ' ' -f 1 "$scratch/exported" >"$scratch/found"
  listed "$1" | sed -n 's/^+ //p' >"$scratch/wanted"
  [ -s "$scratch/wanted" ] || die "no operation is marked as built in $1"
  comm -23 "$scratch/found" "$scratch/wanted" | report "exported, not marked as built" || status=1
  comm -13 "$scratch/found" "$scratch/wanted" | report "marked as built, not exported" || status=1
  return $status
}

check_undefined() {
  symbols "$scratch/imported" -D --undefined-only
  listed "$1" >"$scratch/allowed"
  # Weak names without a version are those of the compiler's start files.
  grep -vE '@GLIBC_[0-9.]+ |^(_ITM_(de)?registerTMCloneTable|__gmon_start__) w$' \
    "$scratch/imported" | cut -d ' ' -f 1 | comm -23 - "$scratch/allowed" |
    report "imported, not a call of the platform"
}

check_runtime() {
  # What one member of an archive imports, another may define.
  symbols "$scratch/defined" --defined-only
  symbols "$scratch/imported" --undefined-only
  cut -d ' ' -f 1 "$scratch/defined" >"$scratch/own"
  grep -E '^(_Z|__cxa_|__gxx_|_Unwind_)' "$scratch/imported" |
    grep -vE '^__cxa_finalize(@[^ ]*)? w$' | cut -d ' ' -f 1 | grep -vxFf "$scratch/own" |
    report "imported from the C++ run-time library"
}

check_namespace() {
  symbols "$scratch/defined" -g --defined-only
  cut -d ' ' -f 1 "$scratch/defined" | grep '^_Z' >"$scratch/found" ||
    die "$object defines no C++ name"
  # A mangled name in a namespace begins with the lengths and names around it, behind Z where it is
  # local to a function and behind K where it is a member that changes nothing.
  grep -vE "^_ZZ?NK?${#1}$1[0-9IL]" "$scratch/found" | report "defined outside the namespace $1"
}

check_state() {
  local name type size
  "$NM" -P -g --defined-only "$object" >"$scratch/symbols" || die "$NM cannot read $object"
  while read -r name type _ size; do
    case $type in
      [BDGRS]) printf '%s %d\n' "$name" "$((16#${size:-0}))" ;;
    esac
  done <"$scratch/symbols" | sort -u >"$scratch/found"
  listed "$1" >"$scratch/wanted"
  [ -s "$scratch/wanted" ] || die "no variable is listed in $1"
  comm -13 "$scratch/found" "$scratch/wanted" | report "not a global variable of that size"
}

check_source_paths() {
  constants "$scratch/constants"
  grep -aoE 'hal/switch/bcm6838x/src/[[:alnum:]_./]*' "$scratch/constants" |
    sort -u >"$scratch/found"
  [ -s "$scratch/found" ] || die "$object names no source at all"
  while IFS= read -r path; do
    [ -f "$1/$path" ] || printf '%s\n' "$path"
  done <"$scratch/found" | report "names a source that does not exist"
}

check_build_paths() {
  constants "$scratch/constants"
  [ -s "$scratch/constants" ] || die "$object holds no data"
  grep -aF "$1" "$scratch/constants" | report "holds a path of the build"
}

if [ $# -lt 2 ] || [ "$(type -t "check_$1")" != function ]; then
  die "expected CHECK OBJECT [ARGUMENT], got \"$*\""
fi
check=$1
object=$2
shift 2
[ -f "$object" ] || die "expected a built object, there is no $object"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"check_$check" "$@"
