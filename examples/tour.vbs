' A short tour of Vx_Main from VBScript. Run it with: ./run demo
' (or, on Windows: cscript //nologo tour.vbs, once regsvr32 has registered Vx_Main.dll).
Option Explicit

Sub Show(label, value)
    WScript.Echo "  " & label & ": " & value
End Sub

WScript.Echo "Vx_Main tour"
WScript.Echo ""

' ---- Keyed lists of records ----
WScript.Echo "Ds_ListCollection: an ordered list of records, by position or by key"
Dim people, person, child
Set people = CreateObject("Vx_Main.Ds_ListCollection")
people.Add "Sara", "s1", "Tehran", 31
people.Add "Reza", "r7", "Shiraz", 45
people.Add "Mina", "m2", "Tabriz", 28
Show "records", people.Count
Show "second record", people.Item(2).ValueA & " of " & people.Item(2).ValueB
Show "by key ""R7"" (keys ignore case)", people.Item("R7").ValueA

Set person = people.Add("Someone else", "S1")
Show "adding key ""S1"" again returns the stored record", person.ValueA

Set child = people.Item("m2").AddItem.Add("Ali", "a1", 3)
Show "nested list of ""m2""", people.Item("m2").Count & " record: " & child.ValueA & ", age " & child.ValueB

people.Remove "s1"
Show "after removing ""s1""", people.Count & " records, first is " & people.Item(1).ValueA

On Error Resume Next
Set person = people.Item(9)
Show "position 9", "Err.Number " & Err.Number & " (" & Err.Description & ")"
Err.Clear
Set person = people.Item("nobody")
Show "unknown key", "Err.Number " & Err.Number & " (" & Err.Description & ")"
Err.Clear
On Error GoTo 0

people.Clear
Show "after Clear", people.Count & " records"
WScript.Echo ""

' ---- The registry ----
WScript.Echo "clsReg: the registry by root and path (under HKEY_CURRENT_USER\Software\Vx_Main tour)"
Dim reg, regKeys, regValues, regKey, regItem
Const HKCU = &H80000001
Set reg = CreateObject("Vx_Main.clsReg")
reg.KeyDelete "HKEY_CURRENT_USER\Software\Vx_Main tour"
reg.WriteString HKCU, "Software\Vx_Main tour", "Greeting", "Hello, registry"
reg.WriteString HKCU, "Software\Vx_Main tour", "Accents", "Gr" & Chr(252) & Chr(223) & "e"
reg.WriteDWord HKCU, "Software\Vx_Main tour", "Width", 640
reg.WriteBinary HKCU, "Software\Vx_Main tour", "Bytes", "", Array(0, 1, 254, 255)
reg.CreateKey HKCU, "Software\Vx_Main tour\Colours\Dark"
reg.GoRegisterWrite "HKEY_CURRENT_USER\Software\Vx_Main tour\Colours\Path", "%TEMP%\x", 12
Show "ReadString", reg.ReadString(HKCU, "Software\Vx_Main tour", "Greeting")
Show "accented text reads back unchanged", reg.ReadString(HKCU, "Software\Vx_Main tour", "Accents") = "Gr" & Chr(252) & Chr(223) & "e"
Show "ReadDWord", reg.ReadDWord(HKCU, "Software\Vx_Main tour", "Width")
Show "ReadBinary as text", reg.ReadBinary(HKCU, "Software\Vx_Main tour", "Bytes", True)
Show "a missing value read as a DWORD", reg.ReadDWord(HKCU, "Software\Vx_Main tour", "Height", 480)
Show "the same in a missing key (the default)", reg.ReadDWord(HKCU, "Software\Vx_Main tour\None", "Height", 480)
Show "GoRegisterRead of a full path", reg.GoRegisterRead("HKEY_CURRENT_USER\Software\Vx_Main tour\Width", 4)
Show "subkeys", reg.CountKey(HKCU, "Software\Vx_Main tour")
Set regValues = reg.ListValues(HKCU, "Software\Vx_Main tour\Colours")
Show "type 12 stored the value as type", regValues("Path").Datatype & " (REG_EXPAND_SZ)"
Set regValues = reg.ListValues(HKCU, "Software\Vx_Main tour")
For Each regItem In Array("Greeting", "Width")
    Show "value " & regItem, regValues(regItem).DataValue & " (type " & regValues(regItem).Datatype & ")"
Next
Set regKeys = reg.ListKeys(HKCU, "Software\Vx_Main tour")
Set regKey = regKeys(1)
Show "first subkey", regKey.KeyName & " with " & regKey.CountKey & " subkey, at " & regKey.SubKey
Show "its subtree by relative path", reg.GoEnumKey(HKCU, "Software\Vx_Main tour").Count & " keys"
Show "ValueDelete", reg.ValueDelete("HKEY_CURRENT_USER\Software\Vx_Main tour\Width")
reg.KeyDelete "HKEY_CURRENT_USER\Software\Vx_Main tour"
Show "after KeyDelete, the key exists", reg.IsHasKey(HKCU, "Software\Vx_Main tour")
WScript.Echo ""

' ---- Shamsi and Miladi dates ----
WScript.Echo "Ds_Calendar: Shamsi (Solar Hijri) and Miladi (Gregorian) dates"
Dim cal, inWords
Set cal = CreateObject("Vx_Main.Ds_Calendar")
Show "Shamsi 1385/05/12 is Miladi", cal.MiladyDate("1385/05/12")
Show "Shamsi 1385/02/31 (no Gregorian date, read by its parts)", cal.MiladyDate("1385/02/31")
Show "Shamsi 1403/01/01 in the host's short-date format", cal.MiladyDate("1403/01/01", True)
Show "Miladi 2006/08/03 is Shamsi", cal.ShamsiDate("2006/08/03")
Show "ConvertDateFormat(""2024/03/20"", GoHejryDate = 1)", cal.ConvertDateFormat("2024/03/20", 1)
Show "Miladi 2021/04/01 (the century stays 13)", cal.ShamsiDate("2021/04/01")
Call cal.ShamsiDate("2006/08/03", "", inWords)
Show "the same date in Persian words (" & Len(inWords) & " characters)", inWords
On Error Resume Next
Call cal.ShamsiDate("not a date")
Show "ShamsiDate(""not a date"")", "Err.Number " & Err.Number & " (" & Err.Description & ")"
Err.Clear
On Error GoTo 0
WScript.Echo ""

' ---- Amounts in Persian words ----
WScript.Echo "Ds_AlphaMoney: an amount from 0 to 999,999,999,999 in Persian words"
Dim money
Set money = CreateObject("Vx_Main.Ds_AlphaMoney")
Show "2500", money.ConvertAlphaMoney(2500)
Show "2,500,000", money.ConvertAlphaMoney(2500000)
Show "1,000,000,000,000 (out of range)", money.ConvertAlphaMoney(1000000000000)
money.AlphaThousand = " thousand"
money.AlphaAnd = " and "
Show "2500 with AlphaThousand and AlphaAnd replaced", money.ConvertAlphaMoney(2500)
WScript.Echo "  (a console without Persian letters shows them as question marks)"
WScript.Echo ""
' ---- String and array helpers ----
WScript.Echo "Ds_MyVaribleFunction: fields of a text, joins and comparisons"
Dim tools, path, a, b
Set tools = CreateObject("Vx_Main.Ds_MyVaribleFunction")
path = "C:\Reports\2024\summary.txt"
Show "folder of " & path, tools.GetVar(path, 0, "\", 3)
Show "file name", tools.GetVar(path, 0, "\", 1)
Show "second field of ""red,green,blue""", tools.GetVar("red,green,blue", 1)
Show "fields 1 to 2 of ""a/b/c/d""", tools.GetVar("a/b/c/d", 1, "/", 6, 2)
Show "an array joined", tools.GetVar(Array("x", "y", "z"), -1, " + ")
Show """ABC"" equals ""abc""", tools.IsEqute("ABC", "abc")
Show """x"" is not in (a, b)", tools.IsEqute("x", Array("a", "b"), 4)
a = "Hello World"
b = "WORLD"
Show "finding ""WORLD"" in ""Hello World""", tools.IsEqute(a, b, 7) & " (the variables now hold """ & a & """ and """ & b & """)"
Show "upper bound of an empty array", tools.CountUBound(Array())
Show "Null replaced", tools.GoIsNull(Null, "n/a")
WScript.Echo ""

' ---- The clock ----
WScript.Echo "Ds_SysTime: the clock in Coordinated Universal Time, and a polled countdown"
Dim clock, started, polls
Set clock = CreateObject("Vx_Main.Ds_SysTime")
Show "starting a 1-second countdown", clock.GetTimerRun(1)
Show "asked again at once", clock.GetTimerRun(1)
started = Timer
polls = 0
Do While Not clock.GetTimerRun(1)
    polls = polls + 1
    If Abs(Timer - started) > 5 Then Exit Do
Loop
Show "ran out after", FormatNumber(Abs(Timer - started), 1) & " seconds (" & polls & " polls)"
WScript.Echo ""

' ---- Sorting, words and an XML document ----
WScript.Echo "Ds_MyVaribleFunction: sorting, words, durations; Ds_XML: an XML document"
Dim list, word, doc, item
list = Array("pear", 12, "Apple", 3.5, "banana")
tools.SetSort list                                           ' numbers first, texts ignoring case
Show "sorted", list(0) & ", " & list(1) & ", " & list(2) & ", " & list(3) & ", " & list(4)
tools.GAdd list, "cherry"
Show "appended, then counted", tools.CountArray(list) & " elements"
Show "words", UBound(tools.SplitParagraphWord("Hello, world! Well-known words, counted.")) + 1
Show "most repeated", tools.GetReapetWord("the cat and the hat and the bat", word) & " (" & word & " times)"
Show "whole words replaced", tools.GoFindPaste("cat, catalog, Cat", "cat", "dog", True)
Show "hours worked", tools.GetTotalTime(Array("7:45", "8:30", "9:15:30"))
Show "a valid file name?", tools.IsLegalCharacter("report?.txt")
Set doc = CreateObject("Vx_Main.Ds_XML")
doc.LoadXML "<shop><item price='2'>tea</item><item price='3'>milk</item></shop>"
doc.AddNode "/shop", "item", "bread"
doc.SetAttribute "/shop/item[3]", "price", "1"
Show "items", doc.CountNodes("//item") & ", the cheapest by XPath: " & doc.GetNodeText("//item[@price = 1]")
For Each item In doc.SelectNodes("//item")
    Show "  item", item.text & " at " & doc.GetAttribute(item, "price")
Next
Show "malformed XML", doc.LoadXML("<shop><item></shop>") & " (" & doc.ErrorReason & ")"
Show "the DOM in use", doc.DOMVersion
WScript.Echo ""

' ---- Driving another program's windows ----
WScript.Echo "Ds_EnumChid: find notepad by its window path, type into it, close it"
Dim finder, shell, pad, padEdit, chain, k
Set finder = CreateObject("Vx_Main.Ds_EnumChid")
Set shell = CreateObject("WScript.Shell")
shell.Run "notepad.exe", 1, False
Set pad = finder.WaitFindWindows("Untitled - Notepad")     ' yields until the window is there
Set padEdit = finder.GetChild("Untitled - Notepad~Edit")     ' a child step: class Edit
Show "notepad's window", pad.Title & " (class " & pad.Class & ")"
Show "its edit control", padEdit.Class & ", identifier " & padEdit.ControlID
pad.WinState = 0                                             ' bring it forward
finder.GoCusorXY finder.GetPosLeft(padEdit.MyHwndWin) + 40, finder.GetPosTop(padEdit.MyHwndWin) + 20, 6, 5
finder.SetTextMaching "HELLO FROM VX", 0, 3                  ' simulated keys to the focused window
For k = 1 To 200
    If padEdit.Title = "hello from vx" Then Exit For           ' the keys arrive in their own time
    finder.WaitDoEvents , 20
Next
Show "typed with simulated keys", padEdit.Title
padEdit.SetText "A line set with WM_SETTEXT", 4
Show "set by message", padEdit.Title
Set chain = padEdit.SubParentEnumX(1)                        ' the edit and its ancestors, keyed by class
Show "from the edit up", chain.Item(1).MyPathKey & " in " & chain.Item(2).MyPathKey
padEdit.SendMsg 185, 0, 0                                    ' EM_SETMODIFY: nothing to save
finder.WindowsClose pad.MyHwndWin
For k = 1 To 200
    If finder.GetFindHandle("Untitled - Notepad") = 0 Then Exit For
    finder.WaitDoEvents , 20
Next
Show "notepad closed", finder.GetFindHandle("Untitled - Notepad") = 0
WScript.Echo ""

' ---- The clipboard, and members by name ----
WScript.Echo "Ds_Clipboard: text through the clipboard, its formats described"
Dim clip, formats, fmt, byName, dict, count
Set clip = CreateObject("Vx_Main.Ds_Clipboard")
clip.ClipboardText = "Copied by the tour"
Show "the clipboard's text", clip.ClipboardText
formats = Array()
Show "formats on the clipboard", clip.EnumClipboard(formats)
For Each fmt In formats
    Show "  format", Replace(fmt, vbTab, " - ")
Next
Show "a guess from their number (1 is CF_TEXT)", clip.NowTypeClipboard
WScript.Echo "Ds_SetValueObject: members of any object by name"
Set byName = CreateObject("Vx_Main.Ds_SetValueObject")
Set dict = CreateObject("Scripting.Dictionary")
Show "calling Add", byName.GetValueData(dict, "Add", 1, Array("tour", "one"))
Show "reading Count", byName.GetValueData(dict, "Count", 2, , count) & ", " & count
Show "letting Item(""tour"") = 2, as the text it holds", byName.GetValueData(dict, "Item", 4, Array("tour", 2)) & _
    ", now " & TypeName(dict("tour"))
Show "an unknown member", byName.GetValueData(dict, "Nope", 2)
WScript.Echo ""

' ---- Printers ----
WScript.Echo "Ds_Printer: the printers, the default printer, the drivers a new printer would try"
Dim printers, drivers, printerName, printerNames, defaultDevice
Set printers = CreateObject("Vx_Main.Ds_Printer")
printerNames = ""
For Each printerName In printers.EnumPrintersConst
    printerNames = printerNames & " """ & printerName & """"
Next
Show "local printers", UBound(printers.EnumPrintersConst) + 1 & printerNames
Show "the default printer", """" & printers.DefaultPrint & """"
Set defaultDevice = printers.GetPrinter
If defaultDevice Is Nothing Then
    Show "GetPrinter", "Nothing (no default printer)"
Else
    Show "GetPrinter", defaultDevice.DeviceName & " on " & defaultDevice.Port & ", driver " & defaultDevice.DriverName
End If
Set drivers = CreateObject("Vx_Main.Ds_ListCollection")
Show "drivers AddXpPrint tries, in order", printers.EnumPrintServerDrivers(drivers)
Show "first and last", drivers.Item(1).ValueA & " ... " & drivers.Item(drivers.Count).ValueA
Show "text at address 0 (not memory)", """" & printers.StringFromPointer(0, 100) & """"
WScript.Echo ""

' ---- Launching, memory and the mixer ----
WScript.Echo "Ds_RunShell, Ds_SystemProcess, Ds_VolumeSetting: start and wait, memory, volume"
Dim launcher, sysproc, mixer, answer, gb, mb, kb, speakers, was
Set launcher = CreateObject("Vx_Main.Ds_RunShell")
answer = launcher.RunShell("notepad.exe", , , , 1, , "Untitled - Notepad")   ' returns once the window is there
Show "the shell's answer (above 32: started)", answer
finder.WindowsClose finder.GetFindHandle("Untitled - Notepad")
Show "a program that is not there", launcher.RunShell("vx_no_such_program.exe")  ' 2 (31: no program for the type)
Set sysproc = CreateObject("Vx_Main.Ds_SystemProcess")
sysproc.GetMemorySystem gb, mb, kb
Show "physical memory", gb & " GB, " & mb & " MB, " & kb & " KB"
Set mixer = CreateObject("Vx_Main.Ds_VolumeSetting")
speakers = 0                                                  ' VOL_CONTROL: SPEAKER
Show "speakers' volume", mixer.GetVolume(speakers) & " of 100, muted: " & mixer.GetMute(7)
was = mixer.GetVolume(speakers)
mixer.SetVolume speakers, 40
Show "set to 40, reads", mixer.GetVolume(speakers)
mixer.SetVolume speakers, was                                ' as it was
mixer.CloseMixer
WScript.Echo ""

' ---- Files and drives ----
WScript.Echo "Ds_FileSystem: placeholders, folders, text files, searches, drives"
Dim files, tmp, lines, text, i, found, drive
Set files = CreateObject("Vx_Main.Ds_FileSystem")
tmp = files.PathReplace("*MyTemp*") & "vx-tour"
Show "the temp placeholder", files.PathReplace("*MyTemp*")
files.NewDir tmp & "\notes"
files.NewFile tmp & "\notes\list.txt", "first line" & vbCrLf & "second line", True
files.NewFile tmp & "\notes\plain.txt", "one" & vbCrLf & "two" & vbCrLf & "three"
lines = Array()
If files.GetReadFile(tmp & "\notes\plain.txt", lines) Then
    text = lines(0)
    For i = 1 To UBound(lines)
        text = text & ", " & lines(i)
    Next
    Show "lines read", UBound(lines) + 1 & ": " & text
End If
If files.GoFindFile(tmp, found, "*.txt") Then Show "found", found.CountFile & " files, " & found.SizeFile & " bytes"
Show "sizes", files.GetInfoSizeByte(1536, "0.00") & " and " & files.GetInfoSizeByte(1023)
Set drive = files.GoDrive
Show "the system drive", drive.RootDrive & " " & drive.FileSystem & ", serial " & drive.SerialInfo
files.ActionSHFile 3, tmp                                      ' FO_DELETE: the tour's own folder
Show "folder left", files.IsDirX(tmp)
WScript.Echo ""

' ---- Network ----
WScript.Echo "Ds_Network: names, addresses, ping, services, and its error channel"
Dim net, replies, report
Set net = CreateObject("Vx_Main.Ds_Network")
Show "this computer", net.GetMyComputerName & " (" & net.GetNetConnectionType & ")"
Show "localhost is", net.GetIPFromHostName("localhost") & ", and 127.0.0.1 is " & net.GetHostNameFromIP("127.0.0.1")
If net.GetPingIP("127.0.0.1", replies, 500, 32, 64, 2, report) Then Show "ping", Replace(report, vbCrLf, " / ")
Show "the RPC service", net.GetServiceList.Item("RpcSs").ValueC
Show "servers", "[" & net.GetServerList & "] error " & net.NetCodeError & ": " & net.NetErrorDesration
WScript.Echo ""

WScript.Echo "End of tour."
