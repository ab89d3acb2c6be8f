# shellcheck shell=bash
# The stage of a recording: two namespaces joined by a virtual Ethernet pair, programs started in
# them, one capture of the link, and the check that it holds the expected frames. What is recorded
# on the stage is said in recordings.bash.

readonly work=/run/record
readonly captures=$work/captures
readonly scratch=$work/scratch # files of the programs, emptied for each recording
readonly home_mac=02:00:00:00:00:01 network_mac=02:00:00:00:00:02
readonly max_size=10000 # bytes of a capture

started=()      # processes of the current recording
capture_pid=''  # tcpdump of the current recording
capture_file='' # and the file it writes

fail() {
  echo "record: $*" >&2
  exit 1
}

# hide_machine: gives the recordings an empty /run and a host name that tells nothing.
hide_machine() {
  mount -t tmpfs tmpfs /run
  mkdir -p /run/netns "$captures"
  hostname recorder
}

# home COMMAND..., network COMMAND...: runs a command at one end of the link: home is the
# subscriber's side, network the provider's.
home() { ip netns exec home "$@"; }
network() { ip netns exec network "$@"; }

# start NAMESPACE COMMAND...: leaves a program running until tear_down, as ${started[-1]}.
start() {
  ip netns exec "$@" &>>"$scratch/programs.log" &
  started+=($!)
}

# await WHAT COMMAND...: waits at most 20 s until the command succeeds.
await() {
  local what=$1 tries
  shift
  for ((tries = 0; tries < 200; tries++)); do
    if "$@" &>/dev/null; then return; fi
    sleep 0.1
  done
  cat "$scratch/programs.log" >&2 || true
  fail "waited 20 s in vain for $what"
}

# build_link: joins the namespaces home and network by their eth0. IPv6 stays silent until a
# recording asks for it, and nothing is left to offloads: checksums and tags are in the frames.
build_link() {
  local side
  rm -rf "$scratch"
  mkdir "$scratch"
  for side in home network; do
    ip netns add "$side"
    "$side" sysctl -qw net.ipv6.conf.all.disable_ipv6=1 net.ipv6.conf.default.disable_ipv6=1
  done
  ip link add eth0 netns home address "$home_mac" type veth \
    peer name eth0 netns network address "$network_mac"
  for side in home network; do
    "$side" ethtool -K eth0 rx off tx off rxvlan off txvlan off \
      rx-vlan-stag-hw-parse off tx-vlan-stag-hw-insert off >/dev/null
    ip -n "$side" link set eth0 up
  done
}

# give_addresses DEVICE: 192.0.2.1 at home, 192.0.2.2 in the network.
give_addresses() {
  ip -n home address add 192.0.2.1/24 dev "$1"
  ip -n network address add 192.0.2.2/24 dev "$1"
}

# capture NAME FILTER: records the frames on home's eth0 that match the filter into NAME.pcap.
capture() {
  capture_file=$captures/$1.pcap
  ip netns exec home tcpdump -Z root -i eth0 -U --immediate-mode -w "$capture_file" "$2" \
    &>"$scratch/tcpdump.log" &
  capture_pid=$!
  await 'tcpdump to listen' grep -q 'listening on' "$scratch/tcpdump.log"
}

# show: the frames recorded so far in words, one a line, without their times.
show() {
  tcpdump -nn -t -e -vv -r "$capture_file" 2>/dev/null |
    sed ':a; N; $!ba; s/\n[[:space:]]\+/ /g'
}

has_frames() { (($(show | wc -l) >= $1)); }

# await_frames COUNT
await_frames() { await "$1 frames in $capture_file" has_frames "$1"; }

# expect PATTERN...: ends the capture once it has a frame for each pattern, and fails unless the
# frames are exactly those, in that order, with good checksums, in a small file.
expect() {
  await_frames $#
  kill "$capture_pid"
  wait "$capture_pid" || fail "tcpdump failed: $(<"$scratch/tcpdump.log")"
  expect_frames "$@"
  if show | grep -E '(bad|wrong) .*cksum'; then
    fail "$capture_file: expected good checksums, got the above"
  fi
  local size
  size=$(stat -c %s "$capture_file")
  ((size < max_size)) || fail "$capture_file: expected less than $max_size bytes, got $size"
}

expect_frames() {
  local frames i patterns=("$@")
  mapfile -t frames < <(show)
  ((${#frames[@]} == $#)) || fail "$capture_file: expected $# frames, got ${#frames[@]}: $(show)"
  for ((i = 0; i < $#; i++)); do
    [[ ${frames[i]} =~ ${patterns[i]} ]] ||
      fail "$capture_file: expected frame $((i + 1)) to match '${patterns[i]}', got '${frames[i]}'"
  done
}

# stop PID: ends a program that start left running.
stop() {
  kill "$1" 2>/dev/null || true
  wait "$1" || true
}

tear_down() {
  local pid
  for pid in "${started[@]}"; do stop "$pid"; done
  started=()
  ip netns del home
  ip netns del network
}
