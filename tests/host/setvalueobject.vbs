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
    Private mSlots
    Private Sub Class_Initialize
        Set mSlots = CreateObject("Scripting.Dictionary")
        Set Inner = Nothing
    End Sub
    Public Property Get Object
        Set Object = Inner
    End Property
    Public Property Set Slot(i, v)
        mSlots.Add i, v
    End Property
    Public Property Get Slot(i)
        Set Slot = mSlots(i)
    End Property
    Public Function Twice(x)
        Twice = x * 2
    End Function
    Public Sub Many(a1, a2, a3, a4, a5, a6, a7, a8, a9, a10, a11, a12, a13, a14, a15, a16)
        Calls = a1 & a2 & a16
    End Sub
    Public Sub Refuse()
        Count = Count / 0
    End Sub
End Class

Class InnerControl
    Public Text
End Class

Dim o, ctl, inner, d, font2, sh, binDir, res, k, kind, c
Dim grid(1, 1)
Set o = CreateObject("Vx_Main.Ds_SetValueObject")
Set sh = CreateObject("WScript.Shell")
binDir = Replace(sh.ExpandEnvironmentStrings("%VX_BIN_DIR%"), Chr(0), "")
Set ctl = New FormControl
ctl.Name = "txtName"
ctl.Caption = "hello"
ctl.Count = 5
Set ctl.Font = CreateObject("StdFont")
ctl.Font.Size = 12
' A picture: the bitmap another program put on the clipboard.
sh.Run """" & binDir & "\vx_clip_fixture.exe"" sync", 0, True
sh.Run """" & binDir & "\vx_clip_fixture.exe"" put bitmap=8x8", 0, True
Set ctl.Picture = CreateObject("Vx_Main.Ds_Clipboard").ClipboardPicture
Set d = CreateObject("Scripting.Dictionary")
d.Add "k", "v"

Section "reading (call kind 2)"
CheckEqual "a text", o.GetValueData(ctl, "Caption", 2, , res) & ":" & res, "Get:hello"
CheckEqual "an Integer keeps its type", o.GetValueData(ctl, "Count", 2, , res) & ":" & VarType(res), "Get:2"
CheckEqual "a font", o.GetValueData(ctl, "Font", 2, , res), "GSet"
Check "is the control's own font", res Is ctl.Font
CheckEqual "a picture", o.GetValueData(ctl, "Picture", 2, , res), "GSet"
Check "is the control's own picture", res Is ctl.Picture
CheckEqual "a dotted path", o.GetValueData(ctl, "Font.Size", 2, , res) & ":" & res, "Get:12"
CheckEqual "a function's result", o.GetValueData(ctl, "Twice", 2, 21, res) & ":" & res, "Get:42"
CheckEqual "a dictionary's item", o.GetValueData(d, "Item", 2, "k", res) & ":" & res, "Get:v"
kind = 2
CheckEqual "the call kind in a variable, left as it was", o.GetValueData(ctl, "Caption", kind) & ":" & kind, "Get:2"

Section "the control's inner object first"
Set inner = New InnerControl
inner.Text = "inner text"
Set ctl.Inner = inner
CheckEqual "a member the inner object has", o.GetValueData(ctl, "Text", 2, , res) & ":" & res, "Get:inner text"
CheckEqual "one it lacks, on the control", o.GetValueData(ctl, "Caption", 2, , res) & ":" & res, "Get:hello"
CheckEqual "a let goes to the inner object", o.GetValueData(ctl, "Text", 4, "changed") & ":" & inner.Text, "Let:changed"
Set ctl.Inner = Nothing

Section "letting (call kind 4): the value takes the member's type"
CheckEqual "a Boolean behind a path", o.GetValueData(ctl, "Font.Bold", 4, "1") & ":" & ctl.Font.Bold, "Let:True"
CheckEqual "an Integer rounds half to even", o.GetValueData(ctl, "Count", 4, "7.5") & ":" & ctl.Count & ":" & VarType(ctl.Count), "Let:8:2"
CheckEqual "a text", o.GetValueData(ctl, "Caption", 4, 12) & ":" & VarType(ctl.Caption), "Let:8"
ctl.Count = Empty
CheckEqual "an Empty member takes the value as it is", o.GetValueData(ctl, "Count", 4, "abc") & ":" & ctl.Count, "Let:abc"
CheckEqual "an array: index arguments, then the value", o.GetValueData(d, "Item", 4, Array("k", 5)) & ":" & VarType(d("k")), "Let:8"
ctl.Count = 5
For Each c In Array(Array("beyond an Integer", 40000), Array("not a number", "abc"))
    CheckEqual c(0), o.GetValueData(ctl, "Count", 4, c(1)) & ":" & ctl.Count, "Error:5"
Next
CheckEqual "no value", o.GetValueData(ctl, "Count", 4), "Error"

Section "setting (call kind 8) and calling (call kind 1)"
Set font2 = CreateObject("StdFont")
CheckEqual "an object", o.GetValueData(ctl, "Font", 8, font2), "Set"
Check "is stored by reference", ctl.Font Is font2
CheckEqual "with an index", o.GetValueData(ctl, "Slot", 8, Array(2, font2)), "Set"
Check "into the indexed property", ctl.Slot(2) Is font2
CheckEqual "a method with arguments", o.GetValueData(d, "Add", 1, Array("k2", "v2")) & ":" & d("k2"), "Let:v2"
CheckEqual "an empty array passes none", o.GetValueData(d, "RemoveAll", 1, Array()) & ":" & d.Count, "Let:0"
CheckEqual "sixteen arguments", o.GetValueData(ctl, "Many", 1, Array("a", "b", 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, "p")) & ":" & ctl.Calls, "Let:abp"
ctl.Calls = Empty
CheckEqual "seventeen are too many", o.GetValueData(ctl, "Many", 1, Array(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17)), "Error"
Check "and nothing is called", IsEmpty(ctl.Calls)
CheckEqual "a two-dimensional array", o.GetValueData(ctl, "Twice", 1, grid), "Error"

Section "failures never raise"
On Error Resume Next
res = "untouched"
CheckEqual "an unknown member", o.GetValueData(ctl, "Nope", 2, , res) & ":" & res, "Error:untouched"
For Each k In Array(0, 3, 5, 16, -1)
    CheckEqual "call kind " & k, o.GetValueData(ctl, "Caption", k), "Error"
Next
CheckEqual "Nothing", o.GetValueData(Nothing, "Caption", 2), "Error"
CheckEqual "an empty member name", o.GetValueData(ctl, "", 2), "Error"
CheckEqual "a path through a value", o.GetValueData(ctl, "Caption.Length", 2), "Error"
CheckError "none raised", Err.Number, 0
On Error GoTo 0

' The box, shown for real: the fixture finds it, writes down what it shows (title,
' buttons, 1 for an icon, the text) and presses OK.
Function BoxShown()
    Dim report, stream
    report = gFso.GetParentFolderName(WScript.ScriptFullName) & "\box.txt"
    If gFso.FileExists(report) Then gFso.DeleteFile report
    sh.Run """" & binDir & "\vx_box_fixture.exe"" ""Invalid Type"" """ & report & """", 0, False
    o.ShowErrorCallByName
    Set stream = gFso.OpenTextFile(report, 1, False, -1)
    BoxShown = stream.ReadAll
    stream.Close
End Function

Section "the error box"
CheckEqual "a member the control lacks", o.GetValueData(ctl, "Nope", 2), "Error"
CheckEqual "the box names the control, the member and the error", BoxShown(), _
    "Invalid Type" & vbCrLf & "OK" & vbCrLf & "1" & vbCrLf & _
    "Control Name : txtName" & vbCrLf & "Feature Name : Nope" & vbCrLf & "Error Number : 438" & vbCrLf & _
    "Error Description : Object doesn't support this property or method"
CheckEqual "an error inside the control's own code", o.GetValueData(ctl, "Refuse", 1), "Error"
CheckEqual "is reported with the runtime's number and text", BoxShown(), _
    "Invalid Type" & vbCrLf & "OK" & vbCrLf & "1" & vbCrLf & _
    "Control Name : txtName" & vbCrLf & "Feature Name : Refuse" & vbCrLf & "Error Number : 11" & vbCrLf & _
    "Error Description : Division by zero"
