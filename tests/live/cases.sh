# shellcheck shell=bash
# shellcheck disable=SC2154 # home, isp and work are those of the script that sources this one
# The cases of the live run. Each begins with start and ends with stop; the addresses are those of
# documentation.

needs() {
  for needed in "$@"; do
    command -v "$needed" >/dev/null || skip "needs the program $needed"
  done
}

# Without a VLAN mode nothing passes.
case_no_mode() {
  start 'uni1/0 wan/0'
  address "$home" uni1 192.0.2.1
  address "$isp" wan 192.0.2.2
  reaches_not 192.0.2.2
  stop
  [ "$(counted uni1 no_flow)" -gt 0 ] || fail "expected frames without a flow"
  [ "$(counted wan framesOut)" -eq 0 ] || fail "expected no frame at the WAN side"
}

# The program's own TAP interfaces, and the unit without a script.
case_ping_tap() {
  begin "$program" --json live --uni1 "tap:uni1@$home" --wan "tap:wan@$isp" --for 30
  address "$home" uni1 192.0.2.1
  address "$isp" wan 192.0.2.2
  reaches 192.0.2.2
  stop
  [ "$(counted uni1 framesIn)" -eq "$(counted wan framesOut)" ] || fail "expected every frame at the WAN side"
  ! ip -n "$home" link show uni1 2>/dev/null || fail "expected the interface to go with the unit"
}

# An interface that was there before stays.
case_persistent_tap() {
  ip netns exec "$home" ip tuntap add dev uni1 mode tap
  begin "$program" --json live --uni1 "tap:uni1@$home" --wan "tap:wan@$isp" --for 30
  address "$home" uni1 192.0.2.1
  address "$isp" wan 192.0.2.2
  reaches 192.0.2.2
  error=$(ip netns exec "$home" "$program" live --uni1 tap:uni1 --wan tap:other 2>&1) && fail "expected an error"
  [ "$error" = 'onu: --uni1: tap:uni1: the interface is in use by another program' ] || fail "said $error"
  stop
  ip -n "$home" link show uni1 >/dev/null || fail "expected the interface to stay"
}

# What is no TAP interface is refused, and so is a user without permission.
case_errors() {
  error=$(at_home "$program" live --uni1 tap:lo --wan tap:other 2>&1) && fail "expected an error"
  [ "$error" = 'onu: --uni1: tap:lo: an interface of that name exists and is no TAP interface' ] ||
    fail "said $error"
  chmod 711 "$work"
  cp "$program" "$work/onu" # where everybody reaches it
  error=$(setpriv --reuid=65534 --regid=65534 --clear-groups "$work/onu" live --uni1 tap:onu-one --wan tap:onu-two 2>&1) &&
    fail "expected an error"
  case $error in
    'onu: --wan: tap:onu-two: no permission '*': run as root'*) ;;
    *) fail "said $error" ;;
  esac
}

# A port whose interface is deleted is told, and the run goes on without it.
case_interface_deleted() {
  begin "$program" --json live --uni1 "tap:uni1@$home" --wan "tap:wan@$isp" --for 30
  ip -n "$home" link delete uni1
  until_true grep -q "^onu: live: uni1: tap:uni1@$home is gone\$" "$work/said" || fail "said $(cat "$work/said")"
  ip -n "$isp" link delete wan
  wait "$unit" || fail "expected the end behind the last interface, got status $?"
  unit=
}

# Every frame passes, whatever its tag.
case_ping_transparent() {
  start 'uni1/0 uni1/300 wan/0 wan/300' 'SetVlanTransparent 1'
  address "$home" uni1 192.0.2.1
  address "$isp" wan 192.0.2.2
  reaches 192.0.2.2
  address "$home" uni1-300 198.51.100.1
  address "$isp" wan-300 198.51.100.2
  reaches 198.51.100.2
  stop
  [ "$(counted uni1 dropped)" -eq 0 ] || fail "expected no frame dropped"
}

# The port is an access port of VLAN 100: tagged frames are not for it, untagged ones not for the
# network.
case_ping_tag() {
  start 'uni1/0 uni1/100 wan/0 wan/100' 'SetPortPvid 1 100' 'SetPortPriority 1 3' 'SetVlanTag 1'
  address "$home" uni1 192.0.2.1
  address "$isp" wan-100 192.0.2.2
  reaches 192.0.2.2
  address "$home" uni1-100 198.51.100.1
  address "$isp" wan-100 198.51.100.2
  reaches_not 198.51.100.2
  address "$home" uni1 203.0.113.1
  address "$isp" wan 203.0.113.2
  reaches_not 203.0.113.2
  stop
}

# The port is an access port of VLAN 100 and a member of VLAN 200, not of VLAN 300.
case_ping_trunk() {
  start 'uni1/0 uni1/200 uni1/300 wan/100 wan/200 wan/300' 'SetPortPvid 1 100' 'SetPortPriority 1 3' \
    'AddVlanTrunk 1 200' 'SetVlanTrunk 1'
  address "$home" uni1 192.0.2.1
  address "$isp" wan-100 192.0.2.2
  reaches 192.0.2.2
  address "$home" uni1-200 198.51.100.1
  address "$isp" wan-200 198.51.100.2
  reaches 198.51.100.2
  address "$home" uni1-300 203.0.113.1
  address "$isp" wan-300 203.0.113.2
  reaches_not 203.0.113.2
  stop
}

# The port is a member of VLAN 200 and has no VLAN for untagged frames.
case_ping_zte_trunk() {
  start 'uni1/0 uni1/200 uni1/300 wan/0 wan/200 wan/300' 'AddZteVlanTrunk 1 200' 'SetZteVlanTrunk 1'
  address "$home" uni1-200 192.0.2.1
  address "$isp" wan-200 192.0.2.2
  reaches 192.0.2.2
  address "$home" uni1-300 198.51.100.1
  address "$isp" wan-300 198.51.100.2
  reaches_not 198.51.100.2
  address "$home" uni1 203.0.113.1
  address "$isp" wan 203.0.113.2
  reaches_not 203.0.113.2
  stop
}

# All that the port sends travels inside VLAN 100, tagged frames with both tags.
case_ping_zte_stacking() {
  start 'uni1/0 uni1/10 uni1/11 wan/100 wan/100.10 wan/11' 'SetPortPvid 1 100' 'SetPortPriority 1 3' \
    'SetZteStacking 1'
  address "$home" uni1 192.0.2.1
  address "$isp" wan-100 192.0.2.2
  reaches 192.0.2.2
  address "$home" uni1-10 198.51.100.1
  address "$isp" wan-100.10 198.51.100.2
  reaches 198.51.100.2
  address "$home" uni1-11 203.0.113.1
  address "$isp" wan-11 203.0.113.2
  reaches_not 203.0.113.2
  stop
}

# The port is an access port of VLAN 100, and its VLAN 10 travels inside VLAN 500; VLAN 11 does not.
case_ping_bdcom_stacking() {
  start 'uni1/0 uni1/10 uni1/11 wan/100 wan/500.10 wan/500.11' 'SetPortPvid 1 100' \
    'SetPortPriority 1 3' 'AddVlanStacking 1 2 10 10 500' 'SetBdcomStacking 1'
  address "$home" uni1 192.0.2.1
  address "$isp" wan-100 192.0.2.2
  reaches 192.0.2.2
  address "$home" uni1-10 198.51.100.1
  address "$isp" wan-500.10 198.51.100.2
  reaches 198.51.100.2
  address "$home" uni1-11 203.0.113.1
  address "$isp" wan-500.11 203.0.113.2
  reaches_not 203.0.113.2
  stop
}

# VLAN 10 of the port is VLAN 110 of the network; what comes back keeps the network's VID, so that the
# station sends in one VLAN and receives in another. Other VLANs do not pass.
case_ping_translation() {
  start 'uni1/0 uni1/10 uni1/110 uni1/11 wan/100 wan/110 wan/11' 'SetPortPvid 1 100' 'SetPortPriority 1 3' \
    'AddVlanTranslation 1 10 110 6 2' 'SetVlanTranslation 1'
  address "$home" uni1 192.0.2.1
  address "$isp" wan-100 192.0.2.2
  reaches 192.0.2.2
  # One address for both: the answers go to the one that receives.
  ip -n "$home" link set uni1-110 address "$(at_home cat /sys/class/net/uni1-10/address)"
  ip -n "$home" address add 198.51.100.1/32 dev uni1-110
  ip -n "$home" route add 198.51.100.2 dev uni1-10 src 198.51.100.1
  ip -n "$home" neighbour add 198.51.100.2 dev uni1-10 lladdr "$(at_isp cat /sys/class/net/wan-110/address)"
  address "$isp" wan-110 198.51.100.2
  ip -n "$isp" neighbour add 198.51.100.1 dev wan-110 lladdr "$(at_home cat /sys/class/net/uni1-110/address)"
  reaches 198.51.100.2
  address "$home" uni1-11 203.0.113.1
  address "$isp" wan-11 203.0.113.2
  reaches_not 203.0.113.2
  stop
}

# dhcp LINE...: a client at an access port of VLAN 100 asks a server in that VLAN.
dhcp() {
  start 'uni1/0 wan/100' 'SetPortPvid 1 100' 'SetPortPriority 1 3' 'SetVlanTag 1' "$@"
  address "$isp" wan-100 192.0.2.1
  printf '%s\n' 'start 192.0.2.50' 'end 192.0.2.59' 'interface wan-100' "lease_file $work/leases" \
    "pidfile $work/udhcpd.pid" 'option subnet 255.255.255.0' >"$work/udhcpd.conf"
  : >"$work/leases"
  at_isp busybox udhcpd -f "$work/udhcpd.conf" >"$work/udhcpd.log" 2>&1 &
  printf '%s\n' '#!/bin/sh' "[ \"\$1\" != bound ] || echo \"\$ip\" >$work/lease" >"$work/bound"
  chmod +x "$work/bound"
  at_home busybox udhcpc -i uni1 -n -q -f -t 6 -T 1 -s "$work/bound" >"$work/udhcpc.log" 2>&1 ||
    fail "no lease: $(cat "$work/udhcpc.log" "$work/udhcpd.log")"
  grep -qx '192\.0\.2\.5[0-9]' "$work/lease" || fail "expected an address of the server, got $(cat "$work/lease")"
  stop
}

# With the relay off the chip forwards the client's frames like any others.
case_dhcp_relay_off() {
  dhcp 'SetDhcpTrapEnable 0'
  [ "$(counted uni1 trapped)" -eq 0 ] || fail "expected no frame trapped"
}

# With the relay off, frames that the chip traps all the same are put back on the wire, in the port's
# VLAN.
case_dhcp_trapped() {
  dhcp 'Ioctl DHCP_TRAP portIndex=0 enable=1'
  trapped_and_sent
}

# With the relay on, the relay's client sends them on.
case_dhcp_relay_on() {
  dhcp 'SetDhcpTrapEnable 1'
  trapped_and_sent
}

# trapped_and_sent: every frame that was trapped went on to the WAN side.
trapped_and_sent() {
  local trapped
  trapped=$(counted uni1 trapped)
  [ "$trapped" -gt 0 ] || fail "expected frames to be trapped"
  [ "$(counted uni1 eventsLost)" -eq 0 ] || fail "expected every event to reach the library"
  [ "$(counted wan transmitted)" -eq "$trapped" ] || fail "expected $trapped frames transmitted to the WAN side"
}

# A discovery of the port's user finds the concentrator behind VLAN 100.
pppoe() {
  needs pppoe-discovery pppoe-server
  start 'uni1/0 wan/100' 'SetPortPvid 1 100' 'SetPortPriority 1 3' 'SetVlanTag 1' "$@"
  at_isp pppoe-server -F -I wan-100 -C concentrator -S internet >"$work/server.log" 2>&1 &
  until_true discovered || fail "no concentrator: $(cat "$work/found" "$work/server.log")"
  grep -q 'Access-Concentrator: concentrator' "$work/found" || fail "found $(cat "$work/found")"
  stop
}

discovered() { at_home timeout 5 pppoe-discovery -t 1 -a 2 -I uni1 >"$work/found" 2>&1; }

case_pppoe_relay_off() {
  pppoe 'SetPPPoETrapEnable 0'
  [ "$(counted uni1 trapped)" -eq 0 ] || fail "expected no frame trapped"
}

case_pppoe_relay_on() {
  pppoe 'SetPPPoETrapEnable 1'
  trapped_and_sent
}

case_pppoe_trapped() {
  pppoe 'Ioctl PPPOE_TRAP portIndex=0 enable=1'
  trapped_and_sent
}

# The frames of a bridge that runs the spanning tree reach the unit's spanning-tree process, which sends
# them on to a bridge of the provider: that one sees the other's root.
case_spanning_tree() {
  start 'uni1/0 wan/0' 'SetVlanTransparent 1'
  bridge "$home" uni1 10
  bridge "$isp" wan 20
  until_true sees_the_root || fail "expected the root of home at isp"
  stop
  trapped_and_sent
  [ "$(counted uni1 flow_trap)" -gt 0 ] || fail "expected BPDUs to be trapped"
}

# bridge NETNS INTERFACE PRIORITY: a bridge that runs the spanning tree on the interface.
bridge() {
  ip -n "$1" link add bridge type bridge stp_state 1 priority "$3" || skip "needs bridges"
  ip -n "$1" link set "$2" master bridge
  ip -n "$1" link set bridge up
}

sees_the_root() {
  [ "$(at_isp cat /sys/class/net/bridge/bridge/root_id)" = "$(at_home cat /sys/class/net/bridge/bridge/bridge_id)" ]
}

# A receiver joins a group and gets what is sent to it; nobody else's groups come to the port.
case_multicast() {
  needs python3
  start 'uni1/0 wan/0' 'SetVlanTransparent 1'
  address "$home" uni1 192.0.2.1
  address "$isp" wan 192.0.2.2
  receives_its_group_alone 233.252.0.1 233.252.0.2
}

# The same over IPv6: the join is a report of MLD, behind a hop-by-hop header.
case_multicast_ipv6() {
  needs python3
  allow_ipv6
  start 'uni1/0 wan/0' 'SetVlanTransparent 1'
  ip -n "$home" address add 2001:db8::1/64 dev uni1 nodad
  ip -n "$isp" address add 2001:db8::2/64 dev wan nodad
  receives_its_group_alone ff0e::db8:0:1 ff0e::db8:0:2
}

# allow_ipv6: interfaces that are made from now on speak IPv6, without searching for routers.
allow_ipv6() {
  local netns
  for netns in "$home" "$isp"; do
    ip netns exec "$netns" busybox sysctl -qw net.ipv6.conf.all.disable_ipv6=0 \
      net.ipv6.conf.default.disable_ipv6=0 net.ipv6.conf.default.router_solicitations=0 2>/dev/null ||
      skip "IPv6 is not permitted here"
  done
}

# receives_its_group_alone GROUP OTHER: of the two that isp sends to, home joins the first.
receives_its_group_alone() {
  at_isp timeout 10 python3 "$here/multicast.py" send wan "$work/sending" "$1" "$2" 2>"$work/sender.log" &
  until_true test -e "$work/sending" || fail "nothing was sent: $(cat "$work/sender.log")"
  at_home timeout 10 python3 "$here/multicast.py" receive uni1 "$1" >"$work/received" 2>&1 ||
    fail "$(cat "$work/received")"
  [ "$(cat "$work/received")" = "to $1" ] || fail "received $(cat "$work/received")"
  stop
  [ "$(counted wan group_forward)" -gt 0 ] || fail "expected frames to the group's member"
  [ "$(counted wan no_group_member)" -gt "$(counted wan group_forward)" ] || fail "expected other groups to be dropped"
  [ "$(counted uni1 framesOut)" -eq "$(($(counted wan group_forward) + $(counted wan flow_forward) + $(counted uni1 transmitted)))" ] ||
    fail "expected no frame of another group at the port"
}
