#include "core/server/Roster.h"

#include "Vx_Main.h"
#include "core/collections/DataCollection.h"
#include "core/collections/ListCollection.h"
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
#include "desktop/EnumChid.h"
#include "desktop/ENumAction.h"
#include "desktop/ListChild.h"

#include <iterator>

namespace vx {

namespace {

// One line a class, in the order of the coclasses in Vx_Main.idl.
const ClassEntry roster[] = {
    {&CLSID_Ds_DataCollection, L"Ds_DataCollection", Instancing::Dependent, &createInstance<DataCollection>},
    {&CLSID_Ds_ListCollection, L"Ds_ListCollection", Instancing::Global, &createInstance<ListCollection>},
    {&CLSID_clsReg, L"clsReg", Instancing::Global, &createInstance<Reg>},
    {&CLSID_cRegKey, L"cRegKey", Instancing::Dependent, &createInstance<RegKey>},
    {&CLSID_cRegKeys, L"cRegKeys", Instancing::Dependent, &createInstance<RegKeys>},
    {&CLSID_cRegValue, L"cRegValue", Instancing::Dependent, &createInstance<RegValue>},
    {&CLSID_cRegValues, L"cRegValues", Instancing::Dependent, &createInstance<RegValues>},
    {&CLSID_cRegEnumKey, L"cRegEnumKey", Instancing::Dependent, &createInstance<RegEnumKeyList>},
    {&CLSID_cRegEnumValue, L"cRegEnumValue", Instancing::Dependent, &createInstance<RegEnumValueList>},
    {&CLSID_Ds_Calendar, L"Ds_Calendar", Instancing::Global, &createInstance<Calendar>},
    {&CLSID_Ds_AlphaMoney, L"Ds_AlphaMoney", Instancing::Global, &createInstance<AlphaMoney>},
    {&CLSID_Ds_MyVaribleFunction, L"Ds_MyVaribleFunction", Instancing::Global, &createInstance<MyVaribleFunction>},
    {&CLSID_Ds_SysTime, L"Ds_SysTime", Instancing::Global, &createInstance<SysTime>},
    {&CLSID_Ds_EnumChid, L"Ds_EnumChid", Instancing::Global, &createInstance<EnumChid>},
    {&CLSID_Ds_ENumAction, L"Ds_ENumAction", Instancing::Dependent, &createInstance<ENumAction>},
    {&CLSID_Ds_ListChild, L"Ds_ListChild", Instancing::Dependent, &createInstance<ListChild>},
};

}  // namespace

const ClassEntry* rosterBegin() noexcept { return std::begin(roster); }
const ClassEntry* rosterEnd() noexcept { return std::end(roster); }

const ClassEntry* findClass(REFCLSID clsid) noexcept {
    for (const ClassEntry* c = rosterBegin(); c != rosterEnd(); ++c)
        if (IsEqualCLSID(*c->clsid, clsid)) return c;
    return nullptr;
}

}  // namespace vx
