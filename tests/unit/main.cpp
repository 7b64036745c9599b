// The unit tests run in a single-threaded apartment, as the library's hosts do.
#include "core/runtime/Module.h"
#include "core/runtime/Platform.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "TestSupport.h"

namespace vxtest {
std::wstring dllPath;
}

namespace {

// After each test, the library's objects are as many as before it: a test that leaves
// one alive (a reference never released, a cycle) is named, and the run fails.
class LiveObjectCheck : public testing::EmptyTestEventListener {
public:
    void OnTestStart(const testing::TestInfo&) override { before_ = vx::module::liveObjects(); }
    void OnTestEnd(const testing::TestInfo& test) override {
        const long after = vx::module::liveObjects();
        if (after == before_) return;
        std::string name = std::string(test.test_suite_name()) + "." + test.name();
        std::printf("[  LEAKED  ] %s: %ld object(s) alive before, %ld after\n", name.c_str(), before_, after);
        std::fflush(stdout);
        leaks_.push_back(std::move(name));
    }
    void OnTestProgramEnd(const testing::UnitTest&) override {
        for (const std::string& name : leaks_) std::printf("[  LEAKED  ] %s\n", name.c_str());
    }
    bool clean() const { return leaks_.empty(); }

private:
    long before_ = 0;
    std::vector<std::string> leaks_;
};

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        if (a.rfind("--vx-dll=", 0) == 0) vxtest::dllPath = std::wstring(a.begin() + 9, a.end());
    }
    auto* liveObjects = new LiveObjectCheck;  // the listener list owns it
    testing::UnitTest::GetInstance()->listeners().Append(liveObjects);
    OleInitialize(nullptr);
    int rc = RUN_ALL_TESTS();
    if (rc == 0 && !liveObjects->clean()) rc = 1;
    OleUninitialize();
    return rc;
}
