' ---- the test ----
' Ds_RunShell from a late-bound host, for real: notepad, a document, a file type without a
' program, a program that is not there, control-panel items. Every window started here is
' found and closed through the library before the test ends.
Dim sh, fso, rs, e, reg, work, r, doc, other, hadTxt, x

Set sh = CreateObject("WScript.Shell")
Set fso = CreateObject("Scripting.FileSystemObject")
Set rs = CreateObject("Vx_Main.Ds_RunShell")
Set e = CreateObject("Vx_Main.Ds_EnumChid")
work = fso.GetParentFolderName(WScript.ScriptFullName)

' Waits, counted in yields, until title names no window; whether it came to that.
Function WaitGone(title)
    Dim k
    For k = 1 To 3000
        WaitGone = (e.GetFindHandle(title) = 0)
        If WaitGone Then Exit Function
        e.WaitDoEvents , 20
    Next
End Function

' Closes the window with this title through the library; whether it went.
Function CloseWindow(title)
    Dim hw
    hw = e.GetFindHandle(title)
    If hw <> 0 Then e.WindowsClose hw
    CloseWindow = WaitGone(title)
End Function

' The image name of a process, by its identifier, as WMI sees it ("" when there is none).
Function ProcessName(id)
    Dim q
    ProcessName = ""
    For Each q In GetObject("winmgmts:").ExecQuery("select * from Win32_Process where ProcessId=" & CLng(id))
        ProcessName = LCase(q.Name)
    Next
End Function

Section "ShellVB"
r = rs.ShellVB("notepad.exe", 1)
CheckEqual "the process identifier, as a Double", VarType(r), 5
' The library's own wait: it returns once the window is there.
Set x = e.WaitFindWindows("Untitled - Notepad")
CheckEqual "of notepad", ProcessName(r), "notepad.exe"
Check "whose window is closed", CloseWindow("Untitled - Notepad")
On Error Resume Next
x = rs.ShellVB("")
CheckError "nothing to start", Err.Number, 5
Err.Clear
x = rs.ShellVB("vx_no_such_program.exe", 1)
CheckError "a program that is not there", Err.Number, 53
Err.Clear
x = rs.ShellVB("notepad.exe", 12)
CheckError "a window style there is not", Err.Number, 5
Err.Clear
On Error GoTo 0

Section "RunShell: programs and documents"
r = rs.RunShell("notepad.exe", , , , 1, , "Untitled - Notepad")
Check "returns once the window it waits for is there", e.GetFindHandle("Untitled - Notepad") <> 0
CheckEqual "the shell's result, a Long", VarType(r), 3
Check "above 32: started", r > 32
Check "notepad is closed", CloseWindow("Untitled - Notepad")
' A document opens in the program of its type; the test prefix has none for .txt, so the
' test gives it notepad's for the time being.
doc = work & "\vxlaunchdoc.txt"
fso.CreateTextFile(doc, True).WriteLine "a document"
' (The registry class writes it: Wine's WScript.Shell cannot delete a key.)
Set reg = CreateObject("Vx_Main.clsReg")
hadTxt = reg.IsHasKey(&H80000000, ".txt")
If Not hadTxt Then reg.WriteString &H80000000, ".txt", "", "txtfile"
r = rs.RunShell(doc, , , , , , "vxlaunchdoc.txt - Notepad")
Check "a document: its window is titled after it", e.GetFindHandle("vxlaunchdoc.txt - Notepad") <> 0
Check "above 32", r > 32
Check "closed", CloseWindow("vxlaunchdoc.txt - Notepad")
If Not hadTxt Then reg.KeyDelete ".txt", &H80000000

other = work & "\vxlaunch.vxnoassoc"
fso.CreateTextFile(other, True).WriteLine "no program opens this"
CheckEqual "a file type without a program", rs.RunShell(other), 31
' Asked to, the library then offers the Open With choice (Wine shows none).
CheckEqual "the shell's result stays", rs.RunShell(other, , , , , True), 31
e.WaitDoEvents , 200
If e.GetFindHandle("Open With") <> 0 Then Check "Open With is closed", CloseWindow("Open With")
CheckEqual "a program that is not there", rs.RunShell("vx_no_such_program.exe"), 2
fso.DeleteFile doc
fso.DeleteFile other

Section "control-panel items"
r = rs.RunShellDLL(0, " appwiz.cpl")
CheckEqual "RunShellDLL gives the process identifier", VarType(r), 5
CheckEqual "of rundll32", ProcessName(r), "rundll32.exe"
Set x = e.WaitFindWindows("Add/Remove Programs")
Check "the item's window", e.GetFindHandle("Add/Remove Programs") <> 0
Check "closed", CloseWindow("Add/Remove Programs")
r = rs.RunShell("rundll32.exe shell32.dll,Control_RunDLL joy.cpl", , , , 1, , "Game Controllers")
Check "RunShell returns once the item's window is there", e.GetFindHandle("Game Controllers") <> 0
CheckEqual "a rundll32 command line gives the process identifier", VarType(r), 5
Check "closed", CloseWindow("Game Controllers")
On Error Resume Next
x = rs.RunShellDLL(7)
CheckError "a value without a command line", Err.Number, 5
Err.Clear
x = rs.RunShellDLL(34)
CheckError "past the last", Err.Number, 5
Err.Clear
x = rs.RunShellDLL(7, "vx_no_such_program.exe")
CheckError "which leaves only the data to start", Err.Number, 53
Err.Clear
On Error GoTo 0
Check "GoShellSplit does nothing", IsEmpty(rs.GoShellSplit("a<|^^|>b"))
