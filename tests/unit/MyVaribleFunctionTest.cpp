// Ds_MyVaribleFunction: the field extractor, the comparer, the array bound, the Null
// substitute and the key test, called by name as a late-bound host calls them (so the
// declared defaults and by-reference arguments are those of the type library).
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/SafeArray.h"
#include "text/MyVaribleFunction.h"

#include "TestSupport.h"
#include "Vx_Main.h"

using namespace vx;
using vxtest::byRef;
using vxtest::call;

namespace {

ComPtr<IDispatch> newHelper() { return vxtest::createObject(CLSID_Ds_MyVaribleFunction); }

Variant text(const wchar_t* s) { return Variant::fromText(s); }
Variant num(long n) { return Variant::fromLong(n); }

Variant array(std::vector<Variant> items) { return makeVariantArray(items); }

// A two-dimensional array of Variants, rows by columns, indexed from 0.
Variant table(const std::vector<std::vector<const wchar_t*>>& rows) {
    SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(rows.size()), 0}, {static_cast<ULONG>(rows[0].size()), 0}};
    SAFEARRAY* sa = SafeArrayCreate(VT_VARIANT, 2, bounds);
    for (LONG i = 0; i < static_cast<LONG>(rows.size()); ++i)
        for (LONG j = 0; j < static_cast<LONG>(rows[0].size()); ++j) {
            LONG idx[2] = {i, j};
            Variant v = text(rows[static_cast<size_t>(i)][static_cast<size_t>(j)]);
            SafeArrayPutElement(sa, idx, v.get());
        }
    Variant out;
    V_VT(out.get()) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(out.get()) = sa;
    return out;
}

// A dynamic array that was declared but never sized.
Variant unallocated() {
    Variant out;
    V_VT(out.get()) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(out.get()) = nullptr;
    return out;
}

// An array of n Variants with the given lower bound.
Variant arrayFrom(long lower, unsigned long n) {
    SAFEARRAYBOUND bound{n, lower};
    Variant out;
    V_VT(out.get()) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(out.get()) = SafeArrayCreate(VT_VARIANT, 1, &bound);
    return out;
}

struct Helper {
    ComPtr<IDispatch> object = newHelper();

    vxtest::CallResult getVar(std::vector<Variant> args) { return call(object.get(), L"GetVar", std::move(args)); }
    // GetVar's result as text, or "<Empty>" when it is Empty; a raised error fails the test.
    std::wstring field(std::vector<Variant> args) {
        auto r = getVar(std::move(args));
        EXPECT_EQ(r.errorNumber(), 0);
        if (isEmpty(*r.value)) return L"<Empty>";
        EXPECT_EQ(r.value.type(), VT_BSTR);
        return vxtest::textOf(r.value);
    }
    vxtest::CallResult isEqute(std::vector<Variant> args) { return call(object.get(), L"IsEqute", std::move(args)); }
    // IsEqute's answer; -1 when the call raised an error (its number is in lastError).
    int equal(std::vector<Variant> args) {
        auto r = isEqute(std::move(args));
        lastError = r.errorNumber();
        if (lastError) return -1;
        EXPECT_EQ(r.value.type(), VT_BOOL);
        return toBool(*r.value) ? 1 : 0;
    }
    long countUBound(Variant v) {
        auto r = call(object.get(), L"CountUBound", {byRef(v)});
        EXPECT_EQ(r.errorNumber(), 0);
        EXPECT_EQ(r.value.type(), VT_I2);
        return vxtest::longOf(r.value);
    }
    int lastError = 0;
};

const Variant kLast = num(1), kSelect = num(2), kLeftPath = num(3), kRightPath = num(4), kFromIndex = num(5),
              kFromTo = num(6);
const Variant kText = num(1), kArray = num(2), kJustCount = num(3), kJustText = num(4), kLeft = num(5),
              kRight = num(6), kFind = num(7);

}  // namespace

TEST(MyVaribleFunction, GetVarPicksFieldsOfText) {
    Helper h;
    EXPECT_EQ(h.field({text(L"a,b,c")}), L"a");  // index 0, separator ",", field at the index
    EXPECT_EQ(h.field({text(L"a,b,c"), num(2)}), L"c");
    EXPECT_EQ(h.field({text(L"a,b,c"), num(3)}), L"<Empty>");
    EXPECT_EQ(h.field({text(L"a,b,c"), num(-1)}), L"<Empty>");
    EXPECT_EQ(h.field({text(L"a,b,c"), text(L"1")}), L"b");  // the index is converted
    EXPECT_EQ(h.field({text(L"a,,c"), num(1)}), L"");
    // The split is binary: case matters, and the separator may be longer than one character.
    EXPECT_EQ(h.field({text(L"oneXtwoxthree"), num(1), text(L"x")}), L"three");
    EXPECT_EQ(h.field({text(L"a::b::c"), num(2), text(L"::")}), L"c");
    // A number is read as its text.
    EXPECT_EQ(h.field({num(12345), num(1), text(L"3")}), L"45");

    const Variant path = text(L"C:\\x\\y.txt"), slash = text(L"\\"), zero = num(0);
    EXPECT_EQ(h.field({path, zero, slash, kLeftPath}), L"C:\\x");
    EXPECT_EQ(h.field({path, zero, slash, kRightPath}), L"x\\y.txt");
    EXPECT_EQ(h.field({path, zero, slash, kLast}), L"y.txt");
    EXPECT_EQ(h.field({text(L"C:\\a\\b\\c.txt"), zero, slash, kLeftPath}), L"C:\\a\\b");

    const Variant steps = text(L"a/b/c/d"), one = num(1), sep = text(L"/");
    EXPECT_EQ(h.field({steps, one, sep, kFromIndex}), L"b/c/d");
    EXPECT_EQ(h.field({steps, one, sep, kFromTo}), L"b/c");  // the last index defaults to 2
    EXPECT_EQ(h.field({steps, one, sep, kFromTo, num(3)}), L"b/c/d");
    EXPECT_EQ(h.field({steps, num(2), sep, kFromTo, num(2)}), L"c");
    // Indexes outside the fields fail one by one and are skipped.
    EXPECT_EQ(h.field({steps, one, sep, kFromTo, num(2000000000)}), L"b/c/d");
    EXPECT_EQ(h.field({steps, num(-3), sep, kFromIndex}), L"a/b/c/d");
    EXPECT_EQ(h.field({steps, num(4), sep, kFromIndex}), L"<Empty>");
    EXPECT_EQ(h.field({steps, num(3), sep, kFromTo, num(1)}), L"<Empty>");
    EXPECT_EQ(h.field({steps, one, sep, num(7)}), L"<Empty>");  // not a mode
    EXPECT_EQ(h.field({steps, one, sep, num(0)}), L"<Empty>");
}

TEST(MyVaribleFunction, GetVarOfTextWithoutTheSeparator) {
    Helper h;
    const Variant word = text(L"word"), zero = num(0), comma = text(L",");
    EXPECT_EQ(h.field({word, zero, comma, kLast}), L"word");
    EXPECT_EQ(h.field({word, zero, comma, kSelect}), L"word");
    // Everything before the last (after the first) separator has a negative length.
    EXPECT_EQ(h.field({word, zero, comma, kLeftPath}), L"<Empty>");
    EXPECT_EQ(h.field({word, zero, comma, kRightPath}), L"<Empty>");
    EXPECT_EQ(h.field({word, zero, comma, kFromIndex}), L"word");
    // Empty text has no fields at all.
    for (const Variant* mode : {&kLast, &kSelect, &kLeftPath, &kRightPath, &kFromIndex, &kFromTo})
        EXPECT_EQ(h.field({text(L""), zero, comma, *mode}), L"<Empty>");
    // An empty separator keeps the text as its one field.
    EXPECT_EQ(h.field({text(L"a,b"), zero, text(L"")}), L"a,b");
    EXPECT_EQ(h.field({text(L"a,b"), zero, text(L""), kFromIndex}), L"a,b");
}

TEST(MyVaribleFunction, GetVarJoinsArrays) {
    Helper h;
    const Variant minusOne = num(-1), comma = text(L",");
    EXPECT_EQ(h.field({array({text(L"x"), text(L"y")}), minusOne}), L"x,y");
    EXPECT_EQ(h.field({array({text(L"x"), num(2), Variant::fromBool(true)}), minusOne, text(L" | ")}),
              L"x | 2 | True");
    // The mode does not matter for arrays.
    EXPECT_EQ(h.field({array({text(L"x"), text(L"y")}), minusOne, comma, kLast}), L"x,y");
    // Column nIndex of each row of a two-dimensional array.
    const Variant rows = table({{L"a", L"1"}, {L"b", L"2"}, {L"c", L"3"}});
    EXPECT_EQ(h.field({rows, num(0), text(L";")}), L"a;b;c");
    EXPECT_EQ(h.field({rows, num(1), text(L";")}), L"1;2;3");
    EXPECT_EQ(h.field({rows, num(2), text(L";")}), L"<Empty>");  // no such column
    // A one-dimensional array read as two-dimensional (the index defaults to 0) has no elements to give.
    EXPECT_EQ(h.field({array({text(L"x"), text(L"y")})}), L"<Empty>");
    EXPECT_EQ(h.field({array({}), minusOne}), L"<Empty>");
    EXPECT_EQ(h.field({unallocated(), minusOne}), L"<Empty>");
    // An element that cannot be text is skipped; Null adds nothing but its separator.
    EXPECT_EQ(h.field({array({text(L"a"), array({num(1)}), Variant::null(), text(L"c")}), minusOne}), L"a,,c");
    // Elements are read from index 0: those below the lower bound do not exist.
    EXPECT_EQ(h.field({arrayFrom(1, 2), minusOne, text(L"-")}), L"-");  // two Empty elements, 1 and 2
    EXPECT_EQ(h.field({array({text(L"a"), text(L"b")}), minusOne, text(L"")}), L"ab");
}

TEST(MyVaribleFunction, GetVarNeverRaises) {
    Helper h;
    auto none = [&](std::vector<Variant> args) { return h.field(std::move(args)); };
    EXPECT_EQ(none({Variant::null()}), L"<Empty>");
    EXPECT_EQ(none({text(L"a,b"), Variant::null()}), L"<Empty>");
    EXPECT_EQ(none({text(L"a,b"), text(L"x")}), L"<Empty>");
    EXPECT_EQ(none({text(L"a,b"), num(0), Variant::null()}), L"<Empty>");
    EXPECT_EQ(none({text(L"a,b"), num(0), array({})}), L"<Empty>");
    EXPECT_EQ(none({text(L"a,b"), Variant::fromDouble(1e20)}), L"<Empty>");
    EXPECT_EQ(none({Variant::fromDispatch(newHelper().get())}), L"<Empty>");  // no default value
    EXPECT_EQ(none({Variant::fromDispatch(nullptr)}), L"<Empty>");
    EXPECT_EQ(none({text(L"a,b"), num(0), text(L","), kFromTo, text(L"x")}), L"<Empty>");
    // A Null separator joins the array elements with nothing and leaves the text alone.
    EXPECT_EQ(none({array({text(L"a"), text(L"b")}), num(-1), Variant::null()}), L"ab");
}

TEST(MyVaribleFunction, GetVarLeavesItsArgumentsAlone) {
    Helper h;
    Variant data = text(L"A,B"), index = num(1), sep = text(L",");
    EXPECT_EQ(h.field({byRef(data), byRef(index), byRef(sep)}), L"B");
    EXPECT_EQ(vxtest::textOf(data), L"A,B");
    EXPECT_EQ(index.type(), VT_I4);
    EXPECT_EQ(vxtest::textOf(sep), L",");
}

TEST(MyVaribleFunction, IsEquteComparesTextIgnoringCase) {
    Helper h;
    EXPECT_EQ(h.equal({text(L"ABC"), text(L"abc")}), 1);
    EXPECT_EQ(h.equal({text(L"abc"), text(L"abd")}), 0);
    EXPECT_EQ(h.equal({num(5), text(L"5")}), 1);
    EXPECT_EQ(h.equal({Variant(), text(L"")}), 1);
    EXPECT_EQ(h.equal({Variant::null(), Variant::null()}), 0);  // Null equals nothing
    EXPECT_EQ(h.equal({text(L"a"), text(L"a"), num(99)}), 0);  // not a mode
    EXPECT_EQ(h.equal({array({text(L"a")}), text(L"a")}), -1);
    EXPECT_EQ(h.lastError, 13);
}

TEST(MyVaribleFunction, IsEquteArraysAsSets) {
    Helper h;
    auto ab = array({text(L"a"), text(L"b")});
    EXPECT_EQ(h.equal({ab, array({text(L"B"), text(L"A")}), kArray}), 1);
    EXPECT_EQ(h.equal({ab, array({text(L"a"), text(L"c")}), kArray}), 0);
    // Each element needs an equal somewhere in the other array, not a partner of its own.
    EXPECT_EQ(h.equal({array({text(L"a"), text(L"a")}), ab, kArray}), 1);
    EXPECT_EQ(h.equal({ab, array({text(L"a"), text(L"a")}), kArray}), 0);
    EXPECT_EQ(h.equal({ab, array({text(L"a"), text(L"b"), text(L"a")}), kArray}), 0);  // sizes differ
    EXPECT_EQ(h.equal({array({text(L"a"), text(L"b"), text(L"a")}), ab, kArray}), 0);
    EXPECT_EQ(h.equal({array({}), array({}), kArray}), 1);
    EXPECT_EQ(h.equal({array({num(1), Variant::null()}), array({text(L"1"), Variant::null()}), kArray}), 0);

    // By position.
    EXPECT_EQ(h.equal({ab, array({text(L"A"), text(L"B")}), kJustCount}), 1);
    EXPECT_EQ(h.equal({ab, array({text(L"b"), text(L"a")}), kJustCount}), 0);
    EXPECT_EQ(h.equal({ab, array({text(L"a")}), kJustCount}), 0);

    // Array modes need arrays; unsized ones have no bound; elements must be text.
    EXPECT_EQ(h.equal({text(L"a"), ab, kArray}), -1);
    EXPECT_EQ(h.lastError, 13);
    EXPECT_EQ(h.equal({ab, text(L"a"), kJustCount}), -1);
    EXPECT_EQ(h.lastError, 13);
    EXPECT_EQ(h.equal({unallocated(), ab, kArray}), -1);
    EXPECT_EQ(h.lastError, 9);
    EXPECT_EQ(h.equal({array({array({})}), array({text(L"x")}), kArray}), -1);
    EXPECT_EQ(h.lastError, 13);
    // An element is read only when something is compared with it.
    EXPECT_EQ(h.equal({array({text(L"a")}), array({text(L"a"), array({})}), kArray}), 0);
    EXPECT_EQ(h.equal({array({}), array({array({})}), kArray}), 0);
    // Elements are read from index 0.
    EXPECT_EQ(h.equal({arrayFrom(1, 2), arrayFrom(1, 2), kJustCount}), -1);
    EXPECT_EQ(h.lastError, 9);
}

TEST(MyVaribleFunction, IsEquteLargeArraysStayFast) {
    Helper h;
    std::vector<Variant> a, b;
    for (long i = 0; i < 20000; ++i) {
        a.push_back(text((L"Item" + std::to_wstring(i)).c_str()));
        b.push_back(text((L"ITEM" + std::to_wstring(19999 - i)).c_str()));
    }
    EXPECT_EQ(h.equal({array(a), array(b), kArray}), 1);
    b[5000] = text(L"other");
    EXPECT_EQ(h.equal({array(a), array(b), kArray}), 0);
}

TEST(MyVaribleFunction, IsEquteJustTextAnswersNotInTheList) {
    Helper h;
    EXPECT_EQ(h.equal({text(L"x"), array({text(L"a"), text(L"X")}), kJustText}), 0);
    EXPECT_EQ(h.equal({text(L"x"), array({text(L"a"), text(L"b")}), kJustText}), 1);
    EXPECT_EQ(h.equal({text(L"x"), array({}), kJustText}), 1);
    EXPECT_EQ(h.equal({Variant::null(), array({Variant::null()}), kJustText}), 1);
    EXPECT_EQ(h.equal({text(L"x"), text(L"x"), kJustText}), -1);
    EXPECT_EQ(h.lastError, 13);
    EXPECT_EQ(h.equal({array({}), array({text(L"x")}), kJustText}), -1);
    EXPECT_EQ(h.lastError, 13);
}

TEST(MyVaribleFunction, IsEquteLeftAndRight) {
    Helper h;
    EXPECT_EQ(h.equal({text(L"Hello"), text(L"he"), kLeft}), 1);
    EXPECT_EQ(h.equal({text(L"Hello"), text(L"lo"), kLeft}), 0);
    EXPECT_EQ(h.equal({text(L"Hello"), text(L"LO"), kRight}), 1);
    EXPECT_EQ(h.equal({text(L"Hello"), text(L"he"), kRight}), 0);
    EXPECT_EQ(h.equal({text(L"He"), text(L"Hello"), kLeft}), 0);
    EXPECT_EQ(h.equal({text(L"Hello"), text(L""), kRight}), 1);
    EXPECT_EQ(h.equal({num(2006), num(6), kRight}), 1);
    EXPECT_EQ(h.equal({Variant::null(), text(L"a"), kLeft}), -1);
    EXPECT_EQ(h.lastError, 94);
    EXPECT_EQ(h.equal({text(L"a"), Variant::null(), kRight}), -1);
    EXPECT_EQ(h.lastError, 94);
    EXPECT_EQ(h.equal({array({}), text(L"a"), kLeft}), -1);
    EXPECT_EQ(h.lastError, 13);
}

TEST(MyVaribleFunction, IsEquteFindLowerCasesTheCallersVariables) {
    Helper h;
    Variant a = text(L"Hello World"), b = text(L"WORLD");
    EXPECT_EQ(h.equal({byRef(a), byRef(b), kFind}), 1);
    EXPECT_EQ(vxtest::textOf(a), L"hello world");
    EXPECT_EQ(vxtest::textOf(b), L"world");

    Variant n = num(42), missing = text(L"Nope");
    EXPECT_EQ(h.equal({byRef(n), byRef(missing), kFind}), 0);
    EXPECT_EQ(n.type(), VT_BSTR);  // the variable now holds the lower-cased text
    EXPECT_EQ(vxtest::textOf(n), L"42");
    EXPECT_EQ(vxtest::textOf(missing), L"nope");

    Variant any = text(L"ABC"), nothing = text(L"");
    EXPECT_EQ(h.equal({byRef(any), byRef(nothing), kFind}), 1);  // an empty text is found in any other
    EXPECT_EQ(h.equal({text(L""), text(L""), kFind}), 0);        // but nothing is found in empty text
    Variant null = Variant::null(), c = text(L"C");
    EXPECT_EQ(h.equal({byRef(null), byRef(c), kFind}), 0);
    EXPECT_TRUE(isNull(*null));
    EXPECT_EQ(vxtest::textOf(c), L"c");

    // A typed reference (a host variable declared As String) is written as text too.
    Bstr typed(L"MiXeD");
    BSTR slot = typed.detach();
    Variant ref;
    V_VT(ref.get()) = VT_BYREF | VT_BSTR;
    V_BSTRREF(ref.get()) = &slot;
    Variant find = text(L"X");
    EXPECT_EQ(h.equal({ref, byRef(find), kFind}), 1);
    EXPECT_EQ(std::wstring(slot), L"mixed");
    SysFreeString(slot);

    // The first variable is lower-cased before the second fails.
    Variant first = text(L"UP"), bad = array({});
    EXPECT_EQ(h.equal({byRef(first), byRef(bad), kFind}), -1);
    EXPECT_EQ(h.lastError, 13);
    EXPECT_EQ(vxtest::textOf(first), L"up");
}

TEST(MyVaribleFunction, CountUBound) {
    Helper h;
    EXPECT_EQ(h.countUBound(unallocated()), -1);
    EXPECT_EQ(h.countUBound(array({})), -1);
    EXPECT_EQ(h.countUBound(array({num(1)})), 0);
    EXPECT_EQ(h.countUBound(array({num(1), num(2), num(3)})), 2);
    EXPECT_EQ(h.countUBound(table({{L"a", L"b", L"c"}, {L"d", L"e", L"f"}})), 1);  // the first dimension
    EXPECT_EQ(h.countUBound(arrayFrom(5, 3)), 7);
    EXPECT_EQ(h.countUBound(arrayFrom(32767, 1)), 32767);
    EXPECT_EQ(h.countUBound(arrayFrom(32767, 2)), -1);  // the bound does not fit in an Integer
    EXPECT_EQ(h.countUBound(arrayFrom(-40000, 1)), -1);
    EXPECT_EQ(h.countUBound(text(L"abc")), -1);
    EXPECT_EQ(h.countUBound(Variant::null()), -1);
    EXPECT_EQ(h.countUBound(Variant()), -1);
    // A byte array referred to as a typed reference.
    unsigned char bytes[4] = {1, 2, 3, 4};
    Variant data = makeByteArray(bytes, 4);
    SAFEARRAY* sa = V_ARRAY(data.get());
    Variant ref;
    V_VT(ref.get()) = VT_BYREF | VT_ARRAY | VT_UI1;
    V_ARRAYREF(ref.get()) = &sa;
    EXPECT_EQ(h.countUBound(ref), 3);
}

TEST(MyVaribleFunction, GoIsNullSubstitutesForNullOnly) {
    Helper h;
    auto goIsNull = [&](std::vector<Variant> args) {
        auto r = call(h.object.get(), L"GoIsNull", std::move(args));
        EXPECT_EQ(r.errorNumber(), 0);
        return r.value;
    };
    EXPECT_EQ(vxtest::textOf(goIsNull({Variant::null(), text(L"n/a")})), L"n/a");
    Variant five = goIsNull({num(5)});
    EXPECT_EQ(five.type(), VT_I4);
    EXPECT_EQ(vxtest::longOf(five), 5);
    Variant zero = goIsNull({Variant::null()});  // the declared default, an Integer 0
    EXPECT_EQ(zero.type(), VT_I2);
    EXPECT_EQ(vxtest::longOf(zero), 0);
    EXPECT_EQ(vxtest::textOf(goIsNull({Variant::missing(), text(L"x")})), L"x");  // omitted
    EXPECT_TRUE(isEmpty(*goIsNull({Variant(), text(L"x")})));  // Empty is not Null
    EXPECT_EQ(vxtest::textOf(goIsNull({text(L""), text(L"x")})), L"");
    // Objects pass through as the same object, both as the value and as the substitute.
    auto other = newHelper();
    EXPECT_EQ(vxtest::objectOf(goIsNull({Variant::fromDispatch(other.get())})).get(), other.get());
    EXPECT_EQ(vxtest::objectOf(goIsNull({Variant::null(), Variant::fromDispatch(other.get())})).get(), other.get());
    Variant arr = goIsNull({array({num(1), num(2)})});
    EXPECT_EQ(ArrayView(*arr).ubound(), 1);
    // A host variable holding Null.
    Variant variable = Variant::null();
    EXPECT_EQ(vxtest::textOf(goIsNull({byRef(variable), text(L"d")})), L"d");
}

namespace {

void pressKey(WORD vk, bool down) {
    INPUT in{};
    in.type = INPUT_KEYBOARD;
    in.ki.wVk = vk;
    in.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
    SendInput(1, &in, sizeof(in));
}

}  // namespace

TEST(MyVaribleFunction, IsKeyTellsWhetherTheKeyIsDownNow) {
    Helper h;
    auto isKey = [&](long vk) {
        auto r = call(h.object.get(), L"IsKey", {num(vk)});
        EXPECT_EQ(r.errorNumber(), 0);
        return toBool(*r.value);
    };
    const WORD key = VK_F24;  // a key nobody else's test presses
    EXPECT_FALSE(isKey(key));
    pressKey(key, true);
    EXPECT_TRUE(isKey(key));
    EXPECT_TRUE(isKey(key));  // still down: only the top bit counts
    pressKey(key, false);
    EXPECT_FALSE(isKey(key));  // pressed since the last query, but up now
    EXPECT_EQ(call(h.object.get(), L"IsKey", {num(70000)}).errorNumber(), 6);
}

TEST(MyVaribleFunction, EarlyBoundCallsUseTheDeclaredDefaults) {
    auto helper = newHelper().query<_Ds_MyVaribleFunction>();
    ASSERT_TRUE(helper);
    // Another class of the library calls GetVar through the interface, as a path helper.
    Variant path = text(L"C:\\dir\\file.txt"), index = num(0), sep = text(L"\\"), last = num(2);
    LONG mode = MyVaribleFunction::LeftPathFull;
    VARIANT out;
    ASSERT_EQ(helper->GetVar(path.get(), index.get(), sep.get(), &mode, last.get(), &out), S_OK);
    Variant result = Variant::take(out);
    EXPECT_EQ(vxtest::textOf(result), L"C:\\dir");
    // Omitted by-reference arguments may be null or carry the missing marker.
    Variant missing = Variant::missing();
    ASSERT_EQ(helper->GetVar(text(L"p,q").get(), nullptr, missing.get(), nullptr, nullptr, &out), S_OK);
    result = Variant::take(out);
    EXPECT_EQ(vxtest::textOf(result), L"p");
    VARIANT_BOOL same = VARIANT_FALSE;
    Variant a = text(L"A"), b = text(L"a");
    ASSERT_EQ(helper->IsEqute(a.get(), b.get(), nullptr, &same), S_OK);
    EXPECT_EQ(same, VARIANT_TRUE);
    Variant notArray = text(L"x");
    LONG arrayMode = 2;
    EXPECT_EQ(helper->IsEqute(notArray.get(), notArray.get(), &arrayMode, &same), runtimeHresult(13));
    EXPECT_EQ(same, VARIANT_FALSE);
}
