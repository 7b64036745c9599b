' XML documents: Ds_XML loads a document from a text, a file or a URL, finds nodes by
' XPath, changes texts, attributes and elements, and saves it. The nodes it hands out
' are the platform's own DOM nodes (IXMLDOMNode). Run: cscript //nologo xml.vbs
Option Explicit

Dim xml, node, nodes, i, fso, folder, file, copy

Set xml = CreateObject("Vx_Main.Ds_XML")
WScript.Echo "DOM in use: " & xml.DOMVersion           ' such as Msxml2.DOMDocument.6.0

' A document from a text. Every query is XPath.
If Not xml.LoadXML("<shop><item id='1'>tea</item><item id='2'>milk</item>" & _
        "<item id='3'><name>bread</name><price>2</price></item></shop>") Then
    WScript.Echo "Not loaded: " & xml.ErrorReason
    WScript.Quit 1
End If
WScript.Echo "Root: " & xml.Root.nodeName
WScript.Echo "Items: " & xml.CountNodes("/shop/item")
WScript.Echo "Item 2: " & xml.GetNodeText("/shop/item[@id='2']")
' Item numbers the child elements from 0: the price is child element 1 of item 3.
WScript.Echo "Price of bread: " & xml.GetNodeText("/shop/item[3]", 1)

' Nodes: one (Nothing when none), or all of them as an array.
Set node = xml.SelectNode("/shop/item[1]")
WScript.Echo "First item: " & node.text & " (id " & xml.GetAttribute(node, "id") & ")"
nodes = xml.SelectNodes("//item/@id")
For i = 0 To UBound(nodes)
    WScript.Echo "  id " & nodes(i).text
Next
WScript.Echo "Missing node is Nothing: " & (xml.SelectNode("/shop/none") Is Nothing)

' Changes: texts, attributes, elements.
xml.SetNodeText "/shop/item[1]", "coffee"
xml.SetAttribute "/shop/item[2]", "colour", "white"
xml.AddNode "/shop", "item", "cake"
xml.RemoveNode "/shop/item[3]"
WScript.Echo "After changes: " & xml.CountNodes("/shop/item") & " items, first " & _
    xml.GetNodeText("/shop/item[1]") & ", last " & xml.GetNodeText("/shop/item[last()]")

' Saving and loading a file (in a folder of its own, removed at the end).
Set fso = CreateObject("Scripting.FileSystemObject")
folder = fso.BuildPath(fso.GetSpecialFolder(2), fso.GetTempName)   ' 2: the temporary folder
fso.CreateFolder folder
file = fso.BuildPath(folder, "shop.xml")
WScript.Echo "Saved: " & xml.SaveFile(file)
Set copy = CreateObject("Vx_Main.Ds_XML")
WScript.Echo "Loaded from the file: " & copy.LoadFile(file) & ", colour " & copy.GetAttribute("/shop/item[2]", "colour")
fso.DeleteFolder folder

' What fails says so: False from the load, the reason in ErrorCode and ErrorReason
' (ShowErrNodeSelect = True also shows them in a message box).
WScript.Echo "Malformed text loads: " & copy.LoadXML("<a><b></a>")
WScript.Echo "Has an error code: " & (copy.ErrorCode <> 0)
WScript.Echo "Query that does not parse finds: " & xml.CountNodes("/shop[")
WScript.Echo "Done."
