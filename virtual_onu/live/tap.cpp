/// @file
/// The requests that make a TAP interface, and what their errors mean.
#include "live/tap.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <future>
#include <linux/if_tun.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace virtual_onu {
namespace {

constexpr const char* kTunDevice = "/dev/net/tun";
constexpr const char* kNamespaces = "/run/netns/";

/// What an error of a step means to the user.
struct Meaning {
  int error;
  const char* text;
};

constexpr std::array kOpenMeanings = {
    Meaning{ENOENT, "there is no /dev/net/tun here: load the kernel module tun"},
    Meaning{ENODEV, "there is no /dev/net/tun here: load the kernel module tun"},
    Meaning{EACCES, "no permission to open /dev/net/tun: run as root"},
    Meaning{EPERM, "no permission to open /dev/net/tun: run as root"},
};

constexpr std::array kAttachMeanings = {
    Meaning{EPERM,
            "no permission for TAP interfaces: run as root, "
            "or have the interface made for this user with \"ip tuntap add\""},
    Meaning{EBUSY, "the interface is in use by another program"},
    Meaning{EINVAL, "an interface of that name exists and is no TAP interface"},
};

constexpr std::array kUpMeanings = {
    Meaning{EPERM, "no permission to set the interface up: run as root, or set it up before"},
};

constexpr std::array kNamespaceMeanings = {
    Meaning{ENOENT, "there is no such network namespace: \"ip netns list\" shows them"},
    Meaning{EPERM, "no permission to enter the network namespace: run as root"},
    Meaning{EACCES, "no permission to enter the network namespace: run as root"},
};

/// The line for the error that a step left in errno.
template <std::size_t Size>
LiveError Explain(const std::string& text, const char* step,
                  const std::array<Meaning, Size>& meanings) {
  const int error = errno;
  const auto* found = std::ranges::find(meanings, error, &Meaning::error);
  return LiveError(text + ": " +
                   (found != meanings.end() ? std::string(found->text)
                                            : std::string(step) + ": " + std::strerror(error)));
}

bool IsInterfaceName(std::string_view name) {
  return !name.empty() && name.size() < IFNAMSIZ && name != "." && name != ".." &&
         std::ranges::none_of(name, [](char character) {
           return character == '/' || character == ':' || character == '%' ||
                  std::isspace(static_cast<unsigned char>(character)) != 0;
         });
}

/// A request that names the interface.
ifreq RequestFor(const std::string& name) {
  ifreq request = {};
  std::ranges::copy(name, request.ifr_name);
  return request;
}

void SetUp(const std::string& text, const std::string& name) {
  const Descriptor control(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  ifreq request = RequestFor(name);
  if (control.get() < 0 || ioctl(control.get(), SIOCGIFFLAGS, &request) != 0) {
    throw Explain(text, "cannot ask for the interface's state", kUpMeanings);
  }
  if ((static_cast<unsigned short>(request.ifr_flags) & IFF_UP) != 0) {
    return;
  }
  request.ifr_flags = static_cast<short>(static_cast<unsigned short>(request.ifr_flags) | IFF_UP);
  if (ioctl(control.get(), SIOCSIFFLAGS, &request) != 0) {
    throw Explain(text, "cannot set the interface up", kUpMeanings);
  }
}

/// Attaches to the interface of this thread's network namespace.
FrameEnd Attach(const std::string& text, const std::string& name) {
  Descriptor tap(open(kTunDevice, O_RDWR | O_CLOEXEC | O_NONBLOCK));
  if (tap.get() < 0) {
    throw Explain(text, "cannot open /dev/net/tun", kOpenMeanings);
  }
  ifreq request = RequestFor(name);
  request.ifr_flags = IFF_TAP | IFF_NO_PI;
  if (ioctl(tap.get(), TUNSETIFF, &request) != 0) {
    throw Explain(text, "cannot attach to the interface", kAttachMeanings);
  }
  SetUp(text, name);
  return {std::move(tap), text};
}

void EnterNamespace(const std::string& text, const std::string& netns) {
  const Descriptor place(open((kNamespaces + netns).c_str(), O_RDONLY | O_CLOEXEC));
  if (place.get() < 0 || setns(place.get(), CLONE_NEWNET) != 0) {
    throw Explain(text, "cannot enter the network namespace", kNamespaceMeanings);
  }
}

}  // namespace

FrameEnd OpenTap(const std::string& text, std::string_view place) {
  const std::size_t at = place.find('@');
  const std::string name(place.substr(0, at));
  if (!IsInterfaceName(name)) {
    throw LiveError(text + ": expected an interface name of 1 to " + std::to_string(IFNAMSIZ - 1) +
                    " characters without blanks, '/', ':' and '%'");
  }
  if (at == std::string_view::npos) {
    return Attach(text, name);
  }
  const std::string netns(place.substr(at + 1));
  if (netns.empty() || netns.find('/') != std::string::npos) {
    throw LiveError(text + ": expected the name of a network namespace behind '@'");
  }
  // A thread of its own enters the namespace; the descriptor works in any.
  return std::async(std::launch::async,
                    [&] {
                      EnterNamespace(text, netns);
                      return Attach(text, name);
                    })
      .get();
}

}  // namespace virtual_onu
