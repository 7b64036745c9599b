#include "text/XML.h"

#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/FilePaths.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/SafeArray.h"
#include "core/runtime/Services.h"
#include "core/runtime/Text.h"

#include <msxml2.h>

#include <optional>
#include <vector>

namespace vx {

// "msxml2.DOMDocument.2.6" first; where it is not registered, the newer versions, 3.0 (on
// every Windows since XP) before 6.0, and 4.0 last.
const wchar_t* const XML::domVersions[4] = {L"msxml2.DOMDocument.2.6", L"Msxml2.DOMDocument.3.0",
                                             L"Msxml2.DOMDocument.6.0", L"Msxml2.DOMDocument.4.0"};

namespace {

// The DOM's headers name no interface identifiers for __uuidof: asked by identifier.
template <class I>
ComPtr<I> queryAs(IUnknown* object, REFIID iid) {
    ComPtr<I> out;
    if (object) object->QueryInterface(iid, reinterpret_cast<void**>(out.put()));
    return out;
}

constexpr LONG kItemNone = -1;

// The element children of a node: Item0 is the first.
ComPtr<IXMLDOMNode> childElement(IXMLDOMNode* node, LONG item) {
    ComPtr<IXMLDOMNodeList> children;
    if (FAILED(node->get_childNodes(children.put())) || !children) return nullptr;
    LONG count = 0;
    children->get_length(&count);
    for (LONG i = 0, elements = 0; i < count; ++i) {
        ComPtr<IXMLDOMNode> child;
        DOMNodeType type = NODE_INVALID;
        if (FAILED(children->get_item(i, child.put())) || !child || FAILED(child->get_nodeType(&type))) continue;
        if (type != NODE_ELEMENT) continue;
        if (elements++ == item) return child;
    }
    return nullptr;
}

void checkItem(LONG item) {
    if (item < kItemNone) raise(err::InvalidCall);
}

// The reason a failed call left in the thread's error information, or the system's text
// for its code.
std::wstring reasonOf(HRESULT hr) {
    std::wstring reason;
    IErrorInfo* info = nullptr;
    if (GetErrorInfo(0, &info) == S_OK && info) {
        Bstr text;
        if (SUCCEEDED(info->GetDescription(text.put()))) reason = text.str();
        info->Release();
    }
    if (reason.empty()) {
        wchar_t* text = nullptr;
        if (FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                           nullptr, static_cast<DWORD>(hr), 0, reinterpret_cast<LPWSTR>(&text), 0, nullptr) && text) {
            reason = text;
            LocalFree(text);
        }
    }
    return reason;
}

std::wstring withoutTrailingBreaks(std::wstring text) {
    while (!text.empty() && (text.back() == L'\r' || text.back() == L'\n' || text.back() == L' ')) text.pop_back();
    return text;
}

Variant textValue(std::wstring_view text) { return Variant::fromText(text); }

// A name XML allows for an element or an attribute: a letter, "_" or ":" first, then
// letters, digits, marks, ".", "-", "_", ":" and the middle dot. (Checked here, so that
// every DOM version refuses the same names.)
bool isXmlName(std::wstring_view name) {
    if (name.empty()) return false;
    for (size_t i = 0; i < name.size(); ++i) {
        const wchar_t c = name[i];
        WORD type1 = 0, type3 = 0;
        GetStringTypeW(CT_CTYPE1, &c, 1, &type1);
        GetStringTypeW(CT_CTYPE3, &c, 1, &type3);
        const bool letter = c == L'_' || c == L':' || ((type1 & C1_ALPHA) && c != 0xD7 && c != 0xF7);
        const bool follower = (type1 & C1_DIGIT) || (type3 & C3_NONSPACING) || c == L'.' || c == L'-' || c == 0xB7;
        if (!(letter || (i > 0 && follower)) || (c >= 0xD800 && c <= 0xDFFF)) return false;
    }
    return true;
}

}  // namespace

// ---- the DOM ----

IXMLDOMDocument* XML::dom() {
    if (dom_) return dom_.get();
    for (const wchar_t* version : domVersions) {
        ComPtr<IDispatch> object;
        if (FAILED(service<BindingService>().createObject(version, object.put())) || !object) continue;
        ComPtr<IXMLDOMDocument> document = queryAs<IXMLDOMDocument>(object.get(), IID_IXMLDOMDocument);
        if (!document) continue;
        // Queries are XPath with every version (2.6 and 3.0 would read XSL patterns); a
        // version that cannot is passed over.
        if (!tryStatement([&] { LateBound(object.get()).call(L"setProperty", {textValue(L"SelectionLanguage"), textValue(L"XPath")}); }))
            continue;
        document->put_async(VARIANT_FALSE);
        document->put_validateOnParse(VARIANT_FALSE);
        document->put_resolveExternals(VARIANT_FALSE);
        document->put_preserveWhiteSpace(VARIANT_FALSE);
        dom_ = std::move(document);
        version_ = version;
        return dom_.get();
    }
    raise(err::CannotCreateObject);
}

ComPtr<IXMLDOMNode> XML::documentNode() { return queryAs<IXMLDOMNode>(dom(), IID_IXMLDOMNode); }

void XML::fail(Failure failure, std::wstring_view where) {
    failure.reason = withoutTrailingBreaks(std::move(failure.reason));
    failure_ = std::move(failure);
    if (showErrNodeSelect_ == VARIANT_FALSE) return;
    const std::wstring text = L"Error Code : " + std::to_wstring(failure_.code) + L"\r\nError Reason : " +
                              failure_.reason + L"\r\nError Description XML : " + std::wstring(where);
    service<MessageBoxService>().show(text, L"Ds_XML", MB_OK | MB_ICONHAND);
}

bool XML::load(const std::wstring& source, bool isText) {
    IXMLDOMDocument* document = dom();
    SetErrorInfo(0, nullptr);
    if (!isText && source.find(L'\0') != std::wstring::npos) {
        // A name holding a NUL names no file: nothing is read in its stead.
        fail(Failure{E_INVALIDARG, reasonOf(E_INVALIDARG)}, source);
        return false;
    }
    VARIANT_BOOL loaded = VARIANT_FALSE;
    Bstr text(source);
    HRESULT hr;
    if (isText) {
        hr = document->loadXML(text.get(), &loaded);
    } else {
        VARIANT where;
        VariantInit(&where);
        V_VT(&where) = VT_BSTR;
        V_BSTR(&where) = text.get();  // still owned by text
        hr = document->load(where, &loaded);
    }
    if (SUCCEEDED(hr) && loaded != VARIANT_FALSE) {
        failure_ = Failure{};
        return true;
    }
    Failure failure;
    std::wstring stoppedAt;
    ComPtr<IXMLDOMParseError> error;
    if (SUCCEEDED(document->get_parseError(error.put())) && error) {
        error->get_errorCode(&failure.code);
        error->get_line(&failure.line);
        error->get_linepos(&failure.position);
        Bstr reason, line;
        error->get_reason(reason.put());
        error->get_srcText(line.put());
        failure.reason = reason.str();
        stoppedAt = line.str();
    }
    if (!failure.code) failure.code = FAILED(hr) ? hr : E_FAIL;
    if (failure.reason.empty()) failure.reason = reasonOf(failure.code);
    if (stoppedAt.empty() && !isText) stoppedAt = source;
    fail(std::move(failure), stoppedAt);
    return false;
}

ComPtr<IXMLDOMNode> XML::contextOf(const VARIANT& context) {
    const VARIANT& v = deref(context);
    if (isMissing(v) || isEmpty(v)) return documentNode();
    if (isNull(v)) raise(err::InvalidUseOfNull);
    if (!isObject(v) || isArray(v)) raise(err::TypeMismatch);
    IUnknown* object = unknownOf(v);
    if (!object) return documentNode();
    ComPtr<IXMLDOMNode> node = queryAs<IXMLDOMNode>(object, IID_IXMLDOMNode);
    if (!node) raise(err::TypeMismatch);
    return node;
}

bool XML::queried(HRESULT hr, std::wstring_view xpath) {
    if (FAILED(hr)) {
        fail(Failure{hr, reasonOf(hr)}, xpath);
        return false;
    }
    failure_ = Failure{};
    return true;
}

ComPtr<IXMLDOMNode> XML::selectOne(std::wstring_view xpath, IXMLDOMNode* from) {
    ComPtr<IXMLDOMNode> found;
    SetErrorInfo(0, nullptr);
    if (!queried(from->selectSingleNode(Bstr(xpath).get(), found.put()), xpath)) return nullptr;
    return found;
}

ComPtr<IXMLDOMNodeList> XML::selectAll(std::wstring_view xpath, IXMLDOMNode* from) {
    ComPtr<IXMLDOMNodeList> found;
    SetErrorInfo(0, nullptr);
    if (!queried(from->selectNodes(Bstr(xpath).get(), found.put()), xpath)) return nullptr;
    return found;
}

// A node a member was given (a node object, or an XPath of which the first node found
// counts), or its child element item; null when there is none.
ComPtr<IXMLDOMNode> XML::nodeOf(const VARIANT& node, LONG item) {
    checkItem(item);
    const VARIANT& v = deref(node);
    ComPtr<IXMLDOMNode> found;
    if (isObject(v)) {
        IUnknown* object = unknownOf(v);
        if (!object) raise(err::ObjectNotSet);
        found = queryAs<IXMLDOMNode>(object, IID_IXMLDOMNode);
        if (!found) raise(err::TypeMismatch);
    } else {
        if (isNull(v)) raise(err::InvalidUseOfNull);
        if (isArray(v)) raise(err::TypeMismatch);
        found = selectOne(toText(v), documentNode().get());
    }
    if (!found || item == kItemNone) return found;
    return childElement(found.get(), item);
}

// ---- members ----

HRESULT XML::get_ShowErrNodeSelect(VARIANT_BOOL* value) { return giveField(showErrNodeSelect_, value); }

HRESULT XML::put_ShowErrNodeSelect(VARIANT_BOOL value) {
    return guard([&] { showErrNodeSelect_ = toVariantBool(value != VARIANT_FALSE); });
}

HRESULT XML::LoadFile(BSTR FileName, VARIANT_BOOL* result) {
    return deliver(result, [&] { return load(fullPathName(viewOf(FileName)), false); });
}

HRESULT XML::LoadURL(BSTR URL, VARIANT_BOOL* result) {
    return deliver(result, [&] { return load(std::wstring(viewOf(URL)), false); });
}

HRESULT XML::LoadXML(BSTR XMLText, VARIANT_BOOL* result) {
    return deliver(result, [&] { return load(std::wstring(viewOf(XMLText)), true); });
}

HRESULT XML::SaveFile(BSTR FileName, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        IXMLDOMDocument* document = dom();
        if (viewOf(FileName).find(L'\0') != std::wstring_view::npos) return false;
        Variant where = Variant::fromText(fullPathName(viewOf(FileName)));
        return SUCCEEDED(document->save(*where));
    });
}

HRESULT XML::get_XMLText(BSTR* value) {
    return deliver(value, [&] {
        Bstr text;
        dom()->get_xml(text.put());
        return text;
    });
}

HRESULT XML::get_Document(IXMLDOMNode** value) {
    return deliver(value, [&] { return documentNode(); });
}

HRESULT XML::get_Root(IXMLDOMNode** value) {
    return deliver(value, [&] {
        ComPtr<IXMLDOMElement> root;
        dom()->get_documentElement(root.put());
        return queryAs<IXMLDOMNode>(root.get(), IID_IXMLDOMNode);
    });
}

HRESULT XML::SelectNode(BSTR XPath, VARIANT Context, IXMLDOMNode** result) {
    return deliver(result, [&] { return selectOne(viewOf(XPath), contextOf(Context).get()); });
}

HRESULT XML::SelectNodes(BSTR XPath, VARIANT Context, VARIANT* result) {
    return deliver(result, [&] {
        std::vector<Variant> nodes;
        if (ComPtr<IXMLDOMNodeList> list = selectAll(viewOf(XPath), contextOf(Context).get())) {
            LONG count = 0;
            list->get_length(&count);
            for (LONG i = 0; i < count; ++i) {
                ComPtr<IXMLDOMNode> node;
                if (SUCCEEDED(list->get_item(i, node.put())) && node) nodes.push_back(Variant::fromDispatch(node.get()));
            }
        }
        return makeVariantArray(nodes);
    });
}

HRESULT XML::CountNodes(BSTR XPath, VARIANT Context, LONG* result) {
    return deliver(result, [&] {
        LONG count = 0;
        if (ComPtr<IXMLDOMNodeList> list = selectAll(viewOf(XPath), contextOf(Context).get())) list->get_length(&count);
        return count;
    });
}

HRESULT XML::GetNodeText(VARIANT Node, Falg_SetNodeItem Item, BSTR* result) {
    return deliver(result, [&] {
        Bstr text;
        if (ComPtr<IXMLDOMNode> node = nodeOf(Node, Item)) node->get_text(text.put());
        return text;
    });
}

HRESULT XML::SetNodeText(VARIANT Node, BSTR Value, Falg_SetNodeItem Item, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        ComPtr<IXMLDOMNode> node = nodeOf(Node, Item);
        return node && SUCCEEDED(node->put_text(Value ? Value : Bstr(L"").get()));
    });
}

HRESULT XML::GetAttribute(VARIANT Node, BSTR Name, VARIANT* result) {
    return deliver(result, [&] {
        Variant value;
        ComPtr<IXMLDOMElement> element = queryAs<IXMLDOMElement>(nodeOf(Node, kItemNone).get(), IID_IXMLDOMElement);
        if (!element || element->getAttribute(Bstr(viewOf(Name)).get(), value.put()) != S_OK || !isText(*value))
            return Variant();
        return value;
    });
}

HRESULT XML::SetAttribute(VARIANT Node, BSTR Name, BSTR Value, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        ComPtr<IXMLDOMElement> element = queryAs<IXMLDOMElement>(nodeOf(Node, kItemNone).get(), IID_IXMLDOMElement);
        if (!element || !isXmlName(viewOf(Name))) return false;
        Variant value = Variant::fromText(viewOf(Value));
        return element->setAttribute(Bstr(viewOf(Name)).get(), *value) == S_OK;
    });
}

HRESULT XML::RemoveAttribute(VARIANT Node, BSTR Name, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        ComPtr<IXMLDOMElement> element = queryAs<IXMLDOMElement>(nodeOf(Node, kItemNone).get(), IID_IXMLDOMElement);
        if (!element) return false;
        const Bstr name(viewOf(Name));
        Variant value;
        if (element->getAttribute(name.get(), value.put()) != S_OK || !isText(*value)) return false;
        return element->removeAttribute(name.get()) == S_OK;
    });
}

HRESULT XML::AddNode(VARIANT Parent, BSTR Name, VARIANT Text, Falg_SetNodeItem Item, IXMLDOMNode** result) {
    return deliver(result, [&]() -> ComPtr<IXMLDOMNode> {
        checkItem(Item);
        const VARIANT& text = deref(Text);
        std::optional<std::wstring> content;
        if (!isMissing(text)) content = toText(text);
        ComPtr<IXMLDOMNode> parent = nodeOf(Parent, kItemNone);
        if (!parent || !isXmlName(viewOf(Name))) return nullptr;
        // A document has one root element.
        if (ComPtr<IXMLDOMDocument> document = queryAs<IXMLDOMDocument>(parent.get(), IID_IXMLDOMDocument)) {
            ComPtr<IXMLDOMElement> root;
            if (document->get_documentElement(root.put()) == S_OK && root) return nullptr;
        }
        // The element is made by the parent's own document.
        ComPtr<IXMLDOMDocument> owner;
        parent->get_ownerDocument(owner.put());
        if (!owner) owner = queryAs<IXMLDOMDocument>(parent.get(), IID_IXMLDOMDocument);
        if (!owner) return nullptr;
        ComPtr<IXMLDOMElement> element;
        if (owner->createElement(Bstr(viewOf(Name)).get(), element.put()) != S_OK || !element) return nullptr;
        if (content && FAILED(element->put_text(Bstr(*content).get()))) return nullptr;
        ComPtr<IXMLDOMNode> next, added;
        if (Item != kItemNone) next = childElement(parent.get(), Item);
        const HRESULT hr = next ? parent->insertBefore(element.get(), *Variant::fromUnknown(next.get()), added.put())
                                : parent->appendChild(element.get(), added.put());
        if (FAILED(hr)) return nullptr;
        return added;
    });
}

HRESULT XML::RemoveNode(VARIANT Node, Falg_SetNodeItem Item, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        ComPtr<IXMLDOMNode> node = nodeOf(Node, Item);
        ComPtr<IXMLDOMNode> parent, removed;
        if (!node || FAILED(node->get_parentNode(parent.put())) || !parent) return false;
        return SUCCEEDED(parent->removeChild(node.get(), removed.put()));
    });
}

HRESULT XML::get_ErrorCode(LONG* value) { return giveField(failure_.code, value); }
HRESULT XML::get_ErrorReason(BSTR* value) { return giveText(failure_.reason, value); }
HRESULT XML::get_ErrorLine(LONG* value) { return giveField(failure_.line, value); }
HRESULT XML::get_ErrorPosition(LONG* value) { return giveField(failure_.position, value); }

HRESULT XML::get_DOMVersion(BSTR* value) {
    return deliver(value, [&] {
        dom();
        return version_;
    });
}

}  // namespace vx
