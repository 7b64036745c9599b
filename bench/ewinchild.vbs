' Ds_EnumChid.EWinChild on a window with 2,000 children against one with 200: the list
' costs in proportion to the children, not more.
Dim sh, e, fixture
Set sh = CreateObject("WScript.Shell")
Set e = CreateObject("Vx_Main.Ds_EnumChid")
' (Wine's ExpandEnvironmentStrings leaves its terminating NUL in the result.)
fixture = Replace(sh.ExpandEnvironmentStrings("%VX_BIN_DIR%"), Chr(0), "") & "\vx_children_fixture.exe"

' Starts the fixture with n children and waits (counted yields) for its window.
Function StartWith(n)
    Dim title, k
    title = "Vx Children " & n
    sh.Run """" & fixture & """ " & n & " """ & title & """", 1, False
    For k = 1 To 5000
        StartWith = e.GetFindHandle(title)
        If StartWith <> 0 Then Exit Function
        e.WaitDoEvents , 20
    Next
End Function

' The best of a few runs (the script's Timer ticks in steps of about 16 ms).
Function TimeList(hwnd, runs)
    Dim t, r, best, lst
    best = -1
    For r = 1 To runs
        t = Timer
        Set lst = e.EWinChild(hwnd, 4)
        t = Since(t)
        If best < 0 Or t < best Then best = t
    Next
    TimeList = best
End Function

Dim h200, h2000, small, large
h200 = StartWith(200)
h2000 = StartWith(2000)
small = TimeList(h200, 3)
large = TimeList(h2000, 2)
e.WindowsClose h200
e.WindowsClose h2000
Report "EWinChild, 2,000 children / 200 children", large, small, 12
