' ---- the test ----
' Ds_SystemProcess from a late-bound host: the memory figures against WMI's, and ending
' processes by name, which the test tries only on a process of its own (Wine's WMI finds
' processes but cannot end them). ShutDownSystem is tested only through its stand-in, in
' the unit tests: a real call would end the session the tests run in.
Dim sh, fso, sp, work, gb, mb, kb, total, q, own, copy, x

Set sh = CreateObject("WScript.Shell")
Set fso = CreateObject("Scripting.FileSystemObject")
Set sp = CreateObject("Vx_Main.Ds_SystemProcess")
work = fso.GetParentFolderName(WScript.ScriptFullName)

Function CountProcesses(name)
    Dim q2
    CountProcesses = 0
    For Each q2 In GetObject("winmgmts:").ExecQuery("select * from Win32_Process where Name='" & name & "'")
        CountProcesses = CountProcesses + 1
    Next
End Function

Section "memory"
gb = 1
sp.GetMemorySystem gb, mb, kb
CheckEqual "three texts", VarType(gb) & VarType(mb) & VarType(kb), "888"
total = 0
For Each q In GetObject("winmgmts:").ExecQuery("select * from Win32_ComputerSystem")
    total = CDbl(q.TotalPhysicalMemory)
Next
Check "WMI knows the memory", total > 0
Check "kilobytes", Abs(CDbl(kb) - total / 1024) < 0.006
Check "megabytes", Abs(CDbl(mb) - total / 1024 / 1024) < 0.006
Check "gigabytes", Abs(CDbl(gb) - total / 1024 / 1024 / 1024) < 0.006
sp.GetMemorySystem
sp.GetMemorySystem , x
CheckEqual "any of them may be left out", Abs(CDbl(x) - CDbl(mb)) < 0.006, True

Section "ending processes"
' A copy of the idle fixture under a name of the test's own.
copy = work & "\vxkillhost.exe"
fso.CopyFile Replace(sh.ExpandEnvironmentStrings("%VX_BIN_DIR%"), Chr(0), "") & "\vx_idle_fixture.exe", copy, True
Set own = sh.Exec("""" & copy & """ 120")
Check "the test's process runs", CountProcesses("vxkillhost.exe") = 1
' A name that would widen the query to every process ends nothing. (Wine's WMI cannot
' end processes anyway: the unit tests prove this against a stand-in that can.)
sp.KillProcess "x' or Name like '%"
sp.KillProcess "x\' or Name like \'%"
CheckEqual "the test's process is still there", CountProcesses("vxkillhost.exe"), 1
CheckEqual "and so is the script host", CountProcesses("cscript.exe") > 0, True
' Failures are silent: a space after a comma, a name no process has, a computer that is
' not there, and (on Wine) the process WMI cannot end.
sp.KillProcess "vx_no_such.exe, vxkillhost.exe"
CheckEqual "a name is never trimmed", CountProcesses("vxkillhost.exe"), 1
sp.KillProcess "vx_no_such.exe", "vx-no-such-computer"
sp.KillProcess "VXKILLHOST.EXE"
sp.KillProcess "vxkillhost.exe", ""
Check "nothing raised", True
If own.Status = 0 Then own.Terminate
Do While own.Status = 0
    CreateObject("Vx_Main.Ds_EnumChid").WaitDoEvents , 20
Loop
fso.DeleteFile copy
