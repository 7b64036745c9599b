#pragma once
// Ds_XML: an XML document held by the platform's XML DOM, created on first use by the
// first of its versions that is registered and reads queries as XPath.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/ComPtr.h"

#include <string>

namespace vx {

class XML : public DispatchObject<XML, _Ds_XML> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_XML; }

    // The DOM's ProgIDs, in the order they are tried.
    static const wchar_t* const domVersions[4];

    HRESULT STDMETHODCALLTYPE get_ShowErrNodeSelect(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE put_ShowErrNodeSelect(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE LoadFile(BSTR FileName, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE LoadURL(BSTR URL, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE LoadXML(BSTR XMLText, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE SaveFile(BSTR FileName, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE get_XMLText(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_Document(IXMLDOMNode** value) override;
    HRESULT STDMETHODCALLTYPE get_Root(IXMLDOMNode** value) override;
    HRESULT STDMETHODCALLTYPE SelectNode(BSTR XPath, VARIANT Context, IXMLDOMNode** result) override;
    HRESULT STDMETHODCALLTYPE SelectNodes(BSTR XPath, VARIANT Context, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE CountNodes(BSTR XPath, VARIANT Context, LONG* result) override;
    HRESULT STDMETHODCALLTYPE GetNodeText(VARIANT Node, Falg_SetNodeItem Item, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE SetNodeText(VARIANT Node, BSTR Value, Falg_SetNodeItem Item, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE GetAttribute(VARIANT Node, BSTR Name, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE SetAttribute(VARIANT Node, BSTR Name, BSTR Value, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE RemoveAttribute(VARIANT Node, BSTR Name, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE AddNode(VARIANT Parent, BSTR Name, VARIANT Text, Falg_SetNodeItem Item,
                                      IXMLDOMNode** result) override;
    HRESULT STDMETHODCALLTYPE RemoveNode(VARIANT Node, Falg_SetNodeItem Item, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE get_ErrorCode(LONG* value) override;
    HRESULT STDMETHODCALLTYPE get_ErrorReason(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_ErrorLine(LONG* value) override;
    HRESULT STDMETHODCALLTYPE get_ErrorPosition(LONG* value) override;
    HRESULT STDMETHODCALLTYPE get_DOMVersion(BSTR* value) override;

private:
    // The last failure of a load or a query.
    struct Failure {
        LONG code = 0;
        std::wstring reason;
        LONG line = 0;
        LONG position = 0;
    };

    IXMLDOMDocument* dom();
    ComPtr<IXMLDOMNode> documentNode();
    bool load(const std::wstring& source, bool isText);
    ComPtr<IXMLDOMNode> contextOf(const VARIANT& context);
    bool queried(HRESULT hr, std::wstring_view xpath);
    ComPtr<IXMLDOMNode> selectOne(std::wstring_view xpath, IXMLDOMNode* from);
    ComPtr<IXMLDOMNodeList> selectAll(std::wstring_view xpath, IXMLDOMNode* from);
    ComPtr<IXMLDOMNode> nodeOf(const VARIANT& node, LONG item);
    void fail(Failure failure, std::wstring_view where);

    VARIANT_BOOL showErrNodeSelect_ = VARIANT_FALSE;
    ComPtr<IXMLDOMDocument> dom_;
    std::wstring version_;
    Failure failure_;
};

}  // namespace vx
