// NDK binder subset: what generated NDK-backend AIDL headers include to read and write
// parcels. Host build: no parcel is ever written or read, so only AParcel is declared
// (android/binder_ibinder.h).
#pragma once

#include <android/binder_auto_utils.h>
#include <android/binder_ibinder.h>
