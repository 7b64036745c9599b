' The network error channel's box for real, under the test display: a helper program
' (vx_box_fixture.exe) waits for the box, writes down what it shows and presses its
' button, as a person would.
Dim net, sh, fso, code, text, fixture, report, stream, lines, s

Set sh = CreateObject("WScript.Shell")
Set fso = CreateObject("Scripting.FileSystemObject")
Set net = CreateObject("Vx_Main.Ds_Network")

Section "a network error in a box"
' Learn the error first, without the box (the server browser is absent here).
s = net.GetServerList
code = net.NetCodeError
text = net.NetErrorDesration
Check "an error to show", code <> ""
report = fso.GetParentFolderName(WScript.ScriptFullName) & "\box-report.txt"
If fso.FileExists(report) Then fso.DeleteFile report
Set fixture = sh.Exec(Replace(sh.ExpandEnvironmentStrings("%VX_BIN_DIR%"), Chr(0), "") & _
                      "\vx_box_fixture.exe """ & "Code Error : " & code & """ """ & report & """")
net.ShowErrorNetwork = True
s = net.GetServerList   ' returns when the box was answered (the helper writes its report first)
Check "the helper answered a box", fso.FileExists(report)
Set stream = fso.OpenTextFile(report, 1, False, -1)
lines = Split(stream.ReadAll, vbCrLf)
stream.Close
CheckEqual "its title", lines(0), "Code Error : " & code
CheckEqual "one OK button", lines(1), "OK"
CheckEqual "an icon", lines(2), "1"
CheckEqual "the text", lines(3), text
CheckEqual "the member's result after the box", s, ""
fso.DeleteFile report
