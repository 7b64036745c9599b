' Ds_Clipboard from a late-bound host, against a second program: the clipboard fixture
' puts known data on the clipboard, reports what is there, and holds it open, so that
' every format crosses a process boundary.
Dim sh, c, c2, e, fixtureExe, workDir, rep, arr, files, p, k, job, latin, ready, release

Set sh = CreateObject("WScript.Shell")
Set c = CreateObject("Vx_Main.Ds_Clipboard")
Set e = CreateObject("Vx_Main.Ds_EnumChid")
' (Wine's ExpandEnvironmentStrings leaves the terminating NUL on the text.)
fixtureExe = """" & Replace(sh.ExpandEnvironmentStrings("%VX_BIN_DIR%"), Chr(0), "") & "\vx_clip_fixture.exe"""
workDir = gFso.GetParentFolderName(WScript.ScriptFullName)

Function Fixture(args)
    Fixture = sh.Run(fixtureExe & " " & args, 0, True)
End Function

Function FixtureLater(args)
    Set FixtureLater = sh.Exec(fixtureExe & " " & args)
End Function

' Yields, counted, until a fixture started with FixtureLater has ended.
Sub WaitEnded(job)
    Dim i
    For i = 1 To 20000
        If job.Status <> 0 Then Exit Sub
        e.WaitDoEvents , 20
    Next
End Sub

' What the fixture reports the clipboard holds: "count", and "text", "unicode", "rtf",
' "files" for what is there.
Function Report()
    Dim file, stream, line, found
    file = workDir & "\report.txt"
    Set found = CreateObject("Scripting.Dictionary")
    Set Report = found
    If Fixture("report """ & file & """") <> 0 Then Exit Function
    Set stream = gFso.OpenTextFile(file, 1, False, -1)
    Do While Not stream.AtEndOfStream
        line = stream.ReadLine
        found(Left(line, InStr(line, "=") - 1)) = Mid(line, InStr(line, "=") + 1)
    Loop
    stream.Close
End Function

' Yields until a watch has seen its text (or its files), or as long as a watch may take.
Function Seen(watcher, isFile)
    Dim i
    For i = 1 To 10000
        If isFile Then Seen = watcher.ResultClipboardFile Else Seen = watcher.ResultClipboardText
        If Seen Then Exit Function
        e.WaitDoEvents , 20
    Next
End Function

' The elements of an array joined by "|" (Wine's VBScript has no Join).
Function Joined(list)
    Dim x
    For Each x In list
        Joined = Joined & "|" & x
    Next
    Joined = Mid(Joined, 2)
End Function

CheckEqual "the clipboard has settled", Fixture("sync"), 0

Section "text"
' Another program puts Unicode text; the library reads the ANSI text the system makes of it.
latin = "Gr" & Chr(252) & Chr(223) & "e aus dem Test"
Fixture "put ""unicode=" & latin & """"
CheckEqual "ClipboardText", c.ClipboardText, latin
arr = Array(1, 2, 3, 4, 5, 6)
CheckEqual "EnumClipboard", c.EnumClipboard(arr), 4
CheckEqual "describes the four formats in order, and only them", Joined(arr), _
    "CF_UNICODETEXT" & vbTab & "Unicode text format, available only under Windows NT 4.0 or later|" & _
    "CF_LOCALE" & vbTab & "Handle to the locale identifier associated with text in the clipboard|" & _
    "CF_TEXT" & vbTab & "Null-terminated plain ANSI text in global memory block|" & _
    "CF_OEMTEXT" & vbTab & "Similar to CF_TEXT but using the OEM character set"
CheckEqual "four formats are text", c.NowTypeClipboard, 1
Check "no rich text, no picture", c.ClipboardRTF = "" And c.ClipboardPicture Is Nothing
files = Array("kept")
Check "no file list, and the array is left", Not c.ClipboardGetFiles(files) And Joined(files) = "kept"
c.ClipboardText = "Hello from Vx, " & latin
Set rep = Report()
CheckEqual "the other program reads the text", rep("text"), "Hello from Vx, " & latin
CheckEqual "and its Unicode form", rep("unicode"), "Hello from Vx, " & latin

Section "rich text"
Fixture "put ""rtf={\rtf1\ansi from the fixture}"""
CheckEqual "ClipboardRTF", c.ClipboardRTF, "{\rtf1\ansi from the fixture}"
CheckEqual "is no plain text", c.ClipboardText, ""
CheckEqual "a registered format is PRIVATE with its name", c.EnumClipboard(arr) & ":" & Joined(arr), _
    "1:PRIVATE" & vbTab & "Rich Text Format"
c.ClipboardRTF = "{\rtf1 from Vx}"
Set rep = Report()
CheckEqual "the other program reads the rich text", rep("rtf"), "{\rtf1 from Vx}"
Check "and nothing else", rep("count") = "1"

Section "pictures"
Fixture "put bitmap=40x30"
Set p = c.ClipboardPicture
' A bitmap picture; its size in HiMetric units at the display's 96 dots an inch.
Check "the bitmap arrives as a picture", p.Type = 1 And p.Width = 1058 And p.Height = 794 And p.Handle <> 0
CheckEqual "EnumClipboard", c.EnumClipboard(arr) & ":" & Joined(arr), "3:" & _
    "CF_BITMAP" & vbTab & "A bitmap compatible with Windows 2.x|" & _
    "CF_DIB" & vbTab & "Global memory block containing a Windows device-independent bitmap (DIB) as a BITMAPINFO structure followed by the bitmap bits|" & _
    "CF_DIBV5" & vbTab & "Memory object containing BITMAPV5HEADER structure followed by the bitmap color space information and the bitmap bits (2000/XP only)"
CheckEqual "three formats are a bitmap", c.NowTypeClipboard, 2
' Assigning a picture empties the clipboard and offers the bitmap to a clipboard it has
' not opened: nothing arrives, and the picture keeps its bitmap.
c.ClipboardPicture = p
Set rep = Report()
CheckEqual "assigning a picture leaves the clipboard empty", rep("count"), "0"
Check "and the picture unharmed", p.Width = 1058 And c.ClipboardPicture Is Nothing
On Error Resume Next
Fixture "put ""unicode=still here"""
c.ClipboardPicture = CreateObject("Scripting.Dictionary")
CheckError "an object that is no picture", Err.Number, 13
Err.Clear
CheckEqual "is refused before the clipboard is emptied", c.ClipboardText, "still here"
c.ClipboardPicture = Nothing
CheckError "Nothing", Err.Number, 91
Err.Clear
c.ClipboardText = Array("a")
CheckError "an array where text belongs", Err.Number, 13
Err.Clear
On Error GoTo 0

Section "files, private and unknown formats, the guess by count"
Fixture "put ""files=C:\vx\one.txt|C:\vx\two words.txt"""
CheckEqual "ClipboardGetFiles", c.ClipboardGetFiles(files), True
CheckEqual "the full paths in order", Joined(files), "C:\vx\one.txt|C:\vx\two words.txt"
CheckEqual "EnumClipboard", c.EnumClipboard(arr) & ":" & Joined(arr), "1:CF_FILES/CF_HDROP" & vbTab & _
    "Handle that identifies a list of files, such as a set of files dragged from the Windows Explorer"
On Error Resume Next
Dim notArray
k = c.ClipboardGetFiles(notArray)
CheckError "an argument that is no array", Err.Number, 13
Err.Clear
k = c.EnumClipboard("text")
CheckError "EnumClipboard too", Err.Number, 13
Err.Clear
On Error GoTo 0
Fixture "put ""private=Vx Private Format:data"" number=49999 number=700"
CheckEqual "registered, unregistered and low numbers", c.EnumClipboard(arr) & ":" & Joined(arr), _
    "3:PRIVATE" & vbTab & "Vx Private Format|Unknown" & vbTab & "49999|Unknown" & vbTab & "700"
CheckEqual "any three formats are a bitmap", c.NowTypeClipboard, 2
For Each k In Array(Array(4, 1), Array(5, 0), Array(8, 15))
    Fixture "put" & Left(" private=A:1 private=B:2 private=C:3 private=D:4 private=E:5 private=F:6 private=G:7 private=H:8", 12 * k(0))
    CheckEqual k(0) & " formats", c.NowTypeClipboard, k(1)
Next
Fixture "put"
arr = Array("kept")
CheckEqual "an empty clipboard has no formats", c.EnumClipboard(arr) & ":" & Joined(arr) & ":" & c.NowTypeClipboard, "0:kept:0"

Section "a clipboard another program holds"
Fixture "put ""unicode=before"" ""files=C:\vx\held.txt"""
ready = workDir & "\held.txt"
release = workDir & "\release.txt"
If gFso.FileExists(ready) Then gFso.DeleteFile ready
If gFso.FileExists(release) Then gFso.DeleteFile release
Set job = FixtureLater("hold """ & ready & """ """ & release & """")
For k = 1 To 20000
    If gFso.FileExists(ready) Then Exit For
    e.WaitDoEvents , 20
Next
Check "the fixture holds the clipboard", gFso.FileExists(ready)
Check "no text, rich text or picture", c.ClipboardText = "" And c.ClipboardRTF = "" And c.ClipboardPicture Is Nothing
arr = Array("kept")
CheckEqual "no formats, the array left, no type", c.EnumClipboard(arr) & ":" & Joined(arr) & ":" & c.NowTypeClipboard, "0:kept:0"
files = Array("kept")
CheckEqual "files are there, though they cannot be read", c.ClipboardGetFiles(files) & ":" & Joined(files), "True:kept"
c.ClipboardText = "not now"
gFso.CreateTextFile(release).Close
WaitEnded job
Set rep = Report()
CheckEqual "what was there stays", rep("unicode") & ":" & rep("files"), "before:C:\vx\held.txt"

Section "the watch"
c.GoTimeClipboard "abc", , 50
Set rep = Report()
CheckEqual "empties the clipboard", rep("count"), "0"
CheckEqual "nothing seen yet", c.ResultClipboardText, False
Set job = FixtureLater("later 300 ""unicode=xxABCxx""")
CheckEqual "a text containing it, in other case, is seen", Seen(c, False), True
WaitEnded job
Check "no file was watched; the text still seen as the watch stops", Not c.ResultClipboardFile And c.ResultClipboardText(True)
c.GoTimeClipboard "abc", , 50
Fixture "put ""unicode=ab c"""
c.RunTimeClipboard
CheckEqual "another text is not seen", c.ResultClipboardText, False
c.GoTimeClipboard , Array("C:\vx\a.txt", "C:\vx\B.TXT"), 50
Set job = FixtureLater("later 300 ""files=C:\vx\b.txt|C:\vx\a.txt""")
CheckEqual "the same files in another order and case", Seen(c, True), True
WaitEnded job
c.GoTimeClipboard "report", "C:\vx\r.txt", 50
Fixture "put ""files=C:\vx\r.txt|C:\vx\more.txt"""
c.RunTimeClipboard
CheckEqual "a list with more files is another list", c.ResultClipboardFile, False
Set job = FixtureLater("later 300 ""unicode=the report"" ""files=C:\vx\r.txt""")
Check "a text and a file together", Seen(c, False) And Seen(c, True)
WaitEnded job
c.GoTimeClipboard , , 20
c.RunTimeClipboard
Check "a watch for nothing sees nothing", Not c.ResultClipboardText And Not c.ResultClipboardFile
' One watch is served at a time: every timer checks the object that started one last.
Set c2 = CreateObject("Vx_Main.Ds_Clipboard")
c.GoTimeClipboard "first", , 30
c2.GoTimeClipboard "second", , 30
Set job = FixtureLater("later 300 ""unicode=first and second""")
CheckEqual "the last watch started is served", Seen(c2, False), True
WaitEnded job
CheckEqual "the other is not, though its timer runs", c.ResultClipboardText, False
' A watch whose object is let go stops with it; the library goes on serving others.
c2.GoTimeClipboard "never", , 10
Set c2 = Nothing
e.WaitDoEvents , 2000
c.GoTimeClipboard "after", , 30
Set job = FixtureLater("later 100 ""unicode=after all""")
CheckEqual "a new watch after a released one", Seen(c, False), True
WaitEnded job
On Error Resume Next
c.GoTimeClipboard Null, , 10
c.RunTimeClipboard
CheckError "a Null text, checked directly", Err.Number, 94
Err.Clear
e.WaitDoEvents , 2000
CheckError "fails quietly on the timer", Err.Number, 0
c.GoTimeClipboard Array("a"), , 100000
c.RunTimeClipboard
CheckError "an array as the text", Err.Number, 13
Err.Clear
On Error GoTo 0
c.DeactiveTimer
