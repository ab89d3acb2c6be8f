/// @file
/// The kinds of ends, and the descriptors that the process inherited.
#include "live/open_end.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <sys/socket.h>

#include "base/text.h"
#include "live/tap.h"

namespace virtual_onu {
namespace {

bool KeepsFramesApart(int fd) {
  int type = 0;
  socklen_t size = sizeof(type);
  return getsockopt(fd, SOL_SOCKET, SO_TYPE, &type, &size) == 0 &&
         (type == SOCK_DGRAM || type == SOCK_SEQPACKET);
}

/// Takes over a descriptor that the process inherited.
FrameEnd AdoptDescriptor(const std::string& text, std::string_view number) {
  const std::optional<std::uint32_t> fd = ParseDecimal(number, INT32_MAX);
  if (!fd) {
    throw LiveError(text + ": expected the number of an open descriptor behind \"fd:\"");
  }
  if (!KeepsFramesApart(static_cast<int>(*fd))) {
    throw LiveError(text +
                    ": expected an open socket that keeps frames apart (SOCK_SEQPACKET or "
                    "SOCK_DGRAM)");
  }
  return {Descriptor(static_cast<int>(*fd)), text};
}

}  // namespace

FrameEnd OpenFrameEnd(const std::string& text) {
  const std::size_t colon = text.find(':');
  const std::string_view kind = std::string_view(text).substr(0, colon);
  const std::string_view rest =
      colon == std::string::npos ? std::string_view() : std::string_view(text).substr(colon + 1);
  if (kind == "tap" && colon != std::string::npos) {
    return OpenTap(text, rest);
  }
  if (kind == "fd" && colon != std::string::npos) {
    return AdoptDescriptor(text, rest);
  }
  throw LiveError(text + ": expected tap:NAME, tap:NAME@NETNS or fd:N");
}

}  // namespace virtual_onu
