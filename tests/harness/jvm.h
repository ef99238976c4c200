// The test process's one Java VM: created on a thread of its own with -Xcheck:jni, its
// diagnostic output captured so that tests can fail on any JNI warning.
#pragma once

#include <jni.h>

#include <string>

namespace mmitest {

class Jvm {
public:
    static Jvm& Get();

    // Creates the VM (once) and attaches the calling thread.
    void Start();
    JavaVM* vm() const { return mVm; }
    // The calling thread's environment, attaching the thread if needed.
    JNIEnv* Env();

    // Everything the VM printed through its own output (checks, warnings, crashes).
    std::string Output() const;
    size_t OutputSize() const;

private:
    JavaVM* mVm = nullptr;
};

// Whether the text holds a JNI warning of -Xcheck:jni.
bool HasJniWarning(const std::string& vmOutput);

}  // namespace mmitest
