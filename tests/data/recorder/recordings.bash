# shellcheck shell=bash
# The recordings, one function each: which programs run on the stage, and which frames must come
# of it. README.md tells the same in words.

# shellcheck source-path=SCRIPTDIR source=switch.bash
source "${BASH_SOURCE[0]%/*}/switch.bash"

# shellcheck disable=SC2034 # read by the scripts that source this file
readonly recording_names=(
  stp dhcp pppoe-discovery igmp-join igmpv3-join mld-report arp-ping vlan-ping qinq-ping
  residential
)

readonly group=233.252.0.1 group6=ff0e::db8:0:1 # reserved for documentation

# Seconds times 100, the smallest values that IEEE 802.1D allows together.
readonly stp_timers=(hello_time 200 forward_delay 400 max_age 600)

has_port_state() { bridge -n "$1" -d link show dev "$2" | grep -q "state $3"; }

is_topology_settled() {
  has_port_state network eth0 forwarding && has_port_state home eth0 forwarding &&
    ip -n network -d link show br0 | grep -q 'topology_change 0'
}

# build_bridges: the network's bridge is the root; home's has a port that is still down.
build_bridges() {
  local side
  ip -n network link add br0 address 02:00:00:00:00:20 type bridge \
    stp_state 1 priority 4096 "${stp_timers[@]}"
  ip -n home link add br0 address 02:00:00:00:00:10 type bridge \
    stp_state 1 priority 32768 "${stp_timers[@]}"
  for side in network home; do
    ip -n "$side" link set eth0 master br0
    ip -n "$side" link set br0 up
  done
  ip -n home link add lan1 type veth peer name station
  ip -n home link set lan1 master br0
}

# A station that appears behind home's bridge changes the topology. It appears half-way between two
# of the root's messages, so that the order of all frames is certain.
record_stp() {
  build_bridges
  await 'the topology to settle' is_topology_settled
  home tcpdump -Z root -i eth0 --immediate-mode -c 1 stp &>/dev/null
  sleep 1
  ip -n home link set station up
  ip -n home link set lan1 up
  await 'the port to the station to learn' has_port_state home lan1 learning
  capture stp stp
  expect 'Config, Flags \[none\]' 'Config, Flags \[none\]' 'Topology Change' \
    'Config, Flags \[Topology change, Topology change ACK\]' 'Config, Flags \[Topology change\]'
}

is_udp_port_open() { "$1" ss -Hlnu "sport = :$2" | grep -q .; }

record_dhcp() {
  ip -n network address add 192.0.2.2/24 dev eth0
  start network dnsmasq --keep-in-foreground --user=root --conf-file=/dev/null --pid-file= \
    --port=0 --interface=eth0 --dhcp-range=192.0.2.1,192.0.2.1,1h --no-ping \
    --dhcp-leasefile="$scratch/leases" --log-facility=-
  await 'dnsmasq to listen' is_udp_port_open network 67
  capture dhcp 'udp port 67 or udp port 68'
  start home udhcpc -i eth0 -f -q -n -s /bin/true
  expect '68 > .*Discover' '67 > .*Offer' '68 > .*Request$|DHCP-Message.*: Request ' '67 > .*ACK'
}

is_packet_type_open() { "$1" grep -q " $2 " /proc/net/packet; }

# /bin/true stands in for the server's PPP daemon: the session ends at once with the server's PADT,
# and the machine needs no PPP support.
record_pppoe_discovery() {
  start network pppoe-server -F -I eth0 -C access-concentrator -S internet -q /bin/true
  await 'pppoe-server to listen' is_packet_type_open network 8863
  capture pppoe-discovery pppoed
  start home pppoe -I eth0 -d
  expect PADI PADO PADR PADS PADT
}

# join_and_leave SOCAT_ADDRESS: a program joins, reports it twice, and ends.
join_and_leave() {
  start home socat -u "$1" STDOUT
  await_frames 2
  stop "${started[-1]}"
}

record_igmp_join() {
  give_addresses eth0
  home sysctl -qw net.ipv4.conf.eth0.force_igmp_version=2 \
    net.ipv4.conf.eth0.igmpv2_unsolicited_report_interval=1000
  capture igmp-join igmp
  join_and_leave "UDP4-RECV:5000,ip-add-membership=$group:eth0"
  expect "> $group: igmp v2 report $group" "> $group: igmp v2 report $group" \
    "> 224.0.0.2: igmp leave $group"
}

record_igmpv3_join() {
  give_addresses eth0
  capture igmpv3-join igmp
  join_and_leave "UDP4-RECV:5000,ip-add-membership=$group:eth0"
  expect "gaddr $group to_ex" "gaddr $group to_ex" "gaddr $group to_in" "gaddr $group to_in"
}

has_settled_address() { ip -n home -6 address show dev eth0 scope link -tentative | grep -q inet6; }

# Only reports on the group are recorded, not those on the groups that come with an IPv6 address.
# These have to be over, or one report could speak of both.
record_mld_report() {
  home sysctl -qw net.ipv6.conf.eth0.disable_ipv6=0
  await 'a link-local address' has_settled_address
  sleep 3
  capture mld-report 'ip6[48] = 143 and ip6[60:4] = 0xff0e0000'
  join_and_leave "UDP6-RECV:5000,ipv6-join-group=[$group6]:eth0"
  expect "HBH.*gaddr $group6 to_ex" "HBH.*gaddr $group6 to_ex" \
    "HBH.*gaddr $group6 to_in" "HBH.*gaddr $group6 to_in"
}

# record_ping NAME DEVICE HEADER: HEADER is a pattern for what stands before ARP or IPv4.
record_ping() {
  give_addresses "$2"
  capture "$1" ''
  home ping -q -c 1 192.0.2.2 >/dev/null
  expect "$3, ethertype ARP .*Request" "$3, ethertype ARP .*Reply" \
    "$3, ethertype IPv4 .*echo request" "$3, ethertype IPv4 .*echo reply"
}

record_arp_ping() { record_ping arp-ping eth0 '> [0-9a-f:]{17}'; }

record_vlan_ping() {
  build_vlan_link
  record_ping vlan-ping station \
    '> [0-9a-f:]{17}, ethertype 802.1Q .{8}, length [0-9]+: vlan 100, p 0'
}

record_qinq_ping() {
  build_qinq_link
  record_ping qinq-ping station \
    'ethertype 802.1Q-QinQ .{8}, length [0-9]+: vlan 200, p 0, ethertype 802.1Q .{8}, vlan 100, p 0'
}

# send_datagram ADDRESS PORT TOS TEXT: that nobody listens there is no matter.
send_datagram() {
  home socat -u - "UDP4-SENDTO:$1:$2,sourceport=40000,ip-tos=$3" <<<"$4" || true
}

# open_connection ADDRESS PORT TOS: nobody listens, so that the first segment is the only one.
open_connection() {
  home socat -u /dev/null "TCP4:$1:$2,sourceport=40000,ip-tos=$3" &>/dev/null || true
}

# tagged VID PATTERN: a pattern for a frame of the VLAN.
tagged() { echo "ethertype 802.1Q .{8}, length [0-9]+: vlan $1, p 0, ethertype IPv4 .*$2"; }

# What the equipment of one home sends in a VLAN for each service: only these frames are recorded.
record_residential() {
  build_service_link
  home sysctl -qw net.ipv4.conf.video.force_igmp_version=2 \
    net.ipv4.conf.video.igmpv2_unsolicited_report_interval=1000
  capture residential "ether src $home_mac"
  send_datagram 198.51.100.2 16384 184 'voice media'
  send_datagram 198.51.100.2 5060 104 'voice signalling'
  send_datagram 198.51.100.2 53 0 'a name'
  open_connection 203.0.113.2 554 0
  open_connection 192.0.2.2 443 104
  open_connection 192.0.2.2 25 0
  home ping -q -c 1 192.0.2.2 >/dev/null
  await_frames 7
  start home socat -u "UDP4-RECV:5000,ip-add-membership=$group:video" STDOUT
  await_frames 9
  stop "${started[-1]}"
  expect "$(tagged 200 'tos 0xb8.*> 198.51.100.2.16384: .*UDP')" \
    "$(tagged 200 'tos 0x68.*> 198.51.100.2.5060: ')" \
    "$(tagged 200 'tos 0x0,.*> 198.51.100.2.53: ')" \
    "$(tagged 300 'tos 0x0,.*> 203.0.113.2.554: Flags \[S\]')" \
    "$(tagged 100 'tos 0x68.*> 192.0.2.2.443: Flags \[S\]')" \
    "$(tagged 100 'tos 0x0,.*> 192.0.2.2.25: Flags \[S\]')" \
    "$(tagged 100 'tos 0x0,.*> 192.0.2.2: ICMP echo request')" \
    "$(tagged 300 "> $group: igmp v2 report $group")" \
    "$(tagged 300 "> $group: igmp v2 report $group")" \
    "$(tagged 300 '> 224.0.0.2: igmp leave')"
}
