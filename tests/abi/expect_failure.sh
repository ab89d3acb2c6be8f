#!/usr/bin/env bash
# expect_failure.sh PATTERN... -- COMMAND...: passes when the command exits with 1 and prints a line of
# each pattern. Shows that a check can fail, and fails for the right reason.
set -u

patterns=()
while [ "$1" != -- ]; do
  patterns+=("$1")
  shift
done
shift

output=$("$@" 2>&1)
status=$?
failed=0
if [ $status -ne 1 ]; then
  printf 'expected exit status 1, got %d\n' "$status"
  failed=1
fi
for pattern in "${patterns[@]}"; do
  if ! grep -qE -- "$pattern" <<<"$output"; then
    printf 'expected a line like "%s"\n' "$pattern"
    failed=1
  fi
done
[ $failed -eq 0 ] || printf '%s\n' "$output"
exit $failed
