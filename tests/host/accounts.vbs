' Ds_MakeAccount from a late-bound host against the stand-in directory provider (the
' ProgID "WinNT", registered for this test only): the paths it binds, the settings
' pass and its statuses, creation with group membership, deletion with either
' credentials, the group listing, the host's form, and names that would change a path.
Dim acc, adsi, form, r, arr, log, before

Class Form
    Public Shown
    Public Hidden
    Sub Show()
        Shown = Shown + 1
    End Sub
    Public Property Let Visible(v)
        If Not v Then Hidden = Hidden + 1
    End Property
End Class

Function Lines(text)
    Lines = Split(text, vbCrLf)
End Function

Set adsi = CreateObject("VxTest.AdsiControl")
Set acc = CreateObject("Vx_Main.Ds_MakeAccount")

Section "groups"
adsi.Reset
adsi.AddUser "sara", "Users,Backup Operators"
arr = "untouched"
r = acc.GroupsAccount("sara", "PC1", arr)
CheckEqual "each group followed by CR LF", r, "Users" & vbCrLf & "Backup Operators" & vbCrLf
CheckEqual "the array holds both", UBound(arr), 1
CheckEqual "in order", arr(0) & "|" & arr(1), "Users|Backup Operators"
log = Lines(adsi.Log)
CheckEqual "the user's path", log(0), "Bind WinNT://PC1/sara,user"
adsi.AddUser "lone", ""
arr = "untouched"
r = acc.GroupsAccount("lone", "PC1", arr)
CheckEqual "no group: Empty", VarType(r), 0
CheckEqual "and the array as it was", arr, "untouched"
On Error Resume Next
r = acc.GroupsAccount("nobody", "PC1")
CheckError "an unknown user's error reaches the caller", Err.Number, &H800708AD
Err.Clear
On Error GoTo 0

Section "an existing account is updated"
adsi.Reset
adsi.AddUser "bob", "Users"
Set form = New Form
form.Shown = 0
form.Hidden = 0
r = acc.CreateAccountName("bob", "PC1", "s3cret", , True, "Bob's account", form)
CheckEqual "status 0", r, 0
CheckEqual "a Long", VarType(r), 3
CheckEqual "its group is not changed", adsi.GroupsOf("bob"), "Users"
CheckEqual "the form was shown", form.Shown, 1
CheckEqual "and hidden", form.Hidden, 1
CheckEqual "password never expires", adsi.UserFlags("bob"), &H10201
CheckEqual "the settings in order", adsi.Log, _
    "Bind WinNT://PC1/bob,user" & vbCrLf & "Let bob FullName=bob" & vbCrLf & "Let bob AccountDisabled=True" & vbCrLf & _
    "SetPassword bob s3cret" & vbCrLf & "Let bob Description=Bob's account" & vbCrLf & _
    "Put bob PasswordExpired=0" & vbCrLf & "SetInfo bob" & vbCrLf & "Get bob userflags" & vbCrLf & _
    "Put bob userflags=66049" & vbCrLf & "SetInfo bob" & vbCrLf

Section "a new account is created in its group"
adsi.Reset
r = acc.CreateAccountName("newbie", "PC1")
CheckEqual "status -2", r, -2
Check "the account exists", adsi.HasUser("newbie")
CheckEqual "in the default group", adsi.GroupsOf("newbie"), "Administrators"
log = Lines(adsi.Log)
CheckEqual "the container", log(1), "Bind WinNT://PC1"
CheckEqual "creation", log(2), "Create PC1 User newbie"
CheckEqual "saved", log(3), "SetInfo newbie"
CheckEqual "the new user's path", log(4), "Bind WinNT://PC1/newbie,User"
CheckEqual "the group's path", log(5), "Bind WinNT://PC1/Administrators,Group"
CheckEqual "joined by its ADsPath", log(6), "Add Administrators WinNT://PC1/newbie"
CheckEqual "the group saved", log(7), "SetInfo Administrators"
CheckEqual "then the settings again", log(8), "Bind WinNT://PC1/newbie,user"
CheckEqual "with the default description", log(12), "Let newbie Description=Kw Account"
r = acc.CreateAccountName("other", "PC1", "pw", "Users,Group")
CheckEqual "another group", adsi.GroupsOf("other"), "Users"
On Error Resume Next
r = acc.CreateAccountName("lost", "PC1", "pw", "No Such Group,Group")
CheckError "a group that does not exist: the error reaches the caller", Err.Number, &H800708AC
Err.Clear
On Error GoTo 0

Section "refusals"
adsi.Reset
adsi.AddUser "bob", "Users"
adsi.FailOn "SetInfo", &H80070005
CheckEqual "access denied: -1", acc.CreateAccountName("bob", "PC1"), -1
' A new name passes the settings with -2; its creation is not trapped.
On Error Resume Next
r = acc.CreateAccountName("fresh", "PC1")
CheckError "a refused creation reaches the caller", Err.Number, &H80070005
Err.Clear
On Error GoTo 0
Check "and creates nothing", Not adsi.HasUser("fresh")
adsi.FailOn "SetInfo", 0
adsi.FailOn "SetPassword", &H800708C5
CheckEqual "another error: its number", acc.CreateAccountName("bob", "PC1", "short"), &H800708C5
adsi.FailOn "SetPassword", 0

Section "deletion"
adsi.Reset
adsi.AddUser "gone", "Users"
Set form = New Form
form.Shown = 0
form.Hidden = 0
r = acc.DeleteAccount("gone", "PC1", , , , form)
CheckEqual "the result is never set", r, False
Check "the account is gone", Not adsi.HasUser("gone")
CheckEqual "with the current credentials", adsi.Log, "Bind WinNT://PC1" & vbCrLf & "Delete PC1 User gone" & vbCrLf
CheckEqual "the form shown and hidden", form.Shown & form.Hidden, "11"
adsi.AddUser "gone2", ""
adsi.ClearLog
r = acc.DeleteAccount("gone2", "PC1", "admin", "pa55", False)
CheckEqual "with given credentials", adsi.Log, "Bind WinNT:" & vbCrLf & "OpenDSObject WinNT://PC1 admin pa55 1" & vbCrLf & _
    "Bind WinNT://PC1" & vbCrLf & "Delete PC1 User gone2" & vbCrLf
On Error Resume Next
r = acc.DeleteAccount("nobody", "PC1")
CheckError "deleting an unknown user: the error reaches the caller", Err.Number, &H800708AD
Err.Clear
On Error GoTo 0

Section "names that would change a path"
adsi.Reset
adsi.AddUser "admin", "Administrators"
adsi.AddUser "victim", "Users"
On Error Resume Next
For Each r In Array("victim,group", "x/../victim", "PC1/victim", "victim,user", "/", ",")
    Err.Clear
    arr = acc.CreateAccountName(r, "PC1", "pw")
    CheckError "CreateAccountName refuses " & r, Err.Number, 5
    Err.Clear
    arr = acc.DeleteAccount(r, "PC1")
    CheckError "DeleteAccount refuses " & r, Err.Number, 5
    Err.Clear
    arr = acc.GroupsAccount(r, "PC1")
    CheckError "GroupsAccount refuses " & r, Err.Number, 5
Next
Err.Clear
On Error GoTo 0
CheckEqual "nothing was bound", adsi.Log, ""
Check "no account was touched", adsi.HasUser("admin") And adsi.HasUser("victim")

Section "bad input"
On Error Resume Next
r = acc.CreateAccountName(Null, "PC1")
CheckError "Null for a name", Err.Number, 13
Err.Clear
r = acc.GroupsAccount(Array(1), "PC1")
CheckError "an array for a name", Err.Number, 13
Err.Clear
r = acc.CreateAccountName("bob", "PC1", , , , , 42)
CheckError "a form that is no object", Err.Number, 424
Err.Clear
On Error GoTo 0
r = acc.CreateAccountName(String(100000, "z"), "PC1")
CheckEqual "a huge name is just a new name", r, -2
