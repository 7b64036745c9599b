' ---- the test ----
' Ds_XML from a late-bound host: documents from texts, files and URLs, queries, changes,
' saving, and what a bad document, file, query or argument gives. Documents are compared
' by their parsed content, never by the text a DOM writes.
Dim x, y, n, r, nodes, folder, file, sh, fso, box, report, lines, i, url, waits

Set sh = CreateObject("WScript.Shell")
Set fso = CreateObject("Scripting.FileSystemObject")
folder = fso.GetParentFolderName(WScript.ScriptFullName)
Set x = CreateObject("Vx_Main.Ds_XML")

Section "a document from a text"
r = x.DOMVersion
Check "a DOM of one of the versions tried: " & r, r = "msxml2.DOMDocument.2.6" Or r = "Msxml2.DOMDocument.3.0" Or _
    r = "Msxml2.DOMDocument.6.0" Or r = "Msxml2.DOMDocument.4.0"
Check "Ds_XML objects are separate", Not (CreateObject("Vx_Main.Ds_XML") Is x)
Check "loaded", x.LoadXML("<shop><item id='1'>tea</item><!-- a note --><item id='2'>milk</item>" & _
    "<item id='3'><name>bread</name><price>2</price></item></shop>")
CheckEqual "a node's text", x.GetNodeText("/shop/item[@id='2']"), "milk"
CheckEqual "all the text inside it", x.GetNodeText("/shop/item[3]"), "bread2"
CheckEqual "Item0 is the first child element", x.GetNodeText("/shop", 0), "tea"
CheckEqual "comments are no items", x.GetNodeText("/shop", 1), "milk"
CheckEqual "Item2", x.GetNodeText("/shop/item[3]", 1), "2"
CheckEqual "no such item", x.GetNodeText("/shop", 8), ""
CheckEqual "no such node", x.GetNodeText("/shop/nothing"), ""
CheckEqual "queries are XPath", x.GetNodeText("/shop/item[contains(., 'mil')]/@id"), "2"
CheckEqual "XPath functions", x.CountNodes("/shop/item[position() = last()]/*"), 2
CheckEqual "counted", x.CountNodes("//item"), 3
CheckEqual "none", x.CountNodes("//nothing"), 0
CheckEqual "the root", x.Root.nodeName, "shop"
CheckEqual "the document", x.Document.nodeType, 9
Check "the document's text holds it", InStr(x.XMLText, "milk") > 0

Section "nodes"
Set n = x.SelectNode("/shop/item[2]")
CheckEqual "a node object", n.nodeName & "=" & n.text, "item=milk"
Check "none found", x.SelectNode("/shop/none") Is Nothing
CheckEqual "from a context node", x.SelectNode("name", x.SelectNode("/shop/item[3]")).text, "bread"
CheckEqual "a node given back", x.GetNodeText(n), "milk"
nodes = x.SelectNodes("//item/@id")
CheckEqual "many nodes", UBound(nodes), 2
CheckEqual "in document order", nodes(0).text & nodes(1).text & nodes(2).text, "123"
CheckEqual "none: an empty array", UBound(x.SelectNodes("//none")), -1
CheckEqual "counted from a context", x.CountNodes("*", x.Root), 3

Section "changes"
Check "a text set", x.SetNodeText("/shop/item[1]", "coffee")
CheckEqual "read back", x.GetNodeText("/shop/item[@id='1']"), "coffee"
Check "a child element's text", x.SetNodeText("/shop/item[3]", "3", 1)
CheckEqual "read back", x.GetNodeText("/shop/item[3]/price"), "3"
Check "no node, nothing set", Not x.SetNodeText("/shop/none", "x")
CheckEqual "an attribute", x.GetAttribute("/shop/item[2]", "id"), "2"
Check "a missing attribute is Empty", IsEmpty(x.GetAttribute("/shop/item[2]", "colour"))
Check "a missing node too", IsEmpty(x.GetAttribute("/shop/none", "id"))
Check "an attribute set", x.SetAttribute("/shop/item[2]", "colour", "white")
CheckEqual "read back", x.GetAttribute(n, "colour"), "white"
Check "and removed", x.RemoveAttribute("/shop/item[2]", "colour")
Check "gone", IsEmpty(x.GetAttribute(n, "colour"))
Check "removing it again", Not x.RemoveAttribute("/shop/item[2]", "colour")
Check "no attribute on text", Not x.SetAttribute("/shop/item[2]/text()", "a", "b")
Set n = x.AddNode("/shop", "item", "cake")
CheckEqual "added at the end", x.GetNodeText("/shop/item[last()]"), "cake"
CheckEqual "as the node returned", n.text, "cake"
x.AddNode "/shop", "first", , 0
CheckEqual "added before Item0", x.SelectNode("/shop/*[1]").nodeName, "first"
x.AddNode "/shop", "second", 5, 1
CheckEqual "before Item1, with a number as its text", x.GetNodeText("/shop", 1), "5"
x.AddNode x.Root, "last", "z", 8
CheckEqual "an item past the end: at the end", x.GetNodeText("/shop/*[last()]"), "z"
Check "a name XML does not allow", x.AddNode("/shop", "1st") Is Nothing
Check "no parent", x.AddNode("/none", "item") Is Nothing
Check "a second root", x.AddNode("/", "other") Is Nothing
Check "removed", x.RemoveNode("/shop/first")
Check "an item removed", x.RemoveNode("/shop", 0)
CheckEqual "what is left", x.CountNodes("/shop/*"), 5
Check "nothing to remove", Not x.RemoveNode("/shop/none")
Check "the root removed", x.RemoveNode("/shop")
Check "an empty document", x.Root Is Nothing
Check "takes a new root", Not (x.AddNode("/", "list") Is Nothing)
CheckEqual "which is the root", x.Root.nodeName, "list"

Section "files and URLs"
x.LoadXML "<list><p lang='fa'>" & T("words.sentence") & "</p><p lang='en'>tea &amp; milk</p></list>"
file = folder & "\saved.xml"
Check "saved", x.SaveFile(file)
Check "the file is there", fso.FileExists(file)
Set y = CreateObject("Vx_Main.Ds_XML")
Check "loaded from the file", y.LoadFile(file)
CheckEqual "the same content", y.GetNodeText("/list/p[@lang='fa']"), T("words.sentence")
CheckEqual "escaped text too", y.GetNodeText("/list/p[@lang='en']"), "tea & milk"
sh.CurrentDirectory = folder
Check "a relative name", y.LoadFile("saved.xml") And y.CountNodes("//p") = 2
Check "saved under a relative name", y.SaveFile("again.xml") And fso.FileExists(folder & "\again.xml")
url = "file:///" & Replace(file, "\", "/")
Check "loaded from a URL", y.LoadXML("<a/>") And y.LoadURL(url)
CheckEqual "the same content again", y.GetNodeText("/list/p[@lang='fa']"), T("words.sentence")
fso.DeleteFile file
fso.DeleteFile folder & "\again.xml"

Section "what fails"
Check "malformed XML", Not y.LoadXML("<a><b></a>")
Check "has a code", y.ErrorCode <> 0
Check "and a reason", Len(y.ErrorReason) > 0
Check "line and position are numbers", y.ErrorLine >= 0 And y.ErrorPosition >= 0
Check "and leaves an empty document", y.Root Is Nothing
Check "a missing file", Not y.LoadFile(folder & "\no such file.xml")
Check "has a code too", y.ErrorCode <> 0
Check "a URL that names nothing", Not y.LoadURL("file:///" & Replace(folder, "\", "/") & "/none.xml")
Check "a good load clears the error", y.LoadXML("<a><b/></a>") And y.ErrorCode = 0 And y.ErrorReason = ""
CheckEqual "a query that does not parse finds nothing", y.CountNodes("/a["), 0
Check "and says why", y.ErrorCode <> 0 And Len(y.ErrorReason) > 0
Check "no node either", y.SelectNode("/a[") Is Nothing
CheckEqual "no text", y.GetNodeText("]]"), ""
CheckEqual "a good query clears it", y.CountNodes("/a/b") & "," & y.ErrorCode, "1,0"
On Error Resume Next
r = y.CountNodes(Null)
CheckError "Null as a query", Err.Number, 13
Err.Clear
r = y.GetNodeText(Null)
CheckError "Null as a node", Err.Number, 94
Err.Clear
r = y.GetNodeText(Array("/a"))
CheckError "an array as a node", Err.Number, 13
Err.Clear
r = y.GetNodeText(sh)
CheckError "an object that is no node", Err.Number, 13
Err.Clear
r = y.GetNodeText(Nothing)
CheckError "Nothing", Err.Number, 91
Err.Clear
r = y.GetNodeText("/a", -2)
CheckError "an item below ItemNone", Err.Number, 5
Err.Clear
r = y.SelectNode("*", "/a")
CheckError "a context that is no node", Err.Number, 13
Err.Clear
On Error GoTo 0

Section "the error box"
CheckEqual "off by default", y.ShowErrNodeSelect, False
y.ShowErrNodeSelect = True
report = folder & "\box.txt"
Set box = sh.Exec(Replace(sh.ExpandEnvironmentStrings("%VX_BIN_DIR%"), Chr(0), "") & "\vx_box_fixture.exe Ds_XML """ & report & """")
CheckEqual "a query that does not parse", y.CountNodes("/a["), 0
Set waits = CreateObject("Vx_Main.Ds_EnumChid")
For i = 1 To 500
    If box.Status <> 0 Then Exit For
    waits.WaitDoEvents , 20
Next
CheckEqual "the box was answered and the fixture ended", box.Status, 1
If fso.FileExists(report) Then
    lines = Split(fso.OpenTextFile(report, 1, False, -1).ReadAll, vbCrLf)
    CheckEqual "its title", lines(0), "Ds_XML"
    CheckEqual "one button", lines(1), "OK"
    CheckEqual "an icon", lines(2), "1"
    CheckEqual "the code", lines(3), "Error Code : " & y.ErrorCode
    CheckEqual "the reason", lines(4), "Error Reason : " & y.ErrorReason
    CheckEqual "the query", lines(5), "Error Description XML : /a["
    fso.DeleteFile report
Else
    Fail "the box report", "not written"
End If
If box.Status = 0 Then box.Terminate
