"""One end of a multicast stream, over IPv4 or IPv6 as the groups are:

multicast.py send INTERFACE STARTED GROUP...  sends ten datagrams a second to each group, for ten
    seconds, and makes the file STARTED once some were sent
multicast.py receive INTERFACE GROUP  joins the group, prints the first datagram, and leaves
"""
import socket
import struct
import sys
import time

PORT = 5000


def family_of(group):
    return socket.AF_INET6 if ":" in group else socket.AF_INET


def choose_interface(sender, index):
    if sender.family == socket.AF_INET6:
        sender.setsockopt(socket.IPPROTO_IPV6, socket.IPV6_MULTICAST_IF, index)
    else:
        sender.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_IF, struct.pack("@8xi", index))


def join(receiver, group, index):
    address = socket.inet_pton(receiver.family, group)
    if receiver.family == socket.AF_INET6:
        receiver.setsockopt(socket.IPPROTO_IPV6, socket.IPV6_JOIN_GROUP, address + struct.pack("@i", index))
    else:
        receiver.setsockopt(socket.IPPROTO_IP, socket.IP_ADD_MEMBERSHIP, address + struct.pack("@4xi", index))


def send(interface, started, *groups):
    sender = socket.socket(family_of(groups[0]), socket.SOCK_DGRAM)
    choose_interface(sender, socket.if_nametoindex(interface))
    for turn in range(100):
        for group in groups:
            sender.sendto(("to " + group).encode(), (group, PORT))
        if turn == 3:
            open(started, "w").close()
        time.sleep(0.1)


def receive(interface, group):
    receiver = socket.socket(family_of(group), socket.SOCK_DGRAM)
    receiver.bind((group, PORT))
    receiver.settimeout(5)
    join(receiver, group, socket.if_nametoindex(interface))
    print(receiver.recv(100).decode())


{"send": send, "receive": receive}[sys.argv[1]](*sys.argv[2:])
