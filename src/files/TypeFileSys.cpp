#include "files/TypeFileSys.h"

#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/LateBound.h"

namespace vx {

namespace {

// The scripting runtime's Folder, File and Drive interfaces, in the order of Kind.
const IID scriptingInterfaces[] = {
    {0xC7C3F5A2, 0x88A3, 0x11D0, {0xAB, 0xCB, 0x00, 0xA0, 0xC9, 0x0F, 0xFF, 0xC0}},  // IFolder
    {0xC7C3F5A4, 0x88A3, 0x11D0, {0xAB, 0xCB, 0x00, 0xA0, 0xC9, 0x0F, 0xFF, 0xC0}},  // IFile
    {0xC7C3F5A0, 0x88A3, 0x11D0, {0xAB, 0xCB, 0x00, 0xA0, 0xC9, 0x0F, 0xFF, 0xC0}},  // IDrive
};

}  // namespace

void TypeFileSys::add(Kind kind, IUnknown* object) {
    std::vector<ComPtr<IDispatch>>& list = lists_[kind];
    list.emplace_back();
    // Each of these interfaces derives from IDispatch.
    if (object) object->QueryInterface(scriptingInterfaces[kind], reinterpret_cast<void**>(list.back().put()));
}

void TypeFileSys::add(Kind kind, const VARIANT& object) {
    const VARIANT& v = deref(object);
    add(kind, V_VT(&v) == VT_DISPATCH ? V_DISPATCH(&v) : V_VT(&v) == VT_UNKNOWN ? V_UNKNOWN(&v) : nullptr);
}

void TypeFileSys::setSize(const VARIANT& size) { size_ = letValue(size); }

const ComPtr<IDispatch>& TypeFileSys::item(Kind kind, LONG index) const {
    const std::vector<ComPtr<IDispatch>>& list = lists_[kind];
    if (index < 0 || static_cast<size_t>(index) >= list.size()) raise(err::SubscriptOutOfRange);
    return list[static_cast<size_t>(index)];
}

HRESULT TypeFileSys::give(Kind kind, LONG index, IDispatch** result) noexcept {
    return deliver(result, [&] { return item(kind, index); });
}

HRESULT TypeFileSys::count(const std::vector<ComPtr<IDispatch>>& list, VARIANT* value) noexcept {
    // An empty list has no upper bound: the count is left Empty.
    return deliver(value, [&] { return list.empty() ? Variant() : Variant::fromLong(static_cast<int32_t>(list.size())); });
}

HRESULT TypeFileSys::get_SizeFile(VARIANT* value) {
    return deliver(value, [&] { return Variant::copyOf(*size_); });
}

HRESULT TypeFileSys::put_SizeFile(VARIANT value) {
    return guard([&] { setSize(value); });
}

HRESULT TypeFileSys::ItemFolder(LONG nIndex, IDispatch** result) { return give(Folders, nIndex, result); }
HRESULT TypeFileSys::ItemFile(LONG nIndex, IDispatch** result) { return give(Files, nIndex, result); }
HRESULT TypeFileSys::ItemDrive(LONG nIndex, IDispatch** result) { return give(Drives, nIndex, result); }
HRESULT TypeFileSys::get_CountFolder(VARIANT* value) { return count(lists_[Folders], value); }
HRESULT TypeFileSys::get_CountFile(VARIANT* value) { return count(lists_[Files], value); }

HRESULT TypeFileSys::ClearAll() {
    return guard([&] {
        for (auto& list : lists_) std::vector<ComPtr<IDispatch>>().swap(list);
    });
}

HRESULT TypeFileSys::AddFolder(VARIANT MyFolder) { return guard([&] { add(Folders, MyFolder); }); }
HRESULT TypeFileSys::AddFile(VARIANT MyFile) { return guard([&] { add(Files, MyFile); }); }
HRESULT TypeFileSys::AddDrive(VARIANT MyDrive) { return guard([&] { add(Drives, MyDrive); }); }

HRESULT TypeFileSys::ItemDriveName(LONG nIndex, VARIANT* result) {
    return deliver(result, [&] {
        const LateBound drive(item(Drives, nIndex).get());
        if (toInt32(*drive.get(L"DriveType")) == 1) return Variant();  // removable: no name
        std::wstring name = toText(*drive.get(L"VolumeName"));
        if (name.empty()) name = L"Local Disk (" + toText(*drive.get(L"Path")) + L")";
        return Variant::fromText(name);
    });
}

HRESULT TypeFileSys::ItemDriveType(LONG nIndex, BSTR* result) {
    return deliver(result, [&] {
        static const wchar_t* const names[] = {L"Do not Exists", L"Removable", L"Drive Fixed",
                                               L"Remote or Network", L"Cd-Rom", L"Ram disk"};
        const int32_t type = toInt32(*LateBound(item(Drives, nIndex).get()).get(L"DriveType"));
        return std::wstring(type >= 0 && type <= 5 ? names[type] : L"Unrecognized");
    });
}

}  // namespace vx
