/// @file
/// The loop's turn, and the ways in and out.
#include "live/pump.h"

#include <cerrno>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace virtual_onu {

void Pump::bind(PortId port, FrameEnd end) {
  const std::lock_guard lock(mutex_);
  if (!ends_.try_emplace(port, std::move(end)).second) {
    throw std::logic_error(port.name() + " is bound already");
  }
  sources_.push_back(port);
  traffic_[port];
}

bool Pump::turn(int stop, std::chrono::milliseconds wait) {
  if (sources_.empty()) {
    return false;
  }
  std::vector<pollfd> polled = {{stop, POLLIN, 0}};
  for (const PortId port : sources_) {
    polled.push_back({ends_.at(port).fd(), POLLIN, 0});
  }
  if (poll(polled.data(), polled.size(), static_cast<int>(wait.count())) < 0) {
    return errno == EINTR;
  }
  if (polled.front().revents != 0) {
    return false;
  }
  std::vector<PortId> left;
  for (std::size_t i = 0; i < sources_.size(); ++i) {
    if (polled[i + 1].revents == 0 || drain(sources_[i])) {
      left.push_back(sources_[i]);
    }
  }
  sources_ = std::move(left);
  return !sources_.empty();
}

bool Pump::drain(PortId port) {
  const FrameEnd& end = ends_.at(port);
  for (int i = 0; i < kFramesPerTurn; ++i) {
    const Received received = end.receive(frame_);
    if (received == Received::Frame) {
      take(port, frame_);
      continue;
    }
    if (received == Received::Gone && calls_.gone) {
      calls_.gone(port, end);
    }
    return received != Received::Gone;
  }
  return true;
}

void Pump::take(PortId port, ByteView frame) {
  const Verdict verdict = calls_.receive(port, frame);
  {
    const std::lock_guard lock(mutex_);
    PortTraffic& traffic = traffic_[port];
    ++traffic.framesIn;
    traffic.octetsIn += frame.size();
    ++traffic.outcomes[verdict.outcome];
    traffic.eventsLost += verdict.eventLoss ? 1 : 0;
  }
  for (const Delivery& delivery : verdict.deliveries) {
    putOut(delivery.port, delivery.frame, false);
  }
  for (const MirrorCopy& copy : verdict.copies) {
    if (copy.outcome == Outcome::Mirrored) {
      putOut(copy.port, copy.frame, false);
    }
  }
}

void Pump::transmit(PortId port, ByteView frame) {
  putOut(port, frame, true);
}

void Pump::putOut(PortId port, ByteView frame, bool ofLibrary) {
  const std::lock_guard lock(mutex_);
  PortTraffic& traffic = traffic_[port];
  const auto end = ends_.find(port);
  if (end == ends_.end() || !end->second.send(frame)) {
    ++traffic.lost;
    return;
  }
  ++traffic.framesOut;
  traffic.octetsOut += frame.size();
  traffic.transmitted += ofLibrary ? 1 : 0;
}

std::map<PortId, PortTraffic> Pump::traffic() const {
  const std::lock_guard lock(mutex_);
  return traffic_;
}

}  // namespace virtual_onu
