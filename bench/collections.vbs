' Ds_ListCollection against the scripting runtime's Dictionary: adding records with keys,
' then reading each one back by its key, from a script.
Function TimeList(n)
    Dim l, i, x, t
    t = Timer
    Set l = CreateObject("Vx_Main.Ds_ListCollection")
    For i = 1 To n
        l.Add i, "k" & i
    Next
    For i = 1 To n
        Set x = l.Item("k" & i)
    Next
    TimeList = Since(t)
End Function

Function TimeDictionary(n)
    Dim d, i, x, t
    t = Timer
    Set d = CreateObject("Scripting.Dictionary")
    For i = 1 To n
        d.Add "k" & i, i
    Next
    For i = 1 To n
        x = d.Item("k" & i)
    Next
    TimeDictionary = Since(t)
End Function

Dim small, large
small = TimeList(100000)
Report "Ds_ListCollection Add and keyed Item, 100,000 records / Dictionary", small, TimeDictionary(100000), 0.7
large = TimeList(1000000)
Report "Ds_ListCollection 1,000,000 records / 100,000 records", large, small, 11
