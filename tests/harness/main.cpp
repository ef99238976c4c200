// Test entry: the JVM comes up before the tests run, and the process ends without running
// static destructors, since service threads may still be blocked in the simulated
// service managers (no fork() is used either: the JVM is up).
#include <gtest/gtest.h>
#include <sim/log_capture.h>
#include <unistd.h>

#include <cstdio>

#include "jvm.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
    mmisim::LogCapture::Install();
    mmitest::Jvm::Get().Start();
    int result = RUN_ALL_TESTS();
    if (mmitest::HasJniWarning(mmitest::Jvm::Get().Output())) {
        std::fprintf(stderr, "the JVM printed a JNI warning (see above)\n");
        result = 1;
    }
    std::fflush(stdout);
    std::fflush(stderr);
    _exit(result);
}
