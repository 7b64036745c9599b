// Ds_AlphaMoney in-process: amounts and texts a script cannot pass. The word tables and
// every range rule are checked from a host (tests/host/alphamoney.vbs).
#include "text/AlphaMoney.h"

#include "TestSupport.h"

#include <cmath>
#include <limits>

using namespace vx;

TEST(AlphaMoney, AmountsNoScriptCanWrite) {
    auto m = AlphaMoney::create();
    EXPECT_EQ(m->convert(-0.0), m->convert(0));  // zero in words
    EXPECT_EQ(m->convert(std::numeric_limits<double>::infinity()), m->convert(1e12));  // the out-of-range text
    EXPECT_EQ(m->convert(std::nan("")), L"");
    EXPECT_EQ(m->convert(-std::numeric_limits<double>::infinity()), L"");
}

TEST(AlphaMoney, PropertiesStoreTheirTextUnchanged) {
    // Embedded NULs are kept; a null string is the empty one.
    auto m = AlphaMoney::create();
    Bstr value, withNul(std::wstring_view(L"a\0b", 3));
    BSTR b = withNul.get();
    ASSERT_EQ(m->put_AlphaAnd(&b), S_OK);
    m->get_AlphaAnd(value.put());
    EXPECT_EQ(value.length(), 3u);
    const std::wstring twenty = m->convert(20), one = m->convert(1);
    EXPECT_EQ(m->convert(21), twenty + std::wstring(L"a\0b", 3) + one);
    b = nullptr;
    EXPECT_EQ(m->put_AlphaThousand(&b), S_OK);
    EXPECT_EQ(m->convert(1000), one);
    EXPECT_EQ(m->put_AlphaAnd(nullptr), E_POINTER);
}
