# shellcheck shell=bash
# A VLAN switch at each end of the stage's link: one Open vSwitch with its data path in user space,
# so that tagging does not depend on the kernel. The host behind a switch is its port "station".

# shellcheck source-path=SCRIPTDIR source=stage.bash
source "${BASH_SOURCE[0]%/*}/stage.bash"

switch_socket() { echo "unix:$scratch/switch-$1/db.sock"; }

# configure_switch SIDE ARGUMENT...: waits until the switch has done it.
configure_switch() { ovs-vsctl --db="$(switch_socket "$1")" --timeout=20 "${@:2}"; }

# start_switch SIDE: a switch that has no ports yet and looks at two tags.
start_switch() {
  local directory=$scratch/switch-$1
  mkdir -p "$directory"
  ovsdb-tool create "$directory/conf.db" /usr/share/openvswitch/vswitch.ovsschema
  start "$1" env OVS_RUNDIR="$directory" ovsdb-server "$directory/conf.db" \
    --remote="p$(switch_socket "$1")"
  start "$1" env OVS_RUNDIR="$directory" ovs-vswitchd "$(switch_socket "$1")"
  await 'the switch to start' configure_switch "$1" set open_vswitch . other_config:vlan-limit=2
}

# station_mac SIDE: its station has the same MAC address as it has on a link without a switch.
station_mac() { ip -n "$1" -br link show dev eth0 | awk '{ print $3 }'; }

# add_customer_switch SIDE ARGUMENT...: the bridge that tags the station's frames with VLAN 100.
add_customer_switch() {
  configure_switch "$1" \
    add-br customer -- set bridge customer datapath_type=netdev -- \
    add-port customer station tag=100 -- \
    set interface station type=internal "mac=\"$(station_mac "$1")\"" -- "${@:2}"
  ip -n "$1" link set station up
}

# build_vlan_link: frames on the link carry an 802.1Q tag, VLAN 100.
build_vlan_link() {
  local side
  for side in home network; do
    start_switch "$side"
    add_customer_switch "$side" add-port customer eth0
  done
}

# build_qinq_link: frames on the link carry an 802.1ad tag, VLAN 200, around the 802.1Q tag.
build_qinq_link() {
  local side
  for side in home network; do
    start_switch "$side"
    add_customer_switch "$side" \
      add-port customer up -- set interface up type=patch options:peer=down -- \
      add-br service -- set bridge service datapath_type=netdev -- \
      add-port service down tag=200 vlan_mode=dot1q-tunnel other_config:qinq-ethtype=802.1ad -- \
      set interface down type=patch options:peer=up -- \
      add-port service eth0
  done
}

# add_service SIDE NAME VID ADDRESS NEIGHBOUR: a port of the customer bridge in a VLAN of its own, with
# the station's MAC address. It knows its neighbour, so that nobody has to ask.
add_service() {
  local mac other=home
  [[ $1 == network ]] || other=network
  mac=$(station_mac "$1")
  configure_switch "$1" --may-exist add-port customer "$2" "tag=$3" -- \
    set interface "$2" type=internal "mac=\"$mac\""
  "$1" ethtool -K "$2" tx off >/dev/null
  ip -n "$1" link set "$2" up
  ip -n "$1" address add "$4/24" dev "$2"
  ip -n "$1" neighbour add "$5" dev "$2" lladdr "$(station_mac "$other")"
}

# build_service_link: a VLAN for data, one for voice and one for video; home is .1, the network .2.
build_service_link() {
  local side
  for side in home network; do
    start_switch "$side"
    add_customer_switch "$side" add-port customer eth0
  done
  add_both station 100 192.0.2
  add_both voice 200 198.51.100
  add_both video 300 203.0.113
}

# add_both NAME VID NET
add_both() {
  add_service home "$1" "$2" "$3.1" "$3.2"
  add_service network "$1" "$2" "$3.2" "$3.1"
}
