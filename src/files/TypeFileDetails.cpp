#include "files/TypeFileDetails.h"

#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/LateBound.h"

namespace vx {

void TypeFileDetails::bind(std::wstring_view fileName) {
    const size_t cut = fileName.rfind(L'\\');
    if (cut == std::wstring_view::npos) raise(err::InvalidCall);  // no folder part
    const LateBound shell = LateBound::create(L"Shell.Application");
    const Variant folder = shell.call(L"NameSpace", {Variant::fromText(fileName.substr(0, cut))});
    folder_ = ComPtr<IDispatch>(dispatchOf(*folder));
    const Variant item = LateBound(folder_.get()).call(L"ParseName", {Variant::fromText(fileName.substr(cut + 1))});
    item_ = ComPtr<IDispatch>(dispatchOf(*item));
}

HRESULT TypeFileDetails::NewDetailedFile(BSTR FileName) {
    return guard([&] { bind(viewOf(FileName)); });
}

HRESULT TypeFileDetails::column(long number, BSTR* value) const noexcept {
    return deliver(value, [&] {
        if (!folder_ || !item_) raise(err::ObjectNotSet);
        const Variant text = LateBound(folder_.get()).call(L"GetDetailsOf", {Variant::fromDispatch(item_.get()),
                                                                            Variant::fromLong(number)});
        return isNull(*text) ? std::wstring() : toText(*text);
    });
}

}  // namespace vx
