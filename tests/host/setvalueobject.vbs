' Ds_SetValueObject from a late-bound host: members of a form control stand-in (a script
' class with Name, Object, Caption, a Font of type StdFont and a Picture), of
' Scripting.Dictionary and of a StdFont the host made, read, let, set and called by name;
' and its message box, shown for real and answered by the box fixture.

' A control on a form: Object is the control's own inner object (Nothing when it has none).
Class FormControl
    Public Name
    Public Caption
    Public Count
    Public Font
    Public Picture
    Public Inner
    Public Calls
    Public Property Get Object
        Set Object = Inner
    End Property
    Public Function Twice(x)
        Twice = x * 2
    End Function
    Public Sub Touch()
        Count = Count + 1
    End Sub
    Public Sub Many(a1, a2, a3, a4, a5, a6, a7, a8, a9, a10, a11, a12, a13, a14, a15, a16)
        Calls = a1 & a2 & a16
    End Sub
    Private mSlots
    Private Sub Class_Initialize
        Set mSlots = CreateObject("Scripting.Dictionary")
    End Sub
    Public Property Set Slot(i, v)
        mSlots.Add i, v
    End Property
    Public Property Get Slot(i)
        Set Slot = mSlots(i)
    End Property
    Public Sub Refuse()
        Count = Count / 0
    End Sub
End Class

Class InnerControl
    Public Text
End Class

Dim o, ctl, inner, d, font2, clip, sh, binDir, r, res, k, kind
Dim grid(1, 1)

Set o = CreateObject("Vx_Main.Ds_SetValueObject")
Set sh = CreateObject("WScript.Shell")
binDir = Replace(sh.ExpandEnvironmentStrings("%VX_BIN_DIR%"), Chr(0), "")

Set ctl = New FormControl
ctl.Name = "txtName"
ctl.Caption = "hello"
ctl.Count = 5
Set ctl.Inner = Nothing
Set ctl.Font = CreateObject("StdFont")
ctl.Font.Size = 12
' A picture: the bitmap another program put on the clipboard.
sh.Run """" & binDir & "\vx_clip_fixture.exe"" sync", 0, True
sh.Run """" & binDir & "\vx_clip_fixture.exe"" put bitmap=8x8", 0, True
Set clip = CreateObject("Vx_Main.Ds_Clipboard")
Set ctl.Picture = clip.ClipboardPicture

Section "reading (call kind 2)"
res = Empty
CheckEqual "a text", o.GetValueData(ctl, "Caption", 2, , res), "Get"
CheckEqual "is copied", res, "hello"
CheckEqual "an Integer", o.GetValueData(ctl, "Count", 2, , res), "Get"
CheckEqual "keeps its type", VarType(res), 2
CheckEqual "a font", o.GetValueData(ctl, "Font", 2, , res), "GSet"
Check "is the control's own font", res Is ctl.Font
CheckEqual "a picture", o.GetValueData(ctl, "Picture", 2, , res), "GSet"
Check "is the control's own picture", res Is ctl.Picture
CheckEqual "a dotted path", o.GetValueData(ctl, "Font.Size", 2, , res), "Get"
CheckEqual "reads the font's size", res, 12
CheckEqual "a function's result", o.GetValueData(ctl, "Twice", 2, 21, res), "Get"
CheckEqual "with its argument", res, 42
ctl.Caption = Array(1, 2)
CheckEqual "an array", o.GetValueData(ctl, "Caption", 2, , res), "Get"
CheckEqual "is copied", UBound(res), 1
ctl.Caption = "hello"
CheckEqual "a member of a dictionary", o.GetValueData(CreateObject("Scripting.Dictionary"), "Count", 2, , res), "Get"
CheckEqual "without an Object of its own", res, 0
CheckEqual "the result may be left out", o.GetValueData(ctl, "Caption", 2), "Get"
kind = 2
CheckEqual "the call kind in a variable", o.GetValueData(ctl, "Caption", kind), "Get"
CheckEqual "is left as it was", kind, 2

Section "the control's inner object first"
Set inner = New InnerControl
inner.Text = "inner text"
Set ctl.Inner = inner
CheckEqual "a member the inner object has", o.GetValueData(ctl, "Text", 2, , res), "Get"
CheckEqual "is read there", res, "inner text"
CheckEqual "one it lacks", o.GetValueData(ctl, "Caption", 2, , res), "Get"
CheckEqual "is read on the control", res, "hello"
CheckEqual "a let goes to the inner object", o.GetValueData(ctl, "Text", 4, "changed"), "Let"
CheckEqual "there", inner.Text, "changed"
Set ctl.Inner = Nothing

Section "letting (call kind 4): the value takes the member's type"
CheckEqual "a Boolean behind a path", o.GetValueData(ctl, "Font.Bold", 4, "1"), "Let"
CheckEqual "is set", ctl.Font.Bold, True
CheckEqual "an Integer", o.GetValueData(ctl, "Count", 4, "7.5"), "Let"
CheckEqual "rounds half to even", ctl.Count, 8
CheckEqual "and stays an Integer", VarType(ctl.Count), 2
CheckEqual "a text", o.GetValueData(ctl, "Caption", 4, 12), "Let"
CheckEqual "becomes text", VarType(ctl.Caption), 8
ctl.Count = CLng(1)
CheckEqual "a Long", o.GetValueData(ctl, "Count", 4, "40000"), "Let"
CheckEqual "holds a Long", ctl.Count, 40000
ctl.Count = Empty
CheckEqual "an Empty member", o.GetValueData(ctl, "Count", 4, "abc"), "Let"
CheckEqual "takes the value as it is", ctl.Count, "abc"
Set d = CreateObject("Scripting.Dictionary")
d.Add "k", "v"
CheckEqual "an array: index arguments, then the value", o.GetValueData(d, "Item", 4, Array("k", 5)), "Let"
CheckEqual "the item held text, so it holds text", VarType(d("k")), 8
ctl.Count = 5
CheckEqual "beyond an Integer", o.GetValueData(ctl, "Count", 4, 40000), "Error"
CheckEqual "leaves the member", ctl.Count, 5
CheckEqual "not a number", o.GetValueData(ctl, "Count", 4, "abc"), "Error"
CheckEqual "no value", o.GetValueData(ctl, "Count", 4), "Error"

Section "setting (call kind 8)"
Set font2 = CreateObject("StdFont")
CheckEqual "an object", o.GetValueData(ctl, "Font", 8, font2), "Set"
Check "is stored by reference", ctl.Font Is font2
CheckEqual "with an index", o.GetValueData(ctl, "Slot", 8, Array(2, font2)), "Set"
Check "into the indexed property", ctl.Slot(2) Is font2

Section "calling (call kind 1)"
ctl.Count = 1
CheckEqual "a method", o.GetValueData(ctl, "Touch", 1), "Let"
CheckEqual "ran", ctl.Count, 2
CheckEqual "an empty array passes nothing", o.GetValueData(ctl, "Touch", 1, Array()), "Let"
CheckEqual "ran again", ctl.Count, 3
CheckEqual "arguments in order", o.GetValueData(d, "Add", 1, Array("k2", "v2")), "Let"
CheckEqual "added", d("k2"), "v2"
CheckEqual "sixteen arguments", o.GetValueData(ctl, "Many", 1, Array("a", "b", 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, "p")), "Let"
CheckEqual "all arrive", ctl.Calls, "abp"
ctl.Calls = Empty
CheckEqual "seventeen are too many", o.GetValueData(ctl, "Many", 1, Array(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17)), "Error"
Check "and nothing is called", IsEmpty(ctl.Calls)
CheckEqual "a two-dimensional array", o.GetValueData(ctl, "Touch", 1, grid), "Error"

Section "failures never raise"
On Error Resume Next
res = "untouched"
CheckEqual "an unknown member", o.GetValueData(ctl, "Nope", 2, , res), "Error"
CheckError "raises nothing", Err.Number, 0
CheckEqual "and leaves the result", res, "untouched"
For Each k In Array(0, 3, 5, 16, -1)
    CheckEqual "call kind " & k, o.GetValueData(ctl, "Caption", k), "Error"
Next
CheckEqual "Nothing", o.GetValueData(Nothing, "Caption", 2), "Error"
CheckEqual "an empty member name", o.GetValueData(ctl, "", 2), "Error"
CheckEqual "a path through a value", o.GetValueData(ctl, "Caption.Length", 2), "Error"
CheckError "none raised", Err.Number, 0
On Error GoTo 0

' The box, shown for real: the fixture finds it, writes down what it shows and presses OK.
' Its report: the title, the buttons, 1 for an icon, then the text.
Function BoxShown(report)
    Dim stream
    If gFso.FileExists(report) Then gFso.DeleteFile report
    sh.Run """" & binDir & "\vx_box_fixture.exe"" ""Invalid Type"" """ & report & """", 0, False
    o.ShowErrorCallByName
    Set stream = gFso.OpenTextFile(report, 1, False, -1)
    BoxShown = stream.ReadAll
    stream.Close
End Function

Section "the error box"
Dim report
report = gFso.GetParentFolderName(WScript.ScriptFullName) & "\box.txt"
CheckEqual "a member the control lacks", o.GetValueData(ctl, "Nope", 2), "Error"
CheckEqual "the box names the control, the member and the error", BoxShown(report), _
    "Invalid Type" & vbCrLf & "OK" & vbCrLf & "1" & vbCrLf & _
    "Control Name : txtName" & vbCrLf & "Feature Name : Nope" & vbCrLf & "Error Number : 438" & vbCrLf & _
    "Error Description : Object doesn't support this property or method"
CheckEqual "an error the control raises", o.GetValueData(ctl, "Refuse", 1), "Error"
CheckEqual "is reported with its own number and text", BoxShown(report), _
    "Invalid Type" & vbCrLf & "OK" & vbCrLf & "1" & vbCrLf & _
    "Control Name : txtName" & vbCrLf & "Feature Name : Refuse" & vbCrLf & "Error Number : 11" & vbCrLf & _
    "Error Description : Division by zero"
