/// @file
/// The token buckets.
#include "datapath/limits.h"

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

Limits::PolicerBucket Limits::bucketOf(std::uint32_t uni, const Policer& policer) const {
  const auto found = policed_.find(uni);
  return found != policed_.end() && found->second.serial == policer.serial
             ? found->second
             : PolicerBucket{policer.serial, TokenBucket(policer.cfg.burst)};
}

bool Limits::policerAdmits(std::uint32_t uni, std::size_t octets) const {
  const auto policer = tables_->policers.find(uni);
  return policer == tables_->policers.end() ||
         bucketOf(uni, policer->second)
             .bucket.holds(octets, policer->second.cfg.rate, clock_->milliseconds());
}

std::optional<std::uint64_t> Limits::policerTokens(std::uint32_t uni) const {
  const auto policer = tables_->policers.find(uni);
  if (policer == tables_->policers.end()) {
    return std::nullopt;
  }
  return bucketOf(uni, policer->second)
      .bucket.octets(policer->second.cfg.rate, clock_->milliseconds());
}

void Limits::countPoliced(std::uint32_t uni, std::size_t octets) {
  const auto policer = tables_->policers.find(uni);
  if (policer == tables_->policers.end()) {
    return;
  }
  PolicerBucket bucket = bucketOf(uni, policer->second);
  bucket.bucket.take(octets, policer->second.cfg.rate, clock_->milliseconds());
  policed_.insert_or_assign(uni, bucket);
}

bool Limits::limitAdmits(std::uint32_t uni, std::size_t octets) const {
  const auto rate = tables_->dsLimits.find(uni);
  if (rate == tables_->dsLimits.end()) {
    return true;
  }
  const auto found = limited_.find(uni);
  const TokenBucket bucket =
      found == limited_.end() ? TokenBucket(kDownstreamBurst) : found->second;
  return bucket.holds(octets, rate->second, clock_->milliseconds());
}

void Limits::countLimited(std::uint32_t uni, std::size_t octets) {
  const auto rate = tables_->dsLimits.find(uni);
  if (rate != tables_->dsLimits.end()) {
    limited_.try_emplace(uni, kDownstreamBurst)
        .first->second.take(octets, rate->second, clock_->milliseconds());
  }
}

}  // namespace virtual_onu
