' ---- the test ----
' Ds_FileSystem and the lists it hands out, from a late-bound host. The test works in its
' own folder (the runner's work folder for it) and in files of its own in the temporary
' folder, which it removes; the recycle bin it reaches is the test prefix's own.
Dim fs, sh, work, temp, winDir, sysDir, profile, profiles, userName, i, x, y, n, ok, arr, lst, list, app
Dim f1, f2, d1, tree, before, stream, zipLog, standIn, bin, trash, xdg, prefix, r

Set fs = CreateObject("Vx_Main.Ds_FileSystem")
Set sh = CreateObject("WScript.Shell")
work = gFso.GetParentFolderName(WScript.ScriptFullName)

' A file of the given bytes (one character a byte in the ANSI code page), and back.
Sub WriteText(path, text)
    Dim s
    Set s = gFso.CreateTextFile(path, True, False)
    s.Write text
    s.Close
End Sub
Function Env(name)
    Env = Replace(sh.ExpandEnvironmentStrings("%" & name & "%"), Chr(0), "")
End Function

' The host's application object, as a forms program has one.
Class HostApp
    Public Path
    Public EXEName
End Class

Section "creating"
On Error Resume Next
For Each x In Array("Ds_TypeFileSys", "Ds_DriveInfo", "Ds_RecycleBin", "Ds_TypeFileDetails")
    Set y = CreateObject("Vx_Main." & x)
    CheckError x & " comes only from Ds_FileSystem", Err.Number, 429
    Err.Clear
Next
On Error GoTo 0

Section "special folders"
temp = gFso.GetSpecialFolder(2).Path & "\"
winDir = gFso.GetSpecialFolder(0).Path
sysDir = gFso.GetSpecialFolder(1).Path
profile = Env("USERPROFILE") & "\"
userName = Env("USERNAME")
CheckEqual "the temporary folder", fs.GetXpPath(13), temp
CheckEqual "the drive root, one backslash", fs.GetXpPath(5), Left(winDir, 3)
CheckEqual "the Windows folder", fs.GetXpPath(6), winDir & "\"
CheckEqual "the system folder", fs.GetXpPath(7), sysDir & "\"
CheckEqual "the user's profile", fs.GetXpPath(2), profile
CheckEqual "the desktop", fs.GetXpPath(8), profile & "Desktop\"
CheckEqual "my documents", fs.GetXpPath(9), profile & "My Documents\"
CheckEqual "my pictures", fs.GetXpPath(10), profile & "My Documents\My Pictures\"
CheckEqual "my music", fs.GetXpPath(11), profile & "My Documents\My Music\"
CheckEqual "my videos", fs.GetXpPath(12), profile & "My Documents\My Videos\"
CheckEqual "the start menu", fs.GetXpPath(15), profile & "Start Menu\"
CheckEqual "its programs", fs.GetXpPath(16), profile & "Start Menu\Programs\"
CheckEqual "its start-up folder", fs.GetXpPath(17), profile & "Start Menu\Programs\Startup\"
CheckEqual "the user's name, no backslash", fs.GetXpPath(14), userName
profiles = fs.GetXpPath(4)
Check "the profiles folder holds the profile", Left(profile, Len(profiles)) = profiles And Right(profiles, 1) = "\"
CheckEqual "a tail is appended unchanged", fs.GetXpPath(5, "a\\b"), Left(winDir, 3) & "a\\b"
CheckEqual "a code outside 1 to 17 gives the tail alone", fs.GetXpPath(18, "tail"), "tail"
CheckEqual "or nothing", fs.GetXpPath(0), ""

Section "placeholders"
CheckEqual "the temporary folder then the name", fs.PathReplace("*MyTemp*log.txt"), temp & "log.txt"
CheckEqual "placeholders are case-sensitive", fs.PathReplace("*mytemp*log.txt"), "*mytemp*log.txt"
CheckEqual "every one, every time", fs.PathReplace("*Desktop*|*MyTemp*|*MyTemp*|*ACM*", 1), _
    profile & "Desktop\|" & temp & "|" & temp & "|" & userName
CheckEqual "the rest", fs.PathReplace("*DriveRoot*,*WindowsRoot*,*System32Root*,*MyUserPath*,*DocSetting*"), _
    Left(winDir, 3) & "," & winDir & "\," & sysDir & "\," & profile & "," & profiles
CheckEqual "the start menu's, longest last", fs.PathReplace("*StartMenuStartup*|*StartMenuPrograms*|*StartMenu*"), _
    profile & "Start Menu\Programs\Startup\|" & profile & "Start Menu\Programs\|" & profile & "Start Menu\"
CheckEqual "a path without placeholders", fs.PathReplace("C:\plain\path.txt"), "C:\plain\path.txt"
CheckEqual "an empty path", fs.PathReplace(""), ""
CheckEqual "no application object: left as written", fs.PathReplace("*AppPath*x|*EXE*|*AppEXE*"), "*AppPath*x|*EXE*|*AppEXE*"
On Error Resume Next
x = fs.AppPath
CheckError "AppPath without an application object", Err.Number, 91
Err.Clear
On Error GoTo 0
Set app = New HostApp
app.Path = "C:\Program Files\Host"
app.EXEName = "host"
Set fs.MyAppPath = app
Check "MyAppPath keeps the object", fs.MyAppPath Is app
CheckEqual "AppPath ends in a backslash", fs.AppPath, "C:\Program Files\Host\"
CheckEqual "the application placeholders", fs.PathReplace("*AppPath*data|*EXE*|*AppEXE*"), _
    "C:\Program Files\Host\data|host.EXE|C:\Program Files\Host\host.EXE"
app.Path = "D:\"
CheckEqual "a path ending in a backslash keeps it", fs.AppPath, "D:\"
Set fs.MyAppPath = Nothing

Section "folding paths into placeholders"
CheckEqual "under the temporary folder", fs.PathReplace(temp & "Sub\A.txt", 2), "*MyTemp*\sub\a.txt\"
CheckEqual "expanding it again doubles the backslash", fs.PathReplace(fs.PathReplace(temp & "x", 2)), temp & "\x\"
CheckEqual "under the desktop", fs.PathReplace(profile & "Desktop\n", 2), "*Desktop*\n\"
CheckEqual "the start-up folder before the start menu", fs.PathReplace(profile & "Start Menu\Programs\Startup\a", 2), _
    "*StartMenuStartup*\a\"
CheckEqual "under the profile", fs.PathReplace(profile & "other", 2), "*MyUserPath*\other\"
x = "Q:\Elsewhere\x"
CheckEqual "under none: the profiles folder's length", fs.PathReplace(x, 2), _
    "*DocSetting*\" & Mid(LCase(x) & "\", Len(profiles) + 1)
x = UCase(temp) & "KEPT\"
CheckEqual "a path ending in a backslash keeps its case, and so matches nothing", fs.PathReplace(x, 2), _
    "*DocSetting*\" & Mid(x, Len(profiles) + 1)

Section "names of special folders"
x = Empty
arr = fs.ConstParamPath(x)
CheckEqual "fourteen", UBound(arr), 13
CheckEqual "the first", arr(0), "AppPath\"
CheckEqual "the last", arr(13), "GetSystem32Root\"
y = arr(0)
For i = 1 To UBound(arr): y = y & "," & arr(i): Next
CheckEqual "the whole text in the variable", x, y
arr = fs.ConstParamPath
CheckEqual "the variable may be left out", UBound(arr), 13

Section "file URLs"
CheckEqual "scheme removed, escapes decoded, slashes kept", _
    fs.ConvertURLToPath("file:///C:/My%20Docs/100%25%5B1%5D%7Ba%7D%60%23%5E%26.txt"), "C:/My Docs/100%[1]{a}`#^&.txt"
CheckEqual "each escape once, in order", fs.ConvertURLToPath("%2520"), "%20"
CheckEqual "escapes and scheme ignore case", fs.ConvertURLToPath("FILE:///x%5b%5D"), "x[]"
CheckEqual "other escapes stay", fs.ConvertURLToPath("a%41%2F"), "a%41%2F"

Section "sizes as text"
CheckEqual "bytes", fs.GetInfoSizeByte(1023), "1023 bytes"
CheckEqual "no bytes", fs.GetInfoSizeByte(0), "0 bytes"
CheckEqual "the mask is ignored for bytes", fs.GetInfoSizeByte(5, "0.00"), "5 bytes"
CheckEqual "one KB", fs.GetInfoSizeByte(1024), "1 KB"
CheckEqual "with a mask", fs.GetInfoSizeByte(1536, "0.00"), "1.50 KB"
CheckEqual "the largest KB", fs.GetInfoSizeByte(1048575), "1024 KB"
CheckEqual "one MB", fs.GetInfoSizeByte(1048576), "1.0 MB"
CheckEqual "MB with a mask", fs.GetInfoSizeByte(1572864, "0"), "2 MB"
CheckEqual "one GB", fs.GetInfoSizeByte(1073741824), "1.0 GB"
CheckEqual "beyond the MB band", fs.GetInfoSizeByte(1073741823.5), "1.0 GB"
CheckEqual "many GB", fs.GetInfoSizeByte(5 * 1073741824), "5.0 GB"
CheckEqual "negative", fs.GetInfoSizeByte(-5), ""
CheckEqual "between the bands", fs.GetInfoSizeByte(1023.5), ""
CheckEqual "a size of 29 digits", Len(fs.GetInfoSizeByte(7.8E+28)), Len("72643844245437268755.9 GB")
On Error Resume Next
x = fs.GetInfoSizeByte(1E+300)
CheckError "a size no file can have", Err.Number, 6
Err.Clear
On Error GoTo 0
f1 = work & "\ten.bin"
WriteText f1, "0123456789"
CheckEqual "a file's size", fs.FormatFileSize(f1), "10 bytes"
WriteText f1, String(3000, "x")
CheckEqual "with a mask", fs.FormatFileSize(f1, "0.0"), "2.9 KB"
On Error Resume Next
x = fs.FormatFileSize(work & "\none.bin")
CheckError "a missing file", Err.Number, 53
Err.Clear
On Error GoTo 0

Section "attributes"
f1 = work & "\attr.txt"
WriteText f1, "a"
Check "IsFileX", fs.IsFileX(f1)
Check "not a folder", Not fs.IsDirX(f1)
Check "IsDirX", fs.IsDirX(work)
Check "a folder is no file", Not fs.IsFileX(work)
Check "nothing is neither", Not fs.IsFileX("") And Not fs.IsDirX("")
Check "SetFileAttribute", fs.SetFileAttribute(f1, 2)
Check "hidden", fs.GetFileAttribute(f1, 2)
Check "and nothing else", Not fs.GetFileAttribute(f1, 1 + 4)
' (Wine shows every file with the archive bit, whatever it was given.)
CheckEqual "the whole word", fs.GoFileAtt(False, f1, 0) And Not 32, 2
Check "GoFileAtt tests", fs.GoFileAtt(False, f1, 2, True)
CheckEqual "and sets, giving nothing back", VarType(fs.GoFileAtt(True, f1, 1)), 0
Check "read-only now, hidden no more", fs.GetFileAttribute(f1, 1) And Not fs.GetFileAttribute(f1, 2)
Check "SetFileAttribute with normal", fs.SetFileAttribute(f1, 128)
Check "a missing path has every attribute", fs.GetFileAttribute(work & "\none", 1) And fs.GetFileAttribute(work & "\none", 16384)
CheckEqual "its word is all ones", fs.GoFileAtt(False, work & "\none", 0), -1
Check "setting a missing path fails", Not fs.SetFileAttribute(work & "\none", 2)
Check "placeholders work here too", fs.IsDirX("*MyTemp*")
Check "a NUL ends no path early", Not fs.IsFileX(f1 & Chr(0) & "x") And Not fs.IsDirX(work & Chr(0) & "x")
Check "the file is still there", fs.IsFileX(f1)

Section "paths in variables"
x = "C:\a"
CheckEqual "AddSplash", fs.AddSplash(x), "C:\a\"
CheckEqual "writes back", x, "C:\a\"
CheckEqual "a backslash already there", fs.AddSplash(x), "C:\a\"
x = ""
CheckEqual "of nothing", fs.AddSplash(x), "\"
x = "report"
CheckEqual "GTypeFile appends", fs.GTypeFile(x, ".TXT"), "report.TXT"
CheckEqual "into the variable", x, "report.TXT"
x = "report.txt"
CheckEqual "but not twice, whatever the case", fs.GTypeFile(x, ".TXT"), "report.txt"
x = "*MyTemp*r"
CheckEqual "expanded", fs.GTypeFile(x, ".log"), temp & "r.log"

Section "new files"
f1 = work & "\new.txt"
fs.NewFile f1
Check "an empty file", fs.IsFileX(f1) And gFso.GetFile(f1).Size = 0
WriteText f1, "kept"
fs.NewFile f1
CheckEqual "an existing file is left alone", ReadText(f1), "kept"
fs.NewFile f1, "line"
CheckEqual "a text and a line end", ReadText(f1), "line" & vbCrLf
fs.NewFile f1, 2.5
CheckEqual "a number", ReadText(f1), CStr(2.5) & vbCrLf
fs.NewFile f1, "caf" & Chr(233), True
Set stream = gFso.OpenTextFile(f1, 1, False, -1)
CheckEqual "as Unicode", stream.ReadAll, "caf" & Chr(233)
stream.Close
CheckEqual "with its byte-order mark", gFso.GetFile(f1).Size, 10
x = False
fs.NewFile f1, "ansi", x
CheckEqual "IsUnicode in a variable", ReadText(f1), "ansi" & vbCrLf
fs.SetFileAttribute f1, 2
fs.NewFile f1, "over"
CheckEqual "a hidden file is written", ReadText(f1), "over" & vbCrLf
Check "and shown afterwards", Not fs.GetFileAttribute(f1, 2)
d1 = work & "\was a folder"
gFso.CreateFolder d1
WriteText d1 & "\inside.txt", "x"
fs.NewFile d1, "now a file"
Check "a folder of that name is replaced", fs.IsFileX(d1) And ReadText(d1) = "now a file" & vbCrLf
fs.NewFile "*MyTemp*vx new file.txt", "temp"
CheckEqual "placeholders", ReadText(temp & "vx new file.txt"), "temp" & vbCrLf
gFso.DeleteFile temp & "vx new file.txt"
fs.NewFile work & "\no such folder\x.txt", "x"
Check "a missing folder: nothing, quietly", Not gFso.FolderExists(work & "\no such folder")

Section "new folders"
d1 = work & "\a\b\c"
fs.NewDir d1
Check "every level", gFso.FolderExists(d1)
fs.NewDir d1
Check "again is no harm", gFso.FolderExists(d1)
WriteText work & "\a\file named like a folder", "x"
fs.NewDir work & "\a\file named like a folder"
Check "a file of that name makes way", gFso.FolderExists(work & "\a\file named like a folder")
Check "hide a folder", fs.SetFileAttribute(d1, 16 + 2) And fs.GetFileAttribute(d1, 2)
fs.NewDir d1
Check "a hidden folder is shown", Not fs.GetFileAttribute(d1, 2)
fs.NewDir "\\?\" & work & "\share\x\y"
Check "a path of the share form: level by level", gFso.FolderExists(work & "\share\x\y")

Section "reading text files"
f1 = work & "\lines.txt"
WriteText f1, "one" & vbCrLf & vbCrLf & "three" & vbCr & "four" & vbLf & "still four" & vbCrLf
arr = Array()
Check "GetReadFile", fs.GetReadFile(f1, arr)
CheckEqual "lines end at CR LF or CR", UBound(arr), 3
CheckEqual "first", arr(0), "one"
CheckEqual "an empty line", arr(1), ""
CheckEqual "a CR alone", arr(2), "three"
CheckEqual "a LF alone stays in its line", arr(3), "four" & vbLf & "still four"
arr = Array("a", "b", "c", "d", "e", "f")
WriteText f1, "x" & vbCrLf & "y"
x = fs.GetReadFile(f1, arr)
CheckEqual "the array is cut to the lines", UBound(arr), 1
CheckEqual "the last line needs no end", arr(1), "y"
WriteText f1, "caf" & Chr(233) & " " & Chr(128)
x = fs.GetReadFile(f1, arr)
CheckEqual "the ANSI code page", arr(0), "caf" & Chr(233) & " " & Chr(128)
WriteText f1, ""
arr = Array("kept")
Check "an empty file", fs.GetReadFile(f1, arr)
CheckEqual "leaves the array as it was", arr(0), "kept"
Check "a missing file", Not fs.GetReadFile(work & "\none.txt", arr)
CheckEqual "leaves it too", arr(0), "kept"
WriteText f1, "whole" & vbCrLf & "text"
x = Empty
Check "not an array", fs.GetReadFile(f1, x)
CheckEqual "the whole text", x, "whole" & vbCrLf & "text"

Section "key=value files"
f1 = work & "\settings.ini"
WriteText f1, "name = Sara " & vbCrLf & "city=Shiraz=old" & vbCrLf & "flag" & vbCrLf & vbCrLf & "NAME=other"
Set list = CreateObject("Vx_Main.Ds_ListCollection")
Check "GetReadFileINI", fs.GetReadFileINI(f1, list)
CheckEqual "one record a line; a repeated key keeps the first", list.Count, 4
CheckEqual "trimmed", list.Item("name").ValueA, "Sara"
CheckEqual "the second field only", list.Item("city").ValueA, "Shiraz"
CheckEqual "a line without = has no value", list.Item("flag").ValueA, ""
CheckEqual "an empty line is a record without a key", list.Item(4).sKey, ""
Check "a missing file", Not fs.GetReadFileINI(work & "\none.ini", list)
CheckEqual "adds nothing", list.Count, 4
On Error Resume Next
x = "not a list"
ok = fs.GetReadFileINI(f1, x)
CheckError "the list must be an object", Err.Number, 424
Err.Clear
On Error GoTo 0

Section "bytes"
f1 = work & "\bytes.bin"
WriteText f1, "0123456789"
arr = fs.ConvertFileToArray(f1)
CheckEqual "a Byte array", VarType(arr), 8209
f2 = work & "\copy.bin"
CheckEqual "written back to a path", fs.ConvertArrayToFile(arr, f2), f2
CheckEqual "the same bytes and the one zero more", ReadText(f2), "0123456789" & Chr(0)
CheckEqual "eleven", gFso.GetFile(f2).Size, 11
CheckEqual "a missing file gives Empty", VarType(fs.ConvertFileToArray(work & "\none.bin")), 0
WriteText f1, "a" & Chr(0) & Chr(255) & Chr(13)
x = fs.ConvertArrayToFile(fs.ConvertFileToArray(f1), f2)
CheckEqual "any byte", ReadText(f2), "a" & Chr(0) & Chr(255) & Chr(13) & Chr(0)
x = fs.ConvertArrayToFile(Array(72, 105), f2)
CheckEqual "numbers from 0 to 255", ReadText(f2), "Hi"
x = fs.ConvertArrayToFile("no bytes", f2)
CheckEqual "anything else leaves an empty file", gFso.GetFile(f2).Size, 0
Set y = CreateObject("Vx_Main.Ds_FileSystem")
x = y.ConvertArrayToFile(arr)
CheckEqual "a temporary file by default", x, temp & "Kw_FSP1"
CheckEqual "holding the bytes", ReadText(x), "0123456789" & Chr(0)
gFso.DeleteFile x
CheckEqual "named by a counter", y.ConvertArrayToFile(arr), temp & "Kw_FSP2"
gFso.DeleteFile temp & "Kw_FSP2"
On Error Resume Next
x = fs.ConvertFileToArray(f1, "not a picture")
CheckError "a picture that is none", Err.Number, 13
Err.Clear
On Error GoTo 0
If gFso.FileExists(temp & "KwPic") Then gFso.DeleteFile temp & "KwPic"

Section "shell operations"
d1 = work & "\shell"
gFso.CreateFolder d1
f1 = d1 & "\a.txt"
WriteText f1, "a"
fs.ActionSHFile 2, f1, d1 & "\b.txt"
Check "copy", gFso.FileExists(d1 & "\b.txt") And gFso.FileExists(f1)
fs.ActionSHFile 4, d1 & "\b.txt", d1 & "\c.txt"
Check "rename", gFso.FileExists(d1 & "\c.txt") And Not gFso.FileExists(d1 & "\b.txt")
gFso.CreateFolder d1 & "\sub"
fs.ActionSHFile 1, d1 & "\c.txt", d1 & "\sub\c.txt"
Check "move", gFso.FileExists(d1 & "\sub\c.txt") And Not gFso.FileExists(d1 & "\c.txt")
fs.ActionSHFile 3, d1 & "\*.txt"
Check "a wildcard deletes nothing", gFso.FileExists(f1)
fs.ActionSHFile 3, d1 & "\sub" & Chr(0) & "\c.txt"
Check "nor does a path with a NUL", gFso.FileExists(d1 & "\sub\c.txt")
fs.ActionSHFile 3, d1 & "\none.txt"
Check "a missing source: nothing", gFso.FolderExists(d1 & "\sub")
fs.SetFileAttribute f1, 2
fs.ActionSHFile 2, f1, d1 & "\shown.txt"
Check "a hidden source is shown first", Not fs.GetFileAttribute(f1, 2) And gFso.FileExists(d1 & "\shown.txt")
fs.ActionSHFile 3, d1 & "\sub"
Check "delete a folder", Not gFso.FolderExists(d1 & "\sub")

Section "recycle bin"
' Wine's recycle bin is the freedesktop trash under XDG_DATA_HOME: it must lie inside the
' test prefix before anything goes there.
xdg = Env("XDG_DATA_HOME")
prefix = Env("WINEPREFIX")
If Len(prefix) > 1 And Left(xdg, Len(prefix) + 1) = prefix & "/" Then
    trash = "Z:" & Replace(xdg, "/", "\") & "\Trash\files\"
    Set bin = fs.GoRecBin
    CheckEqual "the system's drive by default", bin.RootDrive, Left(winDir, 3)
    bin.GoEmptyFile
    CheckEqual "empty", bin.CountItem, 0
    WriteText d1 & "\binned.txt", "12345"
    fs.ActionSHFile 3, d1 & "\binned.txt", , 1616
    Check "a delete with undo", Not gFso.FileExists(d1 & "\binned.txt")
    Check "goes to the prefix's bin", gFso.FileExists(trash & "binned.txt")
    CheckEqual "one item", bin.CountItem, 1
    CheckEqual "of five bytes", bin.FileSize, 5
    Set y = fs.GoRecBin("Q:\")
    y.GoEmptyFile
    CheckEqual "emptying from any drive empties every bin", bin.CountItem, 0
    Check "the file is gone", Not gFso.FileExists(trash & "binned.txt")
Else
    Fail "recycle bin", "XDG_DATA_HOME (" & xdg & ") is not inside the test prefix (" & prefix & "): not reached"
End If

Section "searching"
tree = work & "\tree"
gFso.CreateFolder tree
gFso.CreateFolder tree & "\sub1"
gFso.CreateFolder tree & "\sub1\deep"
gFso.CreateFolder tree & "\sub2"
WriteText tree & "\a.txt", "123"
WriteText tree & "\b.log", "1234"
WriteText tree & "\h.txt", "12345"
fs.SetFileAttribute tree & "\h.txt", 2
WriteText tree & "\sub1\c.txt", "123456"
WriteText tree & "\sub1\deep\d.txt", "1234567"
Set lst = Nothing
Check "GoFindFile", fs.GoFindFile(tree, lst)
CheckEqual "every file below", lst.CountFile, 5
CheckEqual "every folder below", lst.CountFolder, 3
CheckEqual "their size", lst.SizeFile, 25
n = ""
For i = 0 To 2
    n = n & gFso.GetParentFolderName(lst.ItemFile(i).Path) & "|"
Next
CheckEqual "a folder's files before its subfolders'", n, tree & "|" & tree & "|" & tree & "|"
CheckEqual "then the subfolder's", lst.ItemFile(3).Name, "c.txt"
CheckEqual "folders in the runtime's objects", gFso.GetParentFolderName(lst.ItemFolder(0).Path), tree
On Error Resume Next
Set x = lst.ItemFile(5)
CheckError "past the last file", Err.Number, 9
Err.Clear
Set x = lst.ItemFolder(-1)
CheckError "before the first folder", Err.Number, 9
Err.Clear
On Error GoTo 0
x = fs.GoFindFile(tree, lst, "*.txt", 1)
CheckEqual "a pattern, and no hidden files", lst.CountFile, 3
CheckEqual "their size", lst.SizeFile, 16
x = fs.GoFindFile(tree, lst, , , 1)
CheckEqual "GoFile: the folder itself", lst.CountFile, 3
CheckEqual "no folders", VarType(lst.CountFolder), 0
Check "GoFolder finds folders", Not fs.GoFindFile(tree, lst, , , 2)
CheckEqual "but answers False", lst.CountFolder, 3
Check "an empty folder", Not fs.GoFindFile(tree & "\sub2", lst)
CheckEqual "no files: Empty", VarType(lst.CountFile), 0
Check "a missing folder", Not fs.GoFindFile(tree & "\none", lst)
CheckEqual "an empty list", VarType(lst.CountFolder), 0
WriteText tree & "\sub2\zero.txt", ""
Check "files of no bytes answer False", Not fs.GoFindFile(tree & "\sub2", lst)
CheckEqual "yet are listed", lst.CountFile, 1
gFso.DeleteFile tree & "\sub2\zero.txt"
lst.SizeFile = "any value"
CheckEqual "SizeFile can be set", lst.SizeFile, "any value"
lst.ClearAll
CheckEqual "ClearAll empties the lists", VarType(lst.CountFile), 0
CheckEqual "and keeps the size", lst.SizeFile, "any value"

Section "counting"
CheckEqual "folders in the folder", fs.CountDirectory(tree), 2
CheckEqual "folders at every depth", fs.CountDirectory(tree, 2), 3
CheckEqual "files in the folder", fs.CountFile(tree), 3
CheckEqual "SubAll counts the folder's own files only", fs.CountFile(tree, 2), 3
CheckEqual "no folder", fs.CountDirectory(tree & "\none"), -1
CheckEqual "no folder, SubAll", fs.CountFile(tree & "\none", 2), 0
x = 2
CheckEqual "the kind in a variable", fs.CountDirectory(tree, x), 3

Section "listing"
Check "GetFileSys files", fs.GetFileSys(tree, lst)
CheckEqual "the folder's own files, hidden ones too", lst.CountFile, 3
Check "subfolders", fs.GetFileSys(tree, lst, 3)
CheckEqual "two", lst.CountFolder, 2
Check "drives", fs.GetFileSys("ignored", lst, 2)
CheckEqual "the system's drive among them", lst.ItemDrive(0).DriveLetter, Left(winDir, 1)
Set y = lst
Check "a missing folder fails", Not fs.GetFileSys(tree & "\none", lst)
Check "and leaves the variable alone", lst Is y

Section "scripting objects"
x = "*MyTemp*"
CheckEqual "wFolder", fs.wFolder(x).Path, gFso.GetFolder(temp).Path
CheckEqual "writes the expanded path back", x, temp
CheckEqual "wFile", fs.wFile(tree & "\a.txt").Size, 3
On Error Resume Next
Set y = fs.wFile(tree & "\none.txt")
CheckError "a missing file", Err.Number, 53
Err.Clear
Set y = fs.wFolder(tree & "\none")
CheckError "a missing folder", Err.Number, 76
Err.Clear
On Error GoTo 0

Section "shortcuts"
fs.CreateShourtCut tree & "\a.txt", work & "\a.lnk"
' (Its target is read back through the shell's link object in the unit tests: Wine's
' scripting shell cannot read a link.)
Check "a link file", gFso.FileExists(work & "\a.lnk") And gFso.GetFile(work & "\a.lnk").Size > 0

Section "drives and bins"
Set y = fs.GoDrive
CheckEqual "GoDrive: the system's drive by default", y.RootDrive, Left(winDir, 3)
CheckEqual "or the one named", fs.GoDrive("Z:\").RootDrive, "Z:\"
CheckEqual "with placeholders", fs.GoDrive("*DriveRoot*").RootDrive, Left(winDir, 3)
Set y = fs.GoDrive
y.RootDrive = "Q:\"
CheckEqual "RootDrive can be set", y.RootDrive, "Q:\"
CheckEqual "a drive that is not there has no size", y.TotalBytes, 0
CheckEqual "and is a local disk", y.Caption, "Local Disk"
CheckEqual "without a file system", y.FileSystem, ""
CheckEqual "or serial number", y.SerialInfo, "0"
Set y = fs.GoDrive
CheckEqual "sizes are Currency", VarType(y.TotalBytes), 6
Check "the system's drive has some", y.TotalBytes > 0 And y.TotalFreeBytes >= 0
' (Free space moves as other programs write: used and free are read at one moment, when
' the free bytes before and after agree.)
For i = 1 To 100
    r = y.TotalFreeBytes
    x = y.TotalBytesTotalFreeBytes
    If y.TotalFreeBytes = r Then Exit For
Next
CheckEqual "used bytes", x, y.TotalBytes - r
CheckEqual "exact, as the runtime counts", CDbl(y.TotalBytes), CDbl(gFso.GetDrive(Left(winDir, 2)).TotalSize)
CheckEqual "a bin of a drive that is not there holds nothing", fs.GoRecBin("Q:\").CountItem, 0

Section "details"
On Error Resume Next
Set y = fs.GetDetails("no backslash")
CheckError "a file name without a folder", Err.Number, 5
Err.Clear
On Error GoTo 0

Section "zip archives"
' First with no zip component registered, then with the stand-in that writes down its calls.
standIn = Env("VX_BIN_DIR") & "\vx_zip_standin.dll"
sh.Run "regsvr32 /u /s """ & standIn & """", 0, True
Set y = CreateObject("Vx_Main.Ds_FileSystem")
On Error Resume Next
y.ZipFile "a.zip", "src"
CheckError "no component: ZipFile", Err.Number, 91
Err.Clear
y.UnZipFile "a.zip", "dest"
CheckError "no component: UnZipFile", Err.Number, 91
Err.Clear
On Error GoTo 0
zipLog = temp & "vx_zip_calls.log"
If gFso.FileExists(zipLog) Then gFso.DeleteFile zipLog
CheckEqual "the stand-in registers", sh.Run("regsvr32 /s """ & standIn & """", 0, True), 0
Set y = CreateObject("Vx_Main.Ds_FileSystem")
y.ZipFile "*MyTemp*a.zip", "src folder"
y.ZipFile "b.zip", "src", True, "new\path", 9
y.UnZipFile "b.zip", "dest", "*.txt"
y.UnZipFile "c.zip", "dest2"
sh.Run "regsvr32 /u /s """ & standIn & """", 0, True
arr = Split(ReadText(zipLog), vbCrLf)
CheckEqual "four calls", UBound(arr), 4
CheckEqual "Pack takes the source first; no placeholders", arr(0), "Pack|src folder(8)|*MyTemp*a.zip(8)|False(11)|(8)|-1(3)"
CheckEqual "every argument", arr(1), "Pack|src(8)|b.zip(8)|True(11)|new\path(8)|9(3)"
CheckEqual "UnPack", arr(2), "UnPack|b.zip(8)|dest(8)|*.txt(8)"
CheckEqual "the pattern left out", arr(3), "UnPack|c.zip(8)|dest2(8)|(8)"
gFso.DeleteFile zipLog

Section "bad input"
On Error Resume Next
x = fs.IsFileX(Null)
Check "Null for a path is an error", Err.Number <> 0
Err.Clear
x = fs.GetReadFile(String(5000, "a"), arr)
CheckError "a path longer than the system allows", Err.Number, 0
Check "is no file", Not x
Err.Clear
fs.NewDir work & "\" & String(400, "b") & "\c"
CheckError "nor a folder to make", Err.Number, 0
Err.Clear
fs.ActionSHFile 3, work & "\" & String(400, "c")
CheckError "nor one to delete", Err.Number, 0
Err.Clear
x = fs.GetInfoSizeByte("text")
CheckError "a size that is no number", Err.Number, 13
Err.Clear
On Error GoTo 0

Section "clean-up"
On Error Resume Next
For Each x In Array("tree", "shell", "a", "share")
    gFso.DeleteFolder work & "\" & x, True
    CheckError "remove " & x, Err.Number, 0
    Err.Clear
Next
For Each x In Array("*.txt", "*.bin", "*.ini", "*.lnk", "was a folder")
    gFso.DeleteFile work & "\" & x, True
    CheckError "remove " & x, Err.Number, 0
    Err.Clear
Next
On Error GoTo 0
