' What a late-bound host's mistakes come to: every wrong call is a runtime error the
' script can trap, never a crash of the host.
Dim list, rec, x

Section "arguments a member does not take"
Set list = CreateObject("Vx_Main.Ds_ListCollection")
Set rec = list.Add("v", "k")
Set rec.ValueG = Nothing
On Error Resume Next
x = rec.ValueG(1)
CheckError "a property holding Nothing, read with an argument", Err.Number, 450
Err.Clear
x = CreateObject("Vx_Main.Ds_Calendar").MiladyDate("1385/05/12", False, "more")
CheckError "one argument too many", Err.Number, 450
Err.Clear
On Error GoTo 0
