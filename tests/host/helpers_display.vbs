' ---- the test ----
' The display members of Ds_MyVaribleFunction for real: a screen mode the display does not
' have is refused before anything changes, and the wallpaper is set and put back. (What
' each member would ask of the system is checked through the display seam in the unit
' tests.)
Dim f, fso, folder, bmp, stream, old, now, was, i

Set f = CreateObject("Vx_Main.Ds_MyVaribleFunction")
Set fso = CreateObject("Scripting.FileSystemObject")
folder = fso.GetParentFolderName(WScript.ScriptFullName)

Section "resolution"
Check "a mode the display does not have is refused", Not f.GoResulotion(12345, 6789)
Check "so is a colour depth it does not have", Not f.GoResulotion(0, 0, 31)
On Error Resume Next
was = f.GoResulotion(-1, 600)
CheckError "a negative size", Err.Number, 5
Err.Clear
On Error GoTo 0

Section "wallpaper"
' A one-pixel bitmap (every byte below 128, so the text stream writes it as it is).
bmp = folder & "\wall.bmp"
Set stream = fso.CreateTextFile(bmp, True, False)
For Each i In Array(66, 77, 58, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 24, 0, _
                    0, 0, 0, 0, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 16, 32, 48, 0)
    stream.Write Chr(i)
Next
stream.Close
CheckEqual "the bitmap is written", fso.GetFile(bmp).Size, 58
Check "set for this session", f.SetBackground(bmp, False, old)
Check "the one before is told", VarType(old) = 8
Check "set again, the new one is told as the one before", f.SetBackground(bmp, False, now)
CheckEqual "which is the bitmap, by its full name", LCase(now), LCase(bmp)
Check "a missing file changes nothing", Not f.SetBackground(folder & "\none.bmp", False, now)
CheckEqual "still the bitmap", LCase(now), LCase(bmp)
Check "put back", f.SetBackground(old, False, now)
Check "as it was", f.SetBackground(old, False, now) And now = old
fso.DeleteFile bmp
