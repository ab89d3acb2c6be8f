#!/usr/bin/env bash
# source_path_check.sh ROOT COMPILER OPTION...: compiles one source of the library by hand from several
# folders, under a relative and an absolute name, and holds that its log lines name it alike.
set -eu
export LC_ALL=C

root=$1
shift
readonly source=hal/switch/bcm6838x/src/hal_bcm6838x.cpp
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

failed=0
# named FOLDER NAME COMPILER OPTION...: the source compiled in the folder under that name.
named() {
  (cd "$1" && "${@:3}" -c "$2" -o "$scratch/source.o")
  tr '\0' '\n' <"$scratch/source.o" | grep -aoE '[[:alnum:]_./-]*/hal_bcm6838x\.cpp' |
    sort -u >"$scratch/found" || true
  if [ "$(cat "$scratch/found")" != "$source" ]; then
    printf 'compiled in %s as %s: expected only %s, found:\n' "$1" "$2" "$source"
    cat "$scratch/found"
    failed=1
  fi
}

named "$root" "$source" "$@"
named "$root" "./$source" "$@"
named "$root/hal/switch/bcm6838x/src" hal_bcm6838x.cpp "$@"
named "$scratch" "$root/$source" "$@"
ln -s "$root" "$scratch/elsewhere"
named "$scratch" "elsewhere/$source" "$@"
exit $failed
