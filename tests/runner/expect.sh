# shellcheck shell=bash
# shellcheck disable=SC2034,SC2154 # what runner_check uses, and what it gives
# Running the program "${command[@]}" and expecting things of its last run, with a directory for scratch in
# `work`. Sourced by runner_check; counts in `checks`, and sets `failed` when something is not as expected.
failed=0
checks=0

# fail MESSAGE: counts it and shows the run that it is about.
fail() {
  printf 'FAILED: %s\nof the run with: %s\nthat printed:\n%s\nand on standard error:\n%s\n\n' \
    "$1" "$arguments" "$output" "$errors"
  failed=1
}

# run STATUS ARGUMENT...: runs the program and expects that exit status.
run() {
  local expected=$1 status=0
  shift
  arguments=$*
  rm -f "$MEETING_FILE"
  output=$("${command[@]}" "$@" 2>"$work/errors" <<<'typed') || status=$?
  errors=$(<"$work/errors")
  checks=$((checks + 1))
  [ "$status" -eq "$expected" ] || fail "expected exit status $expected, got $status"
}

# cases STATUS FILTER ARGUMENT...: the same for those cases.
cases() { run "$1" --gtest_filter="$2" "${@:3}"; }

# prints LINE...: each is a line of the output.
prints() {
  local line
  for line in "$@"; do
    checks=$((checks + 1))
    grep -qxF -- "$line" <<<"$output" || fail "expected the line \"$line\""
  done
}

# complains TEXT: the runner itself says so on standard error, and nothing else.
complains() {
  checks=$((checks + 1))
  [ "$errors" = "runner_cases: $1" ] || fail "expected \"runner_cases: $1\" on standard error"
}

# holds TEXT, holds_no TEXT...: the output has it, or none of them, somewhere.
holds() {
  checks=$((checks + 1))
  grep -qF -- "$1" <<<"$output" || fail "expected \"$1\""
}
holds_no() {
  local text
  for text in "$@"; do
    checks=$((checks + 1))
    ! grep -qF -- "$text" <<<"$output" || fail "expected no \"$text\""
  done
}

# counts PASSED FAILED SKIPPED: the last line says so.
counts() {
  checks=$((checks + 1))
  [ "${output##*$'\n'}" = "runner_cases: $1 passed, $2 failed, $3 skipped" ] ||
    fail "expected $1 passed, $2 failed, $3 skipped in the last line"
}

# no_process_left: the one that the case started has gone; a zombie counts as gone.
no_process_left() {
  local process rounds=0
  checks=$((checks + 1))
  if ! process=$(cat "$MEETING_FILE"); then
    fail "expected the case to start a process"
    return
  fi
  while grep -qs '^State:[[:space:]]*[^ZX]' "/proc/$process/status"; do
    rounds=$((rounds + 1))
    if [ "$rounds" -ge 100 ]; then
      fail "expected the end of process $process"
      kill -KILL "$process"
      return
    fi
    sleep 0.05
  done
}
