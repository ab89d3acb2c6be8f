/// @file
/// The policers of the upstream side and the rate limits of the downstream side: a token bucket for
/// each UNI port and side. Which frames are held against them is the data path's matter.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>

#include "base/clock.h"
#include "device/qos_tables.h"

namespace virtual_onu {

/// A bucket that begins full and fills at the rate that each call gives. Amounts are thousandths of
/// a bit, which is what 1 bit/s gives in a millisecond, so that nothing is rounded.
class TokenBucket {
 public:
  explicit TokenBucket(std::uint32_t octets);

  /// Tells whether there is enough for a frame of that length.
  [[nodiscard]] bool holds(std::size_t octets, std::uint32_t rate, std::uint64_t now) const;

  /// What the bucket holds, in whole octets.
  [[nodiscard]] std::uint64_t octets(std::uint32_t rate, std::uint64_t now) const;

  /// Takes what a frame needs, which the bucket holds.
  void take(std::size_t octets, std::uint32_t rate, std::uint64_t now);

 private:
  [[nodiscard]] std::uint64_t levelAt(std::uint32_t rate, std::uint64_t now) const;

  std::uint64_t size_;
  std::uint64_t level_;
  std::uint64_t since_ = 0;  ///< milliseconds
};

/// A port without a policer or a limit lets every frame pass.
class Limits {
 public:
  /// What a downstream limit lets pass at once, in octets: as much as a policer of the library.
  static constexpr std::uint32_t kDownstreamBurst = 501536;

  Limits(const QosTables& tables, const Clock& clock) : tables_(&tables), clock_(&clock) {}

  /// Tells whether the policer of a UNI port lets a frame of that length pass now.
  [[nodiscard]] bool policerAdmits(std::uint32_t uni, std::size_t octets) const;

  /// What the policer of a UNI port holds now, in octets; nothing when the port has none.
  [[nodiscard]] std::optional<std::uint64_t> policerTokens(std::uint32_t uni) const;

  /// Tells whether the downstream limit of a UNI port does.
  [[nodiscard]] bool limitAdmits(std::uint32_t uni, std::size_t octets) const;

  /// Counts a frame that the policer let pass.
  void countPoliced(std::uint32_t uni, std::size_t octets);

  /// Counts a frame that the limit let pass.
  void countLimited(std::uint32_t uni, std::size_t octets);

 private:
  /// A policer or a limit in force.
  struct Rate {
    std::uint32_t bits;  ///< per second
    std::uint32_t burst;
    std::uint64_t serial;
  };

  /// A bucket from which a frame was taken, and whose it is.
  struct Counted {
    std::uint64_t serial;
    TokenBucket bucket;
  };

  /// By UNI port number.
  using Buckets = std::map<std::uint32_t, Counted>;

  [[nodiscard]] std::optional<Rate> policerOf(std::uint32_t uni) const;
  [[nodiscard]] std::optional<Rate> limitOf(std::uint32_t uni) const;

  /// The port's bucket; a full one when no frame was counted since the rate was set.
  [[nodiscard]] static TokenBucket bucketOf(const Buckets& buckets, std::uint32_t uni,
                                            const Rate& rate);

  [[nodiscard]] bool admits(const Buckets& buckets, std::uint32_t uni,
                            const std::optional<Rate>& rate, std::size_t octets) const;
  void count(Buckets& buckets, std::uint32_t uni, const std::optional<Rate>& rate,
             std::size_t octets) const;

  const QosTables* tables_;
  const Clock* clock_;
  Buckets policed_;
  Buckets limited_;
};

}  // namespace virtual_onu
