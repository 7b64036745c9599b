' The harness every host test runs with: the runner puts it in front of the test.
' Checks count passes and failures; Finish prints "N passed, N failed" and ends the
' script with exit code 1 when anything failed.
Option Explicit

Dim gPassed, gFailed, gSection, gFso
gPassed = 0
gFailed = 0
gSection = ""
Set gFso = CreateObject("Scripting.FileSystemObject")

Sub Section(name)
    gSection = name
End Sub

Sub Pass()
    gPassed = gPassed + 1
End Sub

Sub Fail(name, detail)
    gFailed = gFailed + 1
    WScript.Echo "FAIL [" & gSection & "] " & name & ": " & detail
End Sub

' A readable form of any value, for failure messages.
Function Describe(v)
    If IsObject(v) Then
        If v Is Nothing Then Describe = "Nothing" Else Describe = "an object"
        Exit Function
    End If
    Select Case VarType(v)
        Case 0: Describe = "Empty"
        Case 1: Describe = "Null"
        Case 8: Describe = """" & v & """ (length " & Len(v) & ")"
        Case 10: Describe = "an Error value"
        Case Else
            If IsArray(v) Then
                Describe = "an array"
            Else
                Describe = CStr(v) & " (VarType " & VarType(v) & ")"
            End If
    End Select
End Function

Sub Check(name, condition)
    If condition Then Pass Else Fail name, "the condition is false"
End Sub

' Equal values of the same kind: text compares code unit by code unit, numbers by value.
Sub CheckEqual(name, actual, expected)
    Dim same
    same = False
    If IsObject(actual) Or IsObject(expected) Then
        If IsObject(actual) And IsObject(expected) Then same = (actual Is expected)
    ElseIf IsNull(actual) Or IsNull(expected) Then
        same = IsNull(actual) And IsNull(expected)
    ElseIf IsEmpty(actual) Or IsEmpty(expected) Then
        same = IsEmpty(actual) And IsEmpty(expected)
    ElseIf VarType(actual) = 8 Or VarType(expected) = 8 Then
        same = (VarType(actual) = VarType(expected)) And (StrComp(actual, expected, 0) = 0)
    Else
        same = (actual = expected)
    End If
    If same Then Pass Else Fail name, "got " & Describe(actual) & ", expected " & Describe(expected)
End Sub

' Err.Number as the call left it: pass Err.Number, then clear it.
Sub CheckError(name, actualNumber, expectedNumber)
    If actualNumber = expectedNumber Then
        Pass
    Else
        Fail name, "Err.Number " & actualNumber & ", expected " & expectedNumber
    End If
End Sub

' A text from the UTF-16 data files beside the script (key=text lines), so that tests
' can compare texts outside the script's code page, Persian included.
Dim gTexts
Set gTexts = Nothing
Function T(key)
    If gTexts Is Nothing Then
        Set gTexts = CreateObject("Scripting.Dictionary")
        Dim folder, file, stream, line, eq
        Set folder = gFso.GetFolder(gFso.GetParentFolderName(WScript.ScriptFullName))
        For Each file In folder.Files
            If LCase(gFso.GetExtensionName(file.Name)) = "utf16" Then
                Set stream = gFso.OpenTextFile(file.Path, 1, False, -1)
                Do While Not stream.AtEndOfStream
                    line = stream.ReadLine
                    eq = InStr(line, "=")
                    If eq > 1 And Left(line, 1) <> "#" Then gTexts(Left(line, eq - 1)) = Mid(line, eq + 1)
                Loop
                stream.Close
            End If
        Next
    End If
    If Not gTexts.Exists(key) Then
        Fail "text " & key, "no such key in the data files"
        T = ""
    Else
        ' Brackets in the data files mark the ends of texts whose blanks matter: [ text ].
        T = gTexts(key)
        If Left(T, 1) = "[" And Right(T, 1) = "]" Then T = Mid(T, 2, Len(T) - 2)
    End If
End Function

' The whole of a file in the ANSI code page ("" when it is empty).
Function ReadText(path)
    Dim s
    ReadText = ""
    If gFso.GetFile(path).Size = 0 Then Exit Function
    Set s = gFso.OpenTextFile(path, 1, False, 0)
    ReadText = s.ReadAll
    s.Close
End Function

Sub Finish()
    WScript.Echo gPassed & " passed, " & gFailed & " failed"
    If gFailed > 0 Then WScript.Quit 1
    WScript.Quit 0
End Sub

' ---- the test ----
