// The unit tests run in a single-threaded apartment, as the library's hosts do.
#include "core/runtime/Platform.h"

#include <gtest/gtest.h>

#include <string>

#include "TestSupport.h"

namespace vxtest {
std::wstring dllPath;
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        if (a.rfind("--vx-dll=", 0) == 0) vxtest::dllPath = std::wstring(a.begin() + 9, a.end());
    }
    OleInitialize(nullptr);
    int rc = RUN_ALL_TESTS();
    OleUninitialize();
    return rc;
}
