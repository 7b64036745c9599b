' ---- the test ----
' The form and control members of Ds_MyVaribleFunction from a late-bound host: with forms
' and controls that are script objects, and against real windows of the fixture programs.
Dim f, e, sh, bin, windowFixture, formFixture, i, n, r
Dim form, txtName, cmdOK, lblTitle, shpLine, form2, forms, frame, inner, street, zip, outside, img, pic
Dim main, dialog, edit, group, report, top, win, ok, wins

Set f = CreateObject("Vx_Main.Ds_MyVaribleFunction")
Set e = CreateObject("Vx_Main.Ds_EnumChid")
Set sh = CreateObject("WScript.Shell")

Class Control
    Public Name
    Public Enabled
    Public Visible
    Public hWnd
    Public Container
    Public Parent
End Class

Class Form
    Public Name
    Public Enabled
    Public Visible
    Public hWnd
    Public Controls
End Class

' A line: visible or not, never enabled.
Class Shape
    Public Name
    Public Visible
End Class

Class Picture
    Public Width
    Public Height
End Class

Class Image
    Public Width
    Public Height
    Public Picture
    Public Stretch
End Class

Function NewControl(name, container)
    Set NewControl = New Control
    NewControl.Name = name
    NewControl.Enabled = True
    NewControl.Visible = True
    NewControl.hWnd = 0
    Set NewControl.Container = container
End Function

' The Enabled values of a list of controls, as "1" and "0".
Function States(list)
    Dim k
    States = ""
    For k = 0 To UBound(list)
        If list(k).Enabled Then States = States & "1" Else States = States & "0"
    Next
End Function

Function WaitFor(path)
    Dim k
    For k = 1 To 3000
        WaitFor = e.GetFindHandle(path)
        If WaitFor <> 0 Then Exit Function
        e.WaitDoEvents , 20
    Next
End Function

Function WaitGone(path)
    Dim k
    For k = 1 To 3000
        WaitGone = (e.GetFindHandle(path) = 0)
        If WaitGone Then Exit Function
        e.WaitDoEvents , 20
    Next
End Function

Function WaitText(handle, expected)
    Dim k, w
    Set w = e.GetChild(handle)
    For k = 1 To 3000
        If w.Title = expected Then Exit For
        e.WaitDoEvents , 20
    Next
    WaitText = w.Title
End Function

Set form = New Form
form.Name = "frmMain"
form.Enabled = True
form.Visible = True
form.hWnd = 0
Set txtName = NewControl("txtName", form)
Set cmdOK = NewControl("cmdOK", form)
Set lblTitle = NewControl("lblTitle", form)
Set shpLine = New Shape
shpLine.Name = "shpLine"
shpLine.Visible = True
form.Controls = Array(txtName, cmdOK, shpLine, lblTitle)

Section "what a control is"
Check "a control", f.IsControlObject(txtName)
Check "a form", f.IsControlObject(form)
Check "a shape lacks Enabled", Not f.IsControlObject(shpLine)
Check "a dictionary", Not f.IsControlObject(CreateObject("Scripting.Dictionary"))
Check "a name is no control", Not f.IsControlObject("txtName")
Check "nor is Nothing", Not f.IsControlObject(Nothing)
Check "nor Null", Not f.IsControlObject(Null)

Section "enabling the controls of a script form"
CheckEqual "all that have Enabled", f.GoEnabledControl(form, False), 3
CheckEqual "are disabled", States(Array(txtName, cmdOK, lblTitle)), "000"
Check "the form itself is not", form.Enabled
CheckEqual "a name left alone", f.GoEnabledControl(form, True, "cmdok"), 2
CheckEqual "keeps its state", States(Array(txtName, cmdOK, lblTitle)), "101"
CheckEqual "names joined by commas", f.GoEnabledControl(form, True, "txtName, lblTitle"), 1
CheckEqual "only the other one changed", States(Array(txtName, cmdOK, lblTitle)), "111"
CheckEqual "an array of the controls themselves", f.GoEnabledControl(form, False, Array(txtName, lblTitle)), 1
CheckEqual "the control itself", f.GoEnabledControl(form, True, cmdOK), 2
CheckEqual "after all that", States(Array(txtName, cmdOK, lblTitle)), "101"
f.GoEnabledControl form
cmdOK.hWnd = 4242
CheckEqual "a control by its window handle", f.GoEnabledControl(form, False, 4242), 2
CheckEqual "stays", States(Array(txtName, cmdOK, lblTitle)), "010"
cmdOK.hWnd = 0
CheckEqual "True by default", f.GoEnabledControl(form), 3
CheckEqual "visibility, a shape too", f.GoVisibleControl(form, False, lblTitle), 3
Check "hidden", Not txtName.Visible And Not cmdOK.Visible And Not shpLine.Visible And lblTitle.Visible
f.GoVisibleControl form

Section "controls in a collection"
Set form2 = New Form
form2.Name = "frmOther"
form2.Enabled = True
form2.hWnd = 0
Set form2.Controls = CreateObject("Scripting.Dictionary")
form2.Controls.Add NewControl("a", form2), 1
form2.Controls.Add NewControl("b", form2), 2
CheckEqual "For Each walks a collection", f.GoEnabledControl(form2, False), 2
Set forms = CreateObject("Scripting.Dictionary")
forms.Add form, 1
forms.Add form2, 2
CheckEqual "forms in a collection", f.GoEnabledForms(forms, False), 2
Check "both disabled", Not form.Enabled And Not form2.Enabled
CheckEqual "forms in an array, one left alone", f.GoEnabledForms(Array(form, form2), True, form2), 1
Check "one enabled", form.Enabled And Not form2.Enabled
CheckEqual "what is no form is passed over", f.GoEnabledForms(Array(shpLine, form2, Empty, Nothing), True), 1
CheckEqual "one form", f.GoEnabledForms(form, False), 1
CheckEqual "a form by its name left alone", f.GoEnabledForms(Array(form, form2), True, "frmOther"), 1

Section "bad forms"
On Error Resume Next
n = f.GoEnabledControl(shpLine)
CheckError "an object without Controls", Err.Number, 438
Err.Clear
n = f.GoEnabledControl(Nothing)
CheckError "Nothing", Err.Number, 91
Err.Clear
n = f.GoVisibleControl(Null)
CheckError "Null", Err.Number, 94
Err.Clear
n = f.GoEnabledForms(CreateObject("Scripting.FileSystemObject"))
CheckError "an object that is neither a form nor a collection", Err.Number, 438
Err.Clear
n = f.GoEnabledFrame(Array(1, 2))
CheckError "an array where one frame belongs", Err.Number, 13
Err.Clear
n = f.GoEnabledControl(form, True, Null)
CheckError "Null among the exceptions", Err.Number, 94
Err.Clear
On Error GoTo 0

Section "frames"
' A frame whose controls know it as their Container; one of them a frame itself.
Set frame = NewControl("fraAddress", form)
Set frame.Parent = form
Set street = NewControl("txtStreet", frame)
Set inner = NewControl("fraPostal", frame)
Set zip = NewControl("txtZip", inner)
Set outside = NewControl("txtOutside", form)
form.Controls = Array(zip, outside, frame, street, inner)
CheckEqual "the frame and all inside it", f.GoEnabledFrame(frame, False), 4
CheckEqual "their states", States(Array(frame, street, inner, zip, outside)), "00001"
CheckEqual "back on", f.GoEnabledFrame(frame), 4
' A frame with controls of its own.
frame.Parent = Empty
Set inner = New Form
inner.Name = "grpBox"
inner.Enabled = True
inner.Controls = Array(NewControl("x", Nothing), NewControl("y", Nothing))
CheckEqual "a frame's own controls", f.GoEnabledFrame(inner, False), 3
Check "disabled", Not inner.Enabled And Not inner.Controls(0).Enabled And Not inner.Controls(1).Enabled

Section "images"
Set pic = New Picture
pic.Width = 400
pic.Height = 300
Set img = New Image
img.Width = 1000
img.Height = 1000
Set img.Picture = pic
img.Stretch = False
Check "sized", f.GoImageSizeAuto(img)
CheckEqual "to the picture's proportions in its own box", img.Width & "x" & img.Height, "1000x750"
Check "stretched", img.Stretch
Check "into a box", f.GoImageSizeAuto(img, 200, 2000)
CheckEqual "as wide as the box", img.Width & "x" & img.Height, "200x150"
Set img.Picture = Nothing
Check "no picture", Not f.GoImageSizeAuto(img)
On Error Resume Next
r = f.GoImageSizeAuto("Image1")
CheckError "a name is no image", Err.Number, 424
Err.Clear
Set img.Picture = pic
r = f.GoImageSizeAuto(img, -5)
CheckError "a box of no size", Err.Number, 5
Err.Clear
On Error GoTo 0

' ---- real windows ----
bin = Replace(sh.ExpandEnvironmentStrings("%VX_BIN_DIR%"), Chr(0), "")
Set windowFixture = sh.Exec(bin & "\vx_window_fixture.exe 120")
Set formFixture = sh.Exec(bin & "\vx_form_fixture.exe 120")
main = WaitFor("Vx Fixture Main")
Check "the window fixture shows its window", main <> 0 And WaitFor("Vx Fixture Main~Static") <> 0
dialog = WaitFor("Vx Fixture Dialog")
top = WaitFor("Vx Form Fixture")
Check "the form fixture shows its window", top <> 0 And WaitFor("Vx Form Fixture~Edit") <> 0
report = e.GetFindHandle("Vx Form Fixture~Static")
Dim topReport
topReport = e.EWinChild(top, 1).Item("Static#2").MyHwndWin
group = e.GetFindHandle("Vx Form Fixture~Button*~*Address")
Check "with its group box", group <> 0

Section "kinds of windows"
CheckEqual "an edit control", f.GetControlType("Vx Fixture Main~Edit"), "TextBox"
CheckEqual "a push button", f.GetControlType("Vx Fixture Main~Button*~*OK"), "CommandButton"
CheckEqual "a check box", f.GetControlType("Vx Fixture Main~Button*~*Remember"), "CheckBox"
CheckEqual "an option button", f.GetControlType("Vx Fixture Main~Button*~*Option B"), "OptionButton"
CheckEqual "a label", f.GetControlType("Vx Fixture Main~Static"), "Label"
CheckEqual "a group box", f.GetControlType(group), "Frame"
CheckEqual "a window", f.GetControlType(main), "Form"
CheckEqual "a dialog box", f.GetControlType("Vx Fixture Dialog"), "Form"
CheckEqual "no window", f.GetControlType(0), ""

Section "enabling a window's controls"
Set wins = e.EWinChild(main)
CheckEqual "the window fixture has seven controls", wins.Count, 7
CheckEqual "all disabled", f.GoEnabledControl(main, False), 7
n = 0
For i = 1 To wins.Count
    If Not wins.Item(i).Enabled Then n = n + 1
Next
CheckEqual "really", n, 7
Check "the window itself is not", e.GetChild(main).Enabled
ok = e.GetFindHandle("Vx Fixture Main~Button*~*OK")
CheckEqual "one left alone by its handle", f.GoEnabledControl(main, True, ok), 6
Check "which stays disabled", Not e.GetChild(ok).Enabled And e.GetChild("Vx Fixture Main~Edit").Enabled
CheckEqual "one left alone by its title", f.GoEnabledControl(main, False, "ok"), 6
f.GoEnabledControl main
edit = e.GetFindHandle("Vx Fixture Main~Edit")
CheckEqual "hidden, but one", f.GoVisibleControl(main, False, Array(edit)), 6
Check "the one shows, the others do not", e.GetChild(edit).Visible And Not e.GetChild(ok).Visible
CheckEqual "shown again", f.GoVisibleControl(main), 7
Check "all", e.GetChild(ok).Visible

Section "enabling windows"
CheckEqual "two windows by handle and title", f.GoEnabledForms(Array(main, "Vx Fixture Dialog"), False), 2
Check "both disabled", Not e.GetChild(main).Enabled And Not e.GetChild(dialog).Enabled
CheckEqual "one left alone", f.GoEnabledForms(Array(main, dialog), True, dialog), 1
Check "one enabled", e.GetChild(main).Enabled And Not e.GetChild(dialog).Enabled
CheckEqual "one window", f.GoEnabledForms(dialog), 1
Check "enabled", e.GetChild(dialog).Enabled
CheckEqual "a path that names no window", f.GoEnabledForms("No Such Window Title"), 0
' Window objects as a script form's controls.
form.Controls = Array(e.GetChild("Vx Fixture Main~Edit"), e.GetChild(ok))
CheckEqual "window objects as controls", f.GoEnabledControl(form, False), 2
Check "the windows are disabled", Not e.GetChild(edit).Enabled And Not e.GetChild(ok).Enabled
f.GoEnabledControl form

Section "a real frame"
CheckEqual "the group box and its two controls", f.GoEnabledFrame(group, False), 3
Check "disabled", Not e.GetChild(group).Enabled And Not e.GetChild("Vx Form Fixture~Button~Edit").Enabled
Check "not the control outside it", e.GetChild(e.GetFindHandle("Vx Form Fixture~Edit")).Enabled
CheckEqual "enabled again", f.GoEnabledFrame(group), 3
Check "all of them", e.GetChild(group).Enabled And e.GetChild("Vx Form Fixture~Button~Edit").Enabled

Section "DragMe"
f.DragMe "Vx Form Fixture", 163
CheckEqual "a double click on the caption", WaitText(report, "163 2"), "163 2"
f.DragMe top, 164, 17
CheckEqual "a right press on the bottom right corner", WaitText(report, "164 17"), "164 17"
Set win = New Form
win.hWnd = top
f.DragMe win, 163
CheckEqual "a script form by its hWnd", WaitText(report, "163 2"), "163 2"
f.DragMe 0
f.DragMe ""
f.DragMe "Vx Form Fixture"
Check "no window, or a left press with no button held: nothing sent", e.GetChild(report).Title = "163 2"

Section "WinOnTop"
Check "on top", f.WinOnTop("Vx Form Fixture")
CheckEqual "the window is topmost", WaitText(topReport, "top 1"), "top 1"
Check "and back", f.WinOnTop(top, False)
CheckEqual "no longer", WaitText(topReport, "top 0"), "top 0"
Check "no window", Not f.WinOnTop(0)

Section "the fixtures end"
e.WindowsClose top
Check "the form fixture is closed", WaitGone("Vx Form Fixture")
e.WindowsClose main
Check "the window fixture is closed", WaitGone("Vx Fixture Main")
For i = 1 To 500
    If windowFixture.Status <> 0 And formFixture.Status <> 0 Then Exit For
    e.WaitDoEvents , 20
Next
If windowFixture.Status = 0 Then windowFixture.Terminate
If formFixture.Status = 0 Then formFixture.Terminate
