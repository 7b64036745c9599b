' The server as a host sees it: classes by ProgID, and the runtime's errors.
Dim list, errors

Section "creation"
Set list = CreateObject("Vx_Main.Ds_ListCollection")
Check "a global class is created by its ProgID", IsObject(list)
Set errors = CreateObject("Vx_Main.Ds_ListCollection")
Check "each creation makes a new object", Not (errors Is list)

Section "errors"
On Error Resume Next
list.Item "missing"
CheckError "Err.Number", Err.Number, 5
CheckEqual "Err.Description", Err.Description, "Invalid procedure call or argument"
CheckEqual "Err.Source", Err.Source, "Vx_Main"
Err.Clear
list.Item 7
CheckEqual "subscript out of range", Err.Description, "Subscript out of range"
Err.Clear
list.NoSuchMember
CheckError "a member the class lacks", Err.Number, 438
Err.Clear
On Error GoTo 0
