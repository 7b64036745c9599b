' ---- the test ----
' Ds_EnumChid, Ds_ENumAction and Ds_ListChild from a late-bound host, against the
' fixture program's windows and against a real program: Wine's notepad.
'
' Nothing here depends on timing. Each wait is for a state, in rounds of 20 yields,
' with a bound far beyond what the slowest lane under load needs: a wait that runs out
' means a fault. The programs the test starts (the fixture, and the fixture's guard
' around notepad) end with the test, whatever becomes of it.
Dim sh, fixture, notepad, hung, binDir, e, w, w2, lst, kept, h, main, edit, s, n, i, c, form, x, y
Dim pointerPrograms

Const kRounds = 20000

Set sh = CreateObject("WScript.Shell")
Set e = CreateObject("Vx_Main.Ds_EnumChid")
' (Wine's ExpandEnvironmentStrings leaves the terminating NUL on the text.)
binDir = Replace(sh.ExpandEnvironmentStrings("%VX_BIN_DIR%"), Chr(0), "")

' Waits until path names a window; 0 when it never does.
Function WaitFor(path)
    Dim k
    For k = 1 To kRounds
        WaitFor = e.GetFindHandle(path)
        If WaitFor <> 0 Then Exit Function
        e.WaitDoEvents , 20
    Next
End Function

' Waits until path names no window; whether it came to that.
Function WaitGone(path)
    Dim k
    For k = 1 To kRounds
        WaitGone = (e.GetFindHandle(path) = 0)
        If WaitGone Then Exit Function
        e.WaitDoEvents , 20
    Next
End Function

Function WaitText(win, expected)
    Dim k
    For k = 1 To kRounds
        If win.Title = expected Then Exit For
        e.WaitDoEvents , 20
    Next
    WaitText = win.Title
End Function

' Waits until a program started with sh.Exec has ended; whether it has.
Function WaitEnded(program)
    Dim k
    For k = 1 To kRounds
        If program.Status <> 0 Then Exit For
        e.WaitDoEvents , 20
    Next
    WaitEnded = (program.Status <> 0)
End Function

' The pointer under X11: a program whose window lies under the pointer learns of each
' move by an event that it handles in its own time, and handling it puts the cursor
' where that event was raised. An event handled late puts it back to an earlier place.
' pointerPrograms holds a window of each program that may have such events pending;
' a program handles its pending input whenever it waits for messages, so once it has
' answered messages sent to it, the input it had before has been handled. Three rounds,
' because a program may answer while it is itself waiting for another one.
Sub DrainPointerEvents()
    Dim pass, pw
    For pass = 1 To 3
        For Each pw In pointerPrograms
            e.ActionSend pw, 0, 0, 0
        Next
    Next
End Sub

' Waits until the cursor reads x, y in three looks in a row, each after the programs
' under the pointer have handled what they had pending; with move, a look that reads
' elsewhere sends the pointer there again. Without move it only waits: a late event
' moves the cursor only for a moment, after which the cursor reads where the pointer
' truly stands.
Function CursorAt(x, y, move)
    Dim k, good
    good = 0
    For k = 1 To kRounds
        DrainPointerEvents
        If e.MouseCX = x And e.MouseCY = y Then
            good = good + 1
            If good = 3 Then
                CursorAt = True
                Exit Function
            End If
        Else
            good = 0
            If move Then e.GoCusorXY x, y
        End If
        e.WaitDoEvents , 20
    Next
    CursorAt = False
End Function

' Moves the pointer and waits until it stands there. The events raised before the move
' (by earlier moves, or by windows shown under the pointer) are handled first, so that
' none of them comes late.
Sub SettleCursor(x, y)
    DrainPointerEvents
    e.GoCusorXY x, y
    Check "the pointer settles at " & x & "," & y, CursorAt(x, y, True)
End Sub

' Waits (without moving it) until the pointer stands at x, y.
Sub AwaitCursor(x, y)
    Check "the pointer comes to " & x & "," & y, CursorAt(x, y, False)
End Sub

' Waits until hw is the active window and its program (and every other one under the
' pointer) has handled what it had pending: the click that made it active, and with it
' the move of the keyboard focus.
Function WaitActive(hw)
    Dim k
    For k = 1 To kRounds
        If e.GetActiveWindow.MyHwndWin = hw Then Exit For
        e.WaitDoEvents , 20
    Next
    DrainPointerEvents
    WaitActive = (e.GetActiveWindow.MyHwndWin = hw)
End Function

' The title of the window a window object holds, or "-" when it holds none.
Function Named(win)
    If win.MyHwndWin = 0 Then Named = "-" Else Named = win.Title
End Function

' A child list's keys in order, joined by commas.
Function KeysOf(list)
    Dim k
    KeysOf = ""
    For k = 1 To list.Count
        KeysOf = KeysOf & "," & list.Item(k).MyPathKey
    Next
    KeysOf = Mid(KeysOf, 2)
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
CheckEqual "a number no window is named by passes through", e.GetFindHandle("12345"), 12345
CheckEqual "a number as a number", e.GetFindHandle(4242), 4242
CheckEqual "-1 is the desktop", e.GetFindHandle("-1"), e.GetDesktopWin
Check "-2 and -3 are special values, not numbers", e.GetFindHandle("-2") <> -2 And e.GetFindHandle("-3") <> -3
Set fixture = sh.Exec(binDir & "\vx_window_fixture.exe")
main = WaitFor("Vx Fixture Main")
Check "the fixture program shows its window", main <> 0
pointerPrograms = Array(main)
' Its window is found as soon as it exists: wait for its last control and its dialog too.
Check "its controls", WaitFor("Vx Fixture Main~Static") <> 0
Check "its dialog", WaitFor("Vx Fixture Dialog") <> 0
edit = e.GetFindHandle("Vx Fixture Main~Edit")
' Path, separator, the title of the window it names. Titles compare whole and without
' regard to case; a class names a window too; "*~*" pairs a class with a title, so a
' separator of "|" (which the pair's inner marker holds) breaks pairs; an empty class
' finds nothing; a step that finds nothing sends the next one to the top level; a number
' passes through only as a single step.
For Each c In Array( _
        Array("vx fixture MAIN", "~", "Vx Fixture Main"), Array("VxFixtureMain", "~", "Vx Fixture Main"), _
        Array("Vx Fixture", "~", "-"), Array("Vx Fixture Main~Edit", "~", "Hello"), _
        Array("VxFixtureMain~Button*~*Remember", "~", "Remember"), Array("Vx Fixture Main>Button*>*OK", ">", "OK"), _
        Array("Vx Fixture Main|Button*|*OK", "|", "-"), Array("Vx Fixture Main|Edit", "|", "Hello"), _
        Array("no such window anywhere", "~", "-"), Array("Vx Fixture Main~Button*~*Cancel", "~", "-"), _
        Array("Vx Fixture Main~*~*OK", "~", "-"), Array("Vx Fixture Main~NoSuchClass~VxFixtureMain", "~", "Vx Fixture Main"), _
        Array("12345~Edit", "~", "-"))
    CheckEqual "GetChild " & c(0), Named(e.GetChild(c(0), c(1))), c(2)
Next
n = e.GetFindHandle("Vx Fixture Main~Button*~*Option A")
CheckEqual "GetFindEX ignores its second handle", e.GetFindEX(main, n, "Button", "Option A"), n
CheckEqual "GetFindEX: an empty title is any title", Named(e.GetChild(e.GetFindEX(main, 0, "Button", ""))), "OK"
CheckEqual "GetFindW", e.GetFindW("VxFixtureMain", ""), main
' FindWinChild: a child by key, or by exact class and title (else the last child looked
' at); more than three parts use the first alone.
For Each c In Array( _
        Array("Vx Fixture Main", "Vx Fixture Main"), Array("Vx Fixture Main~Option A", "Option A"), _
        Array("Vx Fixture Main~3EB", "Remember"), Array("Vx Fixture Main~Nope", "-"), _
        Array("Vx Fixture Main~Button~Option B", "Option B"), Array("Vx Fixture Main~button~Option B", "ready"), _
        Array("Vx Fixture Main~a~b~c", "Vx Fixture Main"), Array("Nowhere~Edit", "-"), Array("", "-"))
    CheckEqual "FindWinChild " & c(0), Named(e.FindWinChild(c(0))), c(1)
Next
CheckEqual "WaitFindWindows", e.WaitFindWindows("Vx Fixture Main").MyHwndWin, main
CheckEqual "WaitFindWindows with a child key", e.WaitFindWindows("Vx Fixture Main~3EE").Title, "World"
CheckEqual "and other separators", e.WaitFindWindows("VxFixtureMain|Edit#2", "~", "|").Title, "World"
Check "a blank path is Nothing at once", e.WaitFindWindows("  ") Is Nothing
On Error Resume Next
Set w = e.WaitFindWindows("Vx Fixture Main~Nope")
CheckError "a child key the window lacks", Err.Number, 5
Err.Clear
On Error GoTo 0
CheckEqual "a title search by containment", e.GetFindTitleWindow("FIXTURE DIALOG").Class, "#32770"
' A parent search starts above the window (the edit's own title, Hello, is not looked at)
' and asks whether the text contains an ancestor's title; past the top it finds nothing.
CheckEqual "a parent search", e.GetFindTitleWindow("hello, the vx fixture main window", edit).MyHwndWin, main
CheckEqual "a parent search that fails", e.GetFindTitleWindow("zzz", edit).MyHwndWin, 0

' The helper's waits, as a host calls them (a window there already ends the first).
CreateObject("Vx_Main.Ds_MyVaribleFunction").DoWaitFindTitle "Vx Fixture Main"
CreateObject("Vx_Main.Ds_MyVaribleFunction").DoWaitNumber 0

Section "child lists"
CheckEqual "keyed by identifier", KeysOf(e.EWinChild(main)), "3E9,3EE,3EA,3EB,3EC,3ED,3EF"
CheckEqual "by class, repeats numbered", KeysOf(e.EWinChild("Vx Fixture Main", 1)), _
    "Edit,Edit#2,Button,Button#2,Button#3,Button#4,Static"
CheckEqual "by title", KeysOf(e.EWinChild(main, 2)), "Hello,World,OK,Remember,Option A,Option B,ready"
CheckEqual "none visible with a border; a kind out of range and handle 0 list nothing", _
    e.EWinChild(main, 3).Count & e.EWinChild(main, 9).Count & e.EWinChild(0, 4).Count, "000"
Set kept = e.EWinChild(main, 4)
Set lst = e.EWinChild("Vx Fixture Main", 4)
CheckEqual "each child by identifier, class and title", lst.Count, 21
CheckEqual "Item by a numbered key, a key in any case, a position", _
    lst.Item("Edit#2").ControlID & "|" & lst.Item("OPTION b").ControlID & "|" & lst.Item(4).ControlID, "3EE|3ED|3EE"
CheckEqual "MyPathKey is the key", lst.Item(2).MyPathKey, "Edit"
CheckEqual "ItemClass and ItemTitle", lst.ItemClass("button#3").Title & "|" & lst.ItemTitle("OK").Class, "Option A|Button"
s = "BUTTON"
CheckEqual "CountClass by containment", lst.CountClass(s), 4
CheckEqual "leaves the caller's variable lower-cased", s, "button"
CheckEqual "CountClass without an argument", lst.CountClass, 7
CheckEqual "CountTitle", lst.CountTitle("o"), 5
lst.Remove "Edit"
CheckEqual "Remove takes from the main list", lst.Count, 20
CheckEqual "but not from the class and title lists", lst.ItemClass("Edit").ControlID & lst.ItemTitle("Hello").ControlID, "3E93E9"
On Error Resume Next
Set w2 = lst.Item("Edit")
CheckError "a removed key", Err.Number, 5
Err.Clear
Set w2 = lst.Item(99)
CheckError "a position out of range", Err.Number, 9
Err.Clear
On Error GoTo 0
CheckEqual "a window and its ancestors, from the window up", KeysOf(e.SubParentEnum(edit)) & "|" & _
    e.SubParentEnum(edit).Item(2).MyHwndWin, "3E9,0|" & main
CheckEqual "visible with a border: the main window only", KeysOf(e.SubParentEnum(edit, 3)), "Vx Fixture Main"
CheckEqual "SubParentEnumX", KeysOf(e.FindWinChild("Vx Fixture Main~Edit#2").SubParentEnumX(1)), "Edit,VxFixtureMain"
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

Section "the window object"
Set w = e.GetChild(edit)
Set w2 = e.GetChild(main)
CheckEqual "Title, Class, ParentTitle, ParentClass", w.Title & "|" & w.Class & "|" & w.ParentTitle & "|" & w.ParentClass, _
    "Hello|Edit|Vx Fixture Main|VxFixtureMain"
CheckEqual "ControlID in hexadecimal, and as a Long", w.ControlID & "|" & w.ControlID(False) & "|" & VarType(w.ControlID(False)), _
    "3E9|1001|3"
CheckEqual "ParentHwnd and SubParent", w.ParentHwnd & "|" & w.SubParent.MyHwndWin, main & "|" & main
CheckEqual "IsEnableUser and IsEnableSystem", w.IsEnableUser Or w.IsEnableSystem, False
CheckEqual "the style report", w2.Style(False), "WS_BORDER:8388608\WS_VISIBLE:268435456\"
CheckEqual "the style report of a control without a border", _
    e.GetChild("Vx Fixture Main~Button*~*OK").Style(False), "WS_VISIBLE:268435456\"
CheckEqual "the style as a number, and IsTaskbar", (w2.Style And &H10800000) & w2.IsTaskbar, &H10800000 & "True"
w.ParentTitle = "Vx Renamed"
CheckEqual "ParentTitle let", w2.Title, "Vx Renamed"
w.ParentTitle = "Vx Fixture Main"
w.Visible = False
CheckEqual "Visible let and get", w.Visible, False
w.Visible = True
w.Title = "set by the host"
CheckEqual "Title let", w.Title, "set by the host"
w.SetText "plain", 1
CheckEqual "SetText by SetWindowText", w.Title, "plain"
w.SetText "by message", 4
CheckEqual "SetText by WM_SETTEXT", w.Title, "by message"
w.SetText "", 4
w.SetText "typed", 2
CheckEqual "SetText as key messages", w.Title, "typed"
w.SetText "ignored", 7
CheckEqual "SetText of an unknown kind does nothing", w.Title, "typed"
CheckEqual "SendMsg returns the message's result", w.SendMsg(12, 0, "sent"), 1
CheckEqual "SendMsg to its own window", w.Title, "sent"
w.SendMsg 12, 0, "elsewhere", , e.FindWinChild("Vx Fixture Main~3EE").MyHwndWin
CheckEqual "SendMsg to another window", e.FindWinChild("Vx Fixture Main~3EE").Title, "elsewhere"
CheckEqual "leaving its own", w.Title, "sent"
e.ActionSend edit, 12, 0, 1234, 4
CheckEqual "ActionSend by string sends the digits", w.Title, "1234"
e.ActionSend edit, 12, 0, "words", 4
CheckEqual "and 0 for a text", w.Title, "0"
Check "JustNumberText answers Empty", IsEmpty(e.JustNumberText(edit))
Check "and makes an edit take digits only", (w.Style And &H2000) <> 0
Set w = e.GetChild("Vx Fixture Main~Button*~*Remember")
w.ClickCheckBox = True
CheckEqual "ClickCheckBox let and get", w.ClickCheckBox, True
CheckEqual "an unknown sending mode sends nothing", w.ClickCheckBox(9), False
w.ClickOption = False
CheckEqual "ClickOption is the same property", w.ClickCheckBox, False
e.GetChild("Vx Fixture Main~Button*~*OK").Click
CheckEqual "Click reaches the program", e.GetChild("Vx Fixture Main~Static").Title, "clicked 1"
w.Enabled = False
CheckEqual "Enabled", w.Enabled, False
w.Enabled = True

Section "geometry and the mouse"
' The fixture's main window stands at 100, 100 with an outer size of 400 x 180.
CheckEqual "the right and bottom edges, not sizes", e.GetSizeWidth(main) & "," & e.GetSizeHeight(main), "500,280"
CheckEqual "the left and top edges", e.GetPosLeft(main) & "," & e.GetPosTop(main), "100,100"
CheckEqual "in twips", e.GetSizeWidth(main, True) & "," & e.GetPosTop(main, True), "7500,1500"
' Every read of the cursor waits until the pointer has come to rest: the moves with
' both coordinates may be sent again, the one-axis moves (whose other coordinate is read
' from the cursor) only waited for.
SettleCursor 110, 110
CheckEqual "MouseCX and MouseCY in twips", e.MouseCX & "," & e.MouseCY(True), "110,1650"
CheckEqual "IsHitTest", e.IsHitTest(main), True
CheckEqual "IsHitTestXY", w2.IsHitTestXY, True
e.GoCusorXY 120
AwaitCursor 120, 110
CheckEqual "only x given: y stays", e.MouseCX & "," & e.MouseCY, "120,110"
e.GoCusorXY , 130
AwaitCursor 120, 130
CheckEqual "only y given: x stays", e.MouseCX & "," & e.MouseCY, "120,130"
SettleCursor 500, 280
CheckEqual "IsHitTest includes the edges", e.IsHitTest(main), True
e.GoCusorXY 501
AwaitCursor 501, 280
CheckEqual "and nothing beyond them", e.IsHitTest(main), False
Set w = e.GetChild(main)
CheckEqual "LeftPL, WidthPL (an edge) and HeightPL in twips", w.LeftPL & "," & w.WidthPL & "," & w.HeightPL(True), "100,500,4200"
' Minimized, maximized, an unknown state that changes nothing, normal again.
For Each c In Array(Array(1, 1), Array(2, 2), Array(7, 2), Array(0, 0))
    w.WinState = c(0)
    CheckEqual "WinState " & c(0), w.WinState, c(1)
Next
w.GoShowWindows 0
CheckEqual "GoShowWindows hides", w.Visible, False
w.GoShowWindows 5
CheckEqual "and shows", w.Visible, True
n = w.WidthTX
Check "WidthTX is the client width", n > 300 And n < 400
w.WidthTX = n
Check "setting it to itself shrinks a framed window", w.WidthTX < n
w.LeftTX(True) = 10
CheckEqual "LeftTX with IsPixcel moves to 10 pixels", w.LeftTX, 10
CheckEqual "while the top went through x 15", w.TopTX, 1500
On Error Resume Next
w.TopTX(True) = 200000000
CheckError "the scaled new value must fit a Long", Err.Number, 6
Err.Clear
On Error GoTo 0
w.TopTX = 100
w.LeftTX = 100
CheckEqual "TopTX and LeftTX in pixels", e.GetPosLeft(main) & "," & e.GetPosTop(main), "100,100"
' A pop-up with a caption, which the system does not hold to a size range, shows all four
' values of that move: the new left edge as given; the top and the client sizes x 15.
n = e.GetFindHandle("Vx Fixture Dialog")
Set w2 = e.GetChild(n)
s = "10," & w2.TopTX * 15 & "," & w2.WidthTX * 15 & "," & w2.HeightTX * 15
w2.LeftTX(True) = 10
CheckEqual "a pop-up moved in twips", w2.LeftTX & "," & w2.TopTX & "," & (e.GetSizeWidth(n) - w2.LeftTX) & "," & _
    (e.GetSizeHeight(n) - w2.TopTX), s

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
e.GoImageWithHwnd (main), (Nothing)
CheckError "no form", Err.Number, 91
Err.Clear
e.KeyPress 300
CheckError "a key code is a byte", Err.Number, 6
Err.Clear
On Error GoTo 0

Section "a real program: notepad"
Set notepad = sh.Exec(binDir & "\vx_window_fixture.exe --run notepad.exe")
h = WaitFor("Untitled - Notepad")
Check "notepad shows its window", h <> 0
pointerPrograms = Array(main, h)
Set w = e.GetChild("Untitled - Notepad~Edit")
Check "its edit control by path", w.MyHwndWin <> 0
CheckEqual "by class too", e.GetFindHandle("Notepad~Edit"), w.MyHwndWin
CheckEqual "an empty document", w.Title, ""
w.SetText "set through WM_SETTEXT", 4
CheckEqual "text set and read back", w.Title, "set through WM_SETTEXT"
w.SetText "", 4
' Bring it forward and click into its edit control, then type with simulated keys. The
' click acts where the cursor stands, so the pointer is brought to rest there first.
e.GetChild(h).WinState = 0
x = e.GetPosLeft(w.MyHwndWin) + 40
y = e.GetPosTop(w.MyHwndWin) + 20
SettleCursor x, y
e.GoCusorXY x, y, 6, 5
' Keys go to the window that has the keyboard focus when they are sent.
Check "the click makes notepad active", WaitActive(h)
e.SetTextMaching "TYPED 42", 0, 3
CheckEqual "typed into notepad (letters arrive unshifted)", WaitText(w, "typed 42"), "typed 42"
e.KeyPress 13
e.KeyPress 65, 2
CheckEqual "KeyPress with a wait", WaitText(w, "typed 42" & vbCrLf & "a"), "typed 42" & vbCrLf & "a"
CheckEqual "the clicked window is the active one", e.GetActiveWindow.MyHwndWin, h
CheckEqual "GetHwndPoint", e.GetHwndPoint.Class & "|" & e.GetHwndPoint.MyHwndWin, "Edit|" & w.MyHwndWin
' A document that is not modified closes without asking.
CheckEqual "EM_SETMODIFY answers 0", e.ActionSend(w.MyHwndWin, 185, 0, 0), 0
e.WindowsClose h
Check "notepad is closed", WaitGone("Untitled - Notepad")
' Its guard ends with it; ending the guard would end notepad too.
Check "and ends", WaitEnded(notepad)
If notepad.Status = 0 Then notepad.Terminate
pointerPrograms = Array(main)

Section "closing"
e.CloseAllWindows 0
Check "CloseAllWindows closes a dialog box", WaitGone("Vx Fixture Dialog")
CheckEqual "and leaves other windows", e.GetFindHandle("Vx Fixture Main"), main
e.GetChild(main).CloseWindowXP
Check "CloseWindowXP closes the program's window", WaitGone("Vx Fixture Main")
WaitEnded fixture
CheckEqual "and the program ends", fixture.Status, 1
If fixture.Status = 0 Then fixture.Terminate
' Its windows, listed before, are gone: their classes read empty and no longer contain
' "button", but an empty text counts every entry and the list keeps them all.
CheckEqual "a list of closed windows", kept.CountClass("button") & "," & kept.CountClass("") & "," & kept.Count, "0,7,21"

Section "handles that name no window"
' Nothing fails on them, and what they read is neutral. (Titles are only read: the test
' platform hands back stray bytes for a handle that names no window.)
For Each h In Array(0, main, -5, &H7FFFFFF0)
    Set w = e.GetChild(h)
    s = w.Title & w.ParentTitle & w.SubParent.Title
    CheckEqual "readings of " & h, w.Class & "|" & w.ParentClass & "|" & w.Style(False) & "|" & w.ControlID & "|" & _
        w.Style & w.WinState & w.LeftPL(True) & w.WidthTX(True) & w.HeightTX & w.ParentHwnd & "|" & _
        w.ClickCheckBox & w.Enabled & w.Visible & w.IsTaskbar & w.IsHitTestXY & "|" & e.GetSizeWidth(h, True), _
        "|||0|000000|FalseFalseFalseFalseFalse|0"
    CheckEqual "lists of " & h, w.SubChildEnum(4).Count & e.ThreadProcessId(h), "00"
    Set lst = w.SubParentEnumX(4)
    CheckEqual "a message to " & h, w.SendMsg(1024, 0, 0), 0
    w.LeftTX = 5
    w.WidthTX(True) = 5
    w.WinState = 2
    w.SizeWinPlace 1, 2, 3, 4
    w.Click 1
    w.ClickCheckBox = True
    w.SetText "x", 2
    w.Title = "x"
    w.Visible = True
    w.WindowOnTop
    e.GetFindTitleWindow "x", h
    e.JustNumberText h
    w.CloseWindowXP
    e.WindowsClose h
Next
e.WaitDoEvents , 20

Section "a program that has stopped answering"
' Its window's text is read by messages, which it never answers: a read gives up (the
' first after a few seconds at most, the next at once, once the system counts the
' program as hung) with the neutral result, and a search reads past the window.
Set hung = sh.Exec(binDir & "\vx_window_fixture.exe --hung")
h = WaitFor("Vx Hung Fixture")
Check "the program shows its window", h <> 0
CheckEqual "its title reads empty", e.GetChild(h).Title, ""
CheckEqual "a search passes over it", e.GetFindTitleWindow("vx hung fixture").MyHwndWin, 0
CheckEqual "and so does a check box read", e.GetChild(h).ClickCheckBox, False
hung.Terminate
Check "the test ends it", WaitGone("Vx Hung Fixture")
