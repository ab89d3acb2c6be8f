/// @file
/// The VLAN tag helpers: reading, adding, rewriting and removing the outer tag of a frame.
#include <cstdint>
#include <cstring>

#include <hal_bcm6838x.h>

#include "hal_bcm6838x_frame.h"
#include "hal_bcm6838x_log.h"

using namespace hal;

namespace {

/// Bytes that tell all tags of a frame that are looked at.
constexpr uint32_t kTagBytes = kTypeOffset + kTagSize + kTypeSize;

/// The control word of a tag; the drop-eligible bit is always 0.
// Required: written-tags-clear-dei
void WriteTagControl(uint8_t* frame, uint32_t vid, uint32_t priority) {
  frame[14] = static_cast<uint8_t>((priority << 5U) + ((vid >> 8U) & 0x0F));
  frame[15] = static_cast<uint8_t>(vid);
}

bool HasCustomerTag(const uint8_t* frame) {
  return LoadU16(frame + kTypeOffset) == kTypeCustomerTag;
}

}  // namespace

uint32_t BCM6838X_GetTag(const uint8_t* frame, uint16_t* vid, uint16_t* pri) {
  if (HAL_IS_NULL(frame, vid, pri)) {
    return 0;
  }
  const TagRead tag = ReadTag({frame, kTagBytes});
  if (tag.count != 0) {
    *vid = static_cast<uint16_t>(tag.vid);
    *pri = static_cast<uint16_t>(tag.priority);
  }
  return tag.count;
}

uint32_t BCM6838X_RemoveVlanTag(uint8_t* frame, uint32_t* size) {
  constexpr uint32_t kBehindTag = kTypeOffset + kTagSize;
  if (HAL_IS_NULL(frame, size)) {
    return BCM6838X_INVALID;
  }
  if (*size < kBehindTag || !HasCustomerTag(frame)) {
    return BCM6838X_FAILED;
  }
  if (*size > kFrameCapacity) {
    HAL_LOG_HERE(LOG_LEVEL_INVALID, "%s(%d), frame of %u bytes is too long\r\n", *size);
    return BCM6838X_FAILED;
  }
  memmove(frame + kTypeOffset, frame + kBehindTag, *size - kBehindTag);
  *size -= kTagSize;
  return BCM6838X_OK;
}

uint32_t BCM6838X_TranslateVlanTag(uint8_t* frame, uint32_t vid, uint32_t pri) {
  if (HAL_IS_NULL(frame)) {
    return BCM6838X_INVALID;
  }
  if (!HasCustomerTag(frame)) {
    return BCM6838X_FAILED;
  }
  WriteTagControl(frame, vid, pri);
  return BCM6838X_OK;
}

uint32_t BCM6838X_AddVlanTag(uint8_t* frame, uint32_t* size, uint32_t vid, uint32_t pri) {
  if (HAL_IS_NULL(frame, size)) {
    return BCM6838X_OK;
  }
  if (!HasRoomForTag(*size)) {
    HAL_LOG_HERE(LOG_LEVEL_INVALID, "%s(%d), frame of %u bytes cannot gain a tag\r\n", *size);
    return BCM6838X_OK;
  }
  memmove(frame + kTypeOffset + kTagSize, frame + kTypeOffset, *size - kTypeOffset);
  *size += kTagSize;
  frame[12] = kTypeCustomerTag >> 8U;
  frame[13] = kTypeCustomerTag & 0xFF;
  WriteTagControl(frame, vid, pri);
  return BCM6838X_OK;
}
