/// @file
/// Gives a live run ports with VLAN interfaces behind them, on kernels that have none:
///
///     vlan_ports PORT/VID=END... -- PROGRAM ARGUMENT...
///
/// becomes the program with the option --PORT for each port named. A process beside it carries
/// frames between the ports and the ends: those of an end get the tag of its VID on their way to
/// the port, and tagged frames of the port lose it on their way to the end. VID 0 is untagged,
/// OUTER.INNER stands for two tags.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <map>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#include "base/text.h"
#include "live/frame_end.h"
#include "live/open_end.h"

namespace {

using virtual_onu::Bytes;
using virtual_onu::Descriptor;
using virtual_onu::FrameEnd;
using virtual_onu::Received;

/// VIDs of a frame's tags, the outermost first.
using Vids = std::vector<std::uint32_t>;

constexpr std::uint32_t kMostVid = 4094;
constexpr std::size_t kTagOffset = 12;
constexpr std::size_t kTagSize = 4;

/// A port of the unit, and the ends behind it by the tags that they stand for.
struct Port {
  explicit Port(int fd) : trunk(Descriptor(fd), "trunk") {}
  FrameEnd trunk;
  std::map<Vids, FrameEnd> ends;
};

bool IsTagged(const Bytes& frame) {
  return frame.size() >= kTagOffset + kTagSize && frame[kTagOffset] == 0x81 &&
         frame[kTagOffset + 1] == 0x00;
}

void Tag(Bytes& frame, std::uint32_t vid) {
  const Bytes tag = {0x81, 0x00, static_cast<std::uint8_t>(vid >> 8U),
                     static_cast<std::uint8_t>(vid)};
  frame.insert(frame.begin() + kTagOffset, tag.begin(), tag.end());
}

/// Takes all tags off.
Vids Untag(Bytes& frame) {
  Vids vids;
  while (IsTagged(frame)) {
    vids.push_back((frame[kTagOffset + 2] & 0x0FU) * 256U + frame[kTagOffset + 3]);
    const auto begin = frame.begin() + kTagOffset;
    frame.erase(begin, begin + kTagSize);
  }
  return vids;
}

/// Carries what there is of one port; false when the port is gone.
bool Carry(Port& port) {
  Bytes frame;
  for (auto& [vids, end] : port.ends) {
    while (end.receive(frame) == Received::Frame) {
      std::for_each(vids.rbegin(), vids.rend(), [&](std::uint32_t vid) { Tag(frame, vid); });
      static_cast<void>(port.trunk.send(frame));
    }
  }
  Received received = port.trunk.receive(frame);
  while (received == Received::Frame) {
    const auto end = port.ends.find(Untag(frame));
    if (end != port.ends.end()) {
      static_cast<void>(end->second.send(frame));
    }
    received = port.trunk.receive(frame);
  }
  return received != Received::Gone;
}

void CarryAll(std::map<std::string, Port>& ports) {
  bool more = true;
  while (more) {
    std::vector<pollfd> polled;
    for (const auto& [name, port] : ports) {
      polled.push_back({port.trunk.fd(), POLLIN, 0});
      for (const auto& [vids, end] : port.ends) {
        polled.push_back({end.fd(), POLLIN, 0});
      }
    }
    poll(polled.data(), polled.size(), -1);
    for (auto& [name, port] : ports) {
      more = Carry(port) && more;
    }
  }
}

/// The tags of an end: none for "0", one for "100", two for "500.10".
Vids ReadVids(const std::string& text, const std::string& written) {
  Vids vids;
  std::istringstream numbers(written);
  for (std::string number; written != "0" && std::getline(numbers, number, '.');) {
    const auto vid = virtual_onu::ParseDecimal(number, kMostVid);
    if (!vid || *vid == 0) {
      throw std::runtime_error(text + ": expected 0 or VIDs from 1 to 4094");
    }
    vids.push_back(*vid);
  }
  return vids;
}

/// Adds an end, "PORT/VID=END", and the port's option when it is new.
void Add(const std::string& text, std::map<std::string, Port>& ports,
         std::vector<std::string>& options) {
  const std::size_t slash = text.find('/');
  const std::size_t equals = text.find('=');
  if (slash == std::string::npos || equals == std::string::npos || equals < slash) {
    throw std::runtime_error(text + ": expected PORT/VID=END");
  }
  const std::string name = text.substr(0, slash);
  const Vids vids = ReadVids(text, text.substr(slash + 1, equals - slash - 1));
  if (!ports.contains(name)) {
    int pair[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, pair) != 0) {
      throw std::runtime_error(name + ": cannot make a link");
    }
    ports.try_emplace(name, pair[0]);
    options.push_back("--" + name);
    options.push_back("fd:" + std::to_string(pair[1]));
  }
  ports.at(name).ends.emplace(vids, virtual_onu::OpenFrameEnd(text.substr(equals + 1)));
}

[[noreturn]] void Become(std::vector<std::string> words) {
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (std::string& word : words) {
    argv.push_back(word.data());
  }
  argv.push_back(nullptr);
  execvp(argv.front(), argv.data());
  throw std::runtime_error(words.front() + ": cannot be run");
}

/// The descriptors that the options name.
void CloseThoseOf(const std::vector<std::string>& options) {
  for (std::size_t i = 1; i < options.size(); i += 2) {
    close(std::stoi(options[i].substr(options[i].find(':') + 1)));
  }
}

void Run(const std::vector<std::string>& arguments) {
  std::map<std::string, Port> ports;
  std::vector<std::string> options;
  std::size_t next = 0;
  for (; next < arguments.size() && arguments[next] != "--"; ++next) {
    Add(arguments[next], ports, options);
  }
  if (ports.empty() || next + 1 >= arguments.size()) {
    throw std::runtime_error("expected PORT/VID=END... -- PROGRAM ARGUMENT...");
  }
  std::vector<std::string> command(arguments.begin() + static_cast<std::ptrdiff_t>(next) + 1,
                                   arguments.end());
  command.insert(command.end(), options.begin(), options.end());
  if (fork() == 0) {
    CloseThoseOf(options);
    CarryAll(ports);
    _exit(0);
  }
  ports.clear();
  Become(command);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    Run({argv + 1, argv + argc});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vlan_ports: %s\n", error.what());
  }
  return 1;
}
