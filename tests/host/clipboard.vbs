' Ds_Clipboard from a late-bound host, against a second program: the clipboard fixture
' puts known data on the clipboard, reports what the library put there, and holds the
' clipboard open, so that every format crosses a process boundary.
Dim sh, c, c2, e, fixtureExe, workDir, rep, arr, files, kept, n, p, d, k, job, f

Set sh = CreateObject("WScript.Shell")
Set c = CreateObject("Vx_Main.Ds_Clipboard")
Set e = CreateObject("Vx_Main.Ds_EnumChid")
' (Wine's ExpandEnvironmentStrings leaves the terminating NUL on the text.)
fixtureExe = """" & Replace(sh.ExpandEnvironmentStrings("%VX_BIN_DIR%"), Chr(0), "") & "\vx_clip_fixture.exe"""
workDir = gFso.GetParentFolderName(WScript.ScriptFullName)

' Runs the fixture with these arguments and waits for it; its exit code.
Function Fixture(args)
    Fixture = sh.Run(fixtureExe & " " & args, 0, True)
End Function

' Starts the fixture without waiting for it.
Function FixtureLater(args)
    Set FixtureLater = sh.Exec(fixtureExe & " " & args)
End Function

' Waits, counted in yields, until a started fixture has ended.
Sub WaitEnded(job)
    Dim i
    For i = 1 To 20000
        If job.Status <> 0 Then Exit Sub
        e.WaitDoEvents , 20
    Next
End Sub

' What the clipboard holds, as the fixture reports it: "count", "formats" (number:name
' pairs, comma-separated, in order) and "text", "unicode", "rtf", "bitmap", "files" for
' what is there.
Function Report()
    Dim file, stream, line, eq, key, found
    file = workDir & "\report.txt"
    Set found = CreateObject("Scripting.Dictionary")
    Set Report = found
    If Fixture("report """ & file & """") <> 0 Then
        Fail "report", "the fixture could not read the clipboard"
        Exit Function
    End If
    Set stream = gFso.OpenTextFile(file, 1, False, -1)
    Do While Not stream.AtEndOfStream
        line = stream.ReadLine
        eq = InStr(line, "=")
        key = Left(line, eq - 1)
        If key = "format" Then
            If found.Exists("formats") Then found("formats") = found("formats") & ","
            found("formats") = found("formats") & Mid(line, eq + 1)
        Else
            found(key) = Mid(line, eq + 1)
        End If
    Loop
    stream.Close
End Function

'' One thing the fixture reports, or "-" when it reports no such thing.
Function Reported(key)
    Dim r
    Set r = Report()
    If r.Exists(key) Then Reported = r(key) Else Reported = "-"
End Function

' The elements of an array joined by "|" (Wine's VBScript has no Join).
Function Joined(list)
    Dim x
    Joined = ""
    For Each x In list
        Joined = Joined & "|" & x
    Next
    Joined = Mid(Joined, 2)
End Function

' Whether a description is among the elements of an array.
Function Has(list, item)
    Dim x
    Has = False
    For Each x In list
        If x = item Then Has = True
    Next
End Function

' Yields until a watch's result is True, or as many yields as a watch may take.
Function WaitResult(watcher, isFile)
    Dim i
    For i = 1 To 10000
        If isFile Then WaitResult = watcher.ResultClipboardFile Else WaitResult = watcher.ResultClipboardText
        If WaitResult Then Exit Function
        e.WaitDoEvents , 20
    Next
End Function

Section "the fixture"
CheckEqual "the clipboard has settled", Fixture("sync"), 0

Section "text"
' Another program puts Unicode text; the library reads the ANSI text the system makes of it.
Dim latin
latin = "Gr" & Chr(252) & Chr(223) & "e aus dem Test"
CheckEqual "put", Fixture("put ""unicode=" & latin & """"), 0
CheckEqual "ClipboardText", c.ClipboardText, latin
arr = Array("old", "older", "oldest", "x", "y", "z")
n = c.EnumClipboard(arr)
CheckEqual "EnumClipboard counts the text's four formats", n, 4
CheckEqual "and the array holds exactly them", UBound(arr), 3
Check "CF_UNICODETEXT", Has(arr, "CF_UNICODETEXT" & vbTab & "Unicode text format, available only under Windows NT 4.0 or later")
Check "CF_TEXT", Has(arr, "CF_TEXT" & vbTab & "Null-terminated plain ANSI text in global memory block")
Check "CF_OEMTEXT", Has(arr, "CF_OEMTEXT" & vbTab & "Similar to CF_TEXT but using the OEM character set")
Check "CF_LOCALE", Has(arr, "CF_LOCALE" & vbTab & "Handle to the locale identifier associated with text in the clipboard")
CheckEqual "four formats are text", c.NowTypeClipboard, 1
CheckEqual "no rich text", c.ClipboardRTF, ""
Check "no picture", c.ClipboardPicture Is Nothing
files = Array("kept")
CheckEqual "no file list", c.ClipboardGetFiles(files), False
CheckEqual "and the array is left", Joined(files), "kept"
' The library puts ANSI text; the other program reads it, and the Unicode form the system makes.
c.ClipboardText = "Hello from Vx, " & latin
Set rep = Report()
CheckEqual "the fixture reads the text", rep("text"), "Hello from Vx, " & latin
CheckEqual "and its Unicode form", rep("unicode"), "Hello from Vx, " & latin
c.ClipboardText = ""
CheckEqual "empty text is still text", Reported("count"), "4"

Section "rich text"
CheckEqual "put", Fixture("put ""rtf={\rtf1\ansi from the fixture}"""), 0
CheckEqual "ClipboardRTF", c.ClipboardRTF, "{\rtf1\ansi from the fixture}"
CheckEqual "no plain text", c.ClipboardText, ""
CheckEqual "one format", c.EnumClipboard(arr), 1
CheckEqual "a registered format is PRIVATE with its name", arr(0), "PRIVATE" & vbTab & "Rich Text Format"
CheckEqual "one format is no type", c.NowTypeClipboard, 0
c.ClipboardRTF = "{\rtf1 from Vx}"
Set rep = Report()
CheckEqual "the fixture reads the rich text", rep("rtf"), "{\rtf1 from Vx}"
Check "and nothing else", rep("count") = "1" And Not rep.Exists("text")
c.ClipboardText = "plain again"
CheckEqual "plain text replaces rich text", Reported("rtf"), "-"

Section "pictures"
CheckEqual "put", Fixture("put bitmap=40x30"), 0
Set p = c.ClipboardPicture
Check "the bitmap arrives as a picture", Not p Is Nothing
CheckEqual "of the bitmap type", p.Type, 1
' HiMetric units at the display's 96 dots an inch.
CheckEqual "40 pixels wide", p.Width, 1058
CheckEqual "30 pixels high", p.Height, 794
Check "with a handle of its own", p.Handle <> 0
CheckEqual "three formats", c.EnumClipboard(arr), 3
Check "CF_BITMAP", Has(arr, "CF_BITMAP" & vbTab & "A bitmap compatible with Windows 2.x")
Check "CF_DIB", Has(arr, "CF_DIB" & vbTab & "Global memory block containing a Windows device-independent bitmap (DIB) as a BITMAPINFO structure followed by the bitmap bits")
Check "CF_DIBV5", Has(arr, "CF_DIBV5" & vbTab & "Memory object containing BITMAPV5HEADER structure followed by the bitmap color space information and the bitmap bits (2000/XP only)")
CheckEqual "three formats are a bitmap", c.NowTypeClipboard, 2
' Assigning a picture empties the clipboard and offers the bitmap to a clipboard it has
' not opened: nothing arrives, and the picture keeps its bitmap.
c.ClipboardPicture = p
CheckEqual "assigning a picture leaves the clipboard empty", Reported("count"), "0"
CheckEqual "the picture is unharmed", p.Width, 1058
Check "a picture read from an empty clipboard is Nothing", c.ClipboardPicture Is Nothing
On Error Resume Next
Fixture "put ""unicode=still here"""
c.ClipboardPicture = CreateObject("Scripting.Dictionary")
CheckError "an object that is not a picture", Err.Number, 13
Err.Clear
c.ClipboardPicture = Nothing
CheckError "Nothing", Err.Number, 91
Err.Clear
c.ClipboardPicture = "text"
CheckError "a text", Err.Number, 13
Err.Clear
c.ClipboardText = Array("a")
CheckError "an array where text belongs", Err.Number, 13
Err.Clear
c.ClipboardRTF = Array("a")
CheckError "an array where rich text belongs", Err.Number, 13
Err.Clear
On Error GoTo 0

Section "files"
CheckEqual "put", Fixture("put ""files=C:\vx\one.txt|C:\vx\two words.txt"""), 0
files = Array("kept")
CheckEqual "ClipboardGetFiles", c.ClipboardGetFiles(files), True
CheckEqual "the full paths in order", Joined(files), "C:\vx\one.txt|C:\vx\two words.txt"
CheckEqual "one format", c.EnumClipboard(arr), 1
CheckEqual "CF_HDROP", arr(0), "CF_FILES/CF_HDROP" & vbTab & "Handle that identifies a list of files, such as a set of files dragged from the Windows Explorer"
On Error Resume Next
Dim notArray
n = c.ClipboardGetFiles(notArray)
CheckError "an argument that is no array", Err.Number, 13
Err.Clear
n = c.EnumClipboard("text")
CheckError "EnumClipboard too", Err.Number, 13
Err.Clear
On Error GoTo 0

Section "private and unknown formats, and the guess by count"
CheckEqual "put", Fixture("put ""private=Vx Private Format:data"" number=49999 number=700"), 0
CheckEqual "three formats", c.EnumClipboard(arr), 3
CheckEqual "a registered format", arr(0), "PRIVATE" & vbTab & "Vx Private Format"
CheckEqual "an unregistered number", arr(1), "Unknown" & vbTab & "49999"
CheckEqual "a number below the registered ones", arr(2), "Unknown" & vbTab & "700"
CheckEqual "any three formats are a bitmap", c.NowTypeClipboard, 2
Fixture "put private=A:1 private=B:2 private=C:3 private=D:4"
CheckEqual "any four are text", c.NowTypeClipboard, 1
Fixture "put private=A:1 private=B:2 private=C:3 private=D:4 private=E:5"
CheckEqual "five are nothing", c.NowTypeClipboard, 0
Fixture "put private=A:1 private=B:2 private=C:3 private=D:4 private=E:5 private=F:6 private=G:7 private=H:8"
CheckEqual "eight are files", c.NowTypeClipboard, 15
Fixture "put"
arr = Array("kept")
CheckEqual "an empty clipboard", c.EnumClipboard(arr), 0
CheckEqual "leaves the array", Joined(arr), "kept"
CheckEqual "and is no type", c.NowTypeClipboard, 0

Section "a clipboard another program holds"
Fixture "put ""unicode=before"" ""files=C:\vx\held.txt"""
Dim ready, release
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
CheckEqual "no text", c.ClipboardText, ""
CheckEqual "no rich text", c.ClipboardRTF, ""
Check "no picture", c.ClipboardPicture Is Nothing
arr = Array("kept")
CheckEqual "no formats", c.EnumClipboard(arr), 0
CheckEqual "and the array is left", Joined(arr), "kept"
CheckEqual "no type", c.NowTypeClipboard, 0
files = Array("kept")
CheckEqual "files are there, though they cannot be read", c.ClipboardGetFiles(files), True
CheckEqual "so the array is left", Joined(files), "kept"
c.ClipboardText = "not now"
c.ClipboardRTF = "not now"
gFso.CreateTextFile(release).Close
WaitEnded job
CheckEqual "the fixture let go", job.Status, 1
Set rep = Report()
CheckEqual "what was there stays", rep("unicode"), "before"
CheckEqual "files too", rep("files"), "C:\vx\held.txt"

Section "watching for a text"
c.GoTimeClipboard "abc", , 50
CheckEqual "the watch empties the clipboard", Reported("count"), "0"
CheckEqual "not seen yet", c.ResultClipboardText, False
Set job = FixtureLater("later 300 ""unicode=xxABCxx""")
CheckEqual "a text containing it, in other case, is seen", WaitResult(c, False), True
WaitEnded job
CheckEqual "no file was watched", c.ResultClipboardFile, False
CheckEqual "still seen, and the watch stops", c.ResultClipboardText(True), True
' A text that never shows up.
c.GoTimeClipboard "abc", , 50
Set job = FixtureLater("later 100 ""unicode=ab c""")
WaitEnded job
e.WaitDoEvents , 2000
CheckEqual "another text is not seen", c.ResultClipboardText, False
c.DeactiveTimer

Section "watching for files"
c.GoTimeClipboard , Array("C:\vx\a.txt", "C:\vx\B.TXT"), 50
Set job = FixtureLater("later 300 ""files=C:\vx\b.txt|C:\vx\a.txt""")
CheckEqual "the same files in another order and case", WaitResult(c, True), True
WaitEnded job
CheckEqual "no text was watched", c.ResultClipboardText, False
c.GoTimeClipboard , "C:\vx\one.txt", 50
Set job = FixtureLater("later 300 ""files=C:\vx\one.txt""")
CheckEqual "one path", WaitResult(c, True), True
WaitEnded job
c.GoTimeClipboard , "C:\vx\one.txt", 50
Set job = FixtureLater("later 100 ""files=C:\vx\one.txt|C:\vx\two.txt""")
WaitEnded job
e.WaitDoEvents , 2000
CheckEqual "a list with more files is another list", c.ResultClipboardFile, False
' Text and files together.
c.GoTimeClipboard "report", "C:\vx\r.txt", 50
Set job = FixtureLater("later 300 ""unicode=the report"" ""files=C:\vx\r.txt""")
CheckEqual "the text", WaitResult(c, False), True
CheckEqual "and the file", WaitResult(c, True), True
WaitEnded job
' Neither: a timer that never matches.
c.GoTimeClipboard , , 20
e.WaitDoEvents , 2000
Check "a watch for nothing sees nothing", Not c.ResultClipboardText And Not c.ResultClipboardFile
c.DeactiveTimer

Section "one watch is served at a time"
Set c2 = CreateObject("Vx_Main.Ds_Clipboard")
c.GoTimeClipboard "first", , 30
c2.GoTimeClipboard "second", , 30
Set job = FixtureLater("later 300 ""unicode=first and second""")
CheckEqual "the last watch started is served", WaitResult(c2, False), True
WaitEnded job
e.WaitDoEvents , 2000
CheckEqual "the other is not, though its timer runs", c.ResultClipboardText, False
c.DeactiveTimer
c2.DeactiveTimer
' A watch whose object is let go stops with it; the library goes on serving others.
c2.GoTimeClipboard "never", , 10
Set c2 = Nothing
e.WaitDoEvents , 2000
c.GoTimeClipboard "after", , 30
Set job = FixtureLater("later 100 ""unicode=after all""")
CheckEqual "a new watch after a released one", WaitResult(c, False), True
WaitEnded job

Section "bad values to watch for"
On Error Resume Next
c.GoTimeClipboard Null, , 100000
c.RunTimeClipboard
CheckError "a Null text, checked directly", Err.Number, 94
Err.Clear
c.GoTimeClipboard Array("a"), , 100000
c.RunTimeClipboard
CheckError "an array as the text", Err.Number, 13
Err.Clear
c.GoTimeClipboard Nothing
CheckError "Nothing", Err.Number, 91
Err.Clear
On Error GoTo 0
c.DeactiveTimer
' A watch for Null, left to its timer, fails quietly.
c.GoTimeClipboard Null, , 10
e.WaitDoEvents , 2000
CheckEqual "and is never seen", c.ResultClipboardText(True), False
