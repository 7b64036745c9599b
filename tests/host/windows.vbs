' ---- the test ----
' Ds_EnumChid, Ds_ENumAction and Ds_ListChild from a late-bound host, against the
' fixture program's windows and against a real program: Wine's notepad.
Dim sh, fixture, e, w, w2, lst, h, main, edit, s, n, i, form, ok

Set sh = CreateObject("WScript.Shell")
Set e = CreateObject("Vx_Main.Ds_EnumChid")

' Waits, counted in yields, until path names a window; 0 when it never does.
Function WaitFor(path)
    Dim k
    WaitFor = 0
    For k = 1 To 3000
        WaitFor = e.GetFindHandle(path)
        If WaitFor <> 0 Then Exit Function
        e.WaitDoEvents , 20
    Next
End Function

Function WaitGone(path)
    Dim k
    WaitGone = False
    For k = 1 To 3000
        If e.GetFindHandle(path) = 0 Then
            WaitGone = True
            Exit Function
        End If
        e.WaitDoEvents , 20
    Next
End Function

Function WaitText(win, expected)
    Dim k
    For k = 1 To 3000
        If win.Title = expected Then Exit For
        e.WaitDoEvents , 20
    Next
    WaitText = win.Title
End Function

Section "instancing"
On Error Resume Next
Set w = CreateObject("Vx_Main.Ds_ENumAction")
CheckError "a window object comes only from other members", Err.Number, 429
Err.Clear
Set w = CreateObject("Vx_Main.Ds_ListChild")
CheckError "a child list too", Err.Number, 429
Err.Clear
On Error GoTo 0

Section "paths"
CheckEqual "an empty path", e.GetFindHandle(""), 0
CheckEqual "a number passes through", e.GetFindHandle("12345"), 12345
CheckEqual "-1 is the desktop", e.GetFindHandle("-1"), e.GetDesktopWin
' (Wine's ExpandEnvironmentStrings leaves the terminating NUL on the text.)
Set fixture = sh.Exec(Replace(sh.ExpandEnvironmentStrings("%VX_BIN_DIR%"), Chr(0), "") & "\vx_window_fixture.exe 120")
main = WaitFor("Vx Fixture Main")
Check "the fixture program shows its window", main <> 0
' Its window is found as soon as it exists: wait for its last control and its dialog too.
Check "its controls", WaitFor("Vx Fixture Main~Static") <> 0
Check "its dialog", WaitFor("Vx Fixture Dialog") <> 0
Set w = e.WaitFindWindows("Vx Fixture Main")
CheckEqual "WaitFindWindows finds it", w.MyHwndWin, main
CheckEqual "by class", e.GetFindHandle("VxFixtureMain"), main
edit = e.GetFindHandle("Vx Fixture Main~Edit")
Check "a child by class", edit <> 0
CheckEqual "a child by class and title", e.GetChild("VxFixtureMain~Button*~*Remember").Title, "Remember"
CheckEqual "another separator", e.GetChild("Vx Fixture Main>Button*>*OK", ">").Class, "Button"
CheckEqual "nothing found is a window object holding 0", e.GetChild("Vx Fixture Main~Nothing*~*here").MyHwndWin, 0
CheckEqual "FindWinChild by title", e.FindWinChild("Vx Fixture Main~Option A").Title, "Option A"
CheckEqual "FindWinChild by class and title", e.FindWinChild("Vx Fixture Main~Button~Option B").Title, "Option B"
CheckEqual "WaitFindWindows with a child key", e.WaitFindWindows("Vx Fixture Main~3EE").Title, "World"
CheckEqual "a title search by containment", e.GetFindTitleWindow("FIXTURE DIALOG").Class, "#32770"
CheckEqual "a parent search", e.GetFindTitleWindow("the vx fixture main window", edit).MyHwndWin, main

Dim helper
Set helper = CreateObject("Vx_Main.Ds_MyVaribleFunction")
helper.DoWaitFindTitle "Vx Fixture Main"
Pass
helper.DoWaitNumber 0
Pass

Section "the window object"
Set w = e.GetChild(edit)
CheckEqual "Title", w.Title, "Hello"
CheckEqual "Class", w.Class, "Edit"
CheckEqual "ControlID in hexadecimal", w.ControlID, "3E9"
CheckEqual "ControlID as a number", w.ControlID(False), 1001
CheckEqual "ParentTitle", w.ParentTitle, "Vx Fixture Main"
CheckEqual "ParentClass", w.ParentClass, "VxFixtureMain"
CheckEqual "ParentHwnd", w.ParentHwnd, main
CheckEqual "SubParent", w.SubParent.MyHwndWin, main
CheckEqual "IsEnableUser", w.IsEnableUser, False
Set w2 = e.GetChild(main)
CheckEqual "the style report", w2.Style(False), "WS_BORDER:8388608\WS_VISIBLE:268435456\"
CheckEqual "the style as a number", w2.Style And &H10000000, &H10000000
CheckEqual "IsTaskbar", w2.IsTaskbar, True
w.Title = "set by the host"
CheckEqual "Title let", w.Title, "set by the host"
w.SetText "by message", 4
CheckEqual "SetText by WM_SETTEXT", w.Title, "by message"
CheckEqual "SendMsg returns the message's result", w.SendMsg(12, 0, "sent"), 1
CheckEqual "SendMsg to its own window", w.Title, "sent"
w.SendMsg 12, 0, "elsewhere", , e.FindWinChild("Vx Fixture Main~3EE").MyHwndWin
CheckEqual "SendMsg to another window", e.FindWinChild("Vx Fixture Main~3EE").Title, "elsewhere"
CheckEqual "leaving its own", w.Title, "sent"
e.ActionSend edit, 12, 0, 1234, 4
CheckEqual "ActionSend by string sends the digits", w.Title, "1234"
Set w = e.GetChild("Vx Fixture Main~Button*~*Remember")
w.ClickCheckBox = True
CheckEqual "ClickCheckBox let and get", w.ClickCheckBox, True
w.ClickOption = False
CheckEqual "ClickOption is the same property", w.ClickCheckBox, False
e.GetChild("Vx Fixture Main~Button*~*OK").Click
CheckEqual "Click reaches the program", e.GetChild("Vx Fixture Main~Static").Title, "clicked 1"
w.Enabled = False
CheckEqual "Enabled", w.Enabled, False
w.Enabled = True

Section "geometry"
' The fixture's main window stands at 100, 100 with an outer size of 400 x 180.
CheckEqual "GetSizeWidth is the right edge", e.GetSizeWidth(main), 500
CheckEqual "in twips", e.GetSizeWidth(main, True), 7500
CheckEqual "GetSizeHeight is the bottom edge", e.GetSizeHeight(main), 280
CheckEqual "GetPosLeft", e.GetPosLeft(main), 100
CheckEqual "GetPosTop in twips", e.GetPosTop(main, True), 1500
Set w = e.GetChild(main)
CheckEqual "LeftPL", w.LeftPL, 100
CheckEqual "WidthPL is an edge", w.WidthPL, 500
CheckEqual "HeightPL in twips", w.HeightPL(True), 4200
n = w.WidthTX
Check "WidthTX is the client width", n > 300 And n < 400
w.WidthTX = n
Check "setting it to itself shrinks a framed window", w.WidthTX < n
w.LeftTX(True) = 10
CheckEqual "LeftTX with IsPixcel moves to 10 pixels", w.LeftTX, 10
CheckEqual "while the top went through x 15", w.TopTX, 1500
w.TopTX = 100
w.LeftTX = 100
CheckEqual "TopTX and LeftTX in pixels", e.GetPosLeft(main) & "," & e.GetPosTop(main), "100,100"
' (The test platform does not place windows of other programs by their placement record,
' so SizeWinPlace and GoHwndContainer are only called here; the unit tests check them on
' the test's own windows.)
w.SizeWinPlace 100, 100, 500, 280
e.GoHwndContainer main, e.GetFindHandle("Vx Fixture Dialog")
w.WinState = 2
CheckEqual "maximized", w.WinState, 2
w.WinState = 0
CheckEqual "normal again", w.WinState, 0
e.GoCusorXY 110, 110
CheckEqual "MouseCX", e.MouseCX, 110
CheckEqual "MouseCY in twips", e.MouseCY(True), 1650
CheckEqual "IsHitTest", e.IsHitTest(main), True
CheckEqual "IsHitTestXY", w.IsHitTestXY, True

Section "child lists"
Set lst = e.EWinChild("Vx Fixture Main", 4)
CheckEqual "each child by identifier, class and title", lst.Count, 21
CheckEqual "a repeated class is numbered", lst.Item("Edit#2").ControlID, "3EE"
CheckEqual "keys ignore case", lst.Item("OPTION b").ControlID, "3ED"
CheckEqual "MyPathKey is the key", lst.Item(2).MyPathKey, "Edit"
CheckEqual "ItemClass", lst.ItemClass("Button#2").Title, "Remember"
CheckEqual "ItemTitle", lst.ItemTitle("OK").Class, "Button"
s = "BUTTON"
CheckEqual "CountClass by containment", lst.CountClass(s), 4
CheckEqual "leaves the caller's variable lower-cased", s, "button"
CheckEqual "CountClass without an argument", lst.CountClass, 7
s = "OPTION"
CheckEqual "CountTitle", lst.CountTitle(s), 2
lst.Remove "Edit"
CheckEqual "Remove takes from the main list", lst.Count, 20
CheckEqual "but not from the class list", lst.ItemClass("Edit").ControlID, "3E9"
On Error Resume Next
Set w2 = lst.Item("Edit")
CheckError "a removed key", Err.Number, 5
Err.Clear
Set w2 = lst.Item(99)
CheckError "a position out of range", Err.Number, 9
Err.Clear
On Error GoTo 0
Set lst = e.SubParentEnum(edit, 1)
CheckEqual "the window and its ancestors", lst.Count, 2
CheckEqual "from the window up", lst.Item(2).MyHwndWin, main
Set lst = e.GetChild(main).SubChildEnum
CheckEqual "SubChildEnum keys by identifier", lst.Item("3EF").Class, "Static"
Set w2 = lst.Add(main, "mine")
CheckEqual "Add makes a window object with the key", w2.MyPathKey & w2.MyHwndWin, "mine" & main
On Error Resume Next
lst.Add main, "MINE"
CheckError "a key already present", Err.Number, 457
Err.Clear
On Error GoTo 0
CheckEqual "ThreadProcessId is always 0", e.ThreadProcessId(main), 0

Section "pictures and translucency through a host form"
Class StandInForm
    ' (one member a line: Wine's VBScript reads no lists here)
    Public AutoRedraw
    Public hdc
    Public hWnd
    Public Cleared
    Sub Cls()
        Cleared = True
    End Sub
End Class
Set form = New StandInForm
form.AutoRedraw = False
form.hdc = 0
form.hWnd = e.GetFindHandle("Vx Fixture Dialog")
form.Cleared = False
' These arguments are typed by reference (a Long, an Object): a script passes
' them by value, in parentheses.
e.GoImageWithHwnd (main), (form)
Check "Cls is called", form.Cleared
CheckEqual "AutoRedraw is set", form.AutoRedraw, True
form.Cleared = False
e.GoImageAlphaHwnd (main), (form), 200
Check "GoImageAlphaHwnd draws the picture too", form.Cleared
On Error Resume Next
e.GoFormAlpha (main), 300
CheckError "an alpha beyond 255", Err.Number, 6
Err.Clear
On Error GoTo 0

Section "a real program: notepad"
sh.Run "notepad.exe", 1, False
h = WaitFor("Untitled - Notepad")
Check "notepad shows its window", h <> 0
Set w = e.GetChild("Untitled - Notepad~Edit")
Check "its edit control by path", w.MyHwndWin <> 0
CheckEqual "by class too", e.GetFindHandle("Notepad~Edit"), w.MyHwndWin
CheckEqual "an empty document", w.Title, ""
w.SetText "set through WM_SETTEXT", 4
CheckEqual "text set and read back", w.Title, "set through WM_SETTEXT"
w.SetText "", 4
' Bring it forward and click into its edit control, then type with simulated keys.
e.GetChild(h).WinState = 0
e.GoCusorXY e.GetPosLeft(w.MyHwndWin) + 40, e.GetPosTop(w.MyHwndWin) + 20, 6, 5
e.WaitDoEvents , 50
e.SetTextMaching "TYPED 42", 0, 3
CheckEqual "typed into notepad (letters arrive unshifted)", WaitText(w, "typed 42"), "typed 42"
e.KeyPress 13
e.KeyPress 65, 2
CheckEqual "KeyPress with a wait", WaitText(w, "typed 42" & vbCrLf & "a"), "typed 42" & vbCrLf & "a"
' A document that is not modified closes without asking.
CheckEqual "EM_SETMODIFY answers 0", e.ActionSend(w.MyHwndWin, 185, 0, 0), 0
e.WindowsClose h
Check "notepad is closed", WaitGone("Untitled - Notepad")
If e.GetFindHandle("Untitled - Notepad") <> 0 Then sh.Run "taskkill /f /im notepad.exe", 0, True

Section "closing"
e.CloseAllWindows 0
Check "CloseAllWindows closes a dialog box", WaitGone("Vx Fixture Dialog")
CheckEqual "and leaves other windows", e.GetFindHandle("Vx Fixture Main"), main
e.GetChild(main).CloseWindowXP
Check "CloseWindowXP closes the program's window", WaitGone("Vx Fixture Main")
For i = 1 To 500
    If fixture.Status <> 0 Then Exit For
    e.WaitDoEvents , 20
Next
CheckEqual "and the program ends", fixture.Status, 1
If fixture.Status = 0 Then fixture.Terminate
