#pragma once
// Ds_AlphaMoney: a whole amount from 0 to 999,999,999,999 in Persian words. The scale
// words and the joining word are properties a host may replace; the digit words are
// fixed.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"

#include <string>
#include <string_view>

namespace vx {

class AlphaMoney : public DispatchObject<AlphaMoney, _Ds_AlphaMoney> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_AlphaMoney; }

    AlphaMoney();

    // The amount in words with the current properties.
    std::wstring convert(double amount) const;

    HRESULT STDMETHODCALLTYPE get_AlphaThousand(BSTR* value) override { return giveText(thousand_, value); }
    HRESULT STDMETHODCALLTYPE put_AlphaThousand(BSTR* value) override { return putText(thousand_, value); }
    HRESULT STDMETHODCALLTYPE get_AlphaMillion(BSTR* value) override { return giveText(million_, value); }
    HRESULT STDMETHODCALLTYPE put_AlphaMillion(BSTR* value) override { return putText(million_, value); }
    HRESULT STDMETHODCALLTYPE get_AlphaMilliard(BSTR* value) override { return giveText(milliard_, value); }
    HRESULT STDMETHODCALLTYPE put_AlphaMilliard(BSTR* value) override { return putText(milliard_, value); }
    HRESULT STDMETHODCALLTYPE get_AlphaAnd(BSTR* value) override { return giveText(and_, value); }
    HRESULT STDMETHODCALLTYPE put_AlphaAnd(BSTR* value) override { return putText(and_, value); }
    HRESULT STDMETHODCALLTYPE ConvertAlphaMoney(double Adad, BSTR* result) override;

private:
    static HRESULT putText(std::wstring& field, const BSTR* value) { return value ? takeText(field, *value) : E_POINTER; }
    // The words of 0 to 999 ("" for 0).
    std::wstring threeDigitWords(int n) const;

    std::wstring and_, million_, thousand_, milliard_;
};

}  // namespace vx
