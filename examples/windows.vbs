' Windows and input: Ds_EnumChid finds windows, Ds_ENumAction is one window, Ds_ListChild
' lists a window's children. This example starts Notepad, works with its window and
' closes it again. Run: cscript //nologo windows.vbs
Option Explicit

Dim finder, shell, pad, edit, children, i, k

Set finder = CreateObject("Vx_Main.Ds_EnumChid")
Set shell = CreateObject("WScript.Shell")

shell.Run "notepad.exe", 1, False

' A window path: a title or class, then "~" and a child's class. WaitFindWindows waits
' (yielding, no time-out; hold End to give up) until the window is there.
Set pad = finder.WaitFindWindows("Untitled - Notepad")
Set edit = finder.GetChild("Untitled - Notepad~Edit")
WScript.Echo "Found: " & pad.Title & " (class " & pad.Class & ")"
WScript.Echo "Its edit box: class " & edit.Class & ", parent " & edit.ParentClass

' Window state and geometry (pixels; the right and bottom edges, not width and height).
WScript.Echo "Visible: " & pad.Visible
WScript.Echo "Left edge below the right edge: " & (finder.GetPosLeft(pad.MyHwndWin) < finder.GetSizeWidth(pad.MyHwndWin))

' The children of a window, keyed by class (Out_Class = 1): Edit, Edit#2 ...
Set children = finder.EWinChild(pad.MyHwndWin, 1)
For i = 1 To children.Count
    WScript.Echo "  child " & i & ": " & children.Item(i).MyPathKey
Next
WScript.Echo "Child by key: " & children.Item("edit").Class

' Text: WM_SETTEXT (mode 4) sets it at once; mode 2 sends each character as key
' messages to the window; mode 3 presses keys in whatever window has the focus.
edit.SetText "Set by a message", 4
WScript.Echo "Edit text: " & edit.Title
edit.SendMsg &HB1, 100, 100                       ' EM_SETSEL: the caret to the end
finder.SetTextMaching ", then typed", edit.MyHwndWin, 2
For k = 1 To 200                                  ' posted keys arrive in their own time
    If edit.Title = "Set by a message, then typed" Then Exit For
    finder.WaitDoEvents , 20
Next
WScript.Echo "After typing: " & edit.Title

' The mouse: where the cursor is, and a move (no click: 0 = NoXY).
finder.GoCusorXY finder.GetPosLeft(pad.MyHwndWin) + 50, finder.GetPosTop(pad.MyHwndWin) + 50, 0, 1
WScript.Echo "Cursor over Notepad: " & finder.IsHitTest(pad.MyHwndWin)

' Closing: first mark the text saved (EM_SETMODIFY = &HB9), so no "save?" box appears.
edit.SendMsg &HB9, 0, 0
finder.WindowsClose pad.MyHwndWin
For k = 1 To 200                                  ' wait, counted in yields, for it to go
    If finder.GetFindHandle("Untitled - Notepad") = 0 Then Exit For
    finder.WaitDoEvents , 20
Next
WScript.Echo "Closed: " & (finder.GetFindHandle("Untitled - Notepad") = 0)
WScript.Echo "Done."
