// libbinder subset: the parcel, as generated AIDL code names it. Host build: calls travel as
// direct C++ calls between the objects of one process, so no parcel is ever written or read;
// the type is only declared.
#pragma once

#include <binder/IBinder.h>
#include <binder/Parcelable.h>
#include <utils/Errors.h>

namespace android {

class Parcel;

}  // namespace android
