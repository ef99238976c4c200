// libbinder subset: the base of every generated AIDL parcelable.
#pragma once

#include <utils/Errors.h>

namespace android {

class Parcel;

class Parcelable {
public:
    virtual ~Parcelable() = default;

    virtual status_t writeToParcel(Parcel* parcel) const = 0;
    virtual status_t readFromParcel(const Parcel* parcel) = 0;
};

}  // namespace android
