' Files and drives: Ds_FileSystem reads and writes files, makes folders, searches, copies
' and deletes through the shell, and hands out Ds_TypeFileSys (lists of files, folders and
' drives), Ds_DriveInfo (one drive), Ds_RecycleBin and Ds_TypeFileDetails (one file's
' shell columns). Everything happens in a temporary folder of its own, removed at the end.
' Run: cscript //nologo files.vbs
Option Explicit

Dim fso, fs, folder, notes, lines, settings, bytes, found, i, d, bin, details, x

Set fso = CreateObject("Scripting.FileSystemObject")
Set fs = CreateObject("Vx_Main.Ds_FileSystem")

' Placeholders: a path may name a special folder by a word between asterisks, expanded
' (case-sensitively) wherever a path is taken. GetXpPath gives the folders by number.
WScript.Echo "The temporary folder by placeholder and by number agree: " & (fs.PathReplace("*MyTemp*") = fs.GetXpPath(13))
WScript.Echo "System drive: " & fs.GetXpPath(5)                        ' e.g. C:\
folder = fs.PathReplace("*MyTemp*") & fso.GetTempName()
fs.NewDir folder & "\notes\old"                                         ' every missing level
WScript.Echo "Folders made: " & fs.IsDirX(folder & "\notes\old")
notes = folder & "\notes"

' Writing: a text gets a line end after it; True writes UTF-16 instead of ANSI; an array
' of numbers is written byte for byte. Without data, an empty file (an existing one is kept).
fs.NewFile notes & "\list.txt", "milk" & vbCrLf & "bread" & vbCrLf & "tea"
fs.NewFile notes & "\wide.txt", "Unicode text", True
fs.NewFile notes & "\settings.ini", "name=Sara" & vbCrLf & "city = Shiraz"
fs.NewFile notes & "\empty.txt"
WScript.Echo "Files made: " & fs.IsFileX(notes & "\list.txt") & ", a folder is no file: " & (Not fs.IsFileX(notes))

' Reading: with an array, the file's lines (from 0); otherwise the whole text.
lines = Array()
If fs.GetReadFile(notes & "\list.txt", lines) Then
    For i = 0 To UBound(lines)
        WScript.Echo "  line " & i & ": " & lines(i)
    Next
End If
WScript.Echo "A missing file reads False: " & fs.GetReadFile(notes & "\none.txt", lines)

' key=value lines into a keyed list (any object with Add value, key will do).
Set settings = CreateObject("Vx_Main.Ds_ListCollection")
If fs.GetReadFileINI(notes & "\settings.ini", settings) Then
    WScript.Echo "Setting city: " & settings.Item("city").ValueA       ' trimmed
End If

' Bytes: a file as a Byte array (with one 0 byte more at its end) and back.
bytes = fs.ConvertFileToArray(notes & "\list.txt")
WScript.Echo "A Byte array: " & (VarType(bytes) = 8209)
fs.ConvertArrayToFile bytes, notes & "\list.bin"
WScript.Echo "Written back: " & fs.FormatFileSize(notes & "\list.bin")    ' 18 bytes and the extra 0
fs.ConvertArrayToFile Array(72, 105, 33), notes & "\hi.bin"              ' numbers 0 to 255 too
WScript.Echo "Bytes written: " & fs.FormatFileSize(notes & "\hi.bin")  ' 3 bytes
WScript.Echo "Sizes as text: " & fs.GetInfoSizeByte(1536, "0.00") & ", " & fs.GetInfoSizeByte(5 * 1048576)

' Attributes (1 read-only, 2 hidden, 4 system, 32 archive ...).
fs.SetFileAttribute notes & "\empty.txt", 2
WScript.Echo "Hidden: " & fs.GetFileAttribute(notes & "\empty.txt", 2)
fs.SetFileAttribute notes & "\empty.txt", 128                         ' normal again

' The shell's file operations (1 move, 2 copy, 3 delete, 4 rename), without questions.
' They act only when the source exists, and never on a path with * or ?.
fs.ActionSHFile 2, notes & "\list.txt", notes & "\old\list copy.txt"
fs.ActionSHFile 4, notes & "\old\list copy.txt", notes & "\old\list 2020.txt"
fs.ActionSHFile 1, notes & "\hi.bin", folder & "\hi.bin"
fs.ActionSHFile 3, notes & "\*.txt"
WScript.Echo "Copied and renamed: " & fs.IsFileX(notes & "\old\list 2020.txt")
WScript.Echo "Moved: " & fs.IsFileX(folder & "\hi.bin")
WScript.Echo "A wildcard deletes nothing: " & fs.IsFileX(notes & "\list.txt")

' Counting and searching. GoFindFile fills a Ds_TypeFileSys with the files (a folder's
' own before its subfolders') and folders below a folder; True when it found any bytes.
WScript.Echo "Subfolders of notes: " & fs.CountDirectory(notes) & ", files in it: " & fs.CountFile(notes)
If fs.GoFindFile(folder, found, "*.txt") Then
    WScript.Echo "Text files below: " & found.CountFile & ", " & found.SizeFile & " bytes in all"
    For i = 0 To found.CountFile - 1
        WScript.Echo "  found " & found.ItemFile(i).Name                ' the runtime's File objects
    Next
End If
WScript.Echo "Nothing below a missing folder: " & fs.GoFindFile(folder & "\none", found)

' The scripting runtime's own File and Folder objects, for a path with placeholders.
WScript.Echo "wFile: " & fs.wFile(notes & "\wide.txt").Size & " bytes"  ' 2 for the byte-order mark + 24

' A drive: sizes as Currency (exact above 2 GB too), label, file system, serial number.
Set d = fs.GoDrive                                                      ' the system's drive
WScript.Echo "Drive " & d.RootDrive & ": " & d.Caption & ", " & d.FileSystem & ", has bytes: " & (d.TotalBytes > 0)
WScript.Echo "Used: " & FormatNumber(d.TotalBytesTotalFreeBytes / 2^30, 1) & " GB of " & _
    FormatNumber(d.TotalBytes / 2^30, 1) & " GB"                      ' used is total minus free

' The recycle bin is only read here: GoEmptyFile would empty every drive's bin unasked.
Set bin = fs.GoRecBin
WScript.Echo "Recycle bin of " & bin.RootDrive & ": " & bin.CountItem & " items"

' A file's shell columns (Ds_TypeFileDetails): the name, size, type and dates, and for
' documents and media their own properties. A shell that cannot give a column raises
' its own error (Wine's shell: -2147467263, not implemented).
On Error Resume Next
Set details = fs.GetDetails(notes & "\wide.txt")
x = details.Name
If Err.Number = 0 Then
    WScript.Echo "Details: the file's name column reads " & x
Else
    WScript.Echo "Details: the shell gives none here (" & Err.Number & ")"
End If
Err.Clear
On Error GoTo 0

' Not run here: ZipFile and UnZipFile call the "XStandard.Zip" component, which is not
' part of Windows (without it they raise error 91: call them under On Error and test
' Err.Number); DownloadFileUrl(url, file) fetches a file from the web.
fs.ActionSHFile 3, folder                                               ' the folder and all in it
WScript.Echo "Removed: " & (Not fs.IsDirX(folder))
WScript.Echo "Done."
