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

' One list of the window's children, timed.
Function TimeList(hwnd)
    Dim t, lst
    t = Timer
    Set lst = e.EWinChild(hwnd, 4)
    TimeList = Since(t)
End Function

' The best of a few runs, the two sizes taking turns so that a change in the machine's
' load meets both (the script's Timer ticks in steps of about 16 ms).
Function Best(sofar, t)
    Best = t
    If sofar >= 0 And sofar < t Then Best = sofar
End Function

Dim h200, h2000, small, large, r
h200 = StartWith(200)
h2000 = StartWith(2000)
small = -1
large = -1
For r = 1 To 2
    small = Best(small, TimeList(h200))
    large = Best(large, TimeList(h2000))
    small = Best(small, TimeList(h200))
Next
e.WindowsClose h200
e.WindowsClose h2000
Report "EWinChild, 2,000 children / 200 children", large, small, 12
