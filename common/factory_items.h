// Text items of the factory service's device information, addressed by number, and the
// items that can be cleared.
#pragma once

#include <cstdint>

namespace mmi {

constexpr int32_t DEVICE_INFO_BSN = 0;
constexpr int32_t DEVICE_INFO_MMI_AUTO_START = 5;
constexpr int32_t DEVICE_INFO_SIGNATURE = 11;
constexpr int32_t DEVICE_INFO_NM_CARD = 14;
constexpr int32_t DEVICE_INFO_TEST_APK_PACKAGE = 35;
constexpr int32_t DEVICE_INFO_RSA_SIGN = 44;

constexpr int32_t CLEAR_ITEM_PACKAGE_NAME = 4;

}  // namespace mmi
