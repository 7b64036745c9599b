// The file classes where the test platform cannot serve them, through their seams: the
// shell's details columns (a recording stand-in for the shell's folder), the recycle
// bin's queries and emptying, the profile folders the platform lacks, and drive names
// (stand-in drive objects). Everything a host sees otherwise is in tests/host/file*.vbs.
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Services.h"
#include "files/FileServices.h"

#include "FileTestSupport.h"
#include "TestSupport.h"
#include "Vx_Main.h"

#include <cstddef>
#include <string>
#include <vector>

using namespace vx;
using vxtest::StandIn;
using vxtest::gives;
using vxtest::textOf;

namespace {

Variant text(const std::wstring& s) { return Variant::fromText(s); }

// The shell as the details object binds it: Shell.Application's NameSpace gives a folder
// (none for a folder named "missing"), whose ParseName gives an item (none for a file
// named "gone.txt") and whose GetDetailsOf answers "column N of <file>" (nothing for 40).
struct StandInShell {
    std::vector<std::wstring> calls;

    ComPtr<IDispatch> folderFor(const std::wstring& path) {
        return ComPtr<IDispatch>(StandIn::make({
            {L"ParseName", [this, path](std::vector<Variant>& a) {
                 const std::wstring name = toText(*a[0]);
                 calls.push_back(L"ParseName " + name);
                 if (name == L"gone.txt") return Variant::fromDispatch(nullptr);
                 return StandIn::make({{L"Name", gives(text(name))}})->asVariant();
             }},
            {L"GetDetailsOf", [this](std::vector<Variant>& a) {
                 const long column = toInt32(*a[1]);
                 calls.push_back(L"GetDetailsOf " + std::to_wstring(column));
                 if (column == 40) return Variant();
                 return text(L"column " + std::to_wstring(column) + L" of " +
                             toText(*LateBoundName(dispatchOf(*a[0]))));
             }},
        }).get());
    }
    static Variant LateBoundName(IDispatch* item) { return vxtest::get(item, L"Name").value; }

    BindingService binding() {
        BindingService b = service<BindingService>();
        b.createObject = [this](const std::wstring& progId, IDispatch** object) -> HRESULT {
            if (progId != L"Shell.Application") return REGDB_E_CLASSNOTREG;
            ComPtr<StandIn> shell = StandIn::make({{L"NameSpace", [this](std::vector<Variant>& a) {
                const std::wstring path = toText(*a[0]);
                calls.push_back(L"NameSpace " + path);
                if (path.find(L"missing") != std::wstring::npos) return Variant::fromDispatch(nullptr);
                return Variant::fromDispatch(folderFor(path).get());
            }}});
            *object = shell.detach();
            return S_OK;
        };
        return b;
    }
};

TEST(FileDetails, BindsToTheFolderAndItemAndReadsFixedColumns) {
    StandInShell shell;
    ReplaceService<BindingService> using_(shell.binding());
    ComPtr<IDispatch> fs = vxtest::createObject(CLSID_Ds_FileSystem);
    const auto got = vxtest::call(fs.get(), L"GetDetails", {text(L"C:\\data\\sub\\report.doc")});
    ASSERT_EQ(got.errorNumber(), 0);
    ComPtr<IDispatch> details = vxtest::objectOf(got.value);
    EXPECT_EQ(shell.calls, (std::vector<std::wstring>{L"NameSpace C:\\data\\sub", L"ParseName report.doc"}));

    // Each property, by its fixed identifier, reads its fixed column.
    const struct {
        const wchar_t* name;
        DISPID id;
        long column;
    } columns[] = {
        {L"Name", 0x68030025, 0},          {L"SIZE", 0x68030024, 1},          {L"TypeFile", 0x68030023, 2},
        {L"DateModified", 0x68030022, 3},  {L"DateCreated", 0x68030021, 4},   {L"DateAccessed", 0x68030020, 5},
        {L"Attributes", 0x6803001f, 6},    {L"Status", 0x6803001e, 7},        {L"Owner", 0x6803001d, 8},
        {L"Author", 0x6803001c, 9},        {L"Title", 0x6803001b, 10},        {L"Subject", 0x6803001a, 11},
        {L"Category", 0x68030019, 12},     {L"Pages", 0x68030018, 13},        {L"Comments", 0x68030017, 14},
        {L"Copyright", 0x68030016, 15},    {L"Artist", 0x68030015, 16},       {L"AlbumTitle", 0x68030014, 17},
        {L"Year", 0x68030013, 18},         {L"TrackNumber", 0x68030012, 19},  {L"Genre", 0x68030011, 20},
        {L"Duration", 0x68030010, 21},     {L"BitRate", 0x6803000f, 22},      {L"Protected", 0x6803000e, 23},
        {L"CameraModel", 0x6803000d, 24},  {L"DatePictureTaken", 0x6803000c, 25}, {L"Dimensions", 0x6803000b, 26},
        {L"EpisodeName", 0x6803000a, 29},  {L"ProgramDescription", 0x68030009, 30},
        {L"AudioSampleSize", 0x68030008, 32}, {L"AudioSampleRate", 0x68030007, 33}, {L"Channels", 0x68030006, 34},
        {L"Company", 0x68030005, 35},      {L"Description", 0x68030004, 36},  {L"FileVersion", 0x68030003, 37},
        {L"ProductName", 0x68030002, 38},  {L"ProductVersion", 0x68030001, 39},
    };
    for (const auto& c : columns) {
        std::wstring name = c.name;
        LPOLESTR names[] = {&name[0]};
        DISPID id = 0;
        ASSERT_EQ(details->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), S_OK);
        EXPECT_EQ(id, c.id) << c.name;
        EXPECT_EQ(textOf(vxtest::get(details.get(), c.name).value),
                  L"column " + std::to_wstring(c.column) + L" of report.doc") << c.name;
    }
    EXPECT_EQ(textOf(vxtest::get(details.get(), L"Keywords").value), L"") << "a column without a value";

    // A second binding replaces the first.
    shell.calls.clear();
    ASSERT_EQ(vxtest::call(details.get(), L"NewDetailedFile", {text(L"D:\\other.txt")}).errorNumber(), 0);
    EXPECT_EQ(shell.calls, (std::vector<std::wstring>{L"NameSpace D:", L"ParseName other.txt"}));
    EXPECT_EQ(textOf(vxtest::get(details.get(), L"Title").value), L"column 10 of other.txt");
}

TEST(FileDetails, NothingBoundIsErrorNinetyOne) {
    StandInShell shell;
    ReplaceService<BindingService> using_(shell.binding());
    ComPtr<IDispatch> details = vxtest::createObject(CLSID_Ds_TypeFileDetails);
    EXPECT_EQ(vxtest::get(details.get(), L"Author").errorNumber(), 91) << "never bound";

    // A folder the shell cannot open: the file cannot be looked for in it.
    EXPECT_EQ(vxtest::call(details.get(), L"NewDetailedFile", {text(L"C:\\missing\\a.txt")}).errorNumber(), 91);
    EXPECT_EQ(vxtest::get(details.get(), L"Name").errorNumber(), 91);
    // A file the folder does not have: the properties have no item to read.
    EXPECT_EQ(vxtest::call(details.get(), L"NewDetailedFile", {text(L"C:\\here\\gone.txt")}).errorNumber(), 0);
    EXPECT_EQ(vxtest::get(details.get(), L"Name").errorNumber(), 91);
    // No backslash: no folder part.
    EXPECT_EQ(vxtest::call(details.get(), L"NewDetailedFile", {text(L"plain.txt")}).errorNumber(), 5);
    ComPtr<IDispatch> fs = vxtest::createObject(CLSID_Ds_FileSystem);
    EXPECT_EQ(vxtest::call(fs.get(), L"GetDetails", {text(L"C:\\missing\\b.txt")}).errorNumber(), 91);
}

// The recycle bin's record is the system's own: packed in 32-bit code, aligned in 64-bit.
TEST(FileRecycleBin, RecordLayoutOfTheWordSize) {
    const bool wide = sizeof(void*) == 8;
    EXPECT_EQ(sizeof(SHQUERYRBINFO), wide ? 24u : 20u);
    EXPECT_EQ(offsetof(SHQUERYRBINFO, i64Size), wide ? 8u : 4u);
    EXPECT_EQ(offsetof(SHQUERYRBINFO, i64NumItems), wide ? 16u : 12u);
}

TEST(FileRecycleBin, CountsOfTheDriveAndTheOverflowAboveALong) {
    std::string root;
    long long items = 5, bytes = 1234;
    HRESULT answer = S_OK;
    RecycleBinService fake = service<RecycleBinService>();
    fake.query = [&](const char* r, SHQUERYRBINFO* info) {
        root = r ? r : "(null)";
        EXPECT_EQ(info->cbSize, sizeof(SHQUERYRBINFO));
        info->i64NumItems = items;
        info->i64Size = bytes;
        return answer;
    };
    fake.empty = [](HWND, const char*, DWORD) { return E_UNEXPECTED; };
    ReplaceService<RecycleBinService> using_(fake);

    ComPtr<IDispatch> fs = vxtest::createObject(CLSID_Ds_FileSystem);
    ComPtr<IDispatch> bin = vxtest::objectOf(vxtest::call(fs.get(), L"GoRecBin").value);
    char windows[MAX_PATH];
    GetWindowsDirectoryA(windows, MAX_PATH);
    EXPECT_EQ(vxtest::longOf(vxtest::get(bin.get(), L"CountItem").value), 5);
    EXPECT_EQ(root, std::string(windows, 3)) << "the system's drive by default";
    EXPECT_EQ(vxtest::longOf(vxtest::get(bin.get(), L"FileSize").value), 1234);

    bin = vxtest::objectOf(vxtest::call(fs.get(), L"GoRecBin", {text(L"D:\\")}).value);
    items = 2147483647;
    EXPECT_EQ(vxtest::longOf(vxtest::get(bin.get(), L"CountItem").value), 2147483647);
    EXPECT_EQ(root, "D:\\");
    items = 2147483648LL;
    EXPECT_EQ(vxtest::get(bin.get(), L"CountItem").errorNumber(), 6);
    bytes = 5000000000LL;
    EXPECT_EQ(vxtest::get(bin.get(), L"FileSize").errorNumber(), 6);

    // A refused query counts nothing, whatever the record holds.
    answer = E_FAIL;
    EXPECT_EQ(vxtest::longOf(vxtest::get(bin.get(), L"FileSize").value), 0);
    // A root with a NUL reaches no bin.
    root.clear();
    answer = S_OK;
    ASSERT_EQ(vxtest::put(bin.get(), L"RootDrive", text(std::wstring(L"D:\\", 3) + L'\0' + L"x")).errorNumber(), 0);
    EXPECT_EQ(vxtest::longOf(vxtest::get(bin.get(), L"CountItem").value), 0);
    EXPECT_EQ(root, "");
}

TEST(FileRecycleBin, EmptyingReachesEveryDriveWithoutAsking) {
    std::vector<std::string> calls;
    RecycleBinService fake = service<RecycleBinService>();
    fake.query = [](const char*, SHQUERYRBINFO*) { return E_UNEXPECTED; };
    fake.empty = [&](HWND owner, const char* root, DWORD flags) {
        calls.push_back((owner == GetDesktopWindow() ? "desktop " : "other ") + std::string(root ? root : "every drive") +
                        " " + std::to_string(flags));
        return S_OK;
    };
    ReplaceService<RecycleBinService> using_(fake);
    ComPtr<IDispatch> fs = vxtest::createObject(CLSID_Ds_FileSystem);
    ComPtr<IDispatch> bin = vxtest::objectOf(vxtest::call(fs.get(), L"GoRecBin", {text(L"E:\\")}).value);
    EXPECT_EQ(vxtest::call(bin.get(), L"GoEmptyFile").errorNumber(), 0);
    EXPECT_EQ(calls, (std::vector<std::string>{"desktop every drive 1"}));
}

TEST(FileProfiles, AllUsersAndDefaultUserFoldersAndTheirPlaceholders) {
    ProfileFolderService fake = service<ProfileFolderService>();
    fake.allUsers = [](char* buffer, DWORD* size) {
        EXPECT_EQ(*size, 255u);
        lstrcpyA(buffer, "C:\\All Users");
        return TRUE;
    };
    fake.defaultUser = [](char*, DWORD*) { return FALSE; };
    ReplaceService<ProfileFolderService> using_(fake);
    ComPtr<IDispatch> fs = vxtest::createObject(CLSID_Ds_FileSystem);
    EXPECT_EQ(textOf(vxtest::call(fs.get(), L"GetXpPath", {Variant::fromLong(1)}).value), L"C:\\All Users\\");
    EXPECT_EQ(textOf(vxtest::call(fs.get(), L"GetXpPath", {Variant::fromLong(3), text(L"x")}).value), L"\\x")
        << "a refused call leaves the backslash alone";
    EXPECT_EQ(textOf(vxtest::call(fs.get(), L"PathReplace", {text(L"*AllUserPath*a")}).value), L"C:\\All Users\\a");
    EXPECT_EQ(textOf(vxtest::call(fs.get(), L"PathReplace", {text(L"C:\\All Users\\Docs"), Variant::fromLong(2)}).value),
              L"*AllUserPath*\\docs\\");
}

// The scripting runtime's drive interface, which the drive list holds its drives as.
const IID driveInterface = {0xC7C3F5A0, 0x88A3, 0x11D0, {0xAB, 0xCB, 0x00, 0xA0, 0xC9, 0x0F, 0xFF, 0xC0}};

ComPtr<StandIn> standInDrive(long type, const std::wstring& label, const std::wstring& path, int* pathReads) {
    return StandIn::make({{L"DriveType", gives(Variant::fromLong(type))},
                          {L"VolumeName", gives(text(label))},
                          {L"Path", [path, pathReads](std::vector<Variant>&) {
                               ++*pathReads;
                               return text(path);
                           }}},
                         {driveInterface});
}

TEST(FileDriveList, NamesAndKindsOfDrives) {
    ComPtr<IDispatch> list = vxtest::createObject(CLSID_Ds_TypeFileSys);
    int pathReads = 0;
    const struct {
        long type;
        const wchar_t* label;
        const wchar_t* name;  // nullptr: Empty
        const wchar_t* kind;
    } drives[] = {
        {1, L"STICK", nullptr, L"Removable"},     {2, L"", L"Local Disk (C:)", L"Drive Fixed"},
        {2, L"Data", L"Data", L"Drive Fixed"},    {3, L"", L"Local Disk (C:)", L"Remote or Network"},
        {4, L"CD", L"CD", L"Cd-Rom"},             {5, L"", L"Local Disk (C:)", L"Ram disk"},
        {0, L"", L"Local Disk (C:)", L"Do not Exists"}, {6, L"", L"Local Disk (C:)", L"Unrecognized"},
        {-1, L"x", L"x", L"Unrecognized"},
    };
    for (const auto& d : drives)
        ASSERT_EQ(vxtest::call(list.get(), L"AddDrive", {standInDrive(d.type, d.label, L"C:", &pathReads)->asVariant()})
                      .errorNumber(),
                  0);
    long i = 0;
    for (const auto& d : drives) {
        const Variant name = vxtest::call(list.get(), L"ItemDriveName", {Variant::fromLong(i)}).value;
        if (d.name)
            EXPECT_EQ(textOf(name), d.name) << i;
        else
            EXPECT_EQ(name.type(), VT_EMPTY) << i;
        EXPECT_EQ(textOf(vxtest::call(list.get(), L"ItemDriveType", {Variant::fromLong(i)}).value), d.kind) << i;
        ++i;
    }
    EXPECT_EQ(pathReads, 5) << "the path is read only for a fixed drive without a label";
    EXPECT_EQ(vxtest::call(list.get(), L"ItemDriveType", {Variant::fromLong(i)}).errorNumber(), 9);
}

TEST(FileDriveList, AnObjectOfAnotherKindLeavesAnEmptyPlace) {
    ComPtr<IDispatch> list = vxtest::createObject(CLSID_Ds_TypeFileSys);
    int reads = 0;
    ComPtr<StandIn> drive = standInDrive(2, L"D", L"D:", &reads);
    ComPtr<StandIn> other = StandIn::make({{L"DriveType", gives(Variant::fromLong(2))}});
    for (const Variant& v : {drive->asVariant(), other->asVariant(), text(L"no object"), Variant::null()})
        ASSERT_EQ(vxtest::call(list.get(), L"AddDrive", {v}).errorNumber(), 0);
    ASSERT_EQ(vxtest::call(list.get(), L"AddFile", {drive->asVariant()}).errorNumber(), 0);
    EXPECT_EQ(vxtest::objectOf(vxtest::call(list.get(), L"ItemDrive", {Variant::fromLong(0)}).value).get(),
              static_cast<IDispatch*>(drive.get()));
    for (long i = 1; i <= 3; ++i) {
        const auto got = vxtest::call(list.get(), L"ItemDrive", {Variant::fromLong(i)});
        EXPECT_EQ(got.errorNumber(), 0);
        EXPECT_FALSE(vxtest::objectOf(got.value)) << "an empty place at " << i;
    }
    EXPECT_EQ(vxtest::call(list.get(), L"ItemDriveType", {Variant::fromLong(1)}).errorNumber(), 91);
    EXPECT_EQ(vxtest::longOf(vxtest::get(list.get(), L"CountFile").value), 1) << "a drive is no file";
    EXPECT_FALSE(vxtest::objectOf(vxtest::call(list.get(), L"ItemFile", {Variant::fromLong(0)}).value));
    EXPECT_EQ(vxtest::get(list.get(), L"CountFolder").value.type(), VT_EMPTY);
}

}  // namespace
