' ---- the test ----
' DownloadFileUrl against a local HTTP server that the fixture http-server.pl starts on
' 127.0.0.1 before this test and stops after it. VX_HTTP_DIR names its folder: the files
' it serves are in www, its port and a port nobody listens on in state.
Dim fs, sh, httpDir, port, refused, served, target, folder, ok, keep, stream, i, body

Set fs = CreateObject("Vx_Main.Ds_FileSystem")
Set sh = CreateObject("WScript.Shell")
httpDir = Replace(sh.ExpandEnvironmentStrings("%VX_HTTP_DIR%"), Chr(0), "")

Function FirstLine(path)
    Dim s
    Set s = gFso.OpenTextFile(path, 1, False, 0)
    FirstLine = s.ReadLine
    s.Close
End Function

port = FirstLine(httpDir & "\state\port")
refused = FirstLine(httpDir & "\state\refused-port")
' Every byte value, so that the copy is checked byte for byte.
body = ""
For i = 0 To 255
    body = body & Chr(i)
Next
Set stream = gFso.CreateTextFile(httpDir & "\www\data.bin", True, False)
stream.Write body & vbCrLf & "end"
stream.Close
served = ReadText(httpDir & "\www\data.bin")
folder = fs.GetXpPath(13) & "vx download test"
If gFso.FolderExists(folder) Then gFso.DeleteFolder folder, True

Section "a file"
target = folder & "\sub\data.bin"
Check "DownloadFileUrl", fs.DownloadFileUrl("http://127.0.0.1:" & port & "/data.bin", "*MyTemp*vx download test\sub\data.bin")
Check "makes the folders", gFso.FolderExists(folder & "\sub")
CheckEqual "the same bytes", ReadText(target), served
keep = False
Check "keeping the cached copy", fs.DownloadFileUrl("http://127.0.0.1:" & port & "/data.bin", target, keep)
CheckEqual "the variable is left alone", keep, False
CheckEqual "the same bytes again", ReadText(target), served

Section "a missing file"
target = folder & "\missing.bin"
ok = fs.DownloadFileUrl("http://127.0.0.1:" & port & "/missing.bin", target)
CheckEqual "answers True or False", VarType(ok), 11
' What the system's download call makes of a 404 is the system's: Wine's reports
' success and keeps the server's page.
If ok Then
    CheckEqual "what arrived is the server's answer", ReadText(target), "not found" & vbLf
Else
    Check "nothing arrived", Not gFso.FileExists(target) Or ReadText(target) <> served
End If

Section "a refused connection"
target = folder & "\refused.bin"
Check "False", Not fs.DownloadFileUrl("http://127.0.0.1:" & refused & "/data.bin", target)
Check "no file", Not gFso.FileExists(target)

Section "bad input"
Check "no URL", Not fs.DownloadFileUrl("", folder & "\none.bin")
Check "a NUL in the URL", Not fs.DownloadFileUrl("http://127.0.0.1:" & port & "/data.bin" & Chr(0) & "x", folder & "\with-a-nul.bin")
Check "no file there either", Not gFso.FileExists(folder & "\with-a-nul.bin")

gFso.DeleteFolder folder, True
gFso.DeleteFile httpDir & "\www\data.bin"
