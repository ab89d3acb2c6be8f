/// @file
/// A descriptor that somebody owns.
#pragma once

namespace virtual_onu {

/// An open descriptor that is closed at its end.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor();
  Descriptor(Descriptor&& other) noexcept;
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor& operator=(Descriptor&&) = delete;

  [[nodiscard]] int get() const { return fd_; }

 private:
  int fd_;
};

}  // namespace virtual_onu
