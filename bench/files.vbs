' Ds_FileSystem against the scripting runtime, from a script: reading a text file into an
' array of lines (GetReadFile against ReadAll and Split), at two sizes; and listing a tree
' of 50,000 files in 100 folders with their total size (GoFindFile against a recursion
' over Files and SubFolders that reads each file's Size). The files are made in the
' benchmark's own folder, which the next run removes.
Dim fso, fs, work
Set fso = CreateObject("Scripting.FileSystemObject")
Set fs = CreateObject("Vx_Main.Ds_FileSystem")
work = fso.GetParentFolderName(WScript.ScriptFullName)

' A text file of count lines (count a multiple of 1000) of about twenty characters each.
Sub MakeLines(path, count)
    Dim chunk, i, s
    chunk = ""
    For i = 1 To 1000
        chunk = chunk & "line " & (100000 + i) & " of text" & vbCrLf
    Next
    Set s = fso.CreateTextFile(path, True)
    For i = 1 To count \ 1000
        s.Write chunk
    Next
    s.Close
End Sub

Function TimeGetReadFile(path, expected)
    Dim lines, t
    lines = Array()
    t = Timer
    If Not fs.GetReadFile(path, lines) Then WScript.Echo "GetReadFile failed"
    TimeGetReadFile = Since(t)
    If UBound(lines) <> expected - 1 Then WScript.Echo "GetReadFile read " & (UBound(lines) + 1) & " lines"
End Function

Function TimeReadAllSplit(path, expected)
    Dim text, lines, t, stream
    t = Timer
    Set stream = fso.OpenTextFile(path, 1)
    text = stream.ReadAll
    stream.Close
    lines = Split(text, vbCrLf)
    TimeReadAllSplit = Since(t)
    ' The text ends with a line end, after which Split finds one empty field more.
    If UBound(lines) <> expected Then WScript.Echo "Split made " & (UBound(lines) + 1) & " fields"
End Function

Dim small, large, baseline
' Both files first; then each reading in a process whose heap has not held the other's lines.
' The platform's ReadAll and Split grow faster than the text does (a million lines take
' them minutes), so they read a tenth of the lines and their time counts ten times: the
' comparison is, if anything, in their favour.
MakeLines work & "\million.txt", 1000000
MakeLines work & "\ten million.txt", 10000000
MakeLines work & "\tenth.txt", 100000
small = TimeGetReadFile(work & "\million.txt", 1000000)
large = TimeGetReadFile(work & "\ten million.txt", 10000000)
baseline = 10 * TimeReadAllSplit(work & "\tenth.txt", 100000)
Report "GetReadFile, 1,000,000 lines / ReadAll and Split of 100,000 lines x 10", small, baseline, 1.5
Report "GetReadFile, 10,000,000 lines / 1,000,000 lines", large, small, 11
fso.DeleteFile work & "\million.txt"
fso.DeleteFile work & "\ten million.txt"
fso.DeleteFile work & "\tenth.txt"

' The tree: 100 folders of 500 files, three folders deep at most. One folder beside the
' tree is written file by file and copied to each place (much quicker than writing each).
Dim tree, seed, i, j, folder, s
tree = work & "\tree"
seed = work & "\seed"
fso.CreateFolder tree
fso.CreateFolder seed
For j = 1 To 500
    Set s = fso.CreateTextFile(seed & "\file" & j & ".dat", True)
    s.Write "x" & j
    s.Close
Next
For i = 0 To 99
    If i < 10 Then
        folder = tree & "\f" & i
    Else
        folder = tree & "\f" & (i Mod 10) & "\g" & i
    End If
    fso.CopyFolder seed, folder
Next
fso.DeleteFolder seed, True

Function Walk(f)
    Dim file, child, total
    total = 0
    For Each file In f.Files
        total = total + file.Size
    Next
    For Each child In f.SubFolders
        total = total + Walk(child)
    Next
    Walk = total
End Function

Dim t, total, walked, found, list
t = Timer
total = Walk(fso.GetFolder(tree))
walked = Since(t)
t = Timer
If Not fs.GoFindFile(tree, list) Then WScript.Echo "GoFindFile found nothing"
found = Since(t)
If list.CountFile <> 50000 Or list.SizeFile <> total Then WScript.Echo "GoFindFile listed " & list.CountFile & " files of " & list.SizeFile & " bytes, not 50000 of " & total
Report "GoFindFile, 50,000 files in 100 folders / a script's walk reading each Size", found, walked, 0.2
Set list = Nothing
fso.DeleteFolder tree, True
