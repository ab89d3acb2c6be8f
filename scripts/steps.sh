# shellcheck shell=bash
# What scripts/test and scripts/check share: they run named steps to the end, tell how far they are, and
# close with a table. Sourced behind lib.sh. The script defines steps, an array of "NAME: what it does", and
# run_step NAME, which may end with a line "total: COUNTS".
declare -a steps

# step_names: the name of every step.
step_names() { printf '%s\n' "${steps[@]%%:*}"; }

# What the step does, behind its name.
step_text() {
  local step
  for step in "${steps[@]}"; do
    [ "${step%%:*}" != "$1" ] || printf '%s' "${step#*: }"
  done
}

# duration SECONDS: "2 min 5 s".
duration() {
  if [ "$1" -lt 60 ]; then printf '%d s' "$1"; else printf '%d min %d s' $(($1 / 60)) $(($1 % 60)); fi
}

# watch PID LABEL LOG: on a terminal, a line that moves with the end of the step's log until it ends.
watch() {
  local begin=$SECONDS text columns
  [ -t 2 ] || return 0
  columns=$(tput cols 2>/dev/null || echo 80)
  while kill -0 "$1" 2>/dev/null; do
    text="$2, $(duration $((SECONDS - begin))): $(tail -n 1 "$3" | tr -d '\r')"
    printf '\r\033[K%s' "${text:0:columns-1}" >&2
    sleep 0.5
  done
  printf '\r\033[K' >&2
}

# Without what the build says of each file that it made.
without_progress() { grep -vE '^\[[0-9]+/[0-9]+\] (Building|Linking|Generating|Re-checking|Running utility)' "$1" || true; }

# Sums "N passed, N failed, N skipped" of all steps that tell such counts.
print_totals() {
  awk 'match($0, /[0-9]+ passed, [0-9]+ failed/) {
         passed += $1; failed += $3; found = 1
         if ($0 ~ /skipped/) skipped += $5
       }
       END {if (found) printf "total: %d passed, %d failed, %d skipped\n", passed, failed, skipped}' <<<"$1"
}

# run_steps [STEP...]: runs the named steps, or all. 0 every step passed, 1 one failed, 2 wrong use.
run_steps() {
  local names=("$@") step log begin result counts text table='' all_counts='' status=0 number=0
  [ $# -gt 0 ] || mapfile -t names < <(step_names)
  for step in "${names[@]}"; do
    # Not through a pipe: who writes it could fail when the search ends early.
    grep -Fxq -e "$step" <<<"$(step_names)" || die "unknown step \"$step\": expected some of $(step_names | xargs)" 2
  done
  bootstrap
  mkdir -p build/logs
  for step in "${names[@]}"; do
    number=$((number + 1))
    text="step $number of ${#names[@]}: $step ($(step_text "$step"))"
    log=build/logs/${0##*/}-$step.log
    begin=$SECONDS
    # A process group of its own, so that an interrupt ends all that the step started.
    set -m
    run_step "$step" >"$log" 2>&1 </dev/null &
    set +m
    # shellcheck disable=SC2064 # this step's process
    trap "kill -- -$! 2>/dev/null; exit 130" INT TERM
    watch $! "$text" "$log"
    result=passed
    wait $! || { result=FAILED && status=1; }
    trap - INT TERM
    counts=$(sed -n 's/^total: //p' "$log" | tail -n 1)
    [ $result = passed ] || without_progress "$log" >&2
    say "$text: $result in $(duration $((SECONDS - begin)))${counts:+: $counts}"
    table+=$(printf '%-6s %-7s %5d s  %s' "$step" "$result" $((SECONDS - begin)) "$counts")$'\n'
    all_counts+=$counts$'\n'
  done
  printf '\n%s%6s %-7s %5d s\n' "$table" all "$([ $status = 0 ] && echo passed || echo FAILED)" $SECONDS
  print_totals "$all_counts"
  return $status
}
