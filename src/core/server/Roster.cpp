#include "core/server/Roster.h"

#include "core/collections/DataCollection.h"
#include "core/collections/ListCollection.h"
#include "core/dispatch/TypeLibrary.h"
#include "core/latebound/SetValueObject.h"
#include "core/runtime/ComPtr.h"
#include "desktop/Clipboard.h"
#include "desktop/ENumAction.h"
#include "desktop/EnumChid.h"
#include "desktop/ListChild.h"
#include "printing/PrintJob.h"
#include "printing/PrintJobs.h"
#include "printing/Printer.h"
#include "desktop/RunShell.h"
#include "desktop/SystemProcess.h"
#include "desktop/VolumeSetting.h"
#include "files/DriveInfo.h"
#include "files/FileSystem.h"
#include "files/RecycleBin.h"
#include "files/TypeFileDetails.h"
#include "files/TypeFileSys.h"
#include "network/MakeAccount.h"
#include "network/Network.h"
#include "registry/Reg.h"
#include "registry/RegEnumKey.h"
#include "registry/RegEnumValue.h"
#include "registry/RegKey.h"
#include "registry/RegKeys.h"
#include "registry/RegValue.h"
#include "registry/RegValues.h"
#include "text/AlphaMoney.h"
#include "text/Calendar.h"
#include "text/MyVaribleFunction.h"
#include "text/SysTime.h"
#include "text/XML.h"

#include <iterator>

namespace vx {

namespace {

// One line a class. Adding a class: its interface and coclass in IDL, its .h/.cpp pair,
// and its line here.
const ClassEntry roster[] = {
    classLine<DataCollection>(),
    classLine<ListCollection>(),
    classLine<PrintJobs>(),
    classLine<PrintJob>(),
    classLine<Printer>(),
    classLine<Reg>(),
    classLine<RegKey>(),
    classLine<RegKeys>(),
    classLine<RegValue>(),
    classLine<RegValues>(),
    classLine<RegEnumKeyList>(),
    classLine<RegEnumValueList>(),
    classLine<SetValueObject>(),
    classLine<Calendar>(),
    classLine<AlphaMoney>(),
    classLine<MyVaribleFunction>(),
    classLine<XML>(),
    classLine<SysTime>(),
    classLine<EnumChid>(),
    classLine<ENumAction>(),
    classLine<ListChild>(),
    classLine<Clipboard>(),
    classLine<Launcher>(),
    classLine<SystemProcess>(),
    classLine<VolumeSetting>(),
    classLine<FileSystem>(),
    classLine<TypeFileSys>(),
    classLine<DriveInfo>(),
    classLine<RecycleBin>(),
    classLine<TypeFileDetails>(),
    classLine<Network>(),
    classLine<MakeAccount>(),
};

}  // namespace

const ClassEntry* rosterBegin() noexcept { return std::begin(roster); }
const ClassEntry* rosterEnd() noexcept { return std::end(roster); }

const ClassEntry* findClass(REFCLSID clsid) noexcept {
    for (const ClassEntry* c = rosterBegin(); c != rosterEnd(); ++c)
        if (IsEqualCLSID(c->classId(), clsid)) return c;
    return nullptr;
}

std::wstring className(const ClassEntry& c) {
    ComPtr<ITypeInfo> info = ComPtr<ITypeInfo>::adopt(typeInfoOf(c.classId()));
    BSTR name = nullptr;
    if (!info || FAILED(info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr))) return {};
    std::wstring text = name ? name : L"";
    SysFreeString(name);
    return text;
}

Instancing instancingOf(const ClassEntry& c) noexcept {
    ComPtr<ITypeInfo> info = ComPtr<ITypeInfo>::adopt(typeInfoOf(c.classId()));
    TYPEATTR* attr = nullptr;
    if (!info || FAILED(info->GetTypeAttr(&attr))) return Instancing::Dependent;
    const WORD flags = attr->typekind == TKIND_COCLASS ? attr->wTypeFlags : 0;
    info->ReleaseTypeAttr(attr);
    if (!(flags & TYPEFLAG_FCANCREATE)) return Instancing::Dependent;
    return (flags & TYPEFLAG_FAPPOBJECT) ? Instancing::Global : Instancing::Creatable;
}

}  // namespace vx
