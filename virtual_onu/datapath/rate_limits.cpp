/// @file
/// The token buckets.
#include "datapath/rate_limits.h"

#include <algorithm>

namespace virtual_onu {
namespace {

constexpr std::uint64_t AmountOf(std::size_t octets) {
  constexpr std::uint64_t kBitsPerOctet = 8;
  constexpr std::uint64_t kAmountsPerBit = 1000;
  return octets * kBitsPerOctet * kAmountsPerBit;
}

}  // namespace

TokenBucket::TokenBucket(std::uint32_t octets) : size_(AmountOf(octets)), level_(size_) {}

std::uint64_t TokenBucket::levelAt(std::uint32_t rate, std::uint64_t now) const {
  // Beyond this time the bucket is full whatever its level was, and the product could overflow.
  const std::uint64_t elapsed = now - since_;
  if (rate != 0 && elapsed > size_ / rate) {
    return size_;
  }
  return std::min(size_, level_ + elapsed * rate);
}

bool TokenBucket::holds(std::size_t octets, std::uint32_t rate, std::uint64_t now) const {
  return AmountOf(octets) <= levelAt(rate, now);
}

std::uint64_t TokenBucket::octets(std::uint32_t rate, std::uint64_t now) const {
  return levelAt(rate, now) / AmountOf(1);
}

void TokenBucket::take(std::size_t octets, std::uint32_t rate, std::uint64_t now) {
  level_ = levelAt(rate, now) - AmountOf(octets);
  since_ = now;
}

std::optional<Limits::Rate> Limits::policerOf(std::uint32_t uni) const {
  const auto found = tables_->policers.find(uni);
  if (found == tables_->policers.end()) {
    return std::nullopt;
  }
  const Policer& policer = found->second;
  return Rate{policer.cfg.rate, policer.cfg.burst, policer.serial};
}

std::optional<Limits::Rate> Limits::limitOf(std::uint32_t uni) const {
  const auto found = tables_->dsLimits.find(uni);
  if (found == tables_->dsLimits.end()) {
    return std::nullopt;
  }
  return Rate{found->second.rate, kDownstreamBurst, found->second.serial};
}

TokenBucket Limits::bucketOf(const Buckets& buckets, std::uint32_t uni, const Rate& rate) {
  const auto found = buckets.find(uni);
  return found != buckets.end() && found->second.serial == rate.serial ? found->second.bucket
                                                                       : TokenBucket(rate.burst);
}

bool Limits::admits(const Buckets& buckets, std::uint32_t uni, const std::optional<Rate>& rate,
                    std::size_t octets) const {
  return !rate || bucketOf(buckets, uni, *rate).holds(octets, rate->bits, clock_->milliseconds());
}

void Limits::count(Buckets& buckets, std::uint32_t uni, const std::optional<Rate>& rate,
                   std::size_t octets) const {
  if (rate) {
    TokenBucket bucket = bucketOf(buckets, uni, *rate);
    bucket.take(octets, rate->bits, clock_->milliseconds());
    buckets.insert_or_assign(uni, Counted{rate->serial, bucket});
  }
}

bool Limits::policerAdmits(std::uint32_t uni, std::size_t octets) const {
  return admits(policed_, uni, policerOf(uni), octets);
}

std::optional<std::uint64_t> Limits::policerTokens(std::uint32_t uni) const {
  const std::optional<Rate> rate = policerOf(uni);
  if (!rate) {
    return std::nullopt;
  }
  return bucketOf(policed_, uni, *rate).octets(rate->bits, clock_->milliseconds());
}

void Limits::countPoliced(std::uint32_t uni, std::size_t octets) {
  count(policed_, uni, policerOf(uni), octets);
}

bool Limits::limitAdmits(std::uint32_t uni, std::size_t octets) const {
  return admits(limited_, uni, limitOf(uni), octets);
}

void Limits::countLimited(std::uint32_t uni, std::size_t octets) {
  count(limited_, uni, limitOf(uni), octets);
}

}  // namespace virtual_onu
