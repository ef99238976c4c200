// HIDL runtime subset: fast message queue descriptors. Every generated HIDL header includes
// this file; the vendor interfaces of this library pass no message queues, so only the names
// are declared.
#pragma once

#include <cstdint>

namespace android {
namespace hardware {

enum MQFlavor : uint32_t {
    kSynchronizedReadWrite = 0x01,
    kUnsynchronizedWrite = 0x02,
};

template <typename T, MQFlavor flavor>
struct MQDescriptor;

}  // namespace hardware
}  // namespace android
