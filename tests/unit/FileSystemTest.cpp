// Ds_FileSystem against the real platform, for what a script cannot see or set up: bytes
// as the files hold them, arrays of other element types, pictures, shortcuts read back
// through the shell's link object, sizes beyond a 32-bit total, the download cache and
// the yields of a download. Host-visible behaviour is in tests/host/filesystem.vbs.
#include <winsock2.h>  // before the platform's other headers

#include "core/runtime/Ansi.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Handles.h"
#include "core/runtime/MessageLoop.h"
#include "core/runtime/SafeArray.h"

#include "FileTestSupport.h"
#include "TestSupport.h"
#include "Vx_Main.h"

#include <olectl.h>
#include <shlobj.h>
#include <wininet.h>

#include <string>
#include <thread>
#include <vector>

using namespace vx;
using vxtest::TestFolder;
using vxtest::textOf;

namespace {

Variant text(const std::wstring& s) { return Variant::fromText(s); }

std::string bytesOf(const std::wstring& path) {
    std::string bytes;
    UniqueFile file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    char buffer[4096];
    DWORD got = 0;
    while (file && ReadFile(file.get(), buffer, sizeof buffer, &got, nullptr) && got) bytes.append(buffer, got);
    return bytes;
}

void writeFile(const std::wstring& path, const std::string& bytes) {
    UniqueFile file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD put = 0;
    WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &put, nullptr);
}

std::string arrayBytes(const Variant& array) {
    EXPECT_EQ(array.type(), VT_ARRAY | VT_UI1);
    if (array.type() != (VT_ARRAY | VT_UI1)) return {};
    SAFEARRAY* sa = V_ARRAY(array.get());
    SafeArrayAccess access(sa);
    return std::string(access.as<char>(), sa->rgsabound[0].cElements);
}

std::string everyByte() {
    std::string all;
    for (int i = 0; i < 256; ++i) all.push_back(static_cast<char>(i));
    return all;
}

TEST(FileBytes, EveryByteValueRoundTripsWithTheOneZeroMore) {
    TestFolder folder(L"bytes");
    ComPtr<IDispatch> fs = vxtest::createObject(CLSID_Ds_FileSystem);
    const std::string all = everyByte() + "\r\n\x1a" + everyByte();
    writeFile(folder / L"in.bin", all);
    const Variant array = vxtest::call(fs.get(), L"ConvertFileToArray", {text(folder / L"in.bin")}).value;
    EXPECT_EQ(arrayBytes(array), all + '\0');
    EXPECT_EQ(textOf(vxtest::call(fs.get(), L"ConvertArrayToFile", {array, text(folder / L"out.bin")}).value),
              folder / L"out.bin");
    EXPECT_EQ(bytesOf(folder / L"out.bin"), all + '\0');

    // An empty file is one zero byte.
    writeFile(folder / L"empty.bin", "");
    EXPECT_EQ(arrayBytes(vxtest::call(fs.get(), L"ConvertFileToArray", {text(folder / L"empty.bin")}).value),
              std::string(1, '\0'));
    // A number that is no byte writes nothing (the file is made all the same).
    writeFile(folder / L"out.bin", "old contents");
    vxtest::call(fs.get(), L"ConvertArrayToFile", {makeVariantArray({Variant::fromLong(1), Variant::fromLong(256)}),
                                                   text(folder / L"out.bin")});
    EXPECT_EQ(bytesOf(folder / L"out.bin"), "");
}

// A 2 x 1 bitmap file of 24-bit pixels.
std::string bitmapFile() {
    std::string bmp;
    auto put = [&](unsigned long v, int bytes) {
        for (int i = 0; i < bytes; ++i) bmp.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
    };
    put('B' | ('M' << 8), 2), put(14 + 40 + 8, 4), put(0, 4), put(14 + 40, 4);       // file header
    put(40, 4), put(2, 4), put(1, 4), put(1, 2), put(24, 2), put(0, 4), put(8, 4);      // info header
    put(2835, 4), put(2835, 4), put(0, 4), put(0, 4);
    put(0x0000FF, 3), put(0x00FF00, 3), put(0, 2);                                       // a red and a green pixel
    return bmp;
}

TEST(FileBytes, APictureIsSavedInItsOwnFormatFirst) {
    ComPtr<IDispatch> fs = vxtest::createObject(CLSID_Ds_FileSystem);
    const std::string bmp = bitmapFile();
    ComPtr<IStream> stream;
    ASSERT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, stream.put()), S_OK);
    ULONG written = 0;
    stream->Write(bmp.data(), static_cast<ULONG>(bmp.size()), &written);
    stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr);
    ComPtr<IDispatch> picture;
    ASSERT_EQ(OleLoadPicture(stream.get(), static_cast<LONG>(bmp.size()), FALSE, IID_IDispatch,
                             reinterpret_cast<void**>(picture.put())),
              S_OK);
    Variant pictureVar = Variant::fromDispatch(picture.get());
    const auto got = vxtest::call(fs.get(), L"ConvertFileToArray", {text(L"ignored"), vxtest::byRef(pictureVar)});
    ASSERT_EQ(got.errorNumber(), 0);
    EXPECT_EQ(arrayBytes(got.value), bmp + '\0') << "the bitmap as a file, and the one zero more";
    wchar_t temp[MAX_PATH + 1];
    GetTempPathW(MAX_PATH, temp);
    const std::wstring saved = std::wstring(temp) + L"KwPic";
    EXPECT_EQ(bytesOf(saved), bmp);
    DeleteFileW(saved.c_str());

    ComPtr<IDispatch> notAPicture = vxtest::createObject(CLSID_Ds_ListCollection);
    Variant other = Variant::fromDispatch(notAPicture.get());
    EXPECT_EQ(vxtest::call(fs.get(), L"ConvertFileToArray", {text(L""), vxtest::byRef(other)}).errorNumber(), 13);
    Variant nothing = Variant::fromDispatch(nullptr);
    EXPECT_EQ(vxtest::call(fs.get(), L"ConvertFileToArray", {text(L""), vxtest::byRef(nothing)}).errorNumber(), 91);
}

// Arrays of other kinds than a script's: one of strings stays one, and what cannot grow
// as the lines require is refused as the runtime refuses it.
TEST(FileText, LinesIntoArraysOfOtherKinds) {
    TestFolder folder(L"text");
    writeFile(folder / L"lines.txt", "a\r\nb");
    ComPtr<IDispatch> fs = vxtest::createObject(CLSID_Ds_FileSystem);
    auto read = [&](Variant& target) {
        return vxtest::call(fs.get(), L"GetReadFile", {text(folder / L"lines.txt"), vxtest::byRef(target)});
    };

    Variant strings;
    V_VT(strings.get()) = VT_ARRAY | VT_BSTR;
    V_ARRAY(strings.get()) = SafeArrayCreateVector(VT_BSTR, 0, 5);
    ASSERT_EQ(read(strings).errorNumber(), 0);
    ASSERT_EQ(strings.type(), VT_ARRAY | VT_BSTR);
    EXPECT_EQ(V_ARRAY(strings.get())->rgsabound[0].cElements, 2u);
    EXPECT_EQ(textOf(ArrayView(*strings).at(1)), L"b");

    Variant fixed;
    SAFEARRAY* fixedArray = SafeArrayCreateVector(VT_VARIANT, 0, 1);
    fixedArray->fFeatures |= FADF_FIXEDSIZE;
    V_VT(fixed.get()) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(fixed.get()) = fixedArray;
    EXPECT_EQ(read(fixed).errorNumber(), 10);
    fixedArray->fFeatures &= ~FADF_FIXEDSIZE;

    Variant table;
    SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
    V_VT(table.get()) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(table.get()) = SafeArrayCreate(VT_VARIANT, 2, bounds);
    EXPECT_EQ(read(table).errorNumber(), 9);

    Variant fromOne;
    V_VT(fromOne.get()) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(fromOne.get()) = SafeArrayCreateVector(VT_VARIANT, 1, 3);
    EXPECT_EQ(read(fromOne).errorNumber(), 9);

    Variant numbers;
    V_VT(numbers.get()) = VT_ARRAY | VT_I4;
    V_ARRAY(numbers.get()) = SafeArrayCreateVector(VT_I4, 0, 1);
    EXPECT_EQ(read(numbers).errorNumber(), 13);
}

TEST(FileShortcut, TheLinkPointsAtTheTarget) {
    TestFolder folder(L"shortcut");
    writeFile(folder / L"target.txt", "t");
    ComPtr<IDispatch> fs = vxtest::createObject(CLSID_Ds_FileSystem);
    ASSERT_EQ(vxtest::call(fs.get(), L"CreateShourtCut", {text(folder / L"target.txt"), text(folder / L"link.lnk")})
                  .errorNumber(),
              0);
    ComPtr<IShellLinkA> link;
    ASSERT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA,
                               reinterpret_cast<void**>(link.put())),
              S_OK);
    ComPtr<IPersistFile> file = link.query<IPersistFile>();
    ASSERT_TRUE(file);
    ASSERT_EQ(file->Load((folder / L"link.lnk").c_str(), STGM_READ), S_OK);
    char target[MAX_PATH] = {};
    ASSERT_EQ(link->GetPath(target, MAX_PATH, nullptr, 0), S_OK);
    EXPECT_EQ(fromAnsi(target), folder / L"target.txt");
}

// Sizes add up in a 32-bit total: a file too large for it, or an addition that would
// overflow it, is left out of the total, while the file is still listed.
TEST(FileSearch, TheTotalIsThirtyTwoBitAndSkipsWhatOverflows) {
    TestFolder folder(L"large");
    auto sparse = [&](const std::wstring& name, long long size) {
        UniqueFile file(CreateFileW((folder / name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        LARGE_INTEGER at;
        at.QuadPart = size;
        ASSERT_TRUE(SetFilePointerEx(file.get(), at, nullptr, FILE_BEGIN) && SetEndOfFile(file.get()));
    };
    sparse(L"a.bin", 1500000000LL);
    ComPtr<IDispatch> fs = vxtest::createObject(CLSID_Ds_FileSystem);
    Variant list;
    EXPECT_TRUE(toBool(*vxtest::call(fs.get(), L"GoFindFile", {text(folder.path()), vxtest::byRef(list)}).value));
    EXPECT_EQ(vxtest::longOf(vxtest::get(vxtest::objectOf(list).get(), L"SizeFile").value), 1500000000);

    sparse(L"b.bin", 1500000000LL);
    sparse(L"c.bin", 3000000000LL);
    writeFile(folder / L"d.txt", "1234");
    vxtest::call(fs.get(), L"GoFindFile", {text(folder.path()), vxtest::byRef(list)});
    ComPtr<IDispatch> found = vxtest::objectOf(list);
    EXPECT_EQ(vxtest::longOf(vxtest::get(found.get(), L"CountFile").value), 4);
    EXPECT_EQ(vxtest::longOf(vxtest::get(found.get(), L"SizeFile").value), 1500000004)
        << "one 1.5 GB file, the other left out, the 3 GB one left out, and 4 bytes";
}

// A one-shot HTTP server on a thread of the test, answering every request with the same
// small file, for the download's cache entry.
class LocalServer {
public:
    LocalServer() {
        listener_ = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address);
        int length = sizeof address;
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length);
        port_ = ntohs(address.sin_port);
        listen(listener_, 4);
        thread_ = std::thread([this] { serve(); });
    }
    ~LocalServer() {
        closesocket(listener_);  // ends accept
        thread_.join();
    }
    std::wstring url(const wchar_t* name) const {
        return L"http://127.0.0.1:" + std::to_wstring(port_) + L"/" + name;
    }

private:
    void serve() {
        for (;;) {
            SOCKET client = accept(listener_, nullptr, nullptr);
            if (client == INVALID_SOCKET) return;
            std::string request;
            char buffer[1024];
            int got = 0;
            while (request.find("\r\n\r\n") == std::string::npos && (got = recv(client, buffer, sizeof buffer, 0)) > 0)
                request.append(buffer, static_cast<size_t>(got));
            const std::string reply =
                "HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nContent-Length: 5\r\nConnection: close\r\n\r\nhello";
            send(client, reply.data(), static_cast<int>(reply.size()), 0);
            shutdown(client, SD_SEND);
            closesocket(client);
        }
    }

    WinsockSession winsock_;
    SOCKET listener_ = INVALID_SOCKET;
    unsigned short port_ = 0;
    std::thread thread_;
};

bool cached(const std::wstring& url) {
    std::vector<char> buffer(8192);
    DWORD size = static_cast<DWORD>(buffer.size());
    return GetUrlCacheEntryInfoA(toAnsi(url).c_str(), reinterpret_cast<INTERNET_CACHE_ENTRY_INFOA*>(buffer.data()), &size);
}

TEST(FileDownload, TheCacheEntryGoesUnlessKeptAndTheHostGetsTwelveYields) {
    TestFolder folder(L"download");
    LocalServer server;
    ComPtr<IDispatch> fs = vxtest::createObject(CLSID_Ds_FileSystem);
    const std::wstring url = server.url(L"kept.txt");
    const unsigned long long before = yieldCount();
    EXPECT_TRUE(toBool(*vxtest::call(fs.get(), L"DownloadFileUrl",
                                     {text(url), text(folder / L"new\\kept.txt"), Variant::fromBool(false)})
                           .value));
    EXPECT_EQ(yieldCount() - before, 12u);
    EXPECT_EQ(bytesOf(folder / L"new\\kept.txt"), "hello");
    EXPECT_TRUE(cached(url)) << "kept";

    const std::wstring other = server.url(L"dropped.txt");
    EXPECT_TRUE(toBool(*vxtest::call(fs.get(), L"DownloadFileUrl", {text(other), text(folder / L"dropped.txt")}).value));
    EXPECT_FALSE(cached(other)) << "removed by default";
    DeleteUrlCacheEntryA(toAnsi(url).c_str());
}

}  // namespace
