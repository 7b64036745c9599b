' Launching, system and the mixer: Ds_RunShell starts programs and documents,
' Ds_SystemProcess reads the memory and ends processes by name, Ds_VolumeSetting reads
' and sets the volume. Everything this example starts, it ends; its files are in a
' temporary folder it removes. Run: cscript //nologo launch.vbs
Option Explicit

Dim fso, shell, launcher, finder, sysproc, mixer, folder, doc, pid, answer, job, k
Dim gb, mb, kb, was

Set fso = CreateObject("Scripting.FileSystemObject")
Set shell = CreateObject("WScript.Shell")
Set launcher = CreateObject("Vx_Main.Ds_RunShell")
Set finder = CreateObject("Vx_Main.Ds_EnumChid")
Set sysproc = CreateObject("Vx_Main.Ds_SystemProcess")

folder = fso.BuildPath(shell.Environment("Process")("TEMP"), fso.GetTempName())
fso.CreateFolder folder

' Closes the window with this title and waits (counted in yields) until it is gone.
Sub CloseWindow(title)
    Dim n
    finder.WindowsClose finder.GetFindHandle(title)
    For n = 1 To 500
        If finder.GetFindHandle(title) = 0 Then Exit For
        finder.WaitDoEvents , 20
    Next
End Sub

' A command line, without waiting: the result is the new process's identifier.
' (Window styles: 0 hidden, 1 normal, 2 minimized, 3 maximized, 6 minimized, no focus.)
pid = launcher.ShellVB("notepad.exe", 1)
WScript.Echo "ShellVB started a process: " & (pid > 0)
finder.WaitFindWindows "Untitled - Notepad"
CloseWindow "Untitled - Notepad"

' A document, with the program registered for its type. Above 32 means it started; 31
' that no program is registered for the type (as in a bare Wine prefix, which has none
' for .txt). RunShell can also wait for a window title itself (its last argument), but
' that wait has no time-out, so wait only once the document has started.
doc = fso.BuildPath(folder, "note.txt")
fso.CreateTextFile(doc).WriteLine "Hello"
answer = launcher.RunShell(doc, "Open", , , 1)
If answer > 32 Then
    finder.WaitFindWindows "note.txt - Notepad"      ' the title Notepad gives it
    CloseWindow "note.txt - Notepad"
    WScript.Echo "Document: opened and closed"
ElseIf answer = 31 Then
    WScript.Echo "Document: no program is registered for .txt (31)"
Else
    WScript.Echo "Document: not opened (" & answer & ")"
End If
' A file that is not there: 2 (31 would mean no program is registered for its type).
WScript.Echo "A missing file: " & launcher.RunShell(fso.BuildPath(folder, "missing.txt"))

' Physical memory, as texts of GB, MB and KB.
sysproc.GetMemorySystem gb, mb, kb
WScript.Echo "Memory known: " & (CDbl(kb) > 0) & " (" & gb & " GB)"

' Ending processes by image name ends every process of that name, so this example
' starts a copy of Notepad under a name of its own and ends only that.
fso.CopyFile shell.Environment("Process")("SystemRoot") & "\system32\notepad.exe", fso.BuildPath(folder, "vx_example_pad.exe")
Set job = shell.Exec(fso.BuildPath(folder, "vx_example_pad.exe"))
finder.WaitDoEvents , 100
sysproc.KillProcess "vx_example_pad.exe"
For k = 1 To 200
    If job.Status <> 0 Then Exit For
    finder.WaitDoEvents , 20
Next
If job.Status = 0 Then
    ' KillProcess goes through WMI and is silent when WMI cannot end the process (Wine's
    ' cannot; Windows ends it): end it another way.
    WScript.Echo "KillProcess: still running, ended by the script"
    job.Terminate
Else
    WScript.Echo "KillProcess: ended"
End If
Do While job.Status = 0
    finder.WaitDoEvents , 20
Loop
WScript.Echo "The copy has ended: True"

' The mixer: device 0's speakers (VOL_CONTROL 0 = SPEAKER, mute slot 7). A machine
' without a mixer device answers 0 from OpenMixer; lines a mixer lacks read 0.
Set mixer = CreateObject("Vx_Main.Ds_VolumeSetting")
If mixer.OpenMixer(0) Then
    was = mixer.GetVolume(0)
    mixer.SetVolume 0, 40
    WScript.Echo "Speakers set to 40, read back: " & mixer.GetVolume(0)
    WScript.Echo "Muted: " & mixer.GetMute(7)
    mixer.SetVolume 0, was                            ' put it back
    mixer.CloseMixer
Else
    WScript.Echo "No mixer device: nothing to set"
End If

' ShutDownSystem(0) would log the user off, 1 shut down, 2 restart: not run here.
fso.DeleteFolder folder
WScript.Echo "Done."
